// The three functions VarDesk.so exports to the host; everything else in the module stays hidden.
#include "ModuleEntry.h"

#define VARDESK_EXPORT __attribute__((visibility("default")))

extern "C" {

VARDESK_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* appId) {
    return HandleAppMessage(message, appId);
}

VARDESK_EXPORT int acrxGetApiVersion() {
    return kAcSdkApiVersion;
}

// The host hands over its pointer table here; the module reaches the host through the SDK
// library instead and keeps nothing.
VARDESK_EXPORT void _SetacrxPtp(void*) {}

} // extern "C"
