// Utility services of the host: printing, result-buffer lists, wildcard matching.
#pragma once
#include "adesk.h"
#include "adscodes.h"
#include "adsdef.h"

extern "C" {
// Prints to the host's command line (stdout in batch mode). Returns the number of bytes printed.
ACSDK_EXPORT int acutPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Builds a chain from (type, value) pairs ended by RTNONE (or 0). Types: RTREAL/40 double,
// RTPOINT/RT3DPOINT const double*, RTSHORT/70 int, RTSTR/1 const char*, RTLONG/90 Int32.
// Returns null when the chain cannot be built (unknown type, no memory).
ACSDK_EXPORT resbuf* acutBuildList(int rtype, ...);
// A single zeroed buffer of the given type; null on failure.
ACSDK_EXPORT resbuf* acutNewRb(int rtype);
// Releases a whole chain, strings included. Null is allowed.
ACSDK_EXPORT int acutRelRb(resbuf* chain);

// Wildcard match of text against pattern; see acutads_wildcards.md for the signs understood.
// Returns true on a match. ignoreCase compares ASCII (and Latin-1) letters without case.
ACSDK_EXPORT bool acutWcMatchEx(const char* text, const char* pattern, bool ignoreCase);
}
