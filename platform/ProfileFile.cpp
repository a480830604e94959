// Windows-style profile files: lenient reading of sections and key=value lines, careful rewriting.
#include "ProfileFile.h"

#include "ReplacementFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

#include <sys/stat.h>
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
        // Read at once into its place; a file that changed size meanwhile is read as it is now.
        content.resize(static_cast<std::size_t>(size));
        in.read(content.data(), static_cast<std::streamsize>(size));
        content.resize(static_cast<std::size_t>(in.gcount()));
        if (in.bad())
            return false;
        std::ostringstream rest;
        rest << in.rdbuf();
        content += std::move(rest).str();
        return !in.bad();
    } catch (...) {
        return false;
    }
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

// Writes the pieces, one after the other, as the whole new target; a failed write leaves the old
// file whole.
bool replaceFile(const std::string& target, std::initializer_list<std::string_view> pieces) {
    return ReplacementFile::write(target, pieces);
}

// One line of the text from start: its text up to the "\n" (a "\r" before it included, which
// every test trims), where the next line starts, and whether it has a line end at all.
struct TextLine {
    std::string_view text;
    std::size_t next = 0;
    bool hasEnd = false;
};

TextLine lineAt(std::string_view text, std::size_t start) {
    const std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos)
        return {text.substr(start), text.size(), false};
    return {text.substr(start, end - start), end + 1, true};
}

// FNV-1a over the bytes in ASCII lower case (keys are compared without case), then mixed, so
// that keys which differ in a digit only still differ in the 32 bits that the index keeps.
std::size_t hashNoCase(std::string_view text) {
    std::uint64_t hash = 14695981039346656037ull;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(lowerAscii(c));
        hash *= 1099511628211ull;
    }
    hash ^= hash >> 33;
    hash *= 0xff51afd7ed558ccdull;
    hash ^= hash >> 33;
    hash *= 0xc4ceb9fe1a85ec53ull;
    hash ^= hash >> 33;
    return static_cast<std::size_t>(hash);
}

std::string lowerCopy(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        c = lowerAscii(c);
    return lower;
}

} // namespace

std::size_t getString(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& defaultValue, std::string& out, std::size_t bufferSize) {
    return ProfileFile(file).getString(section, key, defaultValue, out, bufferSize);
}

bool writeString(const std::string& file, const std::string& section, const std::string& key,
                 const std::string& value) {
    return ProfileFile(file).writeString(section, key, value);
}

// ---- ProfileFile ----

// What tells one state of a file from another; a file that cannot be looked at does not exist.
struct ProfileFile::Identity {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
    timespec changed{};

    static Identity of(const std::string& file) {
        Identity identity;
        struct stat status {};
        if (::stat(file.c_str(), &status) != 0)
            return identity;
        identity.exists = true;
        identity.device = status.st_dev;
        identity.inode = status.st_ino;
        identity.size = status.st_size;
        identity.modified = status.st_mtim;
        identity.changed = status.st_ctim;
        return identity;
    }

    bool operator==(const Identity& other) const {
        return exists == other.exists && device == other.device && inode == other.inode &&
               size == other.size && modified.tv_sec == other.modified.tv_sec &&
               modified.tv_nsec == other.modified.tv_nsec && changed.tv_sec == other.changed.tv_sec &&
               changed.tv_nsec == other.changed.tv_nsec;
    }
};

// One entry line of a section index: the key's hash and the start of the line.
struct ProfileFile::Entry {
    std::uint32_t hash = 0;
    std::uint32_t line = 0;
    bool operator<(const Entry& other) const {
        return hash != other.hash ? hash < other.hash : line < other.line;
    }
};

// The entry lines of every section of one name, as getString finds them, sorted by the hash of
// their key and then by place: of the lines of one key, the first in the file comes first. The
// lines are gathered in one pass and sorted once, which is far cheaper than a hash table's
// scattered accesses for a huge file. And where writeString works: the first section of that
// name, which ends at the next section line, and its last line that is not blank.
struct ProfileFile::SectionIndex {
    std::string name; // trimmed, as asked
    std::vector<Entry> entries;
    bool found = false;
    std::size_t lastContent = 0; // start of the last non-blank line of the first section
    std::size_t sectionEnd = 0;  // start of the section line behind it, or the end of the text
};

ProfileFile::ProfileFile(std::string file)
    : m_file(std::move(file)), m_identity(std::make_unique<Identity>()) {}

ProfileFile::~ProfileFile() = default;

void ProfileFile::refresh() {
    Identity now = Identity::of(m_file);
    if (m_state != State::Unknown && now == *m_identity)
        return;
    *m_identity = now;
    m_indexes.clear();
    m_text.clear();
    m_hadBom = false;
    m_usesCrLf = false;
    if (!now.exists) {
        m_state = State::Missing;
        return;
    }
    if (!readFile(m_file, m_text)) {
        m_text.clear();
        m_state = State::Unreadable;
        return;
    }
    m_hadBom = std::string_view(m_text).substr(0, kUtf8Bom.size()) == kUtf8Bom;
    if (m_hadBom)
        m_text.erase(0, kUtf8Bom.size());
    m_usesCrLf = m_text.find("\r\n") != std::string::npos;
    m_state = State::Read;
}

std::uint32_t ProfileFile::firstLineOf(const SectionIndex& index, std::string_view key) const {
    const auto hash = static_cast<std::uint32_t>(hashNoCase(key));
    for (auto at = std::lower_bound(index.entries.begin(), index.entries.end(), Entry{hash, 0});
         at != index.entries.end() && at->hash == hash; ++at)
        if (equalsNoCase(parseLine(lineAt(m_text, at->line).text).name, key))
            return at->line;
    return kNoLine;
}

