// The program-wide paths of the module.
#pragma once
#include "cSetup.h"

#include <string>

class cContext : public cSetup {
public:
    std::string moduleDirectory; // with the closing "/"
    std::string moduleFileName;  // "VarDesk.so"
    std::string moduleBaseName;  // "VarDesk"
    std::string userIniFile;     // as the host side answered; empty until then
};

extern cContext gContext;
