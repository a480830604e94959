// Editor services of the host: system variables, command definition, Lisp invoke, alerts.
#pragma once
#include "acutads.h"

class QWidget;

extern "C" {
// Reads a system variable into the caller's buffer (rbnext is set to null) and returns RTNORM.
// A string value is allocated with malloc; the caller frees resval.rstring with free().
// Unknown variable: RTERROR.
ACSDK_EXPORT int acedGetVar(const char* name, resbuf* result);
// Sets a system variable. RTNORM when taken (possibly rounded or normalised by the host);
// RTERROR when unknown, read-only, of a wrong type or out of range. The host prints its reason.
ACSDK_EXPORT int acedSetVar(const char* name, const resbuf* value);
// A chain of RTSTR with the names of all variables that match the pattern ("*": all), in the
// host's order. The caller releases it with acutRelRb. RTNORM, or RTERROR with *names null.
ACSDK_EXPORT int acedGetSysvarList(const char* pattern, resbuf** names);

// Defines a Lisp function ("C:NAME" makes a command NAME) for the current document under code.
ACSDK_EXPORT int acedDefun(const char* name, int code);
ACSDK_EXPORT int acedUndef(const char* name, int code);
// Code of the function being invoked during kInvkSubrMsg; -1 outside.
ACSDK_EXPORT int acedGetFunCode();
ACSDK_EXPORT int acedRetVoid();
// Calls a Lisp function: args is a chain whose first RTSTR is the function name. On RTNORM,
// *result holds the chain the function returned, which the caller releases; null for nil.
ACSDK_EXPORT int acedInvoke(const resbuf* args, resbuf** result);

// Shows an alert box (a printed "ALERT: text" line in batch mode).
ACSDK_EXPORT int acedAlert(const char* text);
// The main frame window of the host; null in batch mode.
ACSDK_EXPORT QWidget* acedGetAcadFrame();
}
