// Tests of modules: the five messages at their moments, commands per drawing, Lisp services, alerts.
#include "SdkTestSupport.h"

#include "UiServices.h"

#include <fstream>
#include <sstream>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.find_last_of('/'));
}

class Modules : public HostTest {
protected:
    std::vector<std::string> take() {
        std::vector<std::string> lines = linesOf(printed);
        printed.clear();
        return lines;
    }
};

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
    EXPECT_FALSE(acrxSysRegistry()->at("DynamicLinker") == nullptr);

    AcApDocument* third = host().newDocument();
    EXPECT_EQ(take(), (std::vector<std::string>{"module reactor: documentCreated",
                                                "loaddwg Drawing3.dwg defun=5100"}));

    ASSERT_TRUE(host().runCommand("testcmd"));
    EXPECT_EQ(take(), std::vector<std::string>{"invoke Drawing3.dwg code=7"});
    EXPECT_EQ(acedGetFunCode(), -1) << "no code outside the invoke message";
    std::ifstream globals(host().profileDir() + "/globals.json");
    std::string saved((std::istreambuf_iterator<char>(globals)), std::istreambuf_iterator<char>());
    EXPECT_NE(saved.find("\"SAVETIME\": 42"), std::string::npos) << "the command's global change is saved";

    ASSERT_TRUE(host().closeDocument(third));
    EXPECT_EQ(take(), std::vector<std::string>{"unloaddwg Drawing3.dwg undef=5100"});

    ASSERT_TRUE(host().unloadModule(SDK_TEST_MODULE));
    EXPECT_EQ(take(), (std::vector<std::string>{"unloaddwg Drawing1.dwg undef=5100",
                                                "unloaddwg Drawing2.dwg undef=5100", "unloadapp"}));
    EXPECT_TRUE(host().loadedModules().empty());
    EXPECT_FALSE(host().isCommand("TESTCMD"));

    // The module left its reactor registered; the host dropped it with the module's code.
    host().newDocument();
    EXPECT_EQ(take(), std::vector<std::string>{});
}

TEST_F(Modules, CommandsBelongToTheirDrawing) {
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    host().newDocument();
    EXPECT_TRUE(host().isCommand("TESTCMD"));
    EXPECT_TRUE(host().isCommand("testcmd"));
    EXPECT_FALSE(host().isCommand("OTHER"));

    // Closing the second drawing takes the command back there only.
    AcApDocument* other = host().newDocument();
    ASSERT_TRUE(host().closeDocument(other));
    EXPECT_TRUE(host().isCommand("TESTCMD")) << "still defined in the first drawing";
    printed.clear();
    cadhost::HostResult r = host().runCommand("NOSUCH");
    EXPECT_FALSE(r);
    EXPECT_EQ(r.message, "Unknown command \"NOSUCH\".");
    EXPECT_EQ(printed, "") << "nothing reached the module";
    host().unloadModules();
    EXPECT_FALSE(host().runCommand("TESTCMD"));
}

TEST_F(Modules, ModuleFailingItsStartIsUnloaded) {
    host().newDocument();
    printed.clear();
    cadhost::HostResult r = host().loadModule(SDK_TEST_MODULE_FAILING);
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("failed to initialise"), std::string::npos) << r.message;
    EXPECT_EQ(take(), std::vector<std::string>{"init unlocked=1 mdi=1"})
        << "no drawing message after a failed start";
    EXPECT_TRUE(host().loadedModules().empty());
}

TEST_F(Modules, LoadRefusesMissingDoubleAndForeignFiles) {
    cadhost::HostResult r = host().loadModule(scratch + "/nosuch.so");
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("Cannot load"), std::string::npos) << r.message;
    std::ofstream(scratch + "/text.so") << "not a shared object";
    EXPECT_FALSE(host().loadModule(scratch + "/text.so"));
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    r = host().loadModule(SDK_TEST_MODULE);
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("already loaded"), std::string::npos) << r.message;
    EXPECT_EQ(host().loadedModules().size(), 1u);
    EXPECT_FALSE(host().unloadModule("nosuch.so"));
}

