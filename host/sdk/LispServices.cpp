// The Lisp services of the session: functions and commands that modules define for a document,
// and the functions of the host that a module invokes.
#include "SessionState.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace cadhost {

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

namespace {

// The folder of a file, without its closing "/".
std::string folderOf(const std::string& path) {
    return fs::path(path).parent_path().string();
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

} // namespace

} // namespace cadhost

using namespace cadhost;

extern "C" {

int acedDefun(const char* name, int code) {
    SessionState& s = sessionState();
    if (!name || !*name || !s.current || !s.activeModule)
        return RTERROR;
    std::string upper = upperName(name);
    auto& defs = s.current->definitions;
    std::erase_if(defs, [&](const Definition& d) { return d.name == upper; });
    defs.push_back({upper, code, s.activeModule});
    return RTNORM;
}

int acedUndef(const char* name, int code) {
    SessionState& s = sessionState();
    if (!name || !s.current)
        return RTERROR;
    std::string upper = upperName(name);
    auto& defs = s.current->definitions;
    size_t before = defs.size();
    std::erase_if(defs, [&](const Definition& d) { return d.name == upper && d.code == code; });
    return defs.size() < before ? RTNORM : RTERROR;
}

int acedGetFunCode() {
    return sessionState().funCode;
}

int acedRetVoid() {
    return RTNORM;
}

int acedInvoke(const resbuf* args, resbuf** result) {
    SessionState& s = sessionState();
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

} // extern "C"