void ProfileFile::buildIndex(SectionIndex& index) const {
    bool inSection = false;
    bool inFirst = false;
    for (std::size_t at = 0; at < m_text.size();) {
        const TextLine line = lineAt(m_text, at);
        const ParsedLine parsed = parseLine(line.text);
        if (parsed.kind == LineKind::Section) {
            if (inFirst) {
                inFirst = false;
                index.sectionEnd = at;
            }
            inSection = equalsNoCase(parsed.name, index.name);
            if (inSection && !index.found) {
                index.found = inFirst = true;
                index.lastContent = at;
                index.sectionEnd = m_text.size();
            }
        } else {
            if (inSection && parsed.kind == LineKind::Entry)
                index.entries.push_back(
                    {static_cast<std::uint32_t>(hashNoCase(parsed.name)), static_cast<std::uint32_t>(at)});
            if (inFirst && !trim(line.text).empty())
                index.lastContent = at;
        }
        at = line.next;
    }
    std::sort(index.entries.begin(), index.entries.end());
}

ProfileFile::SectionIndex& ProfileFile::indexOf(std::string_view section) {
    const std::string_view name = trim(section);
    const std::string lower = lowerCopy(name);
    const auto known = m_indexes.find(lower);
    if (known != m_indexes.end())
        return *known->second;
    auto index = std::make_unique<SectionIndex>();
    index->name = std::string(name);
    buildIndex(*index);
    return *m_indexes.emplace(lower, std::move(index)).first->second;
}

// Moves every remembered position at or behind from by delta, after the text changed there.
void ProfileFile::shiftFrom(std::size_t from, std::ptrdiff_t delta) {
    const auto moved = [&](std::size_t position) {
        return position >= from ? static_cast<std::size_t>(static_cast<std::ptrdiff_t>(position) + delta)
                                : position;
    };
    for (auto& [name, index] : m_indexes) {
        for (Entry& entry : index->entries)
            entry.line = static_cast<std::uint32_t>(moved(entry.line));
        index->lastContent = moved(index->lastContent);
        index->sectionEnd = moved(index->sectionEnd);
    }
}

std::size_t ProfileFile::getString(const std::string& section, const std::string& key,
                                   const std::string& defaultValue, std::string& out,
                                   std::size_t bufferSize) {
    try {
        refresh();
        if (m_state == State::Read) {
            SectionIndex& index = indexOf(section);
            if (const std::uint32_t line = firstLineOf(index, trim(key)); line != kNoLine) {
                std::string_view value = parseLine(lineAt(m_text, line).text).value;
                if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                    value = value.substr(1, value.size() - 2);
                return deliver(value, out, bufferSize);
            }
        }
        return deliver(defaultValue, out, bufferSize);
    } catch (...) {
        out.clear();
        return 0;
    }
}

bool ProfileFile::writeString(const std::string& section, const std::string& key, const std::string& value) {
    if (m_file.empty())
        return false;
    try {
        refresh();
        // An existing file that cannot be read is left alone rather than replaced by one line;
        // so is a file the user has write-protected, though the folder would let a rename go
        // over it.
        if (m_state == State::Unreadable || ReplacementFile::isWriteProtected(m_file))
            return false;
        const std::string_view bom = m_hadBom ? kUtf8Bom : std::string_view();
        const std::string_view text = m_text;
        const std::string entry = std::string(trim(key)) + "=" + sanitizedValue(value);
        // New lines take the file's own line end.
        const std::string lineEnd = m_usesCrLf ? "\r\n" : "\n";

        SectionIndex& index = indexOf(section);
        const std::uint32_t line = index.found ? firstLineOf(index, trim(key)) : kNoLine;
        if (line != kNoLine && line < index.sectionEnd) {
            // The key stands in the first section: its line takes the new text, its line end stays.
            const std::size_t start = line;
            const TextLine old = lineAt(text, start);
            std::size_t length = old.text.size();
            if (old.hasEnd && length > 0 && old.text.back() == '\r')
                --length;
            if (text.substr(start, length) == entry)
                return true;
            if (!replaceFile(m_file, {bom, text.substr(0, start), entry, text.substr(start + length)}))
                return false;
            m_text.replace(start, length, entry);
            shiftFrom(start + 1,
                      static_cast<std::ptrdiff_t>(entry.size()) - static_cast<std::ptrdiff_t>(length));
        } else if (index.found) {
            // A new line behind the last line of the first section that is not blank.
            const TextLine last = lineAt(text, index.lastContent);
            const std::size_t at = last.next;
            const std::string inserted = (last.hasEnd ? "" : lineEnd) + entry + lineEnd;
            if (!replaceFile(m_file, {bom, text.substr(0, at), inserted, text.substr(at)}))
                return false;
            m_text.insert(at, inserted);
            shiftFrom(at, static_cast<std::ptrdiff_t>(inserted.size()));
            const std::size_t entryStart = at + (last.hasEnd ? 0 : lineEnd.size());
            index.lastContent = entryStart;
            // Ahead of any line of the key in a later section of that name, as in the file.
            const Entry entry{static_cast<std::uint32_t>(hashNoCase(trim(key))),
                              static_cast<std::uint32_t>(entryStart)};
            index.entries.insert(std::upper_bound(index.entries.begin(), index.entries.end(), entry), entry);
        } else {
            // The section too is new, at the end of the file.
            const bool lastHasEnd = text.empty() || text.back() == '\n';
            const std::string appended = (lastHasEnd ? "" : lineEnd) + "[" + std::string(trim(section)) +
                                         "]" + lineEnd + entry + lineEnd;
            if (!replaceFile(m_file, {bom, text, appended}))
                return false;
            m_text += appended;
            m_indexes.clear();
        }
        *m_identity = Identity::of(m_file);
        m_state = State::Read;
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace kova::profile
