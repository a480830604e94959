// Sections, header variables and objects of a DXF drawing, and writing it back with edits.
#include "DxfDrawing.h"

#include <algorithm>
#include <charconv>

namespace cadhost::dxf {

namespace {

std::string at(const Tag& tag) {
    return "line " + std::to_string(tag.line);
}

void append(std::string& out, const Tag& tag, std::string_view eol) {
    out.append(tag.codeLine);
    out.append(eol);
    out.append(tag.value);
    out.append(eol);
}

} // namespace

bool parseHandle(std::string_view text, std::uint64_t& handle) {
    text = trimmed(text);
    if (text.empty() || text.size() > 16)
        return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), handle, 16);
    return error == std::errc() && end == text.data() + text.size();
}

std::string handleText(std::uint64_t handle) {
    char buffer[20];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
    std::string text(buffer, end);
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c >= 'a' ? c - 32 : c; });
    return text;
}

Tag Edits::make(int code, std::string value) {
    Tag tag;
    tag.code = code;
    m_texts.push_back(std::to_string(code));
    std::string& codeLine = m_texts.back();
    codeLine.insert(0, codeLine.size() < 3 ? 3 - codeLine.size() : 0, ' ');
    tag.codeLine = codeLine;
    m_texts.push_back(std::move(value));
    tag.value = m_texts.back();
    return tag;
}

bool Drawing::parse(std::string bytes, std::string& message) {
    if (!m_file.parse(std::move(bytes), message))
        return false;
    const std::vector<Tag>& tags = m_file.tags();
    m_sections.clear();
    size_t i = 0;
    while (i < tags.size()) {
        const Tag& tag = tags[i];
        if (tag.code == 999) { // comments stand between sections too
            ++i;
            continue;
        }
        if (tag.code == 0 && trimmed(tag.value) == "EOF")
            break;
        if (!(tag.code == 0 && trimmed(tag.value) == "SECTION")) {
            message = at(tag) + ": a section should begin here (0 SECTION), not " + std::to_string(tag.code) +
                      " \"" + std::string(trimmed(tag.value).substr(0, 40)) + "\"";
            return false;
        }
        if (i + 1 >= tags.size() || tags[i + 1].code != 2) {
            message = at(tag) + ": the section has no name (2 NAME)";
            return false;
        }
        Section section;
        section.name = trimmed(tags[i + 1].value);
        section.bodyBegin = i + 2;
        size_t j = section.bodyBegin;
        while (j < tags.size() && !(tags[j].code == 0 &&
                                    (trimmed(tags[j].value) == "ENDSEC" || trimmed(tags[j].value) == "EOF" ||
                                     trimmed(tags[j].value) == "SECTION")))
            ++j;
        if (j >= tags.size() || trimmed(tags[j].value) != "ENDSEC") {
            message = at(tag) + ": the section " + std::string(section.name.substr(0, 40)) +
                      " has no end (0 ENDSEC)";
            return false;
        }
        section.bodyEnd = j;
        m_sections.push_back(section);
        i = j + 1;
    }
    if (const Section* header = findSection("HEADER"))
        indexHeader(*header);
    std::span<const Tag> version = this->header("$ACADVER");
    m_version = version.empty() ? 0 : versionNumber(version.front().value);
    if (m_version == 0) {
        message = version.empty() ? "the header names no DXF version ($ACADVER)"
                                  : at(version.front()) + ": DXF version \"" +
                                        std::string(trimmed(version.front().value).substr(0, 20)) +
                                        "\" is not one cadhost reads (AC1009 to AC1032)";
        return false;
    }
    // R2007 and later are UTF-8 whatever $DWGCODEPAGE says; earlier files use their code page,
    // where every page other than UTF-8 is read as Windows-1252, the page of western drawings.
    m_codePage = m_version >= 1021 ? CodePage::Utf8 : CodePage::Ansi1252;

    // Handles of the header ($HANDSEED is group 5 too) are no objects'.
    const Section* headerSection = findSection("HEADER");
    for (size_t i = 0; i < tags.size(); ++i) {
        if (headerSection && i >= headerSection->bodyBegin && i < headerSection->bodyEnd)
            continue;
        std::uint64_t handle = 0;
        if ((tags[i].code == 5 || tags[i].code == 105) && parseHandle(tags[i].value, handle))
            m_largestHandle = std::max(m_largestHandle, handle);
    }
    m_objects.clear();
    m_objectByHandle.clear();
    if (const Section* objects = findSection("OBJECTS"))
        indexObjects(*objects);
    return true;
}

const Drawing::Section* Drawing::findSection(std::string_view name) const {
    for (const Section& s : m_sections)
        if (s.name == name)
            return &s;
    return nullptr;
}

bool Drawing::hasSection(std::string_view name) const {
    return findSection(name) != nullptr;
}

std::span<const Tag> Drawing::section(std::string_view name) const {
    const Section* s = findSection(name);
    if (!s)
        return {};
    return std::span<const Tag>(m_file.tags()).subspan(s->bodyBegin, s->bodyEnd - s->bodyBegin);
}

