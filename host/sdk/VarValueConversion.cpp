// The conversions of variable values: from and to result buffers, command-line text and JSON.
#include "VariableTable.h"

#include "adscodes.h"
#include "ResbufUtil.h"
#include "VarText.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace cadhost {

namespace {

constexpr double kExponentLimit = 1e10;

// Splits coordinates at blanks, ",", ";" and the extra separator.
std::vector<std::string> splitCoordinates(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::string current;
    auto isSep = [&](char c) {
        return c == ' ' || c == '\t' || c == ',' || c == ';' || (separator != '.' && c == separator);
    };
    for (char c : text) {
        if (isSep(c)) {
            if (!current.empty())
                parts.push_back(current);
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.empty())
        parts.push_back(current);
    return parts;
}

const char* typeWord(VarType type) {
    switch (type) {
    case VarType::Real:
        return "a real number";
    case VarType::Int:
        return "an integer";
    case VarType::Long:
        return "a long integer";
    case VarType::String:
        return "a text";
    case VarType::Point2:
        return "a 2D point";
    case VarType::Point3:
        return "a 3D point";
    }
    return "a value";
}

std::string requiresMessage(const VarDef& def) {
    return def.name + " requires " + typeWord(def.type) + ".";
}

} // namespace

bool valueFromResbuf(const VarDef& def, const resbuf& rb, VarValue& value, std::string& message) {
    VarValue v;
    v.type = def.type;
    bool ok = false;
    switch (def.type) {
    case VarType::Real:
        ok = rb.restype == RTREAL || rb.restype == RTANG;
        if (ok)
            v.real[0] = rb.resval.rreal;
        else if (rb.restype == RTSHORT || rb.restype == RTLONG) {
            // Whole numbers are taken for reals, as a typed "5" is.
            v.real[0] = rb.restype == RTSHORT ? rb.resval.rint : rb.resval.rlong;
            ok = true;
        }
        break;
    case VarType::Int:
        ok = rb.restype == RTSHORT;
        v.integer = rb.resval.rint;
        break;
    case VarType::Long:
        ok = rb.restype == RTLONG || rb.restype == RTSHORT;
        v.integer = rb.restype == RTLONG ? rb.resval.rlong : rb.resval.rint;
        break;
    case VarType::String:
        ok = rb.restype == RTSTR;
        v.text = rb.resval.rstring ? rb.resval.rstring : "";
        break;
    case VarType::Point2:
    case VarType::Point3:
        ok = rb.restype == RTPOINT || rb.restype == RT3DPOINT;
        v.real[0] = rb.resval.rpoint[0];
        v.real[1] = rb.resval.rpoint[1];
        v.real[2] = def.type == VarType::Point3 && rb.restype == RT3DPOINT ? rb.resval.rpoint[2] : 0;
        break;
    }
    if (!ok) {
        message = requiresMessage(def);
        return false;
    }
    value = std::move(v);
    return true;
}

bool valueToResbuf(const VarValue& value, resbuf& rb) {
    rb.rbnext = nullptr;
    switch (value.type) {
    case VarType::Real:
        rb.restype = RTREAL;
        rb.resval.rreal = value.real[0];
        return true;
    case VarType::Int:
        rb.restype = RTSHORT;
        rb.resval.rint = static_cast<short>(value.integer);
        return true;
    case VarType::Long:
        rb.restype = RTLONG;
        rb.resval.rlong = static_cast<Adesk::Int32>(value.integer);
        return true;
    case VarType::String:
        rb.restype = RTSTR;
        rb.resval.rstring = duplicateString(value.text);
        return rb.resval.rstring != nullptr;
    case VarType::Point2:
    case VarType::Point3:
        rb.restype = value.type == VarType::Point2 ? RTPOINT : RT3DPOINT;
        for (int i = 0; i < 3; ++i)
            rb.resval.rpoint[i] = value.real[i];
        if (value.type == VarType::Point2)
            rb.resval.rpoint[2] = 0;
        return true;
    }
    return false;
}

bool valueFromText(const VarDef& def, const std::string& text, char separator, VarValue& value,
                   std::string& message) {
    VarValue v;
    v.type = def.type;
    switch (def.type) {
    case VarType::Real:
        if (!parseReal(text, v.real[0])) {
            message = requiresMessage(def);
            return false;
        }
        break;
    case VarType::Int:
    case VarType::Long: {
        long long lo, hi;
        integerLimits(def.type, lo, hi);
        if (!parseInteger(text, v.integer)) {
            message = requiresMessage(def);
            return false;
        }
        if (v.integer < lo || v.integer > hi) {
            message =
                "Requires an integer between " + std::to_string(lo) + " and " + std::to_string(hi) + ".";
            return false;
        }
        break;
    }
    case VarType::String: {
        std::string t = trim(text);
        if (t.size() >= 2 && t.front() == '"' && t.back() == '"')
            t = t.substr(1, t.size() - 2);
        v.text = t;
        break;
    }
    case VarType::Point2:
    case VarType::Point3: {
        std::vector<std::string> parts = splitCoordinates(text, separator);
        size_t wanted = def.type == VarType::Point2 ? 2 : 3;
        bool ok = parts.size() == wanted || (def.type == VarType::Point3 && parts.size() == 2);
        for (size_t i = 0; ok && i < parts.size(); ++i)
            ok = parseReal(parts[i], v.real[i]);
        if (!ok) {
            message = requiresMessage(def);
            return false;
        }
        break;
    }
    }
    value = std::move(v);
    return true;
}

std::string valueToText(const VarValue& value, int precision, char separator) {
    // Fixed-point unless a number is too large for it; a point's coordinates go one way together.
    auto real = [precision](double v, bool fixed) {
        char buffer[128];
        if (fixed)
            std::snprintf(buffer, sizeof buffer, "%.*f", precision, v);
        else
            std::snprintf(buffer, sizeof buffer, "%E", v);
        return std::string(buffer);
    };
    switch (value.type) {
    case VarType::Real:
        return real(value.real[0], std::fabs(value.real[0]) < kExponentLimit);
    case VarType::Int:
    case VarType::Long:
        return std::to_string(value.integer);
    case VarType::String:
        return value.text;
    case VarType::Point2:
    case VarType::Point3: {
        int count = value.type == VarType::Point2 ? 2 : 3;
        bool small = true;
        for (int i = 0; i < count; ++i)
            small = small && std::fabs(value.real[i]) < kExponentLimit;
        std::string out;
        for (int i = 0; i < count; ++i) {
            if (i)
                out += separator;
            out += real(value.real[i], small);
        }
        return out;
    }
    }
    return {};
}

nlohmann::json valueToJson(const VarValue& value) {
    switch (value.type) {
    case VarType::Real:
        return value.real[0];
    case VarType::Int:
    case VarType::Long:
        return value.integer;
    case VarType::String:
        return value.text;
    case VarType::Point2:
        return nlohmann::json::array({value.real[0], value.real[1]});
    case VarType::Point3:
        return nlohmann::json::array({value.real[0], value.real[1], value.real[2]});
    }
    return nullptr;
}

bool valueFromJson(const VarDef& def, const nlohmann::json& json, VarValue& value, std::string& message) {
    VarValue v;
    v.type = def.type;
    bool ok = false;
    switch (def.type) {
    case VarType::Real:
        ok = json.is_number();
        if (ok)
            v.real[0] = json.get<double>();
        break;
    case VarType::Int:
    case VarType::Long:
        ok = json.is_number_integer();
        if (ok)
            v.integer = json.is_number_unsigned() ? static_cast<long long>(std::min<unsigned long long>(
                                                        json.get<unsigned long long>(), LLONG_MAX))
                                                  : json.get<long long>();
        break;
    case VarType::String:
        ok = json.is_string();
        if (ok)
            v.text = json.get<std::string>();
        break;
    case VarType::Point2:
    case VarType::Point3: {
        size_t n = def.type == VarType::Point2 ? 2 : 3;
        ok = json.is_array() && json.size() == n;
        for (size_t i = 0; ok && i < n; ++i) {
            ok = json[i].is_number();
            if (ok)
                v.real[i] = json[i].get<double>();
        }
        break;
    }
    }
    // The callers name the variable; the message is the sentence behind the name.
    if (!ok) {
        message = std::string("Value must be ") + typeWord(def.type) + ".";
        return false;
    }
    if (std::string why = admitValue(def, v); !why.empty()) {
        message = why;
        return false;
    }
    value = std::move(v);
    return true;
}
} // namespace cadhost
