// Splitting a typed command line into words, and quoting texts for printed lines.
#pragma once
#include <string>
#include <vector>

namespace cadhost {

// Splits line into words at blanks and tabs. A word may be written in double quotes; inside
// them \" stands for " and \\ for \ (any other backslash is kept as it is). An empty quoted
// word ("") is a word. False with a message when a quote is not closed.
bool splitWords(const std::string& line, std::vector<std::string>& words, std::string& error);

// text in double quotes with " and \ escaped by a backslash: the form of texts in printed state.
std::string quoted(const std::string& text);

// ASCII upper case; other bytes (UTF-8 sequences) unchanged.
std::string upperCase(const std::string& text);
bool equalsIgnoringCase(const std::string& a, const std::string& b);

// text without leading and trailing blanks, tabs and line ends.
std::string trimmed(const std::string& text);

} // namespace cadhost
