// GlobalsFile: the host's global variables in the profile folder, read leniently and written whole.
#include "GlobalsFile.h"

#include "RegularFile.h"
#include "ReplacementFile.h"
#include "Utf8.h"

#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;
using nlohmann::json;

namespace cadhost {

namespace {

constexpr int kVersion = 1;
constexpr const char* kVersionKey = "cadhostGlobals";
constexpr const char* kVariablesKey = "variables";
// Far beyond the few hundred variables of any table: a larger file is no globals file.
constexpr std::uintmax_t kMaxFileSize = 16u * 1024u * 1024u;
constexpr const char* kAsideSuffix = ".unreadable";
constexpr int kMaxAsideNumber = 99;
// The longest value looked for in a damaged file: a text of a variable, or a point's array. The
// limit keeps the search of a damaged file linear.
constexpr size_t kMaxValueBytes = 4096;

bool isWritableGlobal(const VarDef* def) {
    return def && def->global && !def->isReadOnly();
}

// Reads a regular file of a sane size whole; false with the reason otherwise.
bool readWhole(const std::string& path, std::string& content, std::string& why) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        why = std::strerror(errno);
        return false;
    }
    if (!S_ISREG(info.st_mode)) {
        why = "it is no regular file";
        return false;
    }
    if (static_cast<std::uintmax_t>(info.st_size) > kMaxFileSize) {
        why = "it is too large";
        return false;
    }
    if (kova::readRegularFile(path, content) != kova::FileRead::Done) {
        why = "it cannot be read";
        return false;
    }
    return true;
}

// Where a file that cannot be read whole is kept: path.unreadable, or numbered beside an older one.
std::string asideName(const std::string& path) {
    std::error_code ec;
    std::string name = path + kAsideSuffix;
    for (int n = 1; fs::exists(fs::symlink_status(name, ec)) && n <= kMaxAsideNumber; ++n)
        name = path + kAsideSuffix + "." + std::to_string(n);
    return name;
}

// Takes one entry's value for the variable name; false with the reason when it is not taken.
bool takeValue(const VariableTable& table, const std::string& name, const json& value, VarValues& values,
               std::string& why) {
    const VarDef* def = table.find(name);
    if (!isWritableGlobal(def)) {
        why = "no changeable global variable of this host";
        return false;
    }
    VarValue v;
    if (!valueFromJson(*def, value, v, why))
        return false;
    values[def->name] = v;
    return true;
}

// The end of the JSON value that starts at text[at]: a string, an array of numbers, or a plain
// word or number; npos when it does not end within kMaxValueBytes, or an array holds more than
// numbers. Each scan stops where the next entry could begin, so a search stays linear.
size_t valueEnd(const std::string& text, size_t at) {
    if (at >= text.size())
        return std::string::npos;
    const size_t limit = std::min(text.size(), at + kMaxValueBytes);
    if (text[at] == '"') {
        for (size_t i = at + 1; i < limit; ++i) {
            if (text[i] == '\\')
                ++i;
            else if (text[i] == '"')
                return i + 1;
        }
        return std::string::npos;
    }
    if (text[at] == '[') {
        for (size_t i = at + 1; i < limit; ++i) {
            const char c = text[i];
            if (c == ']')
                return i + 1;
            if (c == '\0' || (!(c >= '0' && c <= '9') && !std::strchr("+-.eE, \t\r\n", c)))
                return std::string::npos;
        }
        return std::string::npos;
    }
    for (size_t i = at; i < limit; ++i)
        if (text[i] == '\0' || std::strchr(",}]\" \t\r\n", text[i]))
            return i;
    return limit;
}

