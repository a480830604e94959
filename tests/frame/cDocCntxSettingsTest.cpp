// LoadSettings and SaveSettings of a document context: the 26 keys, their defaults and their places.
#include "TestHost.h"

#include "cContext.h"
#include "cDocCntx.h"
#include "dialogs/main/LoadStep.h"
#include "ProfileFile.h"
#include "settings/cMsgCatalog.h"

#include <algorithm>

namespace {

class ContextSettings : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        gContext.moduleDirectory = "/opt/vardesk/";
        gContext.userIniFile = (folder / "VarDesk.ini").string();
        doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
    }
    void TearDown() override {
        gContext.moduleDirectory = saved.first;
        gContext.userIniFile = saved.second;
        HostTest::TearDown();
    }
    const std::pair<std::string, std::string> saved{gContext.moduleDirectory, gContext.userIniFile};
    AcApDocument* doc = nullptr;
};

// Every key at its default is in settings_defaults.scr; the ini file's values reaching a drawing
// without its own, and a drawing's own values winning, in settings_store.scr.
TEST_F(ContextSettings, EmptyValuesInTheIniFileOrTheDrawingWinNothing) {
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainPosX", "");
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainPosY", "55");
    kova::profile::writeString(gContext.userIniFile, "Settings", "Editor", "");
    cDocCntx context(doc);
    context.mainPosX = 123;
    context.LoadSettings();
    EXPECT_EQ(context.mainPosX, 123) << "an empty integer keeps the field";
    EXPECT_EQ(context.mainPosY, 55);
    EXPECT_EQ(context.editorPath, "") << "an empty text is a value, not a missing key";

    context.searchPattern = "";
    context.SaveSettings();
    kova::profile::writeString(gContext.userIniFile, "Settings", "SearchPattern", "LT*");
    context.LoadSettings();
    EXPECT_EQ(context.searchPattern, "LT*") << "an empty text in the drawing does not win";
}

TEST_F(ContextSettings, AnotherIniFileNameLooksUnderAnotherEntry) {
    cDocCntx context(doc);
    context.LoadSettings();
    context.configSizeX = 444;
    context.SaveSettings();
    gContext.userIniFile = (folder / "Other.ini").string();
    context.LoadSettings();
    EXPECT_EQ(context.configSizeX, 300) << "KOVA_VARDESKOTHER holds nothing yet";
    context.SaveSettings();
    EXPECT_EQ(testhost::storedRecord("KOVA_VARDESKOTHER", "SETTINGS").size(), 52u);
}

// A program or description file that a drawing brings is neither used nor written to the ini file
// before the user says yes to a question that names it; No keeps the user's own.
TEST_F(ContextSettings, PathsThatADrawingBringsWaitForTheUsersYes) {
    const std::string& ini = gContext.userIniFile;
    const std::string evil = "/bin/sh -c 'rm -rf ~'";
    kova::profile::writeString(ini, "Settings", "Editor", evil); // another user's, stored in the drawing
    kova::profile::writeString(ini, "Settings", "AutoCADVarList", "/dev/zero");
    {
        cDocCntx other(doc);
        other.LoadSettings();
        other.SaveSettings();
    }
    std::filesystem::remove(ini);
    kova::profile::writeString(ini, "Settings", "Editor", "/bin/true");
    auto iniValue = [&](const char* key) {
        std::string value;
        kova::profile::getString(ini, "Settings", key, "<none>", value);
        return value;
    };
    auto stored = [&](const std::string& key) {
        const auto record = testhost::storedRecord("KOVA_VARDESKVARDESK", "SETTINGS");
        const auto at = std::find(record.begin(), record.end(), std::pair<short, std::string>(1, key));
        return at == record.end() || at + 1 == record.end() ? "<none>" : (at + 1)->second;
    };

    cDocCntx context(doc);
    context.LoadSettings();
    EXPECT_EQ(context.editorPath, "/bin/true");
    EXPECT_EQ(context.avlFilePath, "/opt/vardesk/VarDesk.avl");
    context.SaveSettings();
    EXPECT_EQ(iniValue("Editor"), "/bin/true");
    EXPECT_EQ(iniValue("AutoCADVarList"), "/opt/vardesk/VarDesk.avl");
    EXPECT_EQ(stored("EDITOR"), evil) << "unanswered, the drawing keeps what it brought";
    EXPECT_EQ(stored("AUTOCADVARLIST"), "/dev/zero");
    EXPECT_TRUE(uiLines().empty()) << "nothing is asked before the path is needed";

    testhost::capture().script.answers = {"no"};
    ShowErrorLog(context);
    const std::vector<std::string> expected = {
        "BOX question: RT·VarDesk - Rückfrage: " + gMsg.TxDrawingEditor + "\\n" + evil + "\\n" +
            gMsg.TxKeepOwnPath + " /bin/true",
        "EXEC: /bin/true \"" + (folder / "VarDesk.err").string() + "\""};
    EXPECT_EQ(uiLines(), expected);
    testhost::capture().script.lines.clear();
    ShowErrorLog(context);
    EXPECT_EQ(uiLines().size(), 1u) << "the answer ends the offer";
    context.SaveSettings();
    EXPECT_EQ(stored("EDITOR"), "/bin/true");

    testhost::capture().script.answers = {"yes"};
    context.AskForDrawingPath(cDocCntx::DrawingPath::AvlFile);
    EXPECT_EQ(context.avlFilePath, "/dev/zero");
    context.SaveSettings();
    EXPECT_EQ(iniValue("AutoCADVarList"), "/dev/zero") << "after the yes it is the user's own";
}

// A write-protected ini file is left as it is, and the user is told so once.
TEST_F(ContextSettings, WriteProtectedIniFileIsNotReplacedAndToldOnce) {
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainPosX", "77");
    const std::string before = testhost::readFile(gContext.userIniFile);
    std::filesystem::permissions(gContext.userIniFile, std::filesystem::perms::owner_read);
    cDocCntx context(doc);
    context.LoadSettings();
    context.mainPosX = 5;
    context.SaveSettings();
    context.SaveSettings();
    EXPECT_EQ(testhost::readFile(gContext.userIniFile), before);
    EXPECT_EQ(uiLines(),
              std::vector<std::string>{"BOX warning: RT·VarDesk - Warnung: " + gContext.userIniFile +
                                       " ist schreibgeschützt: die Einstellungen werden nicht "
                                       "darin gespeichert."});
}

} // namespace
