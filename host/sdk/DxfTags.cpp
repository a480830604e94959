// Reading ASCII DXF tags, and the text encodings of DXF values.
#include "DxfTags.h"

#include "Utf8.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace cadhost::dxf {

namespace {

// Windows-1252 from 0x80 to 0x9F; 0 marks the five bytes the page leaves undefined.
constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";
constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// The code point of "\U+XXXX" at s[i], or -1.
long escapeAt(std::string_view s, size_t i) {
    if (i + 7 > s.size() || s[i] != '\\' || (s[i + 1] != 'U' && s[i + 1] != 'u') || s[i + 2] != '+')
        return -1;
    long c = 0;
    for (size_t k = 3; k < 7; ++k) {
        const int d = hexDigit(s[i + k]);
        if (d < 0)
            return -1;
        c = c * 16 + d;
    }
    return c;
}

void appendEscape(std::string& out, char32_t c) {
    char buffer[16];
    auto put = [&](unsigned unit) {
        std::snprintf(buffer, sizeof buffer, "\\U+%04X", unit);
        out += buffer;
    };
    if (c >= 0x10000) {
        c -= 0x10000;
        put(0xD800 + (c >> 10));
        put(0xDC00 + (c & 0x3FF));
    } else {
        put(c);
    }
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

bool looksLikeDwg(std::string_view bytes) {
    // A DWG file starts with its version ("AC1015") and is binary right after.
    if (bytes.size() < 8 || bytes.substr(0, 4) != "AC10")
        return false;
    for (size_t i = 4; i < 6; ++i)
        if (bytes[i] < '0' || bytes[i] > '9')
            return false;
    for (size_t i = 6; i < bytes.size() && i < 128; ++i)
        if (bytes[i] == '\0')
            return true;
    return false;
}

} // namespace

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && isBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

namespace {
template <class Number> bool parseNumber(std::string_view text, Number& out) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return false;
    out = value;
    return true;
}
} // namespace

bool parseReal(std::string_view value, double& out) {
    return parseNumber(value, out);
}

bool parseInteger(std::string_view value, long long& out) {
    return parseNumber(value, out);
}

std::string decodeText(std::string_view raw, CodePage page) {
    std::string out;
    out.reserve(raw.size());
    for (size_t i = 0; i < raw.size();) {
        const char ch = raw[i];
        if (ch == '\\') {
            long c = escapeAt(raw, i);
            if (c >= 0xD800 && c <= 0xDBFF) {
                const long low = escapeAt(raw, i + 7);
                if (low >= 0xDC00 && low <= 0xDFFF) {
                    appendUtf8(out, static_cast<char32_t>(0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00)));
                    i += 14;
                    continue;
                }
                c = -1;
            }
            if (c > 0 && !(c >= 0xDC00 && c <= 0xDFFF)) {
                appendUtf8(out, static_cast<char32_t>(c));
                i += 7;
                continue;
            }
        } else if (ch == '^' && i + 1 < raw.size()) {
            const char next = raw[i + 1];
            if (next == ' ') {
                out += '^';
                i += 2;
                continue;
            }
            if (next >= '@' && next <= '_') {
                out += static_cast<char>(next - '@');
                i += 2;
                continue;
            }
        }
        const auto b = static_cast<unsigned char>(ch);
        if (page == CodePage::Ansi1252 && b >= 0x80) {
            const char32_t c = b >= 0xA0 ? b : kCp1252High[b - 0x80];
            if (c)
                appendUtf8(out, c);
            else
                out += ch; // undefined in the page: kept as the byte it is
        } else {
            out += ch;
        }
        ++i;
    }
    return out;
}

