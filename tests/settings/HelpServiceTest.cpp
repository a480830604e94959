// Tests of the help service: finding file and topic, the three error boxes, the engine loaded once.
#include "settings/HelpService.h"

#include "frame/cContext.h"
#include "settings/cMsgCatalog.h"

#include "ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

class RecordingScriptHost : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string& verb) override {
        ADD_FAILURE() << "unexpected question to the script: " << verb;
        return "cancel";
    }
    int driveModal(QDialog&) override { return 0; }
    std::vector<std::string> lines;
};

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

class HelpService : public ::testing::Test {
protected:
    void SetUp() override {
        ResetHtmlHelpLoader();
        gHelpBase = "VarDesk";
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_dir = fs::temp_directory_path() / (std::string("helpservice_") + info->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
        std::ofstream(m_dir / "VarDesk.html") << "<html><body><a name=\"main\"></a></body></html>";
        std::ofstream(m_dir / "VarDesk.top") << "[VarDesk]\n"
                                                "MainDialog=#main\n"
                                                "EmptyKey=\n"
                                                "Broken=.old#main\n";
        std::ofstream(m_dir / "NoTopic.html") << "<html></html>";
        auto& host = cadhost::HostSession::instance();
        host.setUiServices(&m_ui);
        host.setSupportPath({m_dir.string()});
        m_helpPath = (m_dir / "VarDesk.html").string();
    }
    void TearDown() override {
        ResetHtmlHelpLoader();
        cadhost::HostSession::instance().setSupportPath({});
        fs::remove_all(m_dir);
    }

    RecordingScriptHost m_script;
    CountingUiServices m_ui{m_script};
    fs::path m_dir;
    std::string m_helpPath;
};

TEST_F(HelpService, ShowsTheHelpFileAtTheKeysAnchor) {
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(m_script.lines, std::vector<std::string>{"HELP: " + m_helpPath + "#main"});
}

TEST_F(HelpService, HelpFileNotFound) {
    gHelpBase = "NoSuchHelpBase";
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(m_script.lines,
              std::vector<std::string>{"BOX error: RT·VarDesk - Fehler: Pfad von 'NoSuchHelpBase.html' "
                                       "nicht gefunden"});
    EXPECT_EQ(m_ui.loadAttempts, 0);
}

TEST_F(HelpService, KeyNotFoundEmptyOrWithoutTopicFile) {
    struct Row {
        const char* helpBase;
        const char* section;
        const char* key;
    };
    const Row rows[] = {
        {"VarDesk", "VarDesk", "SearchDialog"},
        {"VarDesk", "VarDesk", "EmptyKey"},
        {"VarDesk", "OtherSection", "MainDialog"},
        {"NoTopic", "VarDesk", "MainDialog"},
    };
    for (const Row& row : rows) {
        m_script.lines.clear();
        gHelpBase = row.helpBase;
        ShowHelp(row.section, row.key);
        EXPECT_EQ(m_script.lines,
                  std::vector<std::string>{std::string("BOX error: RT·VarDesk - Fehler: Hilfeschlüssel '") +
                                           row.key + "' nicht gefunden"})
            << row.helpBase << " " << row.section << "/" << row.key;
    }
    EXPECT_EQ(m_ui.loadAttempts, 0);
}

TEST_F(HelpService, PageRefusedNamesTheHelpFileWithoutTopic) {
    ShowHelp("VarDesk", "Broken");
    EXPECT_EQ(m_script.lines, std::vector<std::string>{"BOX error: RT·VarDesk - Fehler: Hilfedatei\\n    " +
                                                       m_helpPath + "\\nnicht gefunden"});
}

TEST_F(HelpService, MissingEngineIsNotLoadedAgain) {
    m_ui.setHelpEngineAvailable(false);
    const std::string box =
        "BOX error: RT·VarDesk - Fehler: Hilfedatei\\n    " + m_helpPath + "\\nnicht gefunden";
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(m_ui.loadAttempts, 1);
    m_ui.setHelpEngineAvailable(true);
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(m_ui.loadAttempts, 1) << "a failed load is final for the process";
    EXPECT_EQ(m_script.lines, (std::vector<std::string>{box, box}));
}

TEST_F(HelpService, LoadedEngineIsAskedOnce) {
    ShowHelp("VarDesk", "MainDialog");
    ShowHelp("VarDesk", "MainDialog");
    EXPECT_EQ(m_ui.loadAttempts, 1);
    EXPECT_EQ(m_script.lines.size(), 2u);
}

} // namespace
