// Result-buffer services of the host: kinds of codes, chain copies, acutBuildList, acutRelRb, acutPrintf.
#include "ResbufUtil.h"

#include "acutads.h"
#include "SessionInternal.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace cadhost {

namespace {
bool within(int code, int low, int high) {
    return code >= low && code <= high;
}
} // namespace

ValueKind kindOfCode(int code) {
    switch (code) {
    case RTNONE:
        return ValueKind::Unsupported; // ends a list; never an entry of its own
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTT:
    case RTVOID:
        return ValueKind::None;
    case RTSTR:
        return ValueKind::Text;
    case RTREAL:
    case RTANG:
        return ValueKind::Real;
    case RTSHORT:
        return ValueKind::Short;
    case RTLONG:
        return ValueKind::Long;
    case RTPOINT:
        return ValueKind::Point2;
    case RT3DPOINT:
        return ValueKind::Point3;
    default:
        break;
    }
    // Group codes of drawing data, by the ranges their kinds have in drawing files. Handles,
    // binary chunks and 64-bit integers are kept as their text.
    if (within(code, 0, 9) || within(code, 100, 105) || within(code, 160, 169) || within(code, 300, 369) ||
        within(code, 390, 399) || within(code, 410, 419) || within(code, 430, 439) ||
        within(code, 470, 481) || within(code, 999, 1009))
        return ValueKind::Text;
    if (within(code, 10, 18) || within(code, 110, 112) || code == 210 || within(code, 1010, 1013))
        return ValueKind::Point3;
    // 20..37 and the like are the y and z of a point; standing alone they are reals.
    if (within(code, 19, 59) || within(code, 113, 149) || within(code, 211, 239) || within(code, 460, 469) ||
        within(code, 1014, 1059))
        return ValueKind::Real;
    if (within(code, 60, 79) || within(code, 170, 179) || within(code, 270, 299) || within(code, 370, 389) ||
        within(code, 400, 409) || within(code, 1060, 1070))
        return ValueKind::Short;
    if (within(code, 90, 99) || within(code, 420, 429) || within(code, 440, 459) || code == 1071)
        return ValueKind::Long;
    return ValueKind::Unsupported;
}

bool ChainEntry::operator==(const ChainEntry& o) const {
    if (code != o.code)
        return false;
    switch (kindOfCode(code)) {
    case ValueKind::Text:
        return text == o.text;
    case ValueKind::Real:
        return real[0] == o.real[0] || (std::isnan(real[0]) && std::isnan(o.real[0]));
    case ValueKind::Point2:
        return real[0] == o.real[0] && real[1] == o.real[1];
    case ValueKind::Point3:
        return real[0] == o.real[0] && real[1] == o.real[1] && real[2] == o.real[2];
    case ValueKind::Short:
    case ValueKind::Long:
        return integer == o.integer;
    default:
        return true;
    }
}