TEST_F(Modules, ShutdownUnloadsAfterClosingEveryDrawing) {
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    host().newDocument();
    printed.clear();
    std::string captured;
    host().setOutput([&](const std::string& t) { captured += t; });
    host().shutdown();
    EXPECT_EQ(linesOf(captured),
              (std::vector<std::string>{"unloaddwg Drawing1.dwg undef=5100", "unloadapp"}));
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

TEST_F(Modules, UserIniFileLiesInTheProfileFolderAndBadCallsFail) {
    int status = 0;
    resbuf* r = invoke({"kova_GetUserIniFile", "KOVA_VARDESK", "VarDesk.ini"}, status);
    ASSERT_EQ(status, RTNORM);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(r->restype, RTSTR);
    EXPECT_EQ(std::string(r->resval.rstring), host().profileDir() + "/VarDesk.ini");
    acutRelRb(r);
    for (std::vector<const char*> bad :
         {std::vector<const char*>{"kova_GetUserIniFile", "KOVA_VARDESK"}, {"no_such_function", "x"}, {}}) {
        r = invoke(bad, status);
        EXPECT_EQ(status, RTERROR) << bad.size() << " words";
        EXPECT_EQ(r, nullptr) << bad.size() << " words";
    }
}

TEST_F(Modules, PathInfoSearchesModuleFolderProfileAndSupportPath) {
    std::string support = scratch + "/support";
    std::filesystem::create_directories(support);
    std::ofstream(support + "/only-support.txt") << "x";
    std::ofstream(support + "/both.txt") << "x";
    std::ofstream(host().profileDir() + "/both.txt") << "x";
    host().setSupportPath({scratch + "/missing", support});
    ASSERT_TRUE(host().loadModule(SDK_TEST_MODULE));
    std::string moduleFolder = folderOf(SDK_TEST_MODULE);
    std::string moduleFile = std::string(SDK_TEST_MODULE).substr(moduleFolder.size() + 1);

    struct Case {
        std::string file;
        std::string found; // empty: nil
    } cases[] = {
        {moduleFile, SDK_TEST_MODULE},
        {"both.txt", host().profileDir() + "/both.txt"},
        {"only-support.txt", support + "/only-support.txt"},
        {"nowhere.txt", ""},
        {"", ""},
    };
    for (const Case& c : cases) {
        int status = 0;
        resbuf* r = invoke({"KOVA_PATHINFO", c.file.c_str()}, status);
        EXPECT_EQ(status, RTNORM) << c.file;
        if (c.found.empty()) {
            EXPECT_EQ(r, nullptr) << c.file;
        } else {
            ASSERT_NE(r, nullptr) << c.file;
            ASSERT_EQ(r->restype, RTSTR) << c.file;
            EXPECT_EQ(std::string(r->resval.rstring), c.found) << c.file;
        }
        acutRelRb(r);
    }
}

class RecordingUi : public kova::UiServices {
public:
    kova::BoxAnswer messageBox(kova::BoxKind, const std::string&, const std::string&,
                               kova::BoxButtons) override {
        return kova::BoxAnswer::Ok;
    }
    void alert(const std::string& text) override { alerts.push_back(text); }
    std::optional<std::string> fileDialog(kova::FileDialogKind, const std::string&, const std::string&,
                                          const std::string&) override {
        return std::nullopt;
    }
    int startProgram(const std::string&) override { return kova::ExecResult::FileNotFound; }
    bool loadHelpEngine() override { return false; }
    int showHelp(const std::string&, const std::string&) override { return 0; }
    int runModal(QDialog&) override { return 0; }
    bool isScripted() const override { return true; }

    std::vector<std::string> alerts;
};

TEST_F(Modules, PrintfAndAlertGoToTheUiServicesOrTheCommandLine) {
    EXPECT_EQ(acutPrintf("%s=%d\n", "x", 42), 5);
    EXPECT_EQ(printed, "x=42\n");
    printed.clear();
    EXPECT_EQ(acHostUiServices(), nullptr);
    EXPECT_EQ(acedAlert("plain"), RTNORM);
    EXPECT_EQ(printed, "ALERT: plain\n");
    RecordingUi ui;
    host().setUiServices(&ui);
    EXPECT_EQ(acHostUiServices(), &ui);
    acedAlert("boxed");
    EXPECT_EQ(ui.alerts, std::vector<std::string>{"boxed"});
    EXPECT_EQ(printed, "ALERT: plain\n");
    EXPECT_EQ(acedGetAcadFrame(), nullptr);
}

TEST_F(Modules, DefunAndRegisteredApplicationNeedADrawing) {
    EXPECT_EQ(acedDefun("C:X", 1), RTERROR) << "no drawing";
    EXPECT_FALSE(acdbRegApp("KOVA_VARDESK"));
    host().newDocument();
    EXPECT_TRUE(acdbRegApp("KOVA_VARDESK"));
    EXPECT_EQ(acedDefun("C:X", 1), RTERROR) << "not called from a module";
    EXPECT_EQ(acedUndef("C:X", 1), RTERROR);
    EXPECT_FALSE(acrxRegisterAppMDIAware(reinterpret_cast<void*>(0x1234))) << "no such module";
}

} // namespace
