// The host session: documents and their events, modules and commands, variables, editor services.
#include "hostsession.h"

#include "arxheaders.h"
#include "DrawingDatabase.h"
#include "GlobalsFile.h"
#include "SessionInternal.h"
#include "UiServices.h"
#include "VariableTable.h"

#include <nlohmann/json.hpp>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

namespace fs = std::filesystem;
using nlohmann::json;

namespace cadhost {

namespace {

constexpr const char* kGlobalsFile = "globals.json";

bool equalNoCase(const std::string& a, const std::string& b) {
    return upperCase(a) == upperCase(b);
}

std::string absolutePath(const std::string& path) {
    std::error_code ec;
    fs::path p = fs::absolute(path, ec);
    return ec ? path : p.lexically_normal().string();
}

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

struct SessionState;
SessionState* gState = nullptr;

class DocManager : public AcApDocManager {
public:
    void addReactor(AcApDocManagerReactor* reactor) override {
        if (reactor && std::find(reactors.begin(), reactors.end(), reactor) == reactors.end())
            reactors.push_back(reactor);
    }
    void removeReactor(AcApDocManagerReactor* reactor) override { std::erase(reactors, reactor); }
    AcApDocument* curDocument() const override;
    AcApDocument* mdiActiveDocument() const override;
    int documentCount() const override;
    Acad::ErrorStatus lockDocument(AcApDocument* doc, AcAp::DocLockMode mode, const char* globalCmdName,
                                   const char* localCmdName, bool prompt) override;
    Acad::ErrorStatus unlockDocument(AcApDocument* doc) override;

    std::vector<AcApDocManagerReactor*> reactors;
};

class Editor : public AcEditor {
public:
    void addReactor(AcRxEventReactor* reactor) override {
        if (reactor && std::find(reactors.begin(), reactors.end(), reactor) == reactors.end())
            reactors.push_back(reactor);
    }
    void removeReactor(AcRxEventReactor* reactor) override { std::erase(reactors, reactor); }

    std::vector<AcRxEventReactor*> reactors;
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
    std::map<std::string, VarValue> globals;
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

    // ---- events: reactors may come and go while being told ----
    template <class Call> void tellDocReactors(Call call) {
        std::vector<AcApDocManagerReactor*> copy = docManager.reactors;
        for (AcApDocManagerReactor* r : copy)
            if (std::find(docManager.reactors.begin(), docManager.reactors.end(), r) !=
                docManager.reactors.end())
                call(r);
    }
    template <class Call> void tellEditorReactors(Call call) {
        std::vector<AcRxEventReactor*> copy = editor.reactors;
        for (AcRxEventReactor* r : copy) {
            if (std::find(editor.reactors.begin(), editor.reactors.end(), r) == editor.reactors.end())
                continue;
            if (auto* er = dynamic_cast<AcEditorReactor*>(r))
                call(er);
        }
    }

    // ---- modules ----
    AcRx::AppRetCode send(Module& m, AcRx::AppMsgCode msg) {
        void* previous = activeModule;
        activeModule = m.handle;
        AcRx::AppRetCode result = m.entry(msg, m.handle);
        activeModule = previous;
        return result;
    }
    // Sends a drawing message to every module while doc stands as the current document.
    void sendDrawingMessage(Document* doc, AcRx::AppMsgCode msg) {
        Document* saved = current;
        current = doc;
        std::vector<void*> handles;
        for (Module& m : modules)
            handles.push_back(m.handle);
        for (void* h : handles)
            if (Module* m = findModule(h))
                send(*m, msg);
        current = isOpen(saved) ? saved : nullptr;
    }
    void sendToModuleForEachDocument(Module& m, AcRx::AppMsgCode msg) {
        Document* saved = current;
        void* handle = m.handle;
        for (size_t i = 0; i < documents.size(); ++i) {
            current = documents[i].get();
            if (Module* still = findModule(handle))
                send(*still, msg);
        }
        current = isOpen(saved) ? saved : nullptr;
    }
    // Forgets everything of a module that leaves the process: its commands and every reactor whose
    // code lies in it, so that no call reaches unmapped code.
    void forgetModule(const Module& m) {
        for (auto& doc : documents)
            std::erase_if(doc->definitions, [&](const Definition& d) { return d.module == m.handle; });
        if (!m.base)
            return;
        auto inModule = [&](const void* object) {
            Dl_info info{};
            const void* vtable = *static_cast<const void* const*>(object);
            return dladdr(vtable, &info) && info.dli_fbase == m.base;
        };
        std::erase_if(docManager.reactors, inModule);
        std::erase_if(editor.reactors, inModule);
        for (auto& doc : documents)
            doc->db->dropReactors(inModule);
    }
    void unloadModuleAt(size_t index) {
        void* handle = modules[index].handle;
        sendToModuleForEachDocument(modules[index], AcRx::kUnloadDwgMsg);
        if (Module* m = findModule(handle))
            send(*m, AcRx::kUnloadAppMsg);
        auto it =
            std::find_if(modules.begin(), modules.end(), [&](const Module& m) { return m.handle == handle; });
        if (it == modules.end())
            return;
        Module gone = *it;
        modules.erase(it);
        forgetModule(gone);
        dlclose(gone.handle);
    }

