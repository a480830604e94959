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

} // namespace
