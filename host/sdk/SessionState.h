// SessionState: what one host session holds, shared by the files that make up HostSession: the
// documents and their manager, the modules, the variables and the Lisp services.
#pragma once
#include "arxheaders.h"
#include "DrawingDatabase.h"
#include "hostsession.h"
#include "ReactorList.h"
#include "UiServices.h"
#include "VariableTable.h"
#include "VariableValues.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QWidget;

namespace cadhost {

// A command or Lisp function that a module defined for one document.
struct Definition {
    std::string name; // upper case, "C:NAME" for commands
    int code = 0;
    void* module = nullptr;
};

class Document : public AcApDocument {
public:
    // A drawing never saved answers with its name alone, as hosts do ("Drawing1.dwg").
    const char* fileName() const override { return path.empty() ? displayName.c_str() : path.c_str(); }
    AcDbDatabase* database() const override { return db.get(); }
    AcAp::DocLockMode myLockMode() const override {
        return lockModes.empty() ? AcAp::kNotLocked : lockModes.back();
    }

    std::string path;        // full path; empty for a drawing never saved
    std::string displayName; // file name, "Drawing1.dwg" for a new one
    std::unique_ptr<DrawingDatabase> db;
    std::vector<AcAp::DocLockMode> lockModes;
    std::vector<Definition> definitions;
};

struct Module {
    std::string path;
    void* handle = nullptr;
    AcRxEntryPointFn entry = nullptr;
    void* base = nullptr; // load address, to know the module's objects
    bool locked = true;
    bool mdiAware = false;
};

class DocManager : public AcApDocManager {
public:
    void addReactor(AcApDocManagerReactor* reactor) override { reactors.add(reactor); }
    void removeReactor(AcApDocManagerReactor* reactor) override { reactors.remove(reactor); }
    AcApDocument* curDocument() const override;
    AcApDocument* mdiActiveDocument() const override;
    int documentCount() const override;
    Acad::ErrorStatus lockDocument(AcApDocument* doc, AcAp::DocLockMode mode, const char* globalCmdName,
                                   const char* localCmdName, bool prompt) override;
    Acad::ErrorStatus unlockDocument(AcApDocument* doc) override;

    ReactorList<AcApDocManagerReactor> reactors;
};

class Editor : public AcEditor {
public:
    void addReactor(AcRxEventReactor* reactor) override { reactors.add(reactor); }
    void removeReactor(AcRxEventReactor* reactor) override { reactors.remove(reactor); }

    ReactorList<AcRxEventReactor> reactors;
};

class DynamicLinker : public AcRxDynamicLinker {
public:
    bool unlockApplication(void* appId) const override;
    bool lockApplication(void* appId) const override;
    bool isApplicationLocked(const char* name) const override;
};

class HostServices : public AcDbHostApplicationServices {
public:
    AcDbDatabase* workingDatabase() const override;
};

// Everything one session holds; HostSession::Impl is this under the name the header gives.
struct SessionState {
    VariableTable table;
    VariableValues globals;
    // A global changed since globals.json was last written. The file is written when the
    // command that changed it ends, not on every change: a module that sets thousands of
    // variables in one command would otherwise rewrite the whole file for each of them.
    bool globalsChanged = false;
    std::string profileDir;
    std::vector<std::string> supportPath;
    std::function<void(const std::string&)> output;
    kova::UiServices* ui = nullptr;
    QWidget* frame = nullptr;

    std::vector<std::unique_ptr<Document>> documents;
    // Closed documents without their databases: a module may know a document by its address
    // until it leaves, so no later document may take that address while the session lasts.
    std::vector<std::unique_ptr<Document>> closedDocuments;
    Document* current = nullptr;
    Document* mdiActive = nullptr;
    int nextDrawingNumber = 1;

    std::vector<Module> modules;
    void* activeModule = nullptr; // the module whose entry point runs now
    int funCode = -1;

    bool workingDatabaseAvailable = true;
    bool lockRefused = false;
    int openObjects = 0;

    DocManager docManager;
    Editor editor;
    DynamicLinker linker;
    HostServices services;

    void print(const std::string& text) const {
        if (output) {
            output(text);
        } else {
            std::fwrite(text.data(), 1, text.size(), stdout);
            std::fflush(stdout);
        }
    }

    bool isOpen(const AcApDocument* doc) const {
        return std::any_of(documents.begin(), documents.end(), [&](auto& d) { return d.get() == doc; });
    }
    Module* findModule(void* handle) {
        for (Module& m : modules)
            if (m.handle == handle)
                return &m;
        return nullptr;
    }

    // ---- events ----
    template <class Call> void tellDocReactors(Call call) { docManager.reactors.tell(call); }
    template <class Call> void tellEditorReactors(Call call) {
        editor.reactors.tell([&](AcRxEventReactor* r) {
            if (auto* er = dynamic_cast<AcEditorReactor*>(r))
                call(er);
        });
    }

    // ---- modules (ModuleLoader.cpp) ----
    AcRx::AppRetCode send(Module& m, AcRx::AppMsgCode msg);
    // Sends a drawing message to every module while doc stands as the current document.
    void sendDrawingMessage(Document* doc, AcRx::AppMsgCode msg);
    void sendToModuleForEachDocument(Module& m, AcRx::AppMsgCode msg);
    // Forgets everything of a module that leaves the process: its commands and every reactor whose
    // code lies in it, so that no call reaches unmapped code.
    void forgetModule(const Module& m);
    void unloadModuleAt(size_t index);

    // ---- documents (DocumentManager.cpp) ----
    void activate(Document* doc);
    Document* addDocument(std::unique_ptr<DrawingDatabase> db, const std::string& path,
                          const std::string& name, bool opened);
    void close(Document* doc);

    // ---- variables (GlobalVariables.cpp) ----
    VarValue valueOf(const VarDef& def, const Document* doc) const;
    // Precision and point separator of the current drawing, made usable as the module makes them.
    void numberFormat(int& precision, char& separator) const;
    // Sets a value by the rules; an empty text when taken, else the host's refusal.
    std::string setValue(const VarDef& def, VarValue value);
    std::string globalsPath() const;
    void loadGlobals();
    // Writes globals.json when a global changed since the last write.
    void flushGlobals();
    bool saveGlobals();
};

struct HostSession::Impl : SessionState {};

// The running session's state; HostSession's constructor sets it.
extern SessionState* gState;

// The session's state, the session made first if need be (for the SDK's C functions).
SessionState& sessionState();

// Names compared as the host compares them, without regard to case.
bool equalNoCase(const std::string& a, const std::string& b);
// The absolute, normalised form of a path; the path itself when it has none.
std::string absolutePath(const std::string& path);
// The document behind a pointer when it is one of the open ones, else null.
Document* asDocument(AcApDocument* doc);
// A name from a module in upper case; an empty one for null.
inline std::string upperName(const char* name) {
    return upperCase(name ? name : "");
}
// A text result buffer with a copy of the text; null when memory runs out.
resbuf* textResult(const std::string& text);

} // namespace cadhost
