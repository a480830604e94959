// acutWcMatchEx: the host's wildcard match over UTF-8 text (signs listed in include/acutads_wildcards.md).
#include "acutads.h"

#include <string>
#include <vector>

namespace {

// Decodes UTF-8 into code points. A byte that starts no valid sequence stands for itself, moved
// to 0xDC00 + byte so that it never equals a real character.
std::vector<char32_t> decode(const char* text) {
    std::vector<char32_t> out;
    const auto* s = reinterpret_cast<const unsigned char*>(text);
    while (*s) {
        unsigned char c = *s;
        int length = c < 0x80 ? 1 : (c >> 5) == 0x6 ? 2 : (c >> 4) == 0xE ? 3 : (c >> 3) == 0x1E ? 4 : 0;
        char32_t cp = length == 1 ? c : length == 2 ? c & 0x1F : length == 3 ? c & 0x0F : c & 0x07;
        bool valid = length > 0;
        for (int i = 1; valid && i < length; ++i) {
            if ((s[i] & 0xC0) != 0x80)
                valid = false;
            else
                cp = (cp << 6) | (s[i] & 0x3F);
        }
        if (!valid) {
            out.push_back(0xDC00 + c);
            ++s;
            continue;
        }
        out.push_back(cp);
        s += length;
    }
    return out;
}

// Case folding of ASCII and the letters of Latin-1 (À..Þ to à..þ, without ×).
char32_t fold(char32_t c) {
    if (c >= 'A' && c <= 'Z')
        return c + 32;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return c + 32;
    return c;
}

bool isDigit(char32_t c) {
    return c >= '0' && c <= '9';
}
// Letters: ASCII letters and every character beyond ASCII but raw bytes of broken sequences.
bool isLetter(char32_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= 0x80 && !(c >= 0xDC80 && c <= 0xDCFF));
}

enum class Kind { Literal, AnyRun, AnyOne, Digit, Letter, NonAlnum, Set };

struct Token {
    Kind kind = Kind::Literal;
    char32_t ch = 0;
    bool negated = false;                              // for Set
    std::vector<std::pair<char32_t, char32_t>> ranges; // for Set
};

struct Alternative {
    bool negated = false;
    std::vector<Token> tokens;
};

// Splits the pattern at unescaped commas outside brackets and turns each part into tokens.
std::vector<Alternative> parse(const std::vector<char32_t>& p) {
    std::vector<Alternative> result(1);
    size_t i = 0;
    bool atStart = true;
    while (i < p.size()) {
        Alternative& alt = result.back();
        char32_t c = p[i];
        if (atStart && c == '~') {
            alt.negated = true;
            atStart = false;
            ++i;
            continue;
        }
        atStart = false;
        Token t;
        if (c == ',') {
            result.emplace_back();
            atStart = true;
            ++i;
            continue;
        }
        if (c == '`') {
            t.ch = i + 1 < p.size() ? p[i + 1] : '`';
            i += i + 1 < p.size() ? 2 : 1;
        } else if (c == '*') {
            t.kind = Kind::AnyRun;
            ++i;
        } else if (c == '?') {
            t.kind = Kind::AnyOne;
            ++i;
        } else if (c == '#') {
            t.kind = Kind::Digit;
            ++i;
        } else if (c == '@') {
            t.kind = Kind::Letter;
            ++i;
        } else if (c == '.') {
            t.kind = Kind::NonAlnum;
            ++i;
        } else if (c == '[') {
            size_t j = i + 1;
            Token set;
            set.kind = Kind::Set;
            if (j < p.size() && p[j] == '~' && j + 1 < p.size() && p[j + 1] != ']') {
                set.negated = true;
                ++j;
            }
            bool first = true;
            bool closed = false;
            while (j < p.size()) {
                char32_t s = p[j];
                if (s == ']' && !first) {
                    closed = true;
                    break;
                }
                first = false;
                if (s == '`' && j + 1 < p.size())
                    s = p[++j];
                if (j + 2 < p.size() && p[j + 1] == '-' && p[j + 2] != ']') {
                    set.ranges.emplace_back(s, p[j + 2]);
                    j += 3;
                } else {
                    set.ranges.emplace_back(s, s);
                    ++j;
                }
            }
            if (closed) {
                t = std::move(set);
                i = j + 1;
            } else {
                t.ch = '['; // an unclosed bracket is an ordinary character
                ++i;
            }
        } else {
            t.ch = c;
            ++i;
        }
        alt.tokens.push_back(std::move(t));
    }
    return result;
}

bool matchesOne(const Token& t, char32_t c, bool ignoreCase) {
    switch (t.kind) {
    case Kind::Literal:
        return ignoreCase ? fold(t.ch) == fold(c) : t.ch == c;
    case Kind::AnyOne:
        return true;
    case Kind::Digit:
        return isDigit(c);
    case Kind::Letter:
        return isLetter(c);
    case Kind::NonAlnum:
        return !isDigit(c) && !isLetter(c);
    case Kind::Set: {
        bool in = false;
        for (auto [low, high] : t.ranges) {
            if (c >= low && c <= high)
                in = true;
            else if (ignoreCase) {
                char32_t f = fold(c);
                if ((f >= fold(low) && f <= fold(high)))
                    in = true;
            }
        }
        return in != t.negated;
    }
    case Kind::AnyRun:
        break;
    }
    return false;
}

// Glob matching with backtracking to the last run sign; linear in practice, quadratic at worst.
bool matchTokens(const std::vector<Token>& tokens, const std::vector<char32_t>& text, bool ignoreCase) {
    size_t ti = 0, pi = 0;
    size_t starP = std::string::npos, starT = 0;
    while (ti < text.size()) {
        if (pi < tokens.size() && tokens[pi].kind == Kind::AnyRun) {
            starP = pi++;
            starT = ti;
        } else if (pi < tokens.size() && matchesOne(tokens[pi], text[ti], ignoreCase)) {
            ++pi;
            ++ti;
        } else if (starP != std::string::npos) {
            pi = starP + 1;
            ti = ++starT;
        } else {
            return false;
        }
    }
    while (pi < tokens.size() && tokens[pi].kind == Kind::AnyRun)
        ++pi;
    return pi == tokens.size();
}

} // namespace

extern "C" bool acutWcMatchEx(const char* text, const char* pattern, bool ignoreCase) {
    if (!text || !pattern)
        return false;
    std::vector<char32_t> t = decode(text);
    for (const Alternative& alt : parse(decode(pattern))) {
        if (matchTokens(alt.tokens, t, ignoreCase) != alt.negated)
            return true;
    }
    return false;
}