    // ---- documents ----
    void activate(Document* doc) {
        if (doc == current && doc == mdiActive)
            return;
        if (mdiActive && mdiActive != doc) {
            Document* old = mdiActive;
            tellDocReactors([&](AcApDocManagerReactor* r) { r->documentToBeDeactivated(old); });
        }
        current = doc;
        mdiActive = doc;
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentToBeActivated(doc); });
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentActivated(doc); });
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentBecameCurrent(doc); });
    }

    Document* addDocument(std::unique_ptr<DrawingDatabase> db, const std::string& path,
                          const std::string& name, bool opened) {
        auto owned = std::make_unique<Document>();
        Document* doc = owned.get();
        doc->path = path;
        doc->displayName = name;
        doc->db = std::move(db);
        if (opened)
            tellEditorReactors([&](AcEditorReactor* r) { r->beginDwgOpen(path.c_str()); });
        documents.push_back(std::move(owned));
        // The new drawing is the one the host works in from here on; it becomes the active window
        // at activation.
        current = doc;
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentCreateStarted(doc); });
        tellEditorReactors([&](AcEditorReactor* r) { r->databaseConstructed(doc->db.get()); });
        if (opened)
            tellEditorReactors([&](AcEditorReactor* r) { r->endDwgOpen(path.c_str(), doc->db.get()); });
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentCreated(doc); });
        activate(doc);
        sendDrawingMessage(doc, AcRx::kLoadDwgMsg);
        return isOpen(doc) ? doc : nullptr;
    }

    void close(Document* doc) {
        if (current != doc || mdiActive != doc)
            activate(doc);
        sendDrawingMessage(doc, AcRx::kUnloadDwgMsg);
        tellEditorReactors([&](AcEditorReactor* r) { r->beginClose(doc->db.get()); });
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentToBeDestroyed(doc); });
        tellEditorReactors([&](AcEditorReactor* r) { r->databaseToBeDestroyed(doc->db.get()); });
        std::string name = doc->path.empty() ? doc->displayName : doc->path;
        auto it = std::find_if(documents.begin(), documents.end(), [&](auto& d) { return d.get() == doc; });
        std::unique_ptr<Document> owned = std::move(*it);
        documents.erase(it);
        current = nullptr;
        mdiActive = nullptr;
        owned->db.reset(); // the database says goodbye to its reactors
        owned->lockModes.clear();
        owned->definitions.clear();
        closedDocuments.push_back(std::move(owned));
        tellDocReactors([&](AcApDocManagerReactor* r) { r->documentDestroyed(name.c_str()); });
        if (!documents.empty() && !current)
            activate(documents.back().get());
    }

    // ---- variables ----
    VarValue valueOf(const VarDef& def, const Document* doc) const {
        VarValue v = def.defaultValue;
        switch (def.computed) {
        case Computed::DwgName:
            v.text = doc ? doc->displayName : "";
            return v;
        case Computed::DwgPrefix: {
            std::string folder;
            if (doc && !doc->path.empty())
                folder = fs::path(doc->path).parent_path().string();
            else {
                std::error_code ec;
                folder = fs::current_path(ec).string();
            }
            if (folder.empty() || folder.back() != '/')
                folder += '/';
            v.text = folder;
            return v;
        }
        case Computed::DwgTitled:
            v.integer = doc && !doc->path.empty() ? 1 : 0;
            return v;
        case Computed::CDate:
        case Computed::Date: {
            timespec ts{};
            clock_gettime(CLOCK_REALTIME, &ts);
            if (def.computed == Computed::Date) {
                // Julian day and fraction, in local time as the host's clock shows it.
                std::tm local{};
                localtime_r(&ts.tv_sec, &local);
                double seconds = static_cast<double>(ts.tv_sec + local.tm_gmtoff) + ts.tv_nsec / 1e9;
                v.real[0] = 2440587.5 + seconds / 86400.0;
                return v;
            }
            std::tm t{};
            localtime_r(&ts.tv_sec, &t);
            double day = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100.0 + t.tm_mday;
            double time = t.tm_hour * 10000.0 + t.tm_min * 100.0 + t.tm_sec;
            long long millis = ts.tv_nsec / 1000000;
            v.real[0] = day + time / 1e6 + static_cast<double>(millis) / 1e9;
            return v;
        }
        case Computed::None:
            break;
        }
        if (def.global) {
            auto it = globals.find(def.name);
            return it == globals.end() ? def.defaultValue : it->second;
        }
        return doc ? doc->db->variable(def) : def.defaultValue;
    }

    // Precision and point separator of the current drawing, made usable as the module makes them.
    void numberFormat(int& precision, char& separator) const {
        precision = 4;
        separator = ' ';
        if (!current)
            return;
        signed char sep = static_cast<signed char>(current->db->dimdsep());
        if (sep >= ' ' && !(sep >= '0' && sep <= '9') && sep != 'E' && sep != 'e')
            separator = static_cast<char>(sep);
        int p = current->db->luprec();
        if (p >= 0)
            precision = p;
    }

    // Sets a value by the rules; an empty text when taken, else the host's refusal.
    std::string setValue(const VarDef& def, VarValue value) {
        if (def.readOnly || def.computed != Computed::None)
            return "Variable " + def.name + " is read-only.";
        if (!def.global && !current)
            return "No drawing is open.";
        if (std::string why = admitValue(def, value); !why.empty())
            return why;
        // The saved globals hold UTF-8 text only; a text that could not be saved is refused
        // here, rather than lost, or failing the write, when the globals are saved.
        if (std::string why;
            def.global && def.type == VarType::String && !GlobalsFile::isStorableText(value.text, why))
            return "Variable " + def.name + " cannot take this text: " + why + ".";
        const bool globalChanged = def.global && !(valueOf(def, nullptr) == value);
        tellEditorReactors([&](AcEditorReactor* r) { r->sysVarWillChange(def.name.c_str()); });
        if (def.global) {
            globals[def.name] = value;
        } else {
            current->db->setVariable(def, value);
        }
        tellEditorReactors([&](AcEditorReactor* r) { r->sysVarChanged(def.name.c_str(), true); });
        globalsChanged = globalsChanged || globalChanged;
        return {};
    }

    std::string globalsPath() const { return (fs::path(profileDir) / kGlobalsFile).string(); }

    void loadGlobals() {
        if (profileDir.empty() || table.isEmpty())
            return;
        std::vector<std::string> notes;
        GlobalsFile::read(globalsPath(), table, globals, notes);
        for (const std::string& note : notes)
            print(note + "\n");
    }

    // Writes globals.json when a global changed since the last write.
    void flushGlobals() {
        if (globalsChanged)
            saveGlobals();
    }

    bool saveGlobals() {
        globalsChanged = false;
        if (profileDir.empty() || table.isEmpty())
            return true;
        std::map<std::string, VarValue> values;
        for (const VarDef& def : table.definitions())
            if (def.global && !def.readOnly && def.computed == Computed::None)
                values[def.name] = valueOf(def, nullptr);
        const std::string path = globalsPath();
        std::string why;
        if (!GlobalsFile::write(path, values, why)) {
            print("Cannot save global variables to " + path + ": " + why + ".\n");
            return false;
        }
        return true;
    }
};

