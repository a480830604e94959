// Splitting a typed command line into words, and quoting texts for printed lines.
#include "CommandWords.h"

namespace cadhost {

bool splitWords(const std::string& line, std::vector<std::string>& words, std::string& error) {
    words.clear();
    size_t i = 0;
    const size_t n = line.size();
    auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (i < n) {
        while (i < n && isBlank(line[i]))
            ++i;
        if (i >= n)
            break;
        std::string word;
        if (line[i] == '"') {
            ++i;
            bool closed = false;
            while (i < n) {
                char c = line[i];
                if (c == '\\' && i + 1 < n && (line[i + 1] == '"' || line[i + 1] == '\\')) {
                    word += line[i + 1];
                    i += 2;
                    continue;
                }
                if (c == '"') {
                    closed = true;
                    ++i;
                    break;
                }
                word += c;
                ++i;
            }
            if (!closed) {
                error = "missing closing quote";
                return false;
            }
            if (i < n && !isBlank(line[i])) {
                error = "a blank must follow the closing quote";
                return false;
            }
        } else {
            while (i < n && !isBlank(line[i]))
                word += line[i++];
        }
        words.push_back(std::move(word));
    }
    return true;
}

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    out += '"';
    return out;
}

std::string upperCase(const std::string& text) {
    std::string out = text;
    for (char& c : out)
        if (c >= 'a' && c <= 'z')
            c = char(c - 'a' + 'A');
    return out;
}

bool equalsIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && upperCase(a) == upperCase(b);
}

std::string trimmed(const std::string& text) {
    const char* blanks = " \t\r\n";
    size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return {};
    size_t last = text.find_last_not_of(blanks);
    return text.substr(first, last - first + 1);
}

} // namespace cadhost
