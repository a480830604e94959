// Text, path and date helpers on UTF-8 byte strings, shared by records, lists, file readers and contexts.
#pragma once
#include <chrono>
#include <string>

// All text is UTF-8 in std::string; lengths and positions are in bytes. Every helper that walks a
// text steps over whole characters, and a test for a character ("#", a blank, a quote) looks at
// the first byte of each character only, so no byte inside a multi-byte character ever matches.
//
// Invalid UTF-8 never crashes a helper: a byte that does not begin a well-formed sequence (a
// stray continuation byte, a cut-off sequence, an overlong or surrogate form) counts as one
// character of its own, one byte long, and is kept as it stands.

// ---- text ----

// Removes white space at the start. White space is the ASCII set (blank, \t, \n, \v, \f, \r) and
// the ideographic space U+3000, the one multi-byte blank of the East Asian code pages.
std::string& trimLeft(std::string& text);
// Removes the last run of white space (found by walking whole characters from the start).
std::string& trimRight(std::string& text);
// trimLeft, then trimRight.
std::string& trimBoth(std::string& text);
// Upper case, character by character, by Unicode's simple one-to-one mapping (so "ß" stays,
// "ä" becomes "Ä"); bytes of invalid sequences stay as they are.
std::string& upperCase(std::string& text);

// Removes every occurrence of the single-byte character c; the rest moves up.
void removeChar(std::string& text, char c);
// Replaces every single-byte oldChar by newChar and returns how many were replaced. The same
// character for both, or an empty text, gives 0 and changes nothing.
int replaceChar(std::string& text, char oldChar, char newChar);
// Byte position of the first character c that begins at or behind start, or -1. Also -1 when
// start is not inside the text (negative, or at or behind its end).
int findChar(const std::string& text, char c, int start = 0);

// The first count bytes; the whole text when count reaches its length, empty for count <= 0.
// A cut that would fall inside a character moves back to that character's first byte.
std::string left(const std::string& text, int count);
// count bytes from position, cut at the text's end; empty when position lies at or behind the
// end. A negative position counts as 0; a negative count gives the empty text. Boundaries that
// would fall inside a character move back to that character's first byte.
std::string mid(const std::string& text, int position, int count);
// All from position on.
std::string mid(const std::string& text, int position);

// The one comparison of names: byte order (unsigned), case-sensitive; for UTF-8 that is the
// order of code points. Below, equal to or above 0.
int compareText(const std::string& a, const std::string& b);

// printf into a new text. Numbers are printed in the "C" locale whatever locale the process runs
// in, so a decimal point is always ".": value texts are stored in files and compared byte for byte.
std::string formatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A count for a box or the status bar: "<count> <many>", or once alone for exactly one; empty for
// none.
std::string countText(int count, const std::string& once, const std::string& many);

// Splits line at every "#". Fields 1 to 4 go to the outputs (emptied first), further fields are
// only counted. Returns the number of "#" plus 1: a line ending in "#" has an empty last field,
// a line without "#" is one field. Fields keep their blanks. An empty line gives 1 field.
int splitFields(const std::string& line, std::string& field1, std::string& field2, std::string& field3,
                std::string& field4);

// ---- paths ----
// POSIX paths with "/" and no drive. A path splits into directory (up to and with its last "/"),
// file name, and extension (from the last "." of the part behind the last "/", with the dot).
// Each fills out (replacing what it held) and returns it.

// Directory with its closing "/"; empty for a bare file name.
std::string& pathDirectory(const std::string& path, std::string& out);
// File name and extension; empty for a path that ends in "/".
std::string& pathFileName(const std::string& path, std::string& out);
// Directory and file name without the last extension.
std::string& pathStem(const std::string& path, std::string& out);
// The working directory, "/" and fileName; "/" and fileName when the working directory is unknown.
std::string& pathInWorkingDirectory(const std::string& fileName, std::string& out);

// ---- date and time ----

using DateTime = std::chrono::system_clock::time_point;

// Parts of formatDateTime.
inline constexpr int kDateTimeBoth = 0; // date, a blank, time
inline constexpr int kTimeOnly = 1;
inline constexpr int kDateOnly = 2;

// The moment of the call, from the system clock.
DateTime currentDateTime();
// The moment as local date and/or time in the user's locale (the system locale, short date,
// time with seconds). "Invalid DateTime" when it cannot be formatted: a moment outside the
// calendar's range, or a part that is none of the three above. Fills out and returns it.
std::string& formatDateTime(DateTime moment, int part, std::string& out);
