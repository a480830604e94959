// The program-wide paths of the module.
#include "cContext.h"

cContext gContext;
