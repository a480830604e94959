// A DXF drawing as the host keeps it: every tag as read, with indexes into the parts the host
// reads and changes (header variables, objects, tables) and a writer that changes only those.
#pragma once
#include "DxfTags.h"

#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cadhost::dxf {

// One object of the OBJECTS section: the range of its tags, "0 TYPE" first.
struct ObjectRecord {
    std::string_view type;
    std::uint64_t handle = 0; // 0: it has none
    std::uint64_t owner = 0;
    size_t begin = 0, end = 0;
};

// Changes to write: everything not named here is written as it was read.
class Edits {
public:
    // A tag whose text lives as long as the edits.
    Tag make(int code, std::string value);

    // "$NAME" to the tags of its new value (without the "9 $NAME" tag); a variable the header
    // lacks is added at its end.
    std::map<std::string, std::vector<Tag>, std::less<>> header;
    // Object index to the object's new tags; empty: the object is erased.
    std::unordered_map<size_t, std::vector<Tag>> objects;
    // Whole new objects, added at the end of the OBJECTS section.
    std::vector<Tag> newObjects;

private:
    std::deque<std::string> m_texts;
};

class Drawing {
public:
    // Reads an ASCII DXF file and checks its sections. False with a message naming the line.
    bool parse(std::string bytes, std::string& message);

    // AC1009 → 1009; 0 when $ACADVER is missing or unknown.
    int version() const { return m_version; }
    CodePage codePage() const { return m_codePage; }
    // Decoded to UTF-8 by the file's code page.
    std::string text(std::string_view raw) const { return decodeText(raw, m_codePage); }
    // Encoded for the file's code page.
    std::string fileText(std::string_view utf8) const { return encodeText(utf8, m_codePage); }

    bool hasSection(std::string_view name) const;
    // The tags between "2 NAME" and "0 ENDSEC"; empty when the section is missing.
    std::span<const Tag> section(std::string_view name) const;

    // The value tags of a header variable ("$LUPREC"), without its "9 $NAME" tag; empty when the
    // header lacks it.
    std::span<const Tag> header(std::string_view name) const;
    bool hasHeader(std::string_view name) const;

    const std::vector<ObjectRecord>& objects() const { return m_objects; }
    // Index in objects() of the object with this handle; -1 when there is none.
    long objectIndex(std::uint64_t handle) const;
    std::span<const Tag> tags(const ObjectRecord& object) const;
    // The largest handle of any tag 5 or 105 in the file.
    std::uint64_t largestHandle() const { return m_largestHandle; }

    // Names of the APPID table's records.
    std::vector<std::string> registeredApplications() const;

    // The whole file with the edits applied.
    std::string write(const Edits& edits) const;

private:
    struct Section {
        std::string_view name;
        size_t bodyBegin = 0, bodyEnd = 0; // the body; bodyEnd is the "0 ENDSEC" tag
    };
    struct HeaderVariable {
        size_t begin = 0, end = 0; // the value tags
    };

    const Section* findSection(std::string_view name) const;
    void indexHeader(const Section& header);
    void indexObjects(const Section& objects);

    TagFile m_file;
    std::vector<Section> m_sections;
    std::unordered_map<std::string_view, HeaderVariable> m_header;
    std::vector<ObjectRecord> m_objects;
    std::unordered_map<std::uint64_t, size_t> m_objectByHandle;
    std::uint64_t m_largestHandle = 0;
    int m_version = 0;
    CodePage m_codePage = CodePage::Utf8;
};

// "1F" → 31; false for an empty text or a character that is no hex digit.
bool parseHandle(std::string_view text, std::uint64_t& handle);
std::string handleText(std::uint64_t handle);

} // namespace cadhost::dxf
