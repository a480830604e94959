// The module's entry: the host's messages, set-up and teardown, and the command KOVA_VARDESK.
#include "ModuleEntry.h"

#include "cContext.h"
#include "cDocCntx.h"
#include "cDocList.h"
#include "cLispBridge.h"
#include "cMsgCatalog.h"
#include "cResourceScope.h"
#include "HelpService.h"
#include "HostLookup.h"
#include "ModulePath.h"
#include "Reactors.h"
#include "vars/TextHelpers.h"

#include <acdocman.h>
#include <aced.h>
#include <acedads.h>
#include <dbmain.h>

#include <new>

CDocReactor* gDocReactor = nullptr;
CEdiReactor* gEdiReactor = nullptr;
void* gModuleHandle = nullptr;

namespace {

// The path of the module's file, asked for as the platform would with a buffer of 259.
constexpr std::size_t kModulePathBuffer = 259;

std::string iniFileName() {
    return gContext.moduleBaseName + ".ini";
}

void askUserIniFile() {
    gLispBridge.GetUserIniFile(gContext.userIniFile, vardesk::kAppName, iniFileName());
}

void findModulePaths() {
    const std::string path = kova::modulePathOf(reinterpret_cast<const void*>(&InitApp), kModulePathBuffer);
    if (path.empty())
        return; // the three texts stay empty
    pathDirectory(path, gContext.moduleDirectory);
    pathFileName(path, gContext.moduleFileName);
    pathStem(gContext.moduleFileName, gContext.moduleBaseName);
}

} // namespace

bool InitApp() {
    findModulePaths();
    gMsg.section = gContext.moduleBaseName;
    // Keys the file lacks keep their default texts, so the result is of no further use here.
    gMsg.Load(gContext.moduleDirectory + gContext.moduleBaseName + ".msg");
    gHelpBase = gContext.moduleBaseName;

    CDocReactor* docReactor = new (std::nothrow) CDocReactor;
    CEdiReactor* ediReactor = new (std::nothrow) CEdiReactor;
    if (!docReactor || !ediReactor) {
        delete docReactor;
        delete ediReactor;
        return false;
    }
    gDocReactor = docReactor;
    gEdiReactor = ediReactor;
    if (AcApDocManager* manager = acDocManagerPtr())
        manager->addReactor(gDocReactor);
    if (AcEditor* editor = hostLookup::editor())
        editor->addReactor(gEdiReactor);

    askUserIniFile(); // on failure the user ini file is empty and the defaults serve
    return true;
}

void UnloadApp() {
    if (gDocReactor) {
        if (AcApDocManager* manager = acDocManagerPtr())
            manager->removeReactor(gDocReactor);
        delete gDocReactor;
        gDocReactor = nullptr;
    }
    if (gEdiReactor) {
        if (AcEditor* editor = hostLookup::editor())
            editor->removeReactor(gEdiReactor);
        delete gEdiReactor;
        gEdiReactor = nullptr;
    }
}

void CommandVarDesk() {
    acedRetVoid();
    askUserIniFile(); // anew at every run: the answer replaces the one of the last run
    if (acedGetFunCode() != vardesk::kCommandCode)
        return;
    // Each step takes the current context anew.
    if (!gCurDoc)
        return;
    gCurDoc->LoadSettings();
    if (!gCurDoc)
        return;
    gCurDoc->RunDialogLoop();
    if (!gCurDoc)
        return;
    gCurDoc->SaveSettings();
}

AcRx::AppRetCode HandleAppMessage(AcRx::AppMsgCode message, void* appId) {
    switch (message) {
    case AcRx::kInitAppMsg:
        gModuleHandle = appId;
        if (AcRxDynamicLinker* linker = hostLookup::dynamicLinker())
            linker->unlockApplication(appId);
        acrxRegisterAppMDIAware(appId);
        if (!InitApp())
            return AcRx::kRetError;
        acdbRegApp(vardesk::kAppName);
        return AcRx::kRetOK;
    case AcRx::kUnloadAppMsg:
        UnloadApp();
        return AcRx::kRetOK;
    case AcRx::kLoadDwgMsg:
        acedDefun(vardesk::kCommandFunction, vardesk::kCommandCode);
        return AcRx::kRetOK;
    case AcRx::kUnloadDwgMsg:
        acedUndef(vardesk::kCommandFunction, vardesk::kCommandCode);
        return AcRx::kRetOK;
    case AcRx::kInvkSubrMsg:
        gResourceScope.Init(gModuleHandle);
        // No hidden dialog is made and destroyed first: Qt needs no window to prime its dialogs.
        CommandVarDesk();
        return AcRx::kRetOK;
    default:
        return AcRx::kRetOK;
    }
}
