// Windows-style profile files: lenient reading of sections and key=value lines, careful rewriting.
#include "ProfileFile.h"

#include "ReplacementFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace kova::profile {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

// A file larger than this is no profile file; reading it counts as a missing file rather than
// risking the memory of the host.
constexpr std::uintmax_t kMaxFileSize = 64u * 1024u * 1024u;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lowerAscii(a[i]) != lowerAscii(b[i]))
            return false;
    }
    return true;
}

// One physical line of the file, without its line end.
struct Line {
    std::string text;
    std::string end; // "\n", "\r\n" or empty for a last line without line end
};

// What a line means to the profile functions.
enum class LineKind { Other, Section, Entry };

struct ParsedLine {
    LineKind kind = LineKind::Other;
    std::string_view name;  // section or key name, trimmed
    std::string_view value; // entry value, trimmed, not yet unquoted
};

ParsedLine parseLine(std::string_view raw) {
    ParsedLine result;
    std::string_view text = trim(raw);
    if (text.empty() || text.front() == ';')
        return result;
    if (text.front() == '[') {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos)
            return result;
        result.kind = LineKind::Section;
        result.name = trim(text.substr(1, close - 1));
        return result;
    }
    const std::size_t eq = text.find('=');
    if (eq == std::string_view::npos)
        return result;
    result.kind = LineKind::Entry;
    result.name = trim(text.substr(0, eq));
    result.value = trim(text.substr(eq + 1));
    return result;
}

// Reads the whole file; false when it does not exist or cannot be read. Never throws.
bool readFile(const std::string& file, std::string& content) {
    try {
        std::error_code ec;
        const auto size = std::filesystem::file_size(file, ec);
        if (ec || size > kMaxFileSize)
            return false;
        std::ifstream in(file, std::ios::binary);
        if (!in)
            return false;
        std::ostringstream buffer;
        buffer << in.rdbuf();
        if (in.bad())
            return false;
        content = std::move(buffer).str();
        return true;
    } catch (...) {
        return false;
    }
}

// Splits content into lines at "\n"; a "\r" before it belongs to the line end. The BOM is kept
// out of the lines and reported, so a rewrite can give it back.
std::vector<Line> splitLines(std::string_view content, bool& hadBom, bool& usesCrLf) {
    hadBom = content.substr(0, kUtf8Bom.size()) == kUtf8Bom;
    if (hadBom)
        content.remove_prefix(kUtf8Bom.size());
    usesCrLf = false;
    std::vector<Line> lines;
    std::size_t start = 0;
    while (start < content.size()) {
        const std::size_t end = content.find('\n', start);
        Line line;
        if (end == std::string_view::npos) {
            line.text = std::string(content.substr(start));
            start = content.size();
        } else {
            std::size_t textEnd = end;
            if (textEnd > start && content[textEnd - 1] == '\r') {
                --textEnd;
                usesCrLf = true;
            }
            line.text = std::string(content.substr(start, textEnd - start));
            line.end = std::string(content.substr(textEnd, end + 1 - textEnd));
            start = end + 1;
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

// The longest prefix of text of at most maxBytes bytes that does not end inside a UTF-8
// character. Bytes that are no valid UTF-8 are cut where they stand.
std::size_t cutLength(std::string_view text, std::size_t maxBytes) {
    if (text.size() <= maxBytes)
        return text.size();
    std::size_t cut = maxBytes;
    // Step back over at most three continuation bytes to the lead byte of the cut character.
    for (int i = 0; i < 3 && cut > 0; ++i) {
        const auto byte = static_cast<unsigned char>(text[cut]);
        if ((byte & 0xC0) != 0x80)
            return cut;
        --cut;
    }
    const auto byte = static_cast<unsigned char>(text[cut]);
    return (byte & 0xC0) == 0xC0 ? cut : maxBytes;
}

std::size_t deliver(std::string_view value, std::string& out, std::size_t bufferSize) {
    const std::size_t length = bufferSize == 0 ? value.size() : cutLength(value, bufferSize - 1);
    out.assign(value.substr(0, length));
    return length;
}

std::string sanitizedValue(const std::string& value) {
    // A profile line cannot hold a line break: it would start a line of its own.
    std::string clean = value;
    for (char& c : clean) {
        if (c == '\n' || c == '\r')
            c = ' ';
    }
    return clean;
}

// Writes content to a new file beside target and renames it over target, so a failed write
// leaves the old file whole.
bool replaceFile(const std::string& target, const std::string& content) {
    namespace fs = std::filesystem;
    std::error_code ec;
    fs::path path(target);
    // Rewrite what a link points to, not the link itself.
    if (fs::is_symlink(path, ec)) {
        const fs::path resolved = fs::canonical(path, ec);
        if (ec)
            return false;
        path = resolved;
    }
    const fs::path temp = path.string() + ".tmp" + std::to_string(::getpid());
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out)
            return false;
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.flush();
        if (!out) {
            out.close();
            fs::remove(temp, ec);
            return false;
        }
    }
    const fs::file_status old = fs::status(path, ec);
    if (!ec && fs::exists(old))
        fs::permissions(temp, old.permissions(), ec);
    fs::rename(temp, path, ec);
    if (ec) {
        fs::remove(temp, ec);
        return false;
    }
    return true;
}

} // namespace

