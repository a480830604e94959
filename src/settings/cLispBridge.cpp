// Calls of the Lisp services of the sibling module through acedInvoke.
#include "cLispBridge.h"

#include <acedads.h>

cLispBridge gLispBridge;

namespace {

// Calls service with its arguments as texts. Failed when acedInvoke did not give RTNORM, or no
// list was built or none came back; out is the text of the result's first entry (empty when
// that entry holds no text).
LispResult invokeService(const char* service, const char* argument1, const char* argument2,
                         std::string& out) {
    out.clear();
    resbuf* arguments = argument2 ? acutBuildList(RTSTR, service, RTSTR, argument1, RTSTR, argument2, RTNONE)
                                  : acutBuildList(RTSTR, service, RTSTR, argument1, RTNONE);
    if (!arguments)
        return LispResult::Failed;
    resbuf* result = nullptr;
    const int status = acedInvoke(arguments, &result);
    acutRelRb(arguments);
    if (!result)
        return LispResult::Failed;
    if (result->restype == RTSTR && result->resval.rstring)
        out = result->resval.rstring;
    acutRelRb(result);
    return status == RTNORM ? LispResult::Normal : LispResult::Failed;
}

} // namespace

LispResult cLispBridge::GetUserIniFile(std::string& out, const std::string& appName,
                                       const std::string& iniFileName) {
    return invokeService("kova_GetUserIniFile", appName.c_str(), iniFileName.c_str(), out);
}

LispResult cLispBridge::PathInfo(const std::string& file, std::string& out) {
    return invokeService("kova_pathInfo", file.c_str(), nullptr, out);
}
