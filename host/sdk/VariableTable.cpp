// The host's variable table: reading hostvars.tsv and the rules of each variable.
#include "VariableTable.h"

#include "adscodes.h"
#include "DxfTags.h"
#include "ResbufUtil.h"
#include "VarText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <sstream>

namespace cadhost {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

size_t utf8Length(const std::string& text) {
    size_t n = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80)
            ++n;
    return n;
}

std::string numberText(double v) {
    return realText(v);
}

// Tokens of a table line: blank-separated words; a double-quoted word may hold blanks and \" \\.
bool tokenize(const std::string& line, std::vector<std::string>& words, std::vector<bool>& quoted) {
    size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
            ++i;
            continue;
        }
        std::string word;
        if (line[i] == '"') {
            ++i;
            bool closed = false;
            while (i < line.size()) {
                char c = line[i++];
                if (c == '\\' && i < line.size()) {
                    word += line[i++];
                } else if (c == '"') {
                    closed = true;
                    break;
                } else {
                    word += c;
                }
            }
            if (!closed)
                return false;
            quoted.push_back(true);
        } else {
            while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r')
                word += line[i++];
            quoted.push_back(false);
        }
        words.push_back(word);
    }
    return true;
}

bool parseType(const std::string& word, VarType& type) {
    static const std::pair<const char*, VarType> names[] = {
        {"real", VarType::Real},     {"int", VarType::Int},       {"long", VarType::Long},
        {"string", VarType::String}, {"point2", VarType::Point2}, {"point3", VarType::Point3}};
    for (auto& [n, t] : names)
        if (word == n) {
            type = t;
            return true;
        }
    return false;
}

bool parseComputed(const std::string& word, Computed& c) {
    static const std::pair<const char*, Computed> names[] = {{"dwgname", Computed::DwgName},
                                                             {"dwgprefix", Computed::DwgPrefix},
                                                             {"cdate", Computed::CDate},
                                                             {"date", Computed::Date},
                                                             {"dwgtitled", Computed::DwgTitled}};
    for (auto& [n, v] : names)
        if (word == n) {
            c = v;
            return true;
        }
    return false;
}

// Reads the rule words from index i on; an empty text when all were understood.
std::string parseRules(const std::vector<std::string>& w, size_t i, VarDef& def) {
    auto number = [&](size_t at, double& out) { return at < w.size() && parseReal(w[at], out); };
    while (i < w.size()) {
        const std::string& r = w[i];
        if (r == "range" || r == "clamp") {
            if (!number(i + 1, def.min) || !number(i + 2, def.max) || def.min > def.max)
                return "rule '" + r + "' needs two bounds, low first";
            def.hasMin = def.hasMax = true;
            def.clampToBounds = r == "clamp";
            i += 3;
        } else if (r == "min" || r == "above") {
            if (!number(i + 1, def.min))
                return "rule '" + r + "' needs a bound";
            def.hasMin = true;
            def.minExclusive = r == "above";
            i += 2;
        } else if (r == "values") {
            ++i;
            long long v;
            while (i < w.size() && parseInteger(w[i], v)) {
                def.allowed.push_back(v);
                ++i;
            }
            if (def.allowed.empty())
                return "rule 'values' needs at least one integer";
        } else if (r == "step") {
            if (!number(i + 1, def.step) || def.step <= 0)
                return "rule 'step' needs a positive step";
            i += 2;
        } else if (r == "maxlen") {
            long long n;
            if (i + 1 >= w.size() || !parseInteger(w[i + 1], n) || n <= 0)
                return "rule 'maxlen' needs a positive length";
            def.maxLength = static_cast<size_t>(n);
            i += 2;
        } else if (r == "computed") {
            if (i + 1 >= w.size() || !parseComputed(w[i + 1], def.computed))
                return "rule 'computed' needs one of dwgname, dwgprefix, cdate, date, dwgtitled";
            i += 2;
        } else if (r == "mod2pi") {
            def.modulo2Pi = true;
            ++i;
        } else if (r == "nonempty") {
            def.notEmpty = true;
            ++i;
        } else if (r == "char") {
            def.oneCharacter = true;
            ++i;
        } else if (r == "dxf") {
            long long code;
            if (i + 1 >= w.size() || !parseInteger(w[i + 1], code) || code < 1 || code > 1071)
                return "rule 'dxf' needs the header variable's group code";
            def.dxfCode = static_cast<int>(code);
            i += 2;
            if (i + 1 < w.size() && w[i] == "since") {
                def.dxfSince = dxf::versionNumber(w[i + 1]);
                if (def.dxfSince == 0)
                    return "rule 'dxf ... since' needs a version from AC1009 to AC1032";
                i += 2;
            }
        } else {
            return "unknown rule '" + r + "'";
        }
    }
    bool numeric = def.type == VarType::Real || def.type == VarType::Int || def.type == VarType::Long;
    if ((def.hasMin || def.hasMax || !def.allowed.empty() || def.step > 0 || def.modulo2Pi) && !numeric)
        return "numeric rule on a variable that is not a number";
    if ((def.notEmpty || def.oneCharacter || def.maxLength) && def.type != VarType::String)
        return "text rule on a variable that is not a text";
    if (def.dxfCode && !headerCodeFits(def))
        return "rule 'dxf': group code " + std::to_string(def.dxfCode) +
               " does not hold a value of this type";
    if (def.dxfCode && !def.isDrawingVariable())
        return "rule 'dxf' on a variable that a drawing does not keep";
    return {};
}