std::size_t getString(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& defaultValue, std::string& out, std::size_t bufferSize) {
    try {
        std::string content;
        if (readFile(file, content)) {
            bool hadBom = false;
            bool usesCrLf = false;
            const std::vector<Line> lines = splitLines(content, hadBom, usesCrLf);
            bool inSection = false;
            for (const Line& line : lines) {
                const ParsedLine parsed = parseLine(line.text);
                if (parsed.kind == LineKind::Section) {
                    inSection = equalsNoCase(parsed.name, trim(section));
                } else if (inSection && parsed.kind == LineKind::Entry &&
                           equalsNoCase(parsed.name, trim(key))) {
                    std::string_view value = parsed.value;
                    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                        value = value.substr(1, value.size() - 2);
                    return deliver(value, out, bufferSize);
                }
            }
        }
        return deliver(defaultValue, out, bufferSize);
    } catch (...) {
        out.clear();
        return 0;
    }
}

bool writeString(const std::string& file, const std::string& section, const std::string& key,
                 const std::string& value) {
    if (file.empty())
        return false;
    try {
        std::string content;
        std::error_code ec;
        const bool exists = std::filesystem::exists(file, ec);
        // An existing file that cannot be read is left alone rather than replaced by one line;
        // so is a file the user has write-protected, though the folder would let a rename go
        // over it.
        if (exists && (ReplacementFile::isWriteProtected(file) || !readFile(file, content)))
            return false;

        bool hadBom = false;
        bool usesCrLf = false;
        std::vector<Line> lines = splitLines(content, hadBom, usesCrLf);
        const std::string entry = std::string(trim(key)) + "=" + sanitizedValue(value);

        // Find the first matching section and, inside it, the first matching key.
        std::size_t sectionLine = lines.size();
        std::size_t lastContentLine = lines.size(); // last non-empty line of that section
        std::size_t keyLine = lines.size();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const ParsedLine parsed = parseLine(lines[i].text);
            if (sectionLine == lines.size()) {
                if (parsed.kind == LineKind::Section && equalsNoCase(parsed.name, trim(section))) {
                    sectionLine = i;
                    lastContentLine = i;
                }
                continue;
            }
            if (parsed.kind == LineKind::Section)
                break;
            if (parsed.kind == LineKind::Entry && equalsNoCase(parsed.name, trim(key))) {
                keyLine = i;
                break;
            }
            if (!trim(lines[i].text).empty())
                lastContentLine = i;
        }

        // New lines take the file's own line end.
        const std::string lineEnd = usesCrLf ? "\r\n" : "\n";
        if (keyLine < lines.size()) {
            lines[keyLine].text = entry;
        } else if (sectionLine < lines.size()) {
            if (lines[lastContentLine].end.empty())
                lines[lastContentLine].end = lineEnd;
            lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(lastContentLine) + 1,
                         Line{entry, lineEnd});
        } else {
            if (!lines.empty() && lines.back().end.empty())
                lines.back().end = lineEnd;
            lines.push_back(Line{"[" + std::string(trim(section)) + "]", lineEnd});
            lines.push_back(Line{entry, lineEnd});
        }

        std::string result;
        if (hadBom)
            result += kUtf8Bom;
        for (const Line& line : lines)
            result += line.text + line.end;
        return replaceFile(file, result);
    } catch (...) {
        return false;
    }
}

} // namespace kova::profile
