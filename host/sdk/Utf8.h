// Stepping over UTF-8 text one character at a time, for the host's files and values.
#pragma once
#include <cstddef>
#include <string_view>

namespace cadhost {

// Length of the well-formed UTF-8 character at text[at], with its code point in code; 0 when no
// character starts there (a byte of another code page, a cut-off or overlong sequence, a
// surrogate).
inline std::size_t utf8CharAt(std::string_view text, std::size_t at, char32_t& code) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t length = 0;
    if (lead < 0x80) {
        code = lead;
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        code = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        code = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > text.size())
        return 0;
    for (std::size_t k = 1; k < length; ++k) {
        const auto next = static_cast<unsigned char>(text[at + k]);
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (overlong || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

} // namespace cadhost
