// The program-wide paths of the module, and the help base name.
#include "cContext.h"

cContext gContext;
std::string gHelpBase;
