// Reading numbers and words from the texts of variables, as the table reader and the value
// conversions both do.
#pragma once
#include "VariableTable.h"

#include <string>

namespace cadhost {

// The text without blanks at either end.
std::string trim(const std::string& text);
// A whole text (blanks at the ends aside) as a real in range; false otherwise.
bool parseReal(const std::string& text, double& out);
// A whole text (blanks at the ends aside) as an integer in range; false otherwise.
bool parseInteger(const std::string& text, long long& out);
// The range of an integer type (Int: 16 bits, Long: 32 bits); false for the other types.
bool integerLimits(VarType type, long long& low, long long& high);

} // namespace cadhost
