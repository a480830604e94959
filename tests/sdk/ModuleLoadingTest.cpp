// Tests of modules: the five messages at their moments, commands per drawing, Lisp services, alerts.
#include "SdkTestSupport.h"

#include "UiServices.h"

#include <fstream>
#include <vector>

namespace {

using Modules = HostTest;

TEST_F(Modules, MessagesComeAtTheirMoments) {
    AcApDocument* first = host().newDocument();
    host().newDocument();
    ASSERT_TRUE(host().activateDocument(first));
    printed.clear();

    cadhost::HostResult r = host().loadModule(SDK_TEST_MODULE);
    ASSERT_TRUE(r) << r.message;
    EXPECT_EQ(take(), (std::vector<std::string>{"init unlocked=1 mdi=1", "loaddwg Drawing1.dwg defun=5100",
                                                "loaddwg Drawing2.dwg defun=5100"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), first) << "loading moves no document";

    AcApDocument* third = host().newDocument();
    EXPECT_EQ(take(), (std::vector<std::string>{"module reactor: documentCreated",
                                                "loaddwg Drawing3.dwg defun=5100"}));

    ASSERT_TRUE(host().runCommand("testcmd"));
    EXPECT_EQ(take(), std::vector<std::string>{"invoke Drawing3.dwg code=7"});
    EXPECT_EQ(acedGetFunCode(), -1) << "no code outside the invoke message";
    EXPECT_NE(readFile(host().profileDir() + "/globals.json").find("\"SAVETIME\": 42"), std::string::npos)
        << "the command's global change is saved";

    ASSERT_TRUE(host().closeDocument(third));
    EXPECT_EQ(take(), std::vector<std::string>{"unloaddwg Drawing3.dwg undef=5100"});
    EXPECT_TRUE(host().isCommand("testcmd")) << "still defined in the other drawings";

    ASSERT_TRUE(host().unloadModule(SDK_TEST_MODULE));
    EXPECT_EQ(take(), (std::vector<std::string>{"unloaddwg Drawing1.dwg undef=5100",
                                                "unloaddwg Drawing2.dwg undef=5100", "unloadapp"}));
    EXPECT_TRUE(host().loadedModules().empty());
    EXPECT_FALSE(host().isCommand("TESTCMD"));

    // The module left its reactor registered; the host dropped it with the module's code.
    host().newDocument();
    EXPECT_EQ(take(), std::vector<std::string>{});
}

// An exception that a module lets escape ends its command with a message, not the host.
TEST_F(Modules, AnExceptionLeavingACommandEndsThatCommandOnly) {
    host().newDocument();
    host().newDocument();
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    const cadhost::HostResult thrown = host().runCommand("throwcmd");
    EXPECT_FALSE(thrown);
    EXPECT_EQ(thrown.message, "Command THROWCMD ended with an error: the module's own fault.");
    EXPECT_EQ(acedGetFunCode(), -1);
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 2) << "the drawings stay open";
    printed.clear();
    EXPECT_TRUE(host().runCommand("testcmd")) << "the module's commands still run";
}

TEST_F(Modules, LoadRefusesAFailingMissingForeignOrDoubleModule) {
    host().newDocument();
    printed.clear();
    EXPECT_NE(host().loadModule(SDK_TEST_MODULE_FAILING).message.find("failed to initialise"),
              std::string::npos);
    EXPECT_EQ(take(), std::vector<std::string>{"init unlocked=1 mdi=1"})
        << "no drawing message after a failed start";
    EXPECT_NE(host().loadModule(scratch + "/nosuch.so").message.find("Cannot load"), std::string::npos);
    std::ofstream(scratch + "/text.so") << "not a shared object";
    EXPECT_FALSE(host().loadModule(scratch + "/text.so"));
    EXPECT_FALSE(host().unloadModule("nosuch.so"));
    EXPECT_TRUE(host().loadedModules().empty());

    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    EXPECT_NE(host().loadModule(SDK_TEST_MODULE).message.find("already loaded"), std::string::npos);
    EXPECT_EQ(host().loadedModules().size(), 1u);
}

TEST_F(Modules, ShutdownClosesEveryDrawingBeforeTheModuleLeaves) {
    host().newDocument();
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    printed.clear();
    host().shutdown();
    EXPECT_EQ(take(), (std::vector<std::string>{"unloaddwg Drawing1.dwg undef=5100", "unloadapp"}))
        << "every drawing closes before the module leaves";
}

resbuf* invoke(std::vector<const char*> args, int& status) {
    resbuf* list = nullptr;
    resbuf* tail = nullptr;
    for (const char* a : args) {
        resbuf* rb = acutBuildList(RTSTR, a, RTNONE);
        (tail ? tail->rbnext : list) = rb;
        tail = rb;
    }
    resbuf sentinel{};
    resbuf* result = &sentinel; // the host must replace it
    status = acedInvoke(list, &result);
    acutRelRb(list);
    return result;
}

TEST_F(Modules, LispServicesFindTheIniFileAndSearchModuleFolderProfileAndSupportPath) {
    const std::string support = scratch + "/support";
    std::filesystem::create_directories(support);
    for (const std::string& file :
         {support + "/only-support.txt", support + "/both.txt", host().profileDir() + "/both.txt"})
        std::ofstream(file) << "x";
    host().setSupportPath({scratch + "/missing", support});
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    const std::string moduleFile = std::filesystem::path(SDK_TEST_MODULE).filename().string();

    const std::pair<std::vector<const char*>, std::string> cases[] = {
        {{"kova_GetUserIniFile", "KOVA_VARDESK", "VarDesk.ini"}, host().profileDir() + "/VarDesk.ini"},
        {{"KOVA_PATHINFO", moduleFile.c_str()}, SDK_TEST_MODULE},
        {{"KOVA_PATHINFO", "both.txt"}, host().profileDir() + "/both.txt"},
        {{"KOVA_PATHINFO", "only-support.txt"}, support + "/only-support.txt"},
        {{"KOVA_PATHINFO", "nowhere.txt"}, ""}}; // nil
    for (const auto& [words, found] : cases) {
        int status = 0;
        resbuf* r = invoke(words, status);
        EXPECT_EQ(status, RTNORM) << words[1];
        const std::string got = !r ? "nil" : r->restype == RTSTR ? r->resval.rstring : "not a text";
        EXPECT_EQ(got, found.empty() ? "nil" : found) << words[1];
        acutRelRb(r);
    }
    int status = 0;
    EXPECT_EQ(invoke({"kova_GetUserIniFile", "KOVA_VARDESK"}, status), nullptr);
    EXPECT_EQ(status, RTERROR) << "a word short";
    EXPECT_EQ(invoke({}, status), nullptr);
    EXPECT_EQ(status, RTERROR) << "no words";
}

// UI services that keep the alerts and answer nothing else.
class RecordingUi : public kova::UiServices {
public:
    using S = const std::string&;
    kova::BoxAnswer messageBox(kova::BoxKind, S, S, kova::BoxButtons) override { return kova::BoxAnswer::Ok; }
    void alert(S text) override { alerts.push_back(text); }
    std::optional<std::string> fileDialog(kova::FileDialogKind, S, S, S) override { return std::nullopt; }
    int startProgram(S) override { return 0; }
    bool loadHelpEngine() override { return false; }
    int showHelp(S, S) override { return 0; }
    int runModal(QDialog&) override { return 0; }
    bool isScripted() const override { return true; }
    std::vector<std::string> alerts;
};

TEST_F(Modules, AlertGoesToTheUiServicesOrElseToTheCommandLine) {
    EXPECT_EQ(acutPrintf("%s=%d\n", "x", 42), 5);
    EXPECT_EQ(acedAlert("plain"), RTNORM);
    EXPECT_EQ(printed, "x=42\nALERT: plain\n");
    RecordingUi ui;
    host().setUiServices(&ui);
    acedAlert("boxed");
    EXPECT_EQ(ui.alerts, std::vector<std::string>{"boxed"});
    EXPECT_EQ(printed, "x=42\nALERT: plain\n");
    host().setUiServices(nullptr);
}

TEST_F(Modules, DefunNeedsAModuleAndADrawingAndRegAppADrawing) {
    EXPECT_EQ(acedDefun("C:X", 1), RTERROR) << "no drawing";
    EXPECT_FALSE(acdbRegApp("KOVA_VARDESK"));
    host().newDocument();
    EXPECT_TRUE(acdbRegApp("KOVA_VARDESK"));
    EXPECT_EQ(acedDefun("C:X", 1), RTERROR) << "not called from a module";
    EXPECT_FALSE(acrxRegisterAppMDIAware(reinterpret_cast<void*>(0x1234))) << "no such module";
}

} // namespace