// The entries of a damaged file, looked for one by one: each "NAME": value whose name is a
// variable of the table. Gives the number of entries that could not be taken.
int salvage(const std::string& text, const VariableTable& table, VarValues& values) {
    int lost = 0;
    size_t at = 0;
    while ((at = text.find('"', at)) != std::string::npos) {
        const size_t close = text.find('"', at + 1);
        if (close == std::string::npos)
            break;
        const std::string name = text.substr(at + 1, close - at - 1);
        size_t colon = text.find_first_not_of(" \t\r\n", close + 1);
        at = close + 1;
        if (colon == std::string::npos || text[colon] != ':' || !table.find(name))
            continue;
        const size_t start = text.find_first_not_of(" \t\r\n", colon + 1);
        const size_t end = valueEnd(text, start);
        if (end == std::string::npos) {
            ++lost;
            continue;
        }
        const json value = json::parse(text.begin() + static_cast<std::ptrdiff_t>(start),
                                       text.begin() + static_cast<std::ptrdiff_t>(end), nullptr, false);
        std::string why;
        if (value.is_discarded() || !takeValue(table, name, value, values, why))
            ++lost;
        else
            at = end; // a text value is not searched for names
    }
    return lost;
}

} // namespace

bool GlobalsFile::isStorableText(const std::string& text, std::string& why) {
    for (size_t i = 0; i < text.size();) {
        char32_t code = 0;
        const size_t length = utf8CharAt(text, i, code);
        if (length == 0) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "%02X", static_cast<unsigned char>(text[i]));
            why = "the byte 0x" + std::string(hex) + " at position " + std::to_string(i + 1) +
                  " is no UTF-8 text";
            return false;
        }
        i += length;
    }
    return true;
}

void GlobalsFile::read(const std::string& path, const VariableTable& table, VarValues& values,
                       std::vector<std::string>& notes) {
    try {
        std::error_code ec;
        if (!fs::exists(fs::symlink_status(path, ec)))
            return; // nothing saved yet
        std::string text;
        std::string why;
        std::vector<std::string> ignored;
        bool damaged = false;
        if (!readWhole(path, text, why)) {
            damaged = true;
        } else {
            const json root = json::parse(text, nullptr, false);
            if (root.is_discarded() || !root.is_object() || !root.contains(kVariablesKey) ||
                !root[kVariablesKey].is_object()) {
                damaged = true;
                why = root.is_discarded() ? "it is no valid JSON" : "it has no \"variables\" object";
                const int lost = salvage(text, table, values);
                if (lost > 0)
                    why += ", and " + std::to_string(lost) + " of its values cannot be read";
            } else {
                for (const auto& [name, value] : root[kVariablesKey].items()) {
                    std::string reason;
                    if (!takeValue(table, name, value, values, reason))
                        ignored.push_back(name + " (" + reason + ")");
                }
            }
        }
        if (!damaged && ignored.empty())
            return;
        // Kept aside, so that the next write does not replace what could not be taken.
        const std::string aside = asideName(path);
        fs::rename(path, aside, ec);
        const std::string where =
            ec ? "it stays where it is, as it cannot be moved aside (" + ec.message() + ")"
               : "it is kept as " + aside;
        if (damaged) {
            notes.push_back("Global variables in " + path + " are damaged (" + why +
                            "): the values that could be read are used; " + where + ".");
        } else {
            std::string names;
            for (const std::string& entry : ignored)
                names += (names.empty() ? "" : ", ") + entry;
            notes.push_back("Global variables in " + path + " are ignored: " + names + "; " + where + ".");
        }
    } catch (const std::exception& e) {
        notes.push_back("Global variables in " + path + " cannot be read (" + e.what() + ").");
    }
}

bool GlobalsFile::write(const std::string& path, const VarValues& values, std::string& why) {
    std::string content;
    try {
        json vars = json::object();
        for (const auto& [name, value] : values)
            vars[name] = valueToJson(value);
        content = json{{kVersionKey, kVersion}, {kVariablesKey, vars}}.dump(2) + "\n";
    } catch (const std::exception& e) {
        why = e.what(); // a text that is no UTF-8; the setter refuses those, so this is a guard
        return false;
    }
    int error = 0;
    if (kova::ReplacementFile::write(path, {content}, &error))
        return true;
    why = std::strerror(error);
    return false;
}

} // namespace cadhost
