// ASCII DXF at the level of group tags: reading a file into tags, and the text encodings of the
// DXF versions. Drawing (DxfDrawing.h) writes the tags back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cadhost::dxf {

// One group: a code and its value. Both views point into the file's bytes as read, or into the
// text of the edits of a save, so an unchanged tag is written back byte for byte. value has
// no line end; codeLine is the code's line as it stood ("  0").
struct Tag {
    int code = 0;
    std::string_view codeLine;
    std::string_view value;
    std::uint32_t line = 0; // 1-based line of the code in the file; 0 for a made tag

    bool is(int c, std::string_view v) const { return code == c && value == v; }
};

// The code page of a drawing before R2007: its bytes map to Unicode through this page. UTF-8
// files (R2007 and later) use Utf8.
enum class CodePage { Utf8, Ansi1252 };

// Decodes a value to UTF-8: the page's bytes to their characters and "\U+XXXX" escapes to the
// character they name. A byte that does not decode is kept as it is, so encode(decode(x)) == x
// for every x that needed no escape.
std::string decodeText(std::string_view raw, CodePage page);
// Encodes UTF-8 text for the page: characters the page lacks become "\U+XXXX"; bytes that are no
// UTF-8 are written as they are. Control characters cannot stand in a DXF value: they become
// caret escapes ("^J" for a line break, "^@" for NUL), and a caret itself "^ ", as CAD programs
// write them.
std::string encodeText(std::string_view utf8, CodePage page);

// A value without the blanks, tabs and CRs around it, as numbers and names are compared.
std::string_view trimmed(std::string_view value);
// A group's value as a number: blanks around it and a leading "+" are allowed, nothing else.
bool parseReal(std::string_view value, double& out);
bool parseInteger(std::string_view value, long long& out);

// The file's version from $ACADVER ("AC1009" .. "AC1032"): 0 when unknown.
int versionNumber(std::string_view acadver);

// The tags of a whole file, with the storage their views point into.
class TagFile {
public:
    // Reads ASCII DXF. On failure returns false and message names the line ("line 12: ...").
    // Accepts CR LF and LF line ends, blanks around the code, a missing last line end. Refuses
    // binary DXF, DWG, an odd number of lines, a code that is no number, no EOF.
    bool parse(std::string bytes, std::string& message);

    const std::vector<Tag>& tags() const { return m_tags; }
    // The file's line ends are CR LF (else LF), as a writer of its tags keeps them.
    bool usesCrLf() const { return m_crlf; }

private:
    std::string m_bytes;
    std::vector<Tag> m_tags;
    bool m_crlf = true;
};

} // namespace cadhost::dxf