void Drawing::indexHeader(const Section& header) {
    m_header.clear();
    const std::vector<Tag>& tags = m_file.tags();
    for (size_t i = header.bodyBegin; i < header.bodyEnd;) {
        if (tags[i].code != 9) {
            ++i;
            continue;
        }
        const std::string_view name = trimmed(tags[i].value);
        size_t end = i + 1;
        while (end < header.bodyEnd && tags[end].code != 9)
            ++end;
        m_header.try_emplace(name, HeaderVariable{i + 1, end}); // the first of a doubled name counts
        i = end;
    }
}

std::span<const Tag> Drawing::header(std::string_view name) const {
    auto it = m_header.find(name);
    if (it == m_header.end())
        return {};
    return std::span<const Tag>(m_file.tags()).subspan(it->second.begin, it->second.end - it->second.begin);
}

bool Drawing::hasHeader(std::string_view name) const {
    return m_header.count(name) > 0;
}

void Drawing::indexObjects(const Section& objects) {
    const std::vector<Tag>& tags = m_file.tags();
    size_t i = objects.bodyBegin;
    while (i < objects.bodyEnd && tags[i].code != 0)
        ++i;
    while (i < objects.bodyEnd) {
        ObjectRecord record;
        record.type = trimmed(tags[i].value);
        record.begin = i;
        size_t end = i + 1;
        int group = 0; // inside a 102 {...} group the owner tags are reactors, not the owner
        bool ownerSeen = false;
        for (; end < objects.bodyEnd && tags[end].code != 0; ++end) {
            const Tag& t = tags[end];
            if (t.code == 102)
                group += trimmed(t.value).starts_with("{") ? 1 : (group > 0 ? -1 : 0);
            else if (t.code == 5 && record.handle == 0)
                parseHandle(t.value, record.handle);
            else if (t.code == 330 && group == 0 && !ownerSeen)
                ownerSeen = parseHandle(t.value, record.owner);
        }
        record.end = end;
        if (record.handle)
            m_objectByHandle.try_emplace(record.handle, m_objects.size());
        m_objects.push_back(record);
        i = end;
    }
}

long Drawing::objectIndex(std::uint64_t handle) const {
    auto it = m_objectByHandle.find(handle);
    return it == m_objectByHandle.end() ? -1 : static_cast<long>(it->second);
}

std::span<const Tag> Drawing::tags(const ObjectRecord& object) const {
    return std::span<const Tag>(m_file.tags()).subspan(object.begin, object.end - object.begin);
}

std::vector<std::string> Drawing::registeredApplications() const {
    std::vector<std::string> names;
    std::span<const Tag> tables = section("TABLES");
    bool inRecord = false;
    for (const Tag& t : tables) {
        if (t.code == 0)
            inRecord = trimmed(t.value) == "APPID";
        else if (inRecord && t.code == 2) {
            names.push_back(text(trimmed(t.value)));
            inRecord = false;
        }
    }
    return names;
}

std::string Drawing::write(const Edits& edits) const {
    const std::vector<Tag>& tags = m_file.tags();
    const std::string_view eol = m_file.usesCrLf() ? "\r\n" : "\n";
    std::string out;
    out.reserve(tags.size() * 16);

    // What the header edits add, by where they go: a known variable's value is replaced, a new one
    // goes before the header's end.
    struct Replaced {
        const std::vector<Tag>* value;
        size_t end; // the first tag after the old value
    };
    std::unordered_map<size_t, Replaced> headerAt; // by the index of the "9 $NAME" tag
    std::vector<std::pair<std::string_view, const std::vector<Tag>*>> headerAdded;
    for (const auto& [name, value] : edits.header) {
        auto it = m_header.find(name);
        if (it != m_header.end()) {
            headerAt[it->second.begin - 1] = Replaced{&value, it->second.end};
        } else {
            headerAdded.emplace_back(name, &value);
        }
    }
    const Section* header = findSection("HEADER");
    const Section* objects = findSection("OBJECTS");
    std::unordered_map<size_t, size_t> objectAt; // first tag of an object to its index
    for (const auto& [index, replacement] : edits.objects)
        objectAt[m_objects[index].begin] = index;

    for (size_t i = 0; i < tags.size();) {
        if (header && i == header->bodyEnd) {
            for (const auto& [name, value] : headerAdded) {
                out.append("  9").append(eol).append(name).append(eol);
                for (const Tag& t : *value)
                    append(out, t, eol);
            }
        }
        if (objects && i == objects->bodyEnd)
            for (const Tag& t : edits.newObjects)
                append(out, t, eol);
        if (auto h = headerAt.find(i); h != headerAt.end()) {
            append(out, tags[i], eol);
            for (const Tag& t : *h->second.value)
                append(out, t, eol);
            i = h->second.end;
            continue;
        }
        if (auto o = objectAt.find(i); o != objectAt.end()) {
            for (const Tag& t : edits.objects.at(o->second))
                append(out, t, eol);
            i = m_objects[o->second].end;
            continue;
        }
        append(out, tags[i], eol);
        ++i;
    }
    return out;
}

} // namespace cadhost::dxf
