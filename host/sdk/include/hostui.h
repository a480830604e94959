// The user-interface services the host hands to modules, as an operating system would.
#pragma once
#include "adesk.h"

namespace kova {
class UiServices;
}

// The services the host chose at start: the Qt implementation for people, the scripted one in
// batch mode. Never null while the host runs.
extern "C" ACSDK_EXPORT kova::UiServices* acHostUiServices();
