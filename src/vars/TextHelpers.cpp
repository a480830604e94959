// Text, path and date helpers on UTF-8 byte strings.
#include "TextHelpers.h"

#include "CNumericScope.h"
#include "QtText.h"

#include <QChar>
#include <QDateTime>
#include <QLocale>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <locale.h>
#include <system_error>

namespace {

bool isContinuation(unsigned char b) {
    return (b & 0xC0) == 0x80;
}

// Length of the character that begins at pos: that of a well-formed UTF-8 sequence, else 1.
std::size_t charLength(const std::string& text, std::size_t pos) {
    const std::size_t rest = text.size() - pos;
    const auto b0 = static_cast<unsigned char>(text[pos]);
    auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[pos + i]); };
    if (b0 < 0x80)
        return 1;
    if (b0 >= 0xC2 && b0 <= 0xDF)
        return rest >= 2 && isContinuation(at(1)) ? 2 : 1;
    if (b0 >= 0xE0 && b0 <= 0xEF) {
        if (rest < 3 || !isContinuation(at(1)) || !isContinuation(at(2)))
            return 1;
        if (b0 == 0xE0 && at(1) < 0xA0)
            return 1; // overlong
        if (b0 == 0xED && at(1) > 0x9F)
            return 1; // surrogate
        return 3;
    }
    if (b0 >= 0xF0 && b0 <= 0xF4) {
        if (rest < 4 || !isContinuation(at(1)) || !isContinuation(at(2)) || !isContinuation(at(3)))
            return 1;
        if (b0 == 0xF0 && at(1) < 0x90)
            return 1; // overlong
        if (b0 == 0xF4 && at(1) > 0x8F)
            return 1; // above U+10FFFF
        return 4;
    }
    return 1;
}

// Code point of a well-formed character of length len at pos; the byte itself for length 1.
char32_t decode(const std::string& text, std::size_t pos, std::size_t len) {
    auto at = [&](std::size_t i) { return static_cast<char32_t>(static_cast<unsigned char>(text[pos + i])); };
    switch (len) {
    case 2:
        return ((at(0) & 0x1F) << 6) | (at(1) & 0x3F);
    case 3:
        return ((at(0) & 0x0F) << 12) | ((at(1) & 0x3F) << 6) | (at(2) & 0x3F);
    case 4:
        return ((at(0) & 0x07) << 18) | ((at(1) & 0x3F) << 12) | ((at(2) & 0x3F) << 6) | (at(3) & 0x3F);
    default:
        return at(0);
    }
}

void encode(char32_t cp, std::string& out) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

constexpr char32_t kIdeographicSpace = 0x3000;

bool isWhiteChar(const std::string& text, std::size_t pos, std::size_t len) {
    if (len == 1) {
        const char c = text[pos];
        return c == ' ' || (c >= '\t' && c <= '\r');
    }
    return len == 3 && decode(text, pos, len) == kIdeographicSpace;
}

// The first byte of the character that holds byte pos (pos itself when it begins one, or when
// pos lies at or behind the end).
std::size_t boundaryAtOrBefore(const std::string& text, std::size_t pos) {
    if (pos >= text.size())
        return pos;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t len = charLength(text, i);
        if (i + len > pos)
            return i;
        i += len;
    }
    return pos;
}

// Splits path at its last "/" and at the last "." behind it: directory end and extension start.
void splitPath(const std::string& path, std::size_t& nameStart, std::size_t& extStart) {
    nameStart = 0;
    std::size_t lastDot = std::string::npos;
    for (std::size_t i = 0; i < path.size(); i += charLength(path, i)) {
        if (path[i] == '/') {
            nameStart = i + 1;
            lastDot = std::string::npos;
        } else if (path[i] == '.') {
            lastDot = i;
        }
    }
    extStart = lastDot == std::string::npos ? path.size() : lastDot;
}

} // namespace

std::string& trimLeft(std::string& text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t len = charLength(text, i);
        if (!isWhiteChar(text, i, len))
            break;
        i += len;
    }
    text.erase(0, i);
    return text;
}

std::string& trimRight(std::string& text) {
    std::size_t runStart = std::string::npos;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t len = charLength(text, i);
        if (isWhiteChar(text, i, len)) {
            if (runStart == std::string::npos)
                runStart = i;
        } else {
            runStart = std::string::npos;
        }
        i += len;
    }
    if (runStart != std::string::npos)
        text.erase(runStart);
    return text;
}

std::string& trimBoth(std::string& text) {
    trimLeft(text);
    return trimRight(text);
}

std::string& upperCase(std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t len = charLength(text, i);
        const char c = text[i];
        if (len == 1 && static_cast<unsigned char>(c) < 0x80) {
            out += (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
        } else if (len == 1) {
            out += c; // a stray byte stays as it is
        } else {
            encode(QChar::toUpper(decode(text, i, len)), out);
        }
        i += len;
    }
    text.swap(out);
    return text;
}

void removeChar(std::string& text, char c) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t len = charLength(text, i);
        if (!(len == 1 && text[i] == c))
            out.append(text, i, len);
        i += len;
    }
    text.swap(out);
}

