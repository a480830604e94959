// Tests of the help service: finding file and topic, the three error boxes, a missing engine.
#include "../frame/TestHost.h"

#include "settings/HelpService.h"

namespace {

using Texts = std::vector<std::string>;

// Counts how often the help engine is asked for.
class CountingUiServices : public kova::ScriptedUiServices {
public:
    using ScriptedUiServices::ScriptedUiServices;
    bool loadHelpEngine() override {
        ++loadAttempts;
        return ScriptedUiServices::loadHelpEngine();
    }
    int loadAttempts = 0;
};

// A help file with the anchor "main", and a topic file with a good, an empty and a broken key.
class HelpService : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ResetHtmlHelpLoader();
        gHelpBase = "VarDesk";
        std::ofstream(folder / "VarDesk.html") << "<html><body><a name=\"main\"></a></body></html>";
        std::ofstream(folder / "VarDesk.top") << "[VarDesk]\nMainDialog=#main\nEmptyKey=\nBroken=.old#main\n";
        std::ofstream(folder / "NoTopic.html") << "<html></html>";
        host.setUiServices(&ui);
        host.setSupportPath({folder.string()});
        helpPath = (folder / "VarDesk.html").string();
    }
    void TearDown() override {
        ResetHtmlHelpLoader();
        host.setSupportPath({});
        host.setUiServices(&testhost::capture().services);
        HostTest::TearDown();
    }
    std::string pageMissing() const {
        return "BOX error: RT·VarDesk - Fehler: Hilfedatei\\n    " + helpPath + "\\nnicht gefunden";
    }

    CountingUiServices ui{testhost::capture().script};
    std::string helpPath;
};

TEST_F(HelpService, MissingFileKeyOrPageGiveTheirBoxesWithoutLoadingTheEngine) {
    const std::string box = "BOX error: RT·VarDesk - Fehler: ";
    const std::tuple<const char*, const char*, const char*, std::string> rows[] = {
        // help base, section, key, box
        {"NoSuchHelpBase", "VarDesk", "MainDialog", box + "Pfad von 'NoSuchHelpBase.html' nicht gefunden"},
        {"VarDesk", "VarDesk", "SearchDialog", box + "Hilfeschlüssel 'SearchDialog' nicht gefunden"},
        {"VarDesk", "VarDesk", "EmptyKey", box + "Hilfeschlüssel 'EmptyKey' nicht gefunden"},
        {"NoTopic", "VarDesk", "MainDialog", box + "Hilfeschlüssel 'MainDialog' nicht gefunden"},
    };
    for (const auto& [helpBase, section, key, expected] : rows) {
        testhost::capture().script.lines.clear();
        gHelpBase = helpBase;
        ShowHelp(section, key);
        EXPECT_EQ(uiLines(), Texts{expected}) << helpBase << " " << section << "/" << key;
    }
    EXPECT_EQ(ui.loadAttempts, 0);
}

TEST_F(HelpService, PageTheEngineRefusesNamesTheHelpFileWithoutItsTopic) {
    ShowHelp("VarDesk", "Broken");
    EXPECT_EQ(uiLines(), Texts{pageMissing()});
}

// The help page found: see the scenario commands_edit.
TEST_F(HelpService, MissingEngineIsNotLoadedAgain) {
    ui.setHelpEngineAvailable(false);
    ShowHelp("VarDesk", "MainDialog");
    ui.setHelpEngineAvailable(true);
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(ui.loadAttempts, 1) << "a failed load is final for the process";
    EXPECT_EQ(uiLines(), (Texts{pageMissing(), pageMissing()}));
}

} // namespace
