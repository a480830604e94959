// The command's flow in the real VarDesk.so, loaded into the in-process host.
#include "TestHost.h"

namespace {

const std::string kModulePath = VARDESK_STAGE_DIR "/share/vardesk/VarDesk.so";

class LoadedModule : public testhost::HostTest {
protected:
    void TearDown() override {
        host.unloadModules();
        HostTest::TearDown();
    }
};

// The ini file's values reaching a drawing without its own are in settings_store.scr.
TEST_F(LoadedModule, CommandWaitsForADocumentEventAndWorksAfterACloseUntilUnloaded) {
    const std::filesystem::path iniFile = folder / "VarDesk.ini";
    AcApDocument* early = host.newDocument();
    ASSERT_NE(early, nullptr);
    ASSERT_TRUE(host.loadModule(kModulePath)) << kModulePath;
    host.runCommand("KOVA_VARDESK"); // defined or not: no context yet, so nothing may happen
    EXPECT_FALSE(std::filesystem::exists(iniFile));
    EXPECT_TRUE(testhost::storedRecord("KOVA_VARDESKVARDESK", "SETTINGS").empty());

    AcApDocument* second = host.newDocument();
    ASSERT_NE(second, nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    EXPECT_NE(testhost::readFile(iniFile).find("[Settings]"), std::string::npos);

    ASSERT_TRUE(host.closeDocument(second));
    ASSERT_TRUE(host.closeDocument(early));
    std::filesystem::remove(iniFile);
    ASSERT_NE(host.newDocument(), nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK")) << "defined again for the new drawing";
    EXPECT_TRUE(std::filesystem::exists(iniFile));
    EXPECT_EQ(testhost::storedRecord("KOVA_VARDESKVARDESK", "SETTINGS").size(), 52u);

    host.unloadModules();
    EXPECT_FALSE(host.isCommand("KOVA_VARDESK"));
    EXPECT_NE(host.newDocument(), nullptr) << "events after the unload reach no reactor of the module";
}

} // namespace
