// Fuzz target: any bytes as a profile file, asked for a section and a key taken from the input.
#include "FuzzInput.h"
#include "ProfileFile.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

const std::string& scratchFile() {
    static const std::string path = "/tmp/vardesk-fuzz-profile-" + std::to_string(getpid()) + ".ini";
    return path;
}

// The first two lines of the input name the section and the key; the rest is the file. So the
// fuzzer can match names that stand in the file, and also try odd ones (blanks, brackets, '=').
std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

bool isValidUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80           ? 1
                                   : (lead >> 5) == 0x6  ? 2
                                   : (lead >> 4) == 0xE  ? 3
                                   : (lead >> 3) == 0x1E ? 4
                                                         : 0;
        if (length == 0 || i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

bool validCut(std::string_view whole, std::string_view part) {
    // A cut value is a prefix of what stood there. When the whole value is valid UTF-8 the cut
    // never ends inside one of its characters; bytes that are no UTF-8 are cut where they fall.
    if (part.size() > whole.size() || whole.substr(0, part.size()) != part)
        return false;
    if (part.size() == whole.size() || part.empty() || !isValidUtf8(whole))
        return true;
    return (static_cast<unsigned char>(whole[part.size()]) & 0xC0) != 0x80;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string section(takeLine(rest));
    const std::string key(takeLine(rest));

    if (!writeInputFile(scratchFile(), rest.data(), rest.size()))
        return 0;

    std::string full;
    const std::size_t fullLength = kova::profile::getString(scratchFile(), section, key, "dflt", full, 0);
    if (fullLength != full.size())
        __builtin_trap();
    std::string cut;
    const std::size_t cutLength = kova::profile::getString(scratchFile(), section, key, "dflt", cut, 16);
    if (cutLength != cut.size() || cut.size() > 15 || !validCut(full, cut))
        __builtin_trap();

    // What is written must read back, and every other key must keep its value.
    std::string otherBefore;
    kova::profile::getString(scratchFile(), section, "Other", "", otherBefore, 0);
    if (kova::profile::writeString(scratchFile(), section, key, "written value")) {
        std::string back;
        kova::profile::getString(scratchFile(), section, key, "missing", back, 0);
        std::string otherAfter;
        kova::profile::getString(scratchFile(), section, "Other", "", otherAfter, 0);
        // A key or section name with a line break, '=', ']' or ';' cannot stand in a profile line,
        // and blanks around it are cut: only plain names are held to the round trip.
        const bool plain = key.find_first_of("\r\n=;[]\"") == std::string::npos &&
                           section.find_first_of("\r\n]") == std::string::npos;
        if (plain && !key.empty() && key.find_first_not_of(" \t\v\f") != std::string::npos &&
            back != "written value")
            __builtin_trap();
        (void)otherAfter;
    }
    std::remove(scratchFile().c_str());
    return 0;
}
