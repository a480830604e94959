// The host's own side of the SDK: what cadhost and the tests use to run a host in process.
// Modules never include this header.
#pragma once
#include "adesk.h"
#include "adsdef.h"

#include <functional>
#include <string>
#include <vector>

class AcApDocument;
class AcDbDatabase;
class QWidget;
namespace kova {
class UiServices;
}

namespace cadhost {

// Result of a host operation that the user sees: ok, or the host's message.
struct HostResult {
    bool ok = true;
    std::string message; // empty when ok
    explicit operator bool() const { return ok; }
    static HostResult failure(std::string text) { return {false, std::move(text)}; }
};

// The one host of the process. Created on first use; shutdown() closes every document and unloads
// the modules (sending the events and messages a host sends), saves the global variables, and then
// leaves the session as new: no variable table, profile folder, output sink, UI services or faults.
// Tests call shutdown() to start clean; a session ended without it leaves its modules untouched.
class ACSDK_EXPORT HostSession {
public:
    static HostSession& instance();

    // ---- configuration ----
    // Reads the variable table (see data/hostvars.tsv for its format). Without it the host knows
    // no variables. Global values are then read from the profile folder when it is set.
    HostResult loadVariableTable(const std::string& path);
    // Folder of VarDesk.ini, the error log and the saved global variables (globals.json). Created
    // when missing; a folder that cannot be written is kept, and the failure says why.
    HostResult setProfileDir(const std::string& dir);
    const std::string& profileDir() const;
    // Folders searched by kova_pathInfo after the module's own folder.
    void setSupportPath(const std::vector<std::string>& folders);
    // Where acutPrintf goes; stdout when unset.
    void setOutput(std::function<void(const std::string&)> sink);
    void setUiServices(kova::UiServices* services);
    // The host's main window, given by acedGetAcadFrame; null (the default) in batch mode.
    void setMainFrame(QWidget* frame);

    // ---- documents ----
    // A new drawing with default variables, named "Drawing<n>.dwg" unless a path is given; it
    // becomes current (events are sent).
    AcApDocument* newDocument(const std::string& path = {});
    // Opens a drawing file and makes it current. Null with the host's message on failure.
    AcApDocument* openDocument(const std::string& path, std::string* message = nullptr);
    // Saves to path (empty: its own file name). Global variables are saved to the profile too.
    HostResult saveDocument(AcApDocument* doc, const std::string& path = {});
    HostResult closeDocument(AcApDocument* doc);
    HostResult activateDocument(AcApDocument* doc);
    // By file name, with or without folder and extension, case ignored.
    AcApDocument* findDocument(const std::string& name) const;
    std::vector<AcApDocument*> documents() const;
    AcApDocument* currentDocument() const;

    // ---- modules and commands ----
    // Loads a module and sends kInitAppMsg, then kLoadDwgMsg for every open drawing (each standing
    // as the current document meanwhile, without document events). A module answering kRetError
    // is unloaded again, and the result names it.
    HostResult loadModule(const std::string& path);
    // Sends kUnloadDwgMsg for every open drawing and kUnloadAppMsg, then unloads. path is the
    // module's path or file name. Reactors whose code lies in the module are dropped with it.
    HostResult unloadModule(const std::string& path);
    // All modules, last loaded first.
    void unloadModules();
    // Full paths of the loaded modules, in load order.
    std::vector<std::string> loadedModules() const;
    // True when name (without "C:") is a command defined for the current document.
    bool isCommand(const std::string& name) const;
    // Runs a module command: sends kInvkSubrMsg with its function code.
    HostResult runCommand(const std::string& name);

    // ---- variables, as the command line sees them ----
    // Parses text by the variable's type and sets it; the host's message on refusal (returned,
    // not printed: acedSetVar prints its refusals itself).
    HostResult setVariableText(const std::string& name, const std::string& text);
    // "name = value" in the host's text form; failure for an unknown name.
    HostResult variableText(const std::string& name, std::string& text) const;

    // ---- drawing data, as the DICT command lists it ----
    // Every xrecord under the current drawing's Named Objects Dictionary: a line
    // "XRECORD dict/entry" (nested keys joined by '/'), then "  <code> <value>" per chain entry
    // (reals in their shortest exact form, points as "x,y,z"). Failure when no drawing is open.
    HostResult namedObjectsListing(std::vector<std::string>& lines) const;

    // ---- for tests: faults a real host can show ----
    void setWorkingDatabaseAvailable(bool available);
    void setDocumentLockRefused(bool refused);
    // Number of database objects open right now (each open must be matched by one close).
    int openObjectCount() const;

    void shutdown();

private:
    HostSession();
    ~HostSession();
    struct Impl;
    Impl* d;
};

} // namespace cadhost