std::string boundsMessage(const VarDef& def) {
    if (def.hasMin && def.hasMax)
        return "Value must be between " + numberText(def.min) + " and " + numberText(def.max) + ".";
    if (def.minExclusive)
        return def.min == 0 ? "Value must be positive and nonzero."
                            : "Value must be greater than " + numberText(def.min) + ".";
    return def.min == 0 ? "Value must be zero or positive."
                        : "Value must be at least " + numberText(def.min) + ".";
}

} // namespace

std::string trim(const std::string& text) {
    size_t b = text.find_first_not_of(" \t\r\n");
    if (b == std::string::npos)
        return {};
    size_t e = text.find_last_not_of(" \t\r\n");
    return text.substr(b, e - b + 1);
}

bool parseReal(const std::string& text, double& out) {
    std::string t = trim(text);
    if (t.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    double v = std::strtod(t.c_str(), &end);
    if (*end != '\0' || errno == ERANGE)
        return false;
    out = v;
    return true;
}

bool parseInteger(const std::string& text, long long& out) {
    std::string t = trim(text);
    if (t.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(t.c_str(), &end, 10);
    if (*end != '\0' || errno == ERANGE)
        return false;
    out = v;
    return true;
}

bool integerLimits(VarType type, long long& low, long long& high) {
    if (type == VarType::Int) {
        low = SHRT_MIN;
        high = SHRT_MAX;
        return true;
    }
    if (type == VarType::Long) {
        low = INT32_MIN;
        high = INT32_MAX;
        return true;
    }
    return false;
}

bool VarValue::operator==(const VarValue& o) const {
    if (type != o.type)
        return false;
    switch (type) {
    case VarType::Real:
        return real[0] == o.real[0];
    case VarType::Point2:
        return real[0] == o.real[0] && real[1] == o.real[1];
    case VarType::Point3:
        return real[0] == o.real[0] && real[1] == o.real[1] && real[2] == o.real[2];
    case VarType::Int:
    case VarType::Long:
        return integer == o.integer;
    case VarType::String:
        return text == o.text;
    }
    return false;
}

bool headerCodeFits(const VarDef& def) {
    const int c = def.dxfCode;
    const bool integerCode =
        (c >= 60 && c <= 79) || (c >= 90 && c <= 99) || (c >= 270 && c <= 299) || (c >= 370 && c <= 389);
    const bool textCode = (c >= 1 && c <= 9) || (c >= 300 && c <= 309);
    switch (def.type) {
    case VarType::Int:
    case VarType::Long:
        return integerCode;
    case VarType::Real:
        return (c >= 40 && c <= 59) || (c >= 140 && c <= 149);
    case VarType::Point2:
    case VarType::Point3:
        return c == 10;
    case VarType::String:
        return textCode || (c == 70 && def.oneCharacter);
    }
    return false;
}

std::string upperCase(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 32);
    return text;
}

bool VariableTable::load(const std::string& path, std::string& report) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        report = "Cannot read the variable table " + path + ".";
        return false;
    }
    std::ostringstream content;
    content << in.rdbuf();
    parse(content.str(), path, report);
    return true;
}