AcApDocument* DocManager::curDocument() const {
    return gState->current;
}
AcApDocument* DocManager::mdiActiveDocument() const {
    return gState->mdiActive;
}
int DocManager::documentCount() const {
    return static_cast<int>(gState->documents.size());
}

Acad::ErrorStatus DocManager::lockDocument(AcApDocument* doc, AcAp::DocLockMode mode,
                                           const char* globalCmdName, const char*, bool) {
    const char* cmd = globalCmdName ? globalCmdName : "";
    if (!doc || !gState->isOpen(doc))
        return Acad::eLockViolation;
    if (gState->lockRefused) {
        gState->tellDocReactors([&](AcApDocManagerReactor* r) { r->documentLockModeChangeVetoed(doc, cmd); });
        return Acad::eLockViolation;
    }
    auto* d = static_cast<Document*>(doc);
    AcAp::DocLockMode before = d->myLockMode();
    gState->tellDocReactors(
        [&](AcApDocManagerReactor* r) { r->documentLockModeWillChange(doc, before, mode, mode, cmd); });
    d->lockModes.push_back(mode);
    gState->tellDocReactors(
        [&](AcApDocManagerReactor* r) { r->documentLockModeChanged(doc, before, mode, mode, cmd); });
    return Acad::eOk;
}

