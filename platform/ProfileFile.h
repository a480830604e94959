// Reading and writing of Windows-style profile (ini) files: sections of key=value lines.
#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace kova::profile {

// The two functions below read or write one key in one go: each reads the whole file. Whoever
// reads or writes many keys of a file in one use does it through one ProfileFile.

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
// Every other line of the file, comments and garbage included, stays as it was. A write that would
// leave the file as it is does not touch it. Returns false when the file cannot be written, and
// leaves a write-protected file alone.
bool writeString(const std::string& file, const std::string& section, const std::string& key,
                 const std::string& value);

// One profile file for the span of one use: read once, its keys then looked up in memory. Each
// call first compares the file on disk with the one read (device, inode, size, times) and reads
// it again when it changed, so a change made meanwhile by anyone else is seen. A write goes to the
// file at once, as writeString does, and the next read sees it. getString and writeString behave
// as the functions above.
class ProfileFile {
public:
    explicit ProfileFile(std::string file);
    ~ProfileFile();
    ProfileFile(const ProfileFile&) = delete;
    ProfileFile& operator=(const ProfileFile&) = delete;

    const std::string& file() const { return m_file; }

    std::size_t getString(const std::string& section, const std::string& key, const std::string& defaultValue,
                          std::string& out, std::size_t bufferSize = 512);
    bool writeString(const std::string& section, const std::string& key, const std::string& value);

private:
    struct Identity;
    struct SectionIndex;
    struct Entry;
    enum class State { Unknown, Missing, Unreadable, Read };

    void refresh();
    SectionIndex& indexOf(std::string_view section);
    void buildIndex(SectionIndex& index) const;
    // Start of the first line of key in the sections of index, or kNoLine.
    std::uint32_t firstLineOf(const SectionIndex& index, std::string_view key) const;
    static constexpr std::uint32_t kNoLine = 0xFFFFFFFF;
    void shiftFrom(std::size_t from, std::ptrdiff_t delta);

    std::string m_file;
    State m_state = State::Unknown;
    std::unique_ptr<Identity> m_identity;
    std::string m_text; // the file without its BOM
    bool m_hadBom = false;
    bool m_usesCrLf = false;
    // By section name in lower case: the sections asked for so far.
    std::map<std::string, std::unique_ptr<SectionIndex>, std::less<>> m_indexes;
};

} // namespace kova::profile
