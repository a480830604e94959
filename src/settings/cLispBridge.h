// Calls of the Lisp services of the sibling module through acedInvoke.
#pragma once
#include <string>

// How a call of a Lisp service ended: Normal when acedInvoke gave RTNORM and a list came back.
enum class LispResult { Normal, Failed };

class cLispBridge {
public:
    // kova_GetUserIniFile(appName, iniFileName): out is the path the service gave; empty when no
    // answer came back.
    LispResult GetUserIniFile(std::string& out, const std::string& appName, const std::string& iniFileName);
    // kova_pathInfo(file): out is the text of the first entry of the answer.
    LispResult PathInfo(const std::string& file, std::string& out);
};

extern cLispBridge gLispBridge;