Acad::ErrorStatus DocManager::unlockDocument(AcApDocument* doc) {
    if (!doc || !gState->isOpen(doc))
        return Acad::eInvalidInput;
    auto* d = static_cast<Document*>(doc);
    if (d->lockModes.empty())
        return Acad::eNotApplicable;
    AcAp::DocLockMode before = d->myLockMode();
    d->lockModes.pop_back();
    AcAp::DocLockMode after = d->myLockMode();
    gState->tellDocReactors(
        [&](AcApDocManagerReactor* r) { r->documentLockModeChanged(doc, before, after, after, ""); });
    return Acad::eOk;
}

bool DynamicLinker::unlockApplication(void* appId) const {
    Module* m = gState->findModule(appId);
    if (m)
        m->locked = false;
    return m != nullptr;
}

bool DynamicLinker::lockApplication(void* appId) const {
    Module* m = gState->findModule(appId);
    if (m)
        m->locked = true;
    return m != nullptr;
}

bool DynamicLinker::isApplicationLocked(const char* name) const {
    if (!name)
        return false;
    for (const Module& m : gState->modules) {
        fs::path p(m.path);
        if (equalNoCase(m.path, name) || equalNoCase(p.filename().string(), name) ||
            equalNoCase(p.stem().string(), name))
            return m.locked;
    }
    return false;
}

AcDbDatabase* HostServices::workingDatabase() const {
    if (!gState->workingDatabaseAvailable || !gState->current)
        return nullptr;
    return gState->current->db.get();
}

Document* asDocument(AcApDocument* doc) {
    return doc && gState->isOpen(doc) ? static_cast<Document*>(doc) : nullptr;
}

// The folder of a file, without its closing "/".
std::string folderOf(const std::string& path) {
    return fs::path(path).parent_path().string();
}

} // namespace

void hostPrint(const std::string& text) {
    HostSession::instance();
    gState->print(text);
}

const VariableTable& hostVariables() {
    HostSession::instance();
    return gState->table;
}

void noteObjectsOpened(int delta) {
    HostSession::instance();
    gState->openObjects += delta;
}

AcEditor* hostEditor() {
    HostSession::instance();
    return &gState->editor;
}

AcRxDynamicLinker* hostDynamicLinker() {
    HostSession::instance();
    return &gState->linker;
}

struct HostSession::Impl : SessionState {};

HostSession& HostSession::instance() {
    static HostSession session;
    return session;
}

HostSession::HostSession() : d(new Impl) {
    gState = d;
}

HostSession::~HostSession() {
    // A session that was not shut down ends with the process: its modules are left alone, as their
    // code and static objects may already be gone. The state stays reachable for leak checkers.
}

HostResult HostSession::loadVariableTable(const std::string& path) {
    VariableTable table;
    std::string report;
    bool read = table.load(path, report);
    if (!read)
        return HostResult::failure(report);
    d->table = std::move(table);
    d->globals.clear();
    d->loadGlobals();
    if (!report.empty()) {
        report.pop_back();
        return HostResult::failure(report);
    }
    return {};
}

HostResult HostSession::setProfileDir(const std::string& dir) {
    d->profileDir = dir.empty() ? std::string() : absolutePath(dir);
    if (d->profileDir.empty())
        return {};
    std::error_code ec;
    fs::create_directories(d->profileDir, ec);
    if (ec || access(d->profileDir.c_str(), W_OK) != 0) {
        std::string why = ec ? ec.message() : std::strerror(errno);
        return HostResult::failure("The profile folder " + d->profileDir + " cannot be written (" + why +
                                   "); settings and global variables are not saved.");
    }
    d->loadGlobals();
    return {};
}

const std::string& HostSession::profileDir() const {
    return d->profileDir;
}

void HostSession::setSupportPath(const std::vector<std::string>& folders) {
    d->supportPath = folders;
}

