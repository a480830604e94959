// The module loader: modules are loaded and unloaded, told of the drawings, and run the commands
// they define; the dynamic linker answers for their locks.
#include "hostsession.h"

#include "SessionState.h"

#include <dlfcn.h>

#include <exception>
#include <filesystem>

namespace fs = std::filesystem;

namespace cadhost {

AcRx::AppRetCode SessionState::send(Module& m, AcRx::AppMsgCode msg) {
    void* previous = activeModule;
    activeModule = m.handle;
    AcRx::AppRetCode result = m.entry(msg, m.handle);
    activeModule = previous;
    return result;
}

// Sends a drawing message to every module while doc stands as the current document.
void SessionState::sendDrawingMessage(Document* doc, AcRx::AppMsgCode msg) {
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

void SessionState::sendToModuleForEachDocument(Module& m, AcRx::AppMsgCode msg) {
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
void SessionState::forgetModule(const Module& m) {
    for (auto& doc : documents)
        std::erase_if(doc->definitions, [&](const Definition& d) { return d.module == m.handle; });
    if (!m.base)
        return;
    auto inModule = [&](const void* object) {
        Dl_info info{};
        const void* vtable = *static_cast<const void* const*>(object);
        return dladdr(vtable, &info) && info.dli_fbase == m.base;
    };
    docManager.reactors.removeIf(inModule);
    editor.reactors.removeIf(inModule);
    for (auto& doc : documents)
        doc->db->dropReactors(inModule);
}

void SessionState::unloadModuleAt(size_t index) {
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
    // Whatever a module lets escape ends its command, not the host with its open drawings.
    std::string escaped;
    try {
        d->send(*m, AcRx::kInvkSubrMsg);
    } catch (const std::exception& e) {
        escaped = e.what();
    } catch (...) {
        escaped = "an unknown exception";
    }
    d->funCode = previous;
    d->tellEditorReactors([&](AcEditorReactor* r) { r->commandEnded(upper.c_str()); });
    d->flushGlobals();
    if (!escaped.empty())
        return HostResult::failure("Command " + upper + " ended with an error: " + escaped + ".");
    return {};
}

} // namespace cadhost

using namespace cadhost;

extern "C" {

bool acrxRegisterAppMDIAware(void* appId) {
    Module* m = sessionState().findModule(appId);
    if (m)
        m->mdiAware = true;
    return m != nullptr;
}

} // extern "C"
