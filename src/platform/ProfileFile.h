// Reading and writing of Windows-style profile (ini) files: sections of key=value lines.
#pragma once
#include <cstddef>
#include <string>

namespace kova::profile {

// Reads key from section of file into out and returns the number of bytes placed there.
// - A missing file, section or key gives defaultValue.
// - A key that stands with an empty value gives the empty text (and 0).
// - Blanks around the value are cut; one pair of surrounding double quotes is removed.
// - Section and key names are compared without case; the first matching line wins.
// - At most bufferSize - 1 bytes are returned (a longer value comes back cut, never in the middle
//   of a UTF-8 character); bufferSize 0 means no limit.
// Never throws; a file that cannot be read counts as missing.
std::size_t getString(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& defaultValue, std::string& out, std::size_t bufferSize = 512);

// Writes key=value into section of file: replaces the value of the first matching key, or adds
// the key at the end of the section; creates the section and the file when they do not exist.
// Every other line of the file, comments and garbage included, stays as it was. Returns false
// when the file cannot be written, and leaves a write-protected file alone.
bool writeString(const std::string& file, const std::string& section, const std::string& key,
                 const std::string& value);

} // namespace kova::profile