void HostSession::setOutput(std::function<void(const std::string&)> sink) {
    d->output = std::move(sink);
}

void HostSession::setUiServices(kova::UiServices* services) {
    d->ui = services;
}

void HostSession::setMainFrame(QWidget* frame) {
    d->frame = frame;
}

AcApDocument* HostSession::newDocument(const std::string& path) {
    std::string full = path.empty() ? std::string() : absolutePath(path);
    std::string name = full.empty() ? "Drawing" + std::to_string(d->nextDrawingNumber++) + ".dwg"
                                    : fs::path(full).filename().string();
    return d->addDocument(std::make_unique<DrawingDatabase>(), full, name, false);
}

AcApDocument* HostSession::openDocument(const std::string& path, std::string* message) {
    std::string full = absolutePath(path);
    for (auto& doc : d->documents)
        if (doc->path == full) {
            d->activate(doc.get());
            return doc.get();
        }
    auto fail = [&](const std::string& why) -> AcApDocument* {
        if (message)
            *message = "Cannot open drawing " + path + ": " + why + (why.ends_with('.') ? "" : ".");
        return nullptr;
    };
    std::error_code ec;
    if (fs::is_directory(full, ec))
        return fail("it is a folder");
    if (fs::exists(full, ec) && !fs::is_regular_file(full, ec))
        return fail("it is no regular file");
    std::ifstream in(full, std::ios::binary);
    if (!in)
        return fail(std::strerror(errno));
    std::ostringstream text;
    text << in.rdbuf();
    if (!in && !in.eof())
        return fail("it cannot be read");
    std::string why;
    std::vector<std::string> notes;
    std::unique_ptr<DrawingDatabase> db = DrawingDatabase::fromFile(std::move(text).str(), d->table, why, notes);
    if (!db)
        return fail(why);
    const std::string name = fs::path(full).filename().string();
    for (const std::string& note : notes)
        d->print(name + ": " + note + "\n");
    return d->addDocument(std::move(db), full, name, true);
}

HostResult HostSession::saveDocument(AcApDocument* document, const std::string& path) {
    Document* doc = asDocument(document);
    if (!doc)
        return HostResult::failure("No such drawing is open.");
    std::string target = path.empty() ? doc->path : absolutePath(path);
    if (target.empty())
        return HostResult::failure(doc->displayName + " has no file yet: save it under a file name.");
    auto refuse = [&](const std::string& why) {
        return HostResult::failure("Cannot save drawing to " + target + ": " + why + ".");
    };
    std::error_code ec;
    const fs::file_status existing = fs::status(target, ec);
    if (fs::exists(existing)) {
        if (!fs::is_regular_file(existing))
            return refuse("it is no regular file");
        // A drawing the user protected is not replaced, though the folder would let a rename
        // go over it; a file without any write permission counts as protected even for root.
        const fs::perms writable = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        if (::access(target.c_str(), W_OK) != 0 || (existing.permissions() & writable) == fs::perms::none)
            return refuse("the file is write-protected");
    }
    d->tellEditorReactors([&](AcEditorReactor* r) { r->beginSave(doc->db.get(), target.c_str()); });
    std::vector<std::string> notes;
    const std::string content = doc->db->toDxf(d->table, notes);
    const std::string temp = target + ".new";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        const bool opened = out.is_open();
        out << content;
        out.close();
        if (!out) {
            const int error = errno;
            std::error_code ignored;
            if (opened)
                fs::remove(temp, ignored); // a half-written file is no scrap to leave beside the drawing
            return refuse(std::strerror(error));
        }
    }
    if (fs::exists(existing))
        fs::permissions(temp, existing.permissions(), ec); // the drawing keeps its mode
    fs::rename(temp, target, ec);
    if (ec) {
        const std::string why = ec.message();
        fs::remove(temp, ec);
        return refuse(why);
    }
    for (const std::string& note : notes)
        d->print(fs::path(target).filename().string() + ": " + note + "\n");
    doc->path = target;
    doc->displayName = fs::path(target).filename().string();
    d->tellEditorReactors([&](AcEditorReactor* r) { r->saveComplete(doc->db.get(), target.c_str()); });
    d->saveGlobals();
    return {};
}

HostResult HostSession::closeDocument(AcApDocument* document) {
    Document* doc = asDocument(document);
    if (!doc)
        return HostResult::failure("No such drawing is open.");
    d->close(doc);
    return {};
}

