// Helpers of the host around result buffers: value kinds of type and group codes, typed chain entries.
#pragma once
#include "adsdef.h"

#include <string>
#include <vector>

namespace cadhost {

// What a resbuf of a given restype holds. Both value types (RTREAL ...) and group codes of drawing
// data (1 text, 40 real, 70 short, 90 long, 10 point ...) map to one kind; None means no value
// (list markers, RTNIL, RTT) and Unsupported a code the host does not keep.
enum class ValueKind { Unsupported, None, Text, Real, Short, Long, Point2, Point3 };

ValueKind kindOfCode(int code);

// One entry of a typed chain, as a drawing keeps it apart from any resbuf memory.
struct ChainEntry {
    short code = 0;
    std::string text;
    double real[3] = {0, 0, 0};
    long long integer = 0; // short and long values

    bool operator==(const ChainEntry& o) const;
};

// malloc'ed copy, as acutRelRb and callers of acedGetVar free it.
char* duplicateString(const std::string& text);
// A zeroed buffer from malloc; null on failure.
resbuf* allocateRb(short type);

// Copies a chain into entries. False (and entries untouched) when an entry has an unsupported code.
bool entriesFromChain(const resbuf* first, std::vector<ChainEntry>& entries);
// A fresh chain (caller releases with acutRelRb); null for an empty list or no memory.
resbuf* chainFromEntries(const std::vector<ChainEntry>& entries);

// Real in its shortest text that reads back to the same value ("nan", "inf" for the others).
std::string realText(double value);

} // namespace cadhost