std::string encodeText(std::string_view utf8, CodePage page) {
    std::string out;
    out.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size();) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        if (b < 0x20) {
            out += '^';
            out += static_cast<char>(b + '@');
            ++i;
            continue;
        }
        if (b == '^') {
            out += "^ ";
            ++i;
            continue;
        }
        if (b < 0x80) {
            out += utf8[i++];
            continue;
        }
        char32_t c = 0;
        const size_t n = utf8CharAt(utf8, i, c);
        if (n == 0) {
            out += utf8[i++]; // no UTF-8: the byte as it came
            continue;
        }
        if (page == CodePage::Utf8) {
            out.append(utf8.substr(i, n));
        } else if (c >= 0xA0 && c <= 0xFF) {
            out += static_cast<char>(c);
        } else {
            size_t k = 0;
            while (k < kCp1252High.size() && kCp1252High[k] != c)
                ++k;
            if (k < kCp1252High.size() && c >= 0x80)
                out += static_cast<char>(0x80 + k);
            else
                appendEscape(out, c);
        }
        i += n;
    }
    return out;
}

int versionNumber(std::string_view acadver) {
    static constexpr std::array<int, 9> known = {1009, 1012, 1014, 1015, 1018, 1021, 1024, 1027, 1032};
    acadver = trimmed(acadver);
    if (acadver.size() != 6 || acadver.substr(0, 2) != "AC")
        return 0;
    int number = 0;
    const auto [end, error] = std::from_chars(acadver.data() + 2, acadver.data() + 6, number);
    if (error != std::errc() || end != acadver.data() + 6)
        return 0;
    for (int k : known)
        if (k == number)
            return number;
    return 0;
}

bool TagFile::parse(std::string bytes, std::string& message) {
    m_tags.clear();
    m_bytes = std::move(bytes);
    const std::string_view all(m_bytes);
    if (all.substr(0, kBinarySentinel.size()) == kBinarySentinel) {
        message = "it is a binary DXF file; cadhost reads ASCII DXF: save it as ASCII DXF";
        return false;
    }
    if (looksLikeDwg(all)) {
        message = "it is a DWG file; cadhost reads DXF: save it as DXF (ASCII) in the program that made it";
        return false;
    }
    size_t pos = all.substr(0, kUtf8Bom.size()) == kUtf8Bom ? kUtf8Bom.size() : 0;
    const size_t firstEnd = all.find('\n', pos);
    m_crlf = firstEnd != std::string_view::npos && firstEnd > 0 && all[firstEnd - 1] == '\r';

    auto nextLine = [&](std::string_view& line) {
        if (pos >= all.size())
            return false;
        size_t end = all.find('\n', pos);
        if (end == std::string_view::npos)
            end = all.size();
        line = all.substr(pos, end - pos);
        // Only a file with CR LF line ends loses its CRs: elsewhere a CR belongs to the value.
        if (m_crlf && !line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        pos = end + 1;
        return true;
    };

    std::uint32_t lineNumber = 0;
    std::string_view codeLine, value;
    bool sawEof = false;
    m_tags.reserve(all.size() / 16);
    while (nextLine(codeLine)) {
        ++lineNumber;
        const std::uint32_t codeLineNumber = lineNumber;
        const std::string_view code = trimmed(codeLine);
        if (code.empty() && pos >= all.size())
            break; // blank last line
        int number = 0;
        const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), number);
        if (code.empty() || error != std::errc() || end != code.data() + code.size()) {
            message = "line " + std::to_string(codeLineNumber) + ": \"" + std::string(code.substr(0, 40)) +
                      "\" is no group code";
            return false;
        }
        if (number < 0 || number > 1071) {
            message = "line " + std::to_string(codeLineNumber) + ": group code " + std::to_string(number) +
                      " is out of the range DXF uses (0 to 1071)";
            return false;
        }
        if (!nextLine(value)) {
            message = "line " + std::to_string(codeLineNumber) +
                      ": the file ends after a group code, without its value (an odd number of lines)";
            return false;
        }
        ++lineNumber;
        if (value.find('\0') != std::string_view::npos) {
            message = "line " + std::to_string(lineNumber) + ": a NUL byte: this is no text file";
            return false;
        }
        m_tags.push_back(Tag{number, codeLine, value, codeLineNumber});
        if (number == 0 && trimmed(value) == "EOF") {
            sawEof = true;
            break;
        }
    }
    if (!sawEof) {
        message = m_tags.empty()
                      ? std::string("the file is empty")
                      : "the file has no EOF: it is cut off after line " + std::to_string(lineNumber);
        return false;
    }
    return true;
}

} // namespace cadhost::dxf