char* duplicateString(const std::string& text) {
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

resbuf* allocateRb(short type) {
    auto* rb = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    if (rb)
        rb->restype = type;
    return rb;
}

bool entriesFromChain(const resbuf* first, std::vector<ChainEntry>& entries) {
    std::vector<ChainEntry> copy;
    for (const resbuf* rb = first; rb; rb = rb->rbnext) {
        ChainEntry e;
        e.code = rb->restype;
        switch (kindOfCode(rb->restype)) {
        case ValueKind::Unsupported:
            return false;
        case ValueKind::None:
            break;
        case ValueKind::Text:
            e.text = rb->resval.rstring ? rb->resval.rstring : "";
            break;
        case ValueKind::Real:
            e.real[0] = rb->resval.rreal;
            break;
        case ValueKind::Point2:
        case ValueKind::Point3:
            for (int i = 0; i < 3; ++i)
                e.real[i] = rb->resval.rpoint[i];
            if (kindOfCode(rb->restype) == ValueKind::Point2)
                e.real[2] = 0;
            break;
        case ValueKind::Short:
            e.integer = rb->resval.rint;
            break;
        case ValueKind::Long:
            e.integer = rb->resval.rlong;
            break;
        }
        copy.push_back(std::move(e));
    }
    entries = std::move(copy);
    return true;
}

resbuf* chainFromEntries(const std::vector<ChainEntry>& entries) {
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    for (const ChainEntry& e : entries) {
        resbuf* rb = allocateRb(e.code);
        if (!rb) {
            acutRelRb(head);
            return nullptr;
        }
        switch (kindOfCode(e.code)) {
        case ValueKind::Text:
            rb->resval.rstring = duplicateString(e.text);
            if (!rb->resval.rstring) {
                acutRelRb(rb);
                acutRelRb(head);
                return nullptr;
            }
            break;
        case ValueKind::Real:
            rb->resval.rreal = e.real[0];
            break;
        case ValueKind::Point2:
        case ValueKind::Point3:
            for (int i = 0; i < 3; ++i)
                rb->resval.rpoint[i] = e.real[i];
            break;
        case ValueKind::Short:
            rb->resval.rint = static_cast<short>(e.integer);
            break;
        case ValueKind::Long:
            rb->resval.rlong = static_cast<Adesk::Int32>(e.integer);
            break;
        default:
            break;
        }
        (tail ? tail->rbnext : head) = rb;
        tail = rb;
    }
    return head;
}

std::string realText(double value) {
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0 ? "inf" : "-inf";
    char buffer[64];
    // Whole numbers as such ("10", not "1e+01"), up to where doubles stop holding every integer.
    if (value == std::floor(value) && std::fabs(value) < 1e15) {
        std::snprintf(buffer, sizeof buffer, "%.0f", value);
        return buffer;
    }
    for (int digits = 1; digits <= 17; ++digits) {
        std::snprintf(buffer, sizeof buffer, "%.*g", digits, value);
        if (std::strtod(buffer, nullptr) == value)
            break;
    }
    return buffer;
}

} // namespace cadhost

using namespace cadhost;

extern "C" {

int acutPrintf(const char* format, ...) {
    if (!format)
        return 0;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    if (length < 0) {
        va_end(again);
        return 0;
    }
    std::string text(static_cast<size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    hostPrint(text);
    return length;
}

resbuf* acutNewRb(int rtype) {
    return allocateRb(static_cast<short>(rtype));
}

int acutRelRb(resbuf* chain) {
    while (chain) {
        resbuf* next = chain->rbnext;
        if (kindOfCode(chain->restype) == ValueKind::Text)
            std::free(chain->resval.rstring);
        std::free(chain);
        chain = next;
    }
    return RTNORM;
}

resbuf* acutBuildList(int rtype, ...) {
    va_list args;
    va_start(args, rtype);
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    bool failed = false;
    for (int type = rtype; type != 0 && type != RTNONE; type = va_arg(args, int)) {
        ValueKind kind = kindOfCode(type);
        // An unknown type leaves the rest of the arguments unreadable: nothing can be built.
        if (kind == ValueKind::Unsupported) {
            failed = true;
            break;
        }
        resbuf* rb = allocateRb(static_cast<short>(type));
        if (!rb) {
            failed = true;
            break;
        }
        (tail ? tail->rbnext : head) = rb;
        tail = rb;
        switch (kind) {
        case ValueKind::Text: {
            const char* text = va_arg(args, const char*);
            rb->resval.rstring = duplicateString(text ? text : "");
            failed = !rb->resval.rstring;
            break;
        }
        case ValueKind::Real:
            rb->resval.rreal = va_arg(args, double);
            break;
        case ValueKind::Point2:
        case ValueKind::Point3: {
            const double* point = va_arg(args, const double*);
            int count = kind == ValueKind::Point2 ? 2 : 3;
            for (int i = 0; point && i < count; ++i)
                rb->resval.rpoint[i] = point[i];
            failed = !point;
            break;
        }
        case ValueKind::Short:
            rb->resval.rint = static_cast<short>(va_arg(args, int));
            break;
        case ValueKind::Long:
            rb->resval.rlong = va_arg(args, Adesk::Int32);
            break;
        default:
            break;
        }
        if (failed)
            break;
    }
    va_end(args);
    if (failed) {
        acutRelRb(head);
        return nullptr;
    }
    return head;
}

} // extern "C"
