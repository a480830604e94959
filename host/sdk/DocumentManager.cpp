// The document manager: drawings are made, opened, saved, activated and closed, with the events
// that the modules' reactors hear, and documents are locked for commands.
#include "hostsession.h"

#include "RegularFile.h"
#include "ReplacementFile.h"
#include "SessionState.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace cadhost {

void SessionState::activate(Document* doc) {
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

Document* SessionState::addDocument(std::unique_ptr<DrawingDatabase> db, const std::string& path,
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

void SessionState::close(Document* doc) {
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

Document* asDocument(AcApDocument* doc) {
    return doc && gState->isOpen(doc) ? static_cast<Document*>(doc) : nullptr;
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
    std::string text;
    const kova::FileRead read = kova::readRegularFile(full, text);
    if (read == kova::FileRead::NotOpened)
        return fail(errno == EISDIR   ? "it is a folder"
                    : errno == ENODEV ? "it is no regular file"
                                      : std::strerror(errno));
    if (read == kova::FileRead::Failed)
        return fail("it cannot be read");
    std::string why;
    std::vector<std::string> notes;
    std::unique_ptr<DrawingDatabase> db = DrawingDatabase::fromFile(std::move(text), d->table, why, notes);
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
    if (fs::exists(existing) && !fs::is_regular_file(existing))
        return refuse("it is no regular file");
    // A drawing the user protected is not replaced, though the folder would let a rename go over
    // it; a file without any write permission counts as protected even for root.
    if (kova::ReplacementFile::isWriteProtected(target))
        return refuse("the file is write-protected");
    d->tellEditorReactors([&](AcEditorReactor* r) { r->beginSave(doc->db.get(), target.c_str()); });
    std::vector<std::string> notes;
    int error = 0;
    if (!kova::ReplacementFile::write(target, {doc->db->toDxf(d->table, notes)}, &error))
        return refuse(std::strerror(error));
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

} // namespace cadhost

using namespace cadhost;

extern "C" {

AcApDocManager* acDocManagerPtr() {
    return &sessionState().docManager;
}

bool acdbRegApp(const char* appName) {
    SessionState& s = sessionState();
    auto* db = static_cast<DrawingDatabase*>(s.services.workingDatabase());
    return db && appName && db->registerApplication(appName);
}

} // extern "C"
