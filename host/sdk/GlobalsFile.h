// GlobalsFile: the host's global variables in the profile folder, read leniently and written whole.
#pragma once
#include "VariableTable.h"

#include <string>
#include <vector>

namespace cadhost {

// The file is JSON: {"cadhostGlobals": 1, "variables": {"NAME": value, ...}}, values in the
// form of valueToJson. Only variables that the table holds as global, changeable and not
// computed are read and written.
class GlobalsFile {
public:
    // Reads path into values, by upper-case name. Nothing there: values stay as they are.
    //
    // Every value that can be read is taken, also from a file that is damaged (a bad byte, cut
    // short): its entries are then looked for one by one. When anything in the file is not taken
    // (damage, a value out of range, a name the table does not hold as a changeable global), the
    // file is moved aside to a name that says so, so that the next write cannot lose it, and a
    // note says where it went. Never throws.
    static void read(const std::string& path, const VariableTable& table, VarValues& values,
                     std::vector<std::string>& notes);

    // Writes values (the table's changeable globals, by upper-case name) to a new file beside
    // path and renames it over path. False with the reason in why; the old file is then as it was.
    // Never throws.
    static bool write(const std::string& path, const VarValues& values, std::string& why);

    // True when text can stand in the file: valid UTF-8. Else why says where it breaks.
    static bool isStorableText(const std::string& text, std::string& why);
};

} // namespace cadhost
