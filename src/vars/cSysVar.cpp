// cSysVar: value texts, parsing of typed and file texts, and reads and writes through the host.
#include "cSysVar.h"

#include "CNumericScope.h"
#include "cSysVarList.h"
#include "TextHelpers.h"

#include "acedads.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale.h>

namespace {

constexpr char kDefaultSeparator = ' ';
constexpr int kDefaultPrecision = 4;

bool scanReal(const std::string& text, double& value) {
    CNumericScope numeric;
    return std::sscanf(text.c_str(), "%lf", &value) == 1;
}

// "%d" and "%ld" as 32-bit scans; a number beyond 32 bits keeps its low bits.
bool scanInteger(const std::string& text, std::int32_t& value) {
    CNumericScope numeric;
    long long wide = 0;
    if (std::sscanf(text.c_str(), "%lld", &wide) != 1)
        return false;
    value = static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<unsigned long long>(wide)));
    return true;
}

bool belowLimit(double v) {
    return std::fabs(v) < kFixedFormatLimit;
}

char* copyString(const std::string& text) {
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

} // namespace

cSysVar::cSysVar(const cSysVarList* owner_) : owner(owner_) {}

cSysVar::~cSysVar() {
    if (valueType == ValueType::String) {
        freeNewString();
        freeCurrentString();
    }
}

char cSysVar::pointSeparator() const {
    return owner ? owner->pointSeparator : kDefaultSeparator;
}

int cSysVar::valuePrecision() const {
    return owner ? owner->valuePrecision : kDefaultPrecision;
}

void cSysVar::freeNewString() {
    std::free(newValue.rstring);
    newValue.rstring = nullptr;
}

void cSysVar::freeCurrentString() {
    std::free(currentValue.rstring);
    currentValue.rstring = nullptr;
}

bool cSysVar::parseAvlFields(const std::string& themeField, const std::string& nameField,
                             const std::string& modeField, const std::string& descriptionField) {
    name = nameField;
    description = descriptionField;
    themeIndex = static_cast<int>(std::strtol(themeField.c_str(), nullptr, 10));
    if (themeIndex == 0)
        return false;
    if (trimBoth(name).empty())
        return false;
    std::string mode = modeField;
    trimLeft(mode);
    // Both marks are single bytes, so a byte test equals a test of the first two characters.
    if (mode.size() < 2)
        return false;
    if (mode[0] == '+')
        flags &= ~varflag::isReadOnly;
    else if (mode[0] == '-')
        flags |= varflag::isReadOnly;
    else
        return false;
    if (mode[1] == '+')
        flags |= varflag::isDrawingSpecific;
    else if (mode[1] == '-')
        flags &= ~varflag::isDrawingSpecific;
    else
        return false;
    trimBoth(description);
    return true;
}

bool cSysVar::readFromHost() {
    resbuf buffer{};
    if (acedGetVar(name.c_str(), &buffer) != RTNORM) {
        flags |= varflag::isUnreadable;
        return false;
    }
    const auto type = static_cast<ValueType>(buffer.restype);
    if (valueType != ValueType::None && type != valueType) {
        // The host changed the variable's kind: what both values held is of the old kind, and a
        // string pointer must not be read as a number nor a number freed as a pointer.
        if (valueType == ValueType::String) {
            freeNewString();
            freeCurrentString();
        }
        newValue = ads_u_val{};
        currentValue = ads_u_val{};
        newText.clear();
    }
    valueType = type;
    switch (type) {
    case ValueType::Real:
        currentValue.rreal = buffer.resval.rreal;
        break;
    case ValueType::Point2d:
    case ValueType::Point3d:
        for (int i = 0; i < 3; ++i)
            currentValue.rpoint[i] = buffer.resval.rpoint[i];
        break;
    case ValueType::Integer:
        currentValue.rint = buffer.resval.rint;
        break;
    case ValueType::LongInt:
        currentValue.rlong = buffer.resval.rlong;
        break;
    case ValueType::String:
        if (currentValue.rstring != buffer.resval.rstring)
            freeCurrentString();
        currentValue.rstring = buffer.resval.rstring;
        break;
    default:
        break;
    }
    formatListValue(currentValue, currentText);
    if (!newText.empty())
        compareTexts();
    return true;
}

bool cSysVar::writeToHost() {
    if (isUnreadable() || isReadOnly() || !isMarkedToSet() || newText.empty())
        return false;
    resbuf buffer{};
    buffer.rbnext = nullptr;
    buffer.restype = static_cast<short>(valueType);
    buffer.resval = newValue;
    if (acedSetVar(name.c_str(), &buffer) == RTNORM) {
        flags |= varflag::setSucceeded;
        return true;
    }
    flags |= varflag::setFailed;
    return false;
}