void VariableTable::parse(const std::string& content, const std::string& source, std::string& report) {
    std::istringstream in(content);
    std::string line;
    int number = 0;
    auto bad = [&](const std::string& why) {
        report += source + " line " + std::to_string(number) + ": " + why + "\n";
    };
    while (std::getline(in, line)) {
        ++number;
        std::string t = trim(line);
        if (t.empty() || t[0] == ';')
            continue;
        std::vector<std::string> w;
        std::vector<bool> quoted;
        if (!tokenize(t, w, quoted)) {
            bad("unclosed quote");
            continue;
        }
        if (w.size() < 5) {
            bad("needs name, type, default, mode and scope");
            continue;
        }
        VarDef def;
        def.name = upperCase(w[0]);
        if (!parseType(w[1], def.type)) {
            bad("unknown type '" + w[1] + "'");
            continue;
        }
        if (w[3] != "rw" && w[3] != "ro") {
            bad("mode must be rw or ro, not '" + w[3] + "'");
            continue;
        }
        def.readOnly = w[3] == "ro";
        if (w[4] != "drawing" && w[4] != "global") {
            bad("scope must be drawing or global, not '" + w[4] + "'");
            continue;
        }
        def.global = w[4] == "global";
        if (std::string why = parseRules(w, 5, def); !why.empty()) {
            bad(why);
            continue;
        }
        if (def.type == VarType::String && !quoted[2]) {
            bad("a text default stands in double quotes");
            continue;
        }
        std::string message;
        // The default is read the way a typed value is, with "," between coordinates.
        VarDef loose = def;
        if (!valueFromText(loose, w[2], ',', def.defaultValue, message)) {
            bad("default '" + w[2] + "': " + message);
            continue;
        }
        if (def.computed == Computed::None) {
            if (std::string why = admitValue(def, def.defaultValue); !why.empty()) {
                bad("default '" + w[2] + "' breaks its rule: " + why);
                continue;
            }
        }
        if (m_index.count(def.name)) {
            bad("variable " + def.name + " is defined twice");
            continue;
        }
        m_index[def.name] = m_defs.size();
        m_defs.push_back(std::move(def));
    }
    std::sort(m_defs.begin(), m_defs.end(), [](const VarDef& a, const VarDef& b) { return a.name < b.name; });
    m_index.clear();
    for (size_t i = 0; i < m_defs.size(); ++i) {
        m_defs[i].index = i;
        m_index[m_defs[i].name] = i;
    }
}

// How many definitions after the last one found a lookup tries before it hashes.
constexpr size_t kNameOrderReach = 4;

const VarDef* VariableTable::find(std::string_view name) const {
    const size_t first = name.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return nullptr;
    name = name.substr(first, name.find_last_not_of(" \t\r\n") - first + 1);
    // Modules ask by the upper-case name nearly always, and a module that reads or sets its
    // whole list asks in name order, skipping some (the read-only ones when it sets): the few
    // definitions after the last one found are tried first, which walks the table in memory
    // order instead of hashing into it at random.
    const bool upper = std::none_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    if (upper)
        for (size_t i = m_lastFound + 1; i < m_defs.size() && i <= m_lastFound + kNameOrderReach; ++i)
            if (m_defs[i].name == name) {
                m_lastFound = i;
                return &m_defs[i];
            }
    auto it = upper ? m_index.find(name) : m_index.find(upperCase(std::string(name)));
    if (it == m_index.end())
        return nullptr;
    m_lastFound = it->second;
    return &m_defs[it->second];
}

std::string admitValue(const VarDef& def, VarValue& value) {
    switch (def.type) {
    case VarType::Real: {
        double& v = value.real[0];
        if (!std::isfinite(v))
            return "Value must be a finite number.";
        if (def.modulo2Pi) {
            v = std::fmod(v, kTwoPi);
            if (v < 0)
                v += kTwoPi;
            if (v >= kTwoPi)
                v = 0;
        }
        if (def.step > 0)
            v = std::round(v / def.step) * def.step;
        bool low = def.hasMin && (def.minExclusive ? v <= def.min : v < def.min);
        bool high = def.hasMax && v > def.max;
        if ((low || high) && def.clampToBounds)
            v = low ? def.min : def.max;
        else if (low || high)
            return boundsMessage(def);
        return {};
    }
    case VarType::Int:
    case VarType::Long: {
        long long& v = value.integer;
        long long lo, hi;
        integerLimits(def.type, lo, hi);
        if (v < lo || v > hi)
            return "Requires an integer between " + std::to_string(lo) + " and " + std::to_string(hi) + ".";
        if (!def.allowed.empty() &&
            std::find(def.allowed.begin(), def.allowed.end(), v) == def.allowed.end()) {
            std::string list;
            for (size_t i = 0; i < def.allowed.size(); ++i) {
                if (i)
                    list += i + 1 == def.allowed.size() ? " or " : ", ";
                list += std::to_string(def.allowed[i]);
            }
            return "Value must be " + list + ".";
        }
        bool low = def.hasMin && (def.minExclusive ? v <= def.min : v < def.min);
        bool high = def.hasMax && v > def.max;
        if ((low || high) && def.clampToBounds)
            v = static_cast<long long>(low ? std::ceil(def.min) : std::floor(def.max));
        else if (low || high)
            return boundsMessage(def);
        return {};
    }
    case VarType::String:
        if (def.notEmpty && value.text.empty())
            return "Value must not be empty.";
        if (def.oneCharacter && utf8Length(value.text) != 1)
            return "Value must be a single character.";
        if (def.maxLength && value.text.size() > def.maxLength)
            return "Value must not be longer than " + std::to_string(def.maxLength) + " characters.";
        return {};
    case VarType::Point2:
    case VarType::Point3:
        for (int i = 0; i < 3; ++i)
            if (!std::isfinite(value.real[i]))
                return "Value must be a finite number.";
        return {};
    }
    return {};
}

} // namespace cadhost
