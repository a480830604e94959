// The module's entry: the host's messages, set-up and teardown, and the command KOVA_VARDESK.
#pragma once
#include <rxobject.h>

class CDocReactor;
class CEdiReactor;

namespace vardesk {
constexpr const char* kAppName = "KOVA_VARDESK";           // registered application; first Lisp argument
constexpr const char* kCommandFunction = "C:KOVA_VARDESK"; // defines the command KOVA_VARDESK
constexpr int kCommandCode = 1;                            // function code of the command
} // namespace vardesk

// What acrxEntryPoint answers to a host message; appId is the module's handle. kRetOK in every
// case but a failed initialisation, which gives kRetError.
AcRx::AppRetCode HandleAppMessage(AcRx::AppMsgCode message, void* appId);

// Finds the module's paths, loads the catalog, registers the two long-lived reactors and asks
// for the user ini file. False, with no reactor registered, when a reactor cannot be made.
bool InitApp();
// Takes the two reactors from the host.
void UnloadApp();
// The command: reads the user ini file's path anew, then, for the command's function code and
// a current document context, loads the settings, runs the dialog loop and saves the settings.
void CommandVarDesk();

// The long-lived reactors; null while not registered.
extern CDocReactor* gDocReactor;
extern CEdiReactor* gEdiReactor;
// The handle the host gave the module at initialisation.
extern void* gModuleHandle;