bool cSysVar::formatListValue(const ads_u_val& value, std::string& out) const {
    int places = valuePrecision();
    if (places < 0)
        places = kDefaultPrecision;
    const char sep = pointSeparator();
    switch (valueType) {
    case ValueType::Real:
        out =
            belowLimit(value.rreal) ? formatText("%.*f", places, value.rreal) : formatText("%E", value.rreal);
        return true;
    case ValueType::Point2d: {
        const double* p = value.rpoint;
        out = belowLimit(p[0]) && belowLimit(p[1]) ? formatText("%.*f%c%.*f", places, p[0], sep, places, p[1])
                                                   : formatText("%E%c%E", p[0], sep, p[1]);
        return true;
    }
    case ValueType::Point3d: {
        const double* p = value.rpoint;
        out = belowLimit(p[0]) && belowLimit(p[1]) && belowLimit(p[2])
                  ? formatText("%.*f%c%.*f%c%.*f", places, p[0], sep, places, p[1], sep, places, p[2])
                  : formatText("%E%c%E%c%E", p[0], sep, p[1], sep, p[2]);
        return true;
    }
    case ValueType::Integer:
        out = formatText("%d", static_cast<int>(value.rint));
        return true;
    case ValueType::LongInt:
        out = formatText("%d", static_cast<int>(value.rlong));
        return true;
    case ValueType::String:
        if (value.rstring)
            out = std::string("\"") + value.rstring + "\"";
        return true;
    default:
        return false;
    }
}

void cSysVar::formatEditValue(std::string& out, const ads_u_val& value) const {
    if (valueType == ValueType::String) {
        if (value.rstring)
            out = value.rstring;
        return;
    }
    formatListValue(value, out);
}

void cSysVar::editText(std::string& out) const {
    if (!newText.empty()) {
        out = newText;
        formatEditValue(out, newValue);
    } else {
        out = currentText;
        formatEditValue(out, currentValue);
    }
}

void cSysVar::compareTexts() {
    compareColour = compareText(newText, currentText) == 0 ? kColourEqual : kColourDiffers;
}

bool cSysVar::refreshNewText() {
    const bool hasText = formatListValue(newValue, newText);
    if (!newText.empty())
        compareTexts();
    flags |= varflag::inUserList;
    return hasText;
}

int cSysVar::splitPointText(std::string& token1, std::string& token2, std::string& token3,
                            const std::string& text) const {
    token1.clear();
    token2.clear();
    token3.clear();
    if (text.empty())
        return 0;
    std::string rest = text;
    for (char c : {'#', ',', ';', ':', pointSeparator()})
        replaceChar(rest, c, ' ');
    if (trimLeft(rest).empty())
        return 0;
    rest += ' ';
    std::string* tokens[] = {&token1, &token2, &token3};
    int count = 0;
    while (count < 3) {
        const int blank = findChar(rest, ' ', 0);
        if (blank < 0)
            break;
        *tokens[count++] = left(rest, blank);
        rest = mid(rest, blank + 1);
        trimLeft(rest);
        if (findChar(rest, ' ', 0) < 0)
            break;
    }
    return count;
}

bool cSysVar::parseNewValue(const std::string& text, bool forFile) {
    switch (valueType) {
    case ValueType::Real: {
        double v = 0;
        if (scanReal(text, v))
            newValue.rreal = v;
        return true;
    }
    case ValueType::Integer: {
        std::int32_t v = 0;
        if (scanInteger(text, v))
            newValue.rint = static_cast<short>(static_cast<std::uint16_t>(v));
        return true;
    }
    case ValueType::LongInt: {
        std::int32_t v = 0;
        if (scanInteger(text, v))
            newValue.rlong = v;
        return true;
    }
    case ValueType::Point2d: {
        if (text.empty() && !forFile)
            return true;
        std::string t1, t2, t3;
        double x = 0, y = 0;
        if (splitPointText(t1, t2, t3, text) < 2 || !scanReal(t1, x) || !scanReal(t2, y))
            return false;
        newValue.rpoint[0] = x;
        newValue.rpoint[1] = y;
        newValue.rpoint[2] = 0;
        return true;
    }
    case ValueType::Point3d: {
        std::string t1, t2, t3;
        double x = 0, y = 0, z = 0;
        if (splitPointText(t1, t2, t3, text) < 3 || t1.empty() || t2.empty() || t3.empty())
            return false;
        if (!scanReal(t1, x) || !scanReal(t2, y) || !scanReal(t3, z))
            return false;
        newValue.rpoint[0] = x;
        newValue.rpoint[1] = y;
        newValue.rpoint[2] = z;
        return true;
    }
    case ValueType::String: {
        freeNewString();
        if (text.empty() && !forFile)
            return true;
        std::string unquoted = text;
        removeChar(unquoted, '"');
        newValue.rstring = copyString(unquoted);
        return true;
    }
    default:
        return true;
    }
}

bool cSysVar::applyEditText(const std::string& text) {
    if (isReadOnly())
        return false;
    if (!parseNewValue(text, false))
        return false;
    if (text.empty()) {
        newText.clear();
        return true;
    }
    flags |= varflag::inUserList;
    refreshNewText();
    return true;
}

bool cSysVar::applyFileText(const std::string& text) {
    flags |= varflag::inUserList;
    if (!parseNewValue(text, true))
        return false;
    formatListValue(newValue, newText);
    if (!newText.empty())
        compareTexts();
    return true;
}

bool cSysVar::clearNewValue() {
    flags &= ~(varflag::inUserList | varflag::isSelected);
    if (valueType == ValueType::String)
        freeNewString();
    newValue = ads_u_val{};
    newText.clear();
    return true;
}
