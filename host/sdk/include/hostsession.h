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

// The one host of the process. Created on first use; shutdown() unloads modules and closes
// every document (sending the events a host sends).
class ACSDK_EXPORT HostSession {
public:
    static HostSession& instance();

    // ---- configuration ----
    // Reads the variable table (see data/hostvars.tsv for its format). Without it the host knows
    // no variables. Global values are then read from the profile folder when it is set.
    HostResult loadVariableTable(const std::string& path);
    // Folder of VarDesk.ini, the error log and the saved global variables. Created when missing.
    HostResult setProfileDir(const std::string& dir);
    const std::string& profileDir() const;
    // Folders searched by kova_pathInfo after the module's own folder.
    void setSupportPath(const std::vector<std::string>& folders);
    // Where acutPrintf goes; stdout when unset.
    void setOutput(std::function<void(const std::string&)> sink);
    void setUiServices(kova::UiServices* services);

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
    HostResult loadModule(const std::string& path);
    void unloadModules();
    // True when name (without "C:") is a command defined for the current document.
    bool isCommand(const std::string& name) const;
    // Runs a module command: sends kInvkSubrMsg with its function code.
    HostResult runCommand(const std::string& name);

    // ---- variables, as the command line sees them ----
    // Parses text by the variable's type and sets it; the host's message on refusal.
    HostResult setVariableText(const std::string& name, const std::string& text);
    // "name = value" in the host's text form; failure for an unknown name.
    HostResult variableText(const std::string& name, std::string& text) const;

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