int replaceChar(std::string& text, char oldChar, char newChar) {
    if (oldChar == newChar)
        return 0;
    int count = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t len = charLength(text, i);
        if (len == 1 && text[i] == oldChar) {
            text[i] = newChar;
            ++count;
        }
        i += len;
    }
    return count;
}

int findChar(const std::string& text, char c, int start) {
    if (start < 0 || static_cast<std::size_t>(start) >= text.size())
        return -1;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t len = charLength(text, i);
        if (i >= static_cast<std::size_t>(start) && len == 1 && text[i] == c)
            return static_cast<int>(i);
        i += len;
    }
    return -1;
}

std::string left(const std::string& text, int count) {
    if (count <= 0)
        return {};
    if (static_cast<std::size_t>(count) >= text.size())
        return text;
    return text.substr(0, boundaryAtOrBefore(text, static_cast<std::size_t>(count)));
}

std::string mid(const std::string& text, int position, int count) {
    if (count < 0)
        return {};
    if (position < 0)
        position = 0;
    const auto from = boundaryAtOrBefore(text, static_cast<std::size_t>(position));
    if (from >= text.size())
        return {};
    const std::size_t end = static_cast<std::size_t>(position) + static_cast<std::size_t>(count);
    const std::size_t to = end >= text.size() ? text.size() : boundaryAtOrBefore(text, end);
    return text.substr(from, to > from ? to - from : 0);
}

std::string mid(const std::string& text, int position) {
    if (position < 0)
        position = 0;
    const auto from = boundaryAtOrBefore(text, static_cast<std::size_t>(position));
    return from >= text.size() ? std::string() : text.substr(from);
}

int compareText(const std::string& a, const std::string& b) {
    // std::string::compare orders by char_traits<char>, which compares as unsigned char.
    const int r = a.compare(b);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

std::string formatText(const char* format, ...) {
    const CNumericScope cLocale;
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int size = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string out;
    if (size > 0) {
        out.resize(static_cast<std::size_t>(size) + 1);
        std::vsnprintf(out.data(), out.size(), format, again);
        out.resize(static_cast<std::size_t>(size));
    }
    va_end(again);
    return out;
}

std::string countText(int count, const std::string& once, const std::string& many) {
    if (count == 0)
        return {};
    if (count == 1)
        return once;
    return formatText("%d %s", count, many.c_str());
}

int splitFields(const std::string& line, std::string& field1, std::string& field2, std::string& field3,
                std::string& field4) {
    field1.clear();
    field2.clear();
    field3.clear();
    field4.clear();
    std::string* outputs[] = {&field1, &field2, &field3, &field4};
    int count = 0;
    std::size_t fieldStart = 0;
    auto endField = [&](std::size_t end) {
        if (count < 4)
            outputs[count]->assign(line, fieldStart, end - fieldStart);
        ++count;
    };
    for (std::size_t i = 0; i < line.size();) {
        const std::size_t len = charLength(line, i);
        if (len == 1 && line[i] == '#') {
            endField(i);
            fieldStart = i + 1;
        }
        i += len;
    }
    endField(line.size()); // the "#" the walk appends behind the line
    return count;
}

std::string& pathDirectory(const std::string& path, std::string& out) {
    std::size_t nameStart = 0, extStart = 0;
    splitPath(path, nameStart, extStart);
    out.assign(path, 0, nameStart);
    return out;
}

std::string& pathFileName(const std::string& path, std::string& out) {
    std::size_t nameStart = 0, extStart = 0;
    splitPath(path, nameStart, extStart);
    out.assign(path, nameStart, std::string::npos);
    return out;
}

std::string& pathStem(const std::string& path, std::string& out) {
    std::size_t nameStart = 0, extStart = 0;
    splitPath(path, nameStart, extStart);
    out.assign(path, 0, extStart);
    return out;
}

std::string& pathInWorkingDirectory(const std::string& fileName, std::string& out) {
    std::error_code error;
    std::string directory = std::filesystem::current_path(error).string();
    if (error || directory.empty())
        directory.clear();
    if (directory.empty() || directory.back() != '/')
        directory += '/';
    out = directory + fileName;
    return out;
}

DateTime currentDateTime() {
    return std::chrono::system_clock::now();
}

std::string& formatDateTime(DateTime moment, int part, std::string& out) {
    static const std::string kInvalid = "Invalid DateTime";
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(moment.time_since_epoch()).count();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(ms);
    if (!local.isValid() || part < kDateTimeBoth || part > kDateOnly) {
        out = kInvalid;
        return out;
    }
    const QLocale locale = QLocale::system();
    const QString date = locale.toString(local.date(), QLocale::ShortFormat);
    // The long time format may name the time zone ("t"); the log wants the clock time alone.
    const QString longFormat = locale.timeFormat(QLocale::LongFormat);
    QString timeFormat;
    bool quoted = false;
    for (const QChar c : longFormat) {
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        if (quoted || c != QLatin1Char('t'))
            timeFormat += c;
    }
    const QString time = locale.toString(local.time(), timeFormat.trimmed());
    QString text;
    switch (part) {
    case kTimeOnly:
        text = time;
        break;
    case kDateOnly:
        text = date;
        break;
    default:
        text = date + QLatin1Char(' ') + time;
        break;
    }
    if (text.isEmpty()) {
        out = kInvalid;
        return out;
    }
    out = stdText(text);
    return out;
}
