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

// Every key at its default, in the ini file and in the drawing, is in settings_defaults.scr.
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

TEST_F(ContextSettings, DrawingWinsUnlessEmptyAndSaveCarriesItToTheIniFile) {
    cDocCntx context(doc);
    context.LoadSettings();
    context.mainSizeX = 640;
    context.searchPattern = "";
    context.SaveSettings();
    EXPECT_EQ(iniValue("MainSizeX"), "640");

    kova::profile::writeString(gContext.userIniFile, "Settings", "MainSizeX", "999");
    kova::profile::writeString(gContext.userIniFile, "Settings", "SearchPattern", "LT*");
    context.mainSizeX = 0;
    context.LoadSettings();
    EXPECT_EQ(context.mainSizeX, 640) << "the drawing's value wins";
    EXPECT_EQ(context.searchPattern, "LT*") << "an empty text in the drawing does not win";
    context.SaveSettings();
    EXPECT_EQ(iniValue("MainSizeX"), "640");
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