HostResult HostSession::activateDocument(AcApDocument* document) {
    Document* doc = asDocument(document);
    if (!doc)
        return HostResult::failure("No such drawing is open.");
    d->activate(doc);
    return {};
}

AcApDocument* HostSession::findDocument(const std::string& name) const {
    for (auto& doc : d->documents) {
        fs::path shown(doc->displayName);
        if ((!doc->path.empty() && equalNoCase(doc->path, name)) || equalNoCase(doc->displayName, name) ||
            equalNoCase(shown.stem().string(), name))
            return doc.get();
    }
    return nullptr;
}

std::vector<AcApDocument*> HostSession::documents() const {
    std::vector<AcApDocument*> out;
    for (auto& doc : d->documents)
        out.push_back(doc.get());
    return out;
}

AcApDocument* HostSession::currentDocument() const {
    return d->current;
}

HostResult HostSession::namedObjectsListing(std::vector<std::string>& lines) const {
    lines.clear();
    if (!d->current)
        return HostResult::failure("No drawing is open.");
    lines = d->current->db->describeNamedObjects();
    return {};
}

HostResult HostSession::loadModule(const std::string& path) {
    std::string full = absolutePath(path);
    std::string file = fs::path(full).filename().string();
    for (const Module& m : d->modules)
        if (m.path == full)
            return HostResult::failure(file + " is already loaded.");
    dlerror();
    void* handle = dlopen(full.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = dlerror();
        return HostResult::failure("Cannot load " + full + ": " + (why ? why : "unknown reason") + ".");
    }
    if (d->findModule(handle)) {
        dlclose(handle);
        return HostResult::failure(file + " is already loaded.");
    }
    auto entry = reinterpret_cast<AcRxEntryPointFn>(dlsym(handle, "acrxEntryPoint"));
    if (!entry) {
        dlclose(handle);
        return HostResult::failure(file + " is no module of this host: it has no acrxEntryPoint.");
    }
    if (auto version = reinterpret_cast<AcRxGetApiVersionFn>(dlsym(handle, "acrxGetApiVersion"))) {
        int wanted = version();
        if (wanted > kAcSdkApiVersion) {
            dlclose(handle);
            return HostResult::failure(file + " needs host interface version " + std::to_string(wanted) +
                                       "; this host has " + std::to_string(kAcSdkApiVersion) + ".");
        }
    }
    if (auto setPtp = reinterpret_cast<AcRxSetPtpFn>(dlsym(handle, "_SetacrxPtp")))
        setPtp(acrxSysRegistry());
    Module m;
    m.path = full;
    m.handle = handle;
    m.entry = entry;
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(entry), &info))
        m.base = info.dli_fbase;
    d->modules.push_back(m);
    if (d->send(d->modules.back(), AcRx::kInitAppMsg) == AcRx::kRetError) {
        auto it =
            std::find_if(d->modules.begin(), d->modules.end(), [&](auto& x) { return x.handle == handle; });
        if (it != d->modules.end()) {
            Module gone = *it;
            d->modules.erase(it);
            d->forgetModule(gone);
        }
        dlclose(handle);
        return HostResult::failure(file + " failed to initialise and was unloaded.");
    }
    if (Module* loaded = d->findModule(handle))
        d->sendToModuleForEachDocument(*loaded, AcRx::kLoadDwgMsg);
    return {};
}

HostResult HostSession::unloadModule(const std::string& path) {
    std::string full = absolutePath(path);
    for (size_t i = 0; i < d->modules.size(); ++i) {
        const Module& m = d->modules[i];
        if (m.path == full || equalNoCase(fs::path(m.path).filename().string(), path)) {
            d->unloadModuleAt(i);
            return {};
        }
    }
    return HostResult::failure(path + " is not loaded.");
}

void HostSession::unloadModules() {
    while (!d->modules.empty())
        d->unloadModuleAt(d->modules.size() - 1);
}

std::vector<std::string> HostSession::loadedModules() const {
    std::vector<std::string> out;
    for (const Module& m : d->modules)
        out.push_back(m.path);
    return out;
}

bool HostSession::isCommand(const std::string& name) const {
    if (!d->current)
        return false;
    std::string wanted = "C:" + upperCase(name);
    for (const Definition& def : d->current->definitions)
        if (def.name == wanted)
            return true;
    return false;
}

