// The host's result buffer: a linked chain of typed values.
#pragma once
#include "adesk.h"

using ads_real = double;
using ads_point = ads_real[3];

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    char* rstring; // UTF-8, owned by the buffer (freed by acutRelRb)
    Adesk::Int32 rlong;
};

// restype holds either a value type (RTREAL ... RTLONG) or a group code of drawing data:
// 1 text, 40 real, 70 short, 90 long.
struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};
