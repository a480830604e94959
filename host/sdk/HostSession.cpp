// HostSession: the session itself, its settings and its end; the documents, the modules, the
// variables and the Lisp services are in DocumentManager.cpp, ModuleLoader.cpp, GlobalVariables.cpp
// and LispServices.cpp.
#include "hostsession.h"

#include "SessionInternal.h"
#include "SessionState.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace cadhost {

SessionState* gState = nullptr;

SessionState& sessionState() {
    HostSession::instance();
    return *gState;
}

bool equalNoCase(const std::string& a, const std::string& b) {
    return upperCase(a) == upperCase(b);
}

std::string absolutePath(const std::string& path) {
    std::error_code ec;
    fs::path p = fs::absolute(path, ec);
    return ec ? path : p.lexically_normal().string();
}

AcDbDatabase* HostServices::workingDatabase() const {
    if (!gState->workingDatabaseAvailable || !gState->current)
        return nullptr;
    return gState->current->db.get();
}

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

extern "C" {

int acedAlert(const char* text) {
    SessionState& s = sessionState();
    std::string t = text ? text : "";
    if (s.ui)
        s.ui->alert(t);
    else
        s.print("ALERT: " + t + "\n");
    return RTNORM;
}

QWidget* acedGetAcadFrame() {
    return sessionState().frame;
}

kova::UiServices* acHostUiServices() {
    return sessionState().ui;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    return &sessionState().services;
}

} // extern "C"