HostResult HostSession::runCommand(const std::string& name) {
    std::string upper = upperCase(name);
    const Definition* found = nullptr;
    if (d->current)
        for (const Definition& def : d->current->definitions)
            if (def.name == "C:" + upper)
                found = &def;
    if (!found) {
        d->tellEditorReactors([&](AcEditorReactor* r) { r->unknownCommand(upper.c_str()); });
        return HostResult::failure("Unknown command \"" + upper + "\".");
    }
    Definition def = *found;
    Module* m = d->findModule(def.module);
    if (!m)
        return HostResult::failure("Unknown command \"" + upper + "\".");
    d->tellEditorReactors([&](AcEditorReactor* r) { r->commandWillStart(upper.c_str()); });
    int previous = d->funCode;
    d->funCode = def.code;
    d->send(*m, AcRx::kInvkSubrMsg);
    d->funCode = previous;
    d->tellEditorReactors([&](AcEditorReactor* r) { r->commandEnded(upper.c_str()); });
    d->flushGlobals();
    return {};
}

HostResult HostSession::setVariableText(const std::string& name, const std::string& text) {
    const VarDef* def = d->table.find(name);
    if (!def)
        return HostResult::failure("Unknown variable name: " + upperCase(name));
    if (def->readOnly || def->computed != Computed::None)
        return HostResult::failure("Variable " + def->name + " is read-only.");
    int precision;
    char separator;
    d->numberFormat(precision, separator);
    VarValue value;
    std::string message;
    if (!valueFromText(*def, text, separator, value, message))
        return HostResult::failure(message);
    message = d->setValue(*def, value);
    d->flushGlobals();
    return message.empty() ? HostResult{} : HostResult::failure(message);
}

HostResult HostSession::variableText(const std::string& name, std::string& text) const {
    const VarDef* def = d->table.find(name);
    if (!def)
        return HostResult::failure("Unknown variable name: " + upperCase(name));
    if (!def->global && def->computed == Computed::None && !d->current)
        return HostResult::failure("No drawing is open.");
    int precision;
    char separator;
    d->numberFormat(precision, separator);
    text = def->name + " = " + valueToText(d->valueOf(*def, d->current), precision, separator);
    return {};
}

void HostSession::setWorkingDatabaseAvailable(bool available) {
    d->workingDatabaseAvailable = available;
}

void HostSession::setDocumentLockRefused(bool refused) {
    d->lockRefused = refused;
}

int HostSession::openObjectCount() const {
    return d->openObjects;
}

void HostSession::shutdown() {
    while (!d->documents.empty())
        d->close(d->documents.back().get());
    unloadModules();
    d->saveGlobals();
    Impl* old = d;
    d = new Impl;
    gState = d;
    delete old;
}

} // namespace cadhost

using namespace cadhost;

namespace {

SessionState& state() {
    HostSession::instance();
    return *gState;
}

std::string upperName(const char* name) {
    return upperCase(name ? name : "");
}

// The file in the first of the folders that holds it.
std::string findInFolders(const std::string& file, const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
        if (folder.empty())
            continue;
        std::error_code ec;
        fs::path candidate = fs::path(folder) / file;
        if (fs::is_regular_file(candidate, ec))
            return candidate.lexically_normal().string();
    }
    return {};
}

resbuf* textResult(const std::string& text) {
    resbuf* rb = allocateRb(RTSTR);
    if (rb) {
        rb->resval.rstring = duplicateString(text);
        if (!rb->resval.rstring) {
            acutRelRb(rb);
            return nullptr;
        }
    }
    return rb;
}

} // namespace

