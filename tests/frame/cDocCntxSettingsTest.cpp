// LoadSettings and SaveSettings of a document context: the 26 keys, their defaults and their places.
#include "TestHost.h"

#include "cContext.h"
#include "cDocCntx.h"
#include "platform/ProfileFile.h"

namespace {

class ContextSettings : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        savedContext = {gContext.moduleDirectory, gContext.userIniFile};
        gContext.moduleDirectory = "/opt/vardesk/";
        gContext.userIniFile = (folder / "VarDesk.ini").string();
        doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
    }
    void TearDown() override {
        gContext.moduleDirectory = savedContext.first;
        gContext.userIniFile = savedContext.second;
        HostTest::TearDown();
    }

    std::string iniValue(const std::string& key) {
        std::string value;
        kova::profile::getString(gContext.userIniFile, "Settings", key, "<missing>", value);
        return value;
    }

    std::pair<std::string, std::string> savedContext;
    AcApDocument* doc = nullptr;
};

TEST_F(ContextSettings, NothingStoredGivesEveryDefault) {
    cDocCntx context(doc);
    context.LoadSettings();
    const std::pair<const char*, std::int32_t> expected[] = {
        {"MainPosX", context.mainPosX},
        {"MainPosY", context.mainPosY},
        {"MainSizeX", context.mainSizeX},
        {"MainSizeY", context.mainSizeY},
        {"SelectionPosX", context.selectionPosX},
        {"SelectionPosY", context.selectionPosY},
        {"SelectionSizeX", context.selectionSizeX},
        {"SelectionSizeY", context.selectionSizeY},
        {"SearchPosX", context.searchPosX},
        {"SearchPosY", context.searchPosY},
        {"SearchSizeX", context.searchSizeX},
        {"SearchSizeY", context.searchSizeY},
        {"ConfigPosX", context.configPosX},
        {"ConfigPosY", context.configPosY},
        {"ConfigSizeX", context.configSizeX},
        {"ConfigSizeY", context.configSizeY},
        {"ListCtrlFirstCol", context.listCtrlFirstCol},
        {"ListCtrlSecCol", context.listCtrlSecCol},
        {"ListCtrlThirdCol", context.listCtrlThirdCol},
        {"ListCtrl2FirstCol", context.listCtrl2FirstCol},
        {"ListCtrl2SecCol", context.listCtrl2SecCol},
        {"ListCtrl2ThirdCol", context.listCtrl2ThirdCol},
        {"SearchCheck", context.searchCheck},
    };
    const std::int32_t defaults[] = {20, 20, 450, 320, 20,  20,  450, 320, 20,  20,  200, 120,
                                     20, 20, 300, 130, 200, 100, 100, 200, 100, 100, 15};
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(expected[i].second, defaults[i]) << expected[i].first;
    EXPECT_EQ(context.editorPath, "/usr/bin/xdg-open");
    EXPECT_EQ(context.avlFilePath, "/opt/vardesk/VarDesk.avl");
    EXPECT_EQ(context.searchPattern, "");
}

TEST_F(ContextSettings, EmptyIntegerInTheIniFileKeepsTheField) {
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainPosX", "");
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainPosY", "55");
    kova::profile::writeString(gContext.userIniFile, "Settings", "Editor", "");
    cDocCntx context(doc);
    context.mainPosX = 123;
    context.LoadSettings();
    EXPECT_EQ(context.mainPosX, 123);
    EXPECT_EQ(context.mainPosY, 55);
    EXPECT_EQ(context.editorPath, "") << "an empty text is a value, not a missing key";
}

TEST_F(ContextSettings, DrawingWinsAndSaveCarriesItToTheIniFile) {
    cDocCntx context(doc);
    context.LoadSettings();
    context.mainSizeX = 640;
    context.searchPattern = "DIM*";
    context.SaveSettings();
    EXPECT_EQ(iniValue("MainSizeX"), "640");
    EXPECT_EQ(iniValue("SearchPattern"), "DIM*");

    kova::profile::writeString(gContext.userIniFile, "Settings", "MainSizeX", "999");
    kova::profile::writeString(gContext.userIniFile, "Settings", "MainSizeY", "888");
    context.mainSizeX = 0;
    context.LoadSettings();
    EXPECT_EQ(context.mainSizeX, 640) << "the drawing's value wins";
    EXPECT_EQ(context.mainSizeY, 320) << "the drawing holds the value saved before";
    context.SaveSettings();
    EXPECT_EQ(iniValue("MainSizeX"), "640");
}

TEST_F(ContextSettings, EmptyPatternInTheDrawingDoesNotWin) {
    cDocCntx context(doc);
    context.LoadSettings();
    context.searchPattern = "";
    context.SaveSettings();
    const auto record = testhost::storedRecord("KOVA_VARDESKVARDESK", "SETTINGS");
    bool stored = false;
    for (std::size_t i = 0; i + 1 < record.size(); i += 2)
        if (record[i].second == "SEARCHPATTERN") {
            stored = true;
            EXPECT_EQ(record[i + 1].second, "");
        }
    EXPECT_TRUE(stored);

    kova::profile::writeString(gContext.userIniFile, "Settings", "SearchPattern", "LT*");
    context.LoadSettings();
    EXPECT_EQ(context.searchPattern, "LT*");
}

TEST_F(ContextSettings, AnotherIniFileNameLooksUnderAnotherEntry) {
    cDocCntx context(doc);
    context.LoadSettings();
    context.configSizeX = 444;
    context.SaveSettings();

    gContext.userIniFile = (folder / "Other.ini").string();
    context.configSizeX = 0;
    context.LoadSettings();
    EXPECT_EQ(context.configSizeX, 300) << "KOVA_VARDESKOTHER holds nothing yet";
    context.SaveSettings();
    EXPECT_EQ(testhost::storedRecord("KOVA_VARDESKOTHER", "SETTINGS").size(), 52u);
}

} // namespace
