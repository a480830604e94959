// Calls of the Lisp services of the sibling module through acedInvoke.
#pragma once
#include <string>

class cLispBridge {
public:
    // kova_GetUserIniFile(appName, iniFileName): out is the path, or empty with RTERROR.
    int GetUserIniFile(std::string& out, const std::string& appName, const std::string& iniFileName);
    // kova_pathInfo(file): the status of acedInvoke, or RTERROR when no list came back.
    int PathInfo(const std::string& file, std::string& out);
};

extern cLispBridge gLispBridge;
