// The module's entry point and the command's flow, in the real VarDesk.so and in the frame library.
#include "TestHost.h"

#include "cContext.h"
#include "cDocCntx.h"
#include "cDocList.h"
#include "ModuleEntry.h"
#include "Reactors.h"

namespace {

const std::string kModulePath = VARDESK_STAGE_DIR "/share/vardesk/VarDesk.so";
const std::string kDictionary = "KOVA_VARDESKVARDESK";

class LoadedModule : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        iniFile = folder / "VarDesk.ini";
    }
    void TearDown() override {
        host.unloadModules();
        HostTest::TearDown();
    }
    std::filesystem::path iniFile;
};

// The ini file's values reaching a drawing without its own are in settings_store.scr.
TEST_F(LoadedModule, CommandWaitsForADocumentEventAndWorksAfterACloseUntilUnloaded) {
    AcApDocument* early = host.newDocument();
    ASSERT_NE(early, nullptr);
    ASSERT_TRUE(host.loadModule(kModulePath)) << kModulePath;

    host.runCommand("KOVA_VARDESK"); // defined or not: no context yet, so nothing may happen
    EXPECT_FALSE(std::filesystem::exists(iniFile));
    EXPECT_TRUE(testhost::storedRecord(kDictionary, "SETTINGS").empty());

    AcApDocument* second = host.newDocument();
    ASSERT_NE(second, nullptr);
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    const std::string ini = testhost::readFile(iniFile);
    EXPECT_NE(ini.find("[Settings]"), std::string::npos) << ini;
    EXPECT_NE(ini.find("SearchCheck=15"), std::string::npos) << ini;
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS").size(), 52u);

    ASSERT_TRUE(host.closeDocument(second));
    ASSERT_TRUE(host.closeDocument(early));
    std::filesystem::remove(iniFile);
    ASSERT_NE(host.newDocument(), nullptr);
    EXPECT_TRUE(host.isCommand("KOVA_VARDESK")) << "defined again for the new drawing";
    ASSERT_TRUE(host.runCommand("KOVA_VARDESK"));
    EXPECT_TRUE(std::filesystem::exists(iniFile));
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS").size(), 52u);

    host.unloadModules();
    EXPECT_FALSE(host.isCommand("KOVA_VARDESK"));
    EXPECT_NE(host.newDocument(), nullptr) << "events after the unload reach no reactor of the module";
}

// The same entry, linked into this program from the frame library.
class EntryPoint : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        gDocList.clear();
    }
    void TearDown() override {
        UnloadApp();
        gDocList.clear();
        HostTest::TearDown();
    }
};

TEST_F(EntryPoint, CommandOutsideItsInvokeDoesNothing) {
    CDocReactor reactor;
    acDocManagerPtr()->addReactor(&reactor);
    ASSERT_NE(host.newDocument(), nullptr);
    acDocManagerPtr()->removeReactor(&reactor);
    ASSERT_NE(gCurDoc, nullptr);
    gCurDoc->mainPosX = -5;

    CommandVarDesk(); // the function code is not the command's here
    EXPECT_EQ(gCurDoc->mainPosX, -5) << "no settings were loaded";
    EXPECT_FALSE(gContext.userIniFile.empty()) << "the ini path is asked for all the same";
    EXPECT_FALSE(std::filesystem::exists(gContext.userIniFile));
}

} // namespace