extern "C" {

int acedGetVar(const char* name, resbuf* result) {
    SessionState& s = state();
    if (!result)
        return RTERROR;
    const VarDef* def = s.table.find(name ? name : "");
    if (!def)
        return RTERROR;
    if (!def->global && def->computed == Computed::None && !s.current)
        return RTERROR;
    if (!valueToResbuf(s.valueOf(*def, s.current), *result))
        return RTERROR;
    return RTNORM;
}

int acedSetVar(const char* name, const resbuf* value) {
    SessionState& s = state();
    const VarDef* def = s.table.find(name ? name : "");
    std::string message;
    if (!def) {
        message = "Unknown variable name: " + upperName(name);
    } else if (def->readOnly || def->computed != Computed::None) {
        message = "Variable " + def->name + " is read-only.";
    } else {
        VarValue v;
        if (!value)
            message = def->name + " needs a value.";
        else if (valueFromResbuf(*def, *value, v, message))
            message = s.setValue(*def, v);
    }
    if (message.empty())
        return RTNORM;
    s.print(message + "\n");
    return RTERROR;
}

int acedGetSysvarList(const char* pattern, resbuf** names) {
    SessionState& s = state();
    if (!names)
        return RTERROR;
    *names = nullptr;
    const char* p = pattern && *pattern ? pattern : "*";
    resbuf* tail = nullptr;
    for (const VarDef& def : s.table.definitions()) {
        if (!acutWcMatchEx(def.name.c_str(), p, true))
            continue;
        resbuf* rb = textResult(def.name);
        if (!rb) {
            acutRelRb(*names);
            *names = nullptr;
            return RTERROR;
        }
        (tail ? tail->rbnext : *names) = rb;
        tail = rb;
    }
    return *names ? RTNORM : RTERROR;
}

int acedDefun(const char* name, int code) {
    SessionState& s = state();
    if (!name || !*name || !s.current || !s.activeModule)
        return RTERROR;
    std::string upper = upperName(name);
    auto& defs = s.current->definitions;
    std::erase_if(defs, [&](const Definition& d) { return d.name == upper; });
    defs.push_back({upper, code, s.activeModule});
    return RTNORM;
}

int acedUndef(const char* name, int code) {
    SessionState& s = state();
    if (!name || !s.current)
        return RTERROR;
    std::string upper = upperName(name);
    auto& defs = s.current->definitions;
    size_t before = defs.size();
    std::erase_if(defs, [&](const Definition& d) { return d.name == upper && d.code == code; });
    return defs.size() < before ? RTNORM : RTERROR;
}

int acedGetFunCode() {
    return state().funCode;
}

int acedRetVoid() {
    return RTNORM;
}

int acedInvoke(const resbuf* args, resbuf** result) {
    SessionState& s = state();
    if (!result)
        return RTERROR;
    *result = nullptr;
    if (!args || args->restype != RTSTR || !args->resval.rstring)
        return RTERROR;
    std::string function = upperCase(args->resval.rstring);
    std::vector<std::string> texts;
    for (const resbuf* rb = args->rbnext; rb && rb->restype != RTNONE; rb = rb->rbnext)
        texts.push_back(rb->restype == RTSTR && rb->resval.rstring ? rb->resval.rstring : "");
    if (function == "KOVA_GETUSERINIFILE") {
        // (kova_GetUserIniFile appName iniFileName): the ini file in the user's profile folder.
        if (texts.size() < 2 || texts[1].empty() || s.profileDir.empty())
            return RTERROR;
        *result = textResult((fs::path(s.profileDir) / fs::path(texts[1]).filename()).string());
        return *result ? RTNORM : RTERROR;
    }
    if (function == "KOVA_PATHINFO") {
        // (kova_pathInfo fileName): the first of the module folders, the profile folder and the
        // support path that holds the file; nil when none does. Nil is Lisp's empty list, so no
        // result chain comes back for it.
        if (texts.empty())
            return RTERROR;
        std::vector<std::string> folders;
        for (const Module& m : s.modules)
            folders.push_back(folderOf(m.path));
        folders.push_back(s.profileDir);
        folders.insert(folders.end(), s.supportPath.begin(), s.supportPath.end());
        std::string found = texts[0].empty() ? std::string() : findInFolders(texts[0], folders);
        if (found.empty())
            return RTNORM;
        *result = textResult(found);
        return *result ? RTNORM : RTERROR;
    }
    return RTERROR;
}

int acedAlert(const char* text) {
    SessionState& s = state();
    std::string t = text ? text : "";
    if (s.ui)
        s.ui->alert(t);
    else
        s.print("ALERT: " + t + "\n");
    return RTNORM;
}

QWidget* acedGetAcadFrame() {
    return state().frame;
}

kova::UiServices* acHostUiServices() {
    return state().ui;
}

AcApDocManager* acDocManagerPtr() {
    return &state().docManager;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    return &state().services;
}

bool acrxRegisterAppMDIAware(void* appId) {
    Module* m = state().findModule(appId);
    if (m)
        m->mdiAware = true;
    return m != nullptr;
}

bool acdbRegApp(const char* appName) {
    SessionState& s = state();
    auto* db = static_cast<DrawingDatabase*>(s.services.workingDatabase());
    return db && appName && db->registerApplication(appName);
}

} // extern "C"
