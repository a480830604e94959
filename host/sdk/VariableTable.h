// The host's table of system variables: definitions with their rules, read from hostvars.tsv.
#pragma once
#include "adsdef.h"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cadhost {

enum class VarType { Real, Int, Long, String, Point2, Point3 };

// A value of one variable. Int and Long use integer, the point types real[0..2], String text.
struct VarValue {
    VarType type = VarType::Real;
    double real[3] = {0, 0, 0};
    long long integer = 0;
    std::string text;

    bool operator==(const VarValue& o) const;
};

// Maps keyed by upper-case variable name. They are searched with a std::string_view, so that a
// lookup with the name a module passes makes no copy of it.
struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>{}(name); }
};
template <class T> using NameMap = std::unordered_map<std::string, T, NameHash, std::equal_to<>>;
// Values by variable name: a drawing's, and the session's globals.
using VarValues = NameMap<VarValue>;

// Variables whose value the host computes when asked instead of storing it.
enum class Computed { None, DwgName, DwgPrefix, CDate, Date, DwgTitled };

struct VarDef {
    std::string name; // upper case
    VarType type = VarType::Real;
    VarValue defaultValue;
    bool readOnly = false;
    bool global = false;
    Computed computed = Computed::None;

    // Rules, checked in this order when a value is set: normalising (mod2pi, step), then bounds.
    bool hasMin = false, hasMax = false;
    double min = 0, max = 0;
    bool minExclusive = false;      // "above": the bound itself is refused
    bool clampToBounds = false;     // "clamp": out of bounds is taken at the nearest bound
    std::vector<long long> allowed; // "values": the only integers taken
    double step = 0;                // "step": reals are rounded to a multiple of it
    bool modulo2Pi = false;         // "mod2pi": angles are stored in [0, 2π)
    bool notEmpty = false;          // "nonempty"
    bool oneCharacter = false;      // "char": exactly one (UTF-8) character
    size_t maxLength = 0;           // "maxlen": at most this many bytes (0: no limit)

    // "dxf CODE [since ACxxxx]": the drawing file keeps the value as header variable $NAME with this
    // group code (a point as CODE, CODE+10, CODE+20); the header has it from that version on.
    int dxfCode = 0;     // 0: no header variable; the host keeps the value in a record of its own
    int dxfSince = 1009; // AC1009 (R12)

    size_t index = 0; // place in the table's name order

    // Nobody but the host sets it: marked read-only, or computed when asked.
    bool isReadOnly() const { return readOnly || computed != Computed::None; }
    // Each drawing keeps its own value: neither global nor computed.
    bool isDrawingVariable() const { return !global && computed == Computed::None; }
};

class VariableTable {
public:
    // Reads the table file. Lines that cannot be read are skipped and described in report (one
    // line each, with their line number); false only when the file itself cannot be read.
    bool load(const std::string& path, std::string& report);
    // The same from text; source names the text in report lines.
    void parse(const std::string& content, const std::string& source, std::string& report);

    bool isEmpty() const { return m_defs.empty(); }
    // Case and surrounding blanks ignored; null when unknown.
    const VarDef* find(std::string_view name) const;
    // In name order.
    const std::vector<VarDef>& definitions() const { return m_defs; }

private:
    std::vector<VarDef> m_defs;
    NameMap<size_t> m_index;
    mutable size_t m_lastFound = 0; // the definition find returned last
};

// Applies the rules of def to value: normalises it and returns an empty text when it is taken,
// else the host's refusal ("Value must be between 0 and 8.").
std::string admitValue(const VarDef& def, VarValue& value);

// Takes a value from a resbuf of a type that suits the variable; else false with the refusal.
bool valueFromResbuf(const VarDef& def, const resbuf& rb, VarValue& value, std::string& message);
// Fills rb (type and value; strings are malloc'ed) from value.
bool valueToResbuf(const VarValue& value, resbuf& rb);

// Parses text typed on the command line by the variable's type. separator is the drawing's point
// separator, accepted between coordinates besides blanks, "," and ";".
bool valueFromText(const VarDef& def, const std::string& text, char separator, VarValue& value,
                   std::string& message);
// The text form of a value: reals and points with precision decimals ("%E" from 1e10 on),
// coordinates joined by separator.
std::string valueToText(const VarValue& value, int precision, char separator);

// JSON form in drawing and profile files: number, integer, string or array of coordinates.
nlohmann::json valueToJson(const VarValue& value);
// False with the refusal as a sentence without the variable's name, which the caller puts before it.
bool valueFromJson(const VarDef& def, const nlohmann::json& json, VarValue& value, std::string& message);

std::string upperCase(std::string text);

// True when the variable's type can stand under its header group code: a number under a numeric
// code, a point under 10, a text under a text code, and a one-character text under 70 (DIMDSEP,
// kept as the character's code).
bool headerCodeFits(const VarDef& def);

} // namespace cadhost
