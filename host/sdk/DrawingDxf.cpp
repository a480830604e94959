// The DXF form of a drawing database: its variables as header variables, its Named Objects
// Dictionary as the OBJECTS section's root dictionary, everything else kept as read.
#include "DrawingDatabase.h"

#include "adscodes.h"
#include "SessionInternal.h"
#include "Utf8.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <set>

namespace cadhost {

extern const char* const kDrawingTemplate; // the R2018 template, built in from data/template

using dxf::parseInteger;
using dxf::parseReal;
using dxf::trimmed;

namespace {

// The host's own record of the drawing variables that have no header variable in the file.
constexpr const char* kHostRecordKey = "CADHOST_VARIABLES";
constexpr int kMaxDepth = 64;
constexpr int kR12Version = 1009; // AC1009: the last version without an OBJECTS section

// The code point of the text's first character; its first byte where that is no UTF-8.
long firstCodePoint(std::string_view text) {
    if (text.empty())
        return 0;
    char32_t code = 0;
    return utf8CharAt(text, 0, code) ? static_cast<long>(code) : static_cast<unsigned char>(text[0]);
}

// The file's $HANDSEED, the handle it gives next; 0 when it names none.
std::uint64_t handleSeed(const dxf::Drawing& file) {
    std::uint64_t seed = 0;
    std::span<const dxf::Tag> tags = file.header("$HANDSEED");
    if (!tags.empty())
        dxf::parseHandle(tags.front().value, seed);
    return seed;
}

const dxf::Tag* findCode(std::span<const dxf::Tag> tags, int code) {
    for (const dxf::Tag& t : tags)
        if (t.code == code)
            return &t;
    return nullptr;
}

// A header variable's value from its tags, by the variable's type; false when the tags do not
// hold one.
bool headerValue(const VarDef& def, std::span<const dxf::Tag> tags, const dxf::Drawing& file,
                 VarValue& value) {
    value = def.defaultValue;
    const dxf::Tag* tag = findCode(tags, def.dxfCode);
    if (!tag)
        return false;
    switch (def.type) {
    case VarType::Int:
    case VarType::Long:
        return parseInteger(tag->value, value.integer);
    case VarType::Real:
        return parseReal(tag->value, value.real[0]);
    case VarType::Point2:
    case VarType::Point3: {
        const int n = def.type == VarType::Point2 ? 2 : 3;
        for (int k = 0; k < n; ++k) {
            const dxf::Tag* c = findCode(tags, def.dxfCode + 10 * k);
            if (!c || !parseReal(c->value, value.real[k]))
                return k == 2; // a 2D point under a 3D variable keeps z = 0
        }
        return true;
    }
    case VarType::String:
        if (def.oneCharacter && def.dxfCode == 70) {
            long long code = 0;
            if (!parseInteger(tag->value, code) || code <= 0 || code > 0xFFFF)
                return false;
            char escape[16];
            std::snprintf(escape, sizeof escape, "\\U+%04X", static_cast<unsigned>(code));
            value.text = dxf::decodeText(escape, dxf::CodePage::Utf8);
            return true;
        }
        value.text = file.text(tag->value);
        return true;
    }
    return false;
}

std::vector<dxf::Tag> headerTags(const VarDef& def, const VarValue& value, const dxf::Drawing& file,
                                 dxf::Edits& edits) {
    std::vector<dxf::Tag> tags;
    switch (def.type) {
    case VarType::Int:
    case VarType::Long:
        tags.push_back(edits.make(def.dxfCode, std::to_string(value.integer)));
        break;
    case VarType::Real:
        tags.push_back(edits.make(def.dxfCode, realText(value.real[0])));
        break;
    case VarType::Point2:
    case VarType::Point3:
        for (int k = 0; k < (def.type == VarType::Point2 ? 2 : 3); ++k)
            tags.push_back(edits.make(def.dxfCode + 10 * k, realText(value.real[k])));
        break;
    case VarType::String:
        if (def.oneCharacter && def.dxfCode == 70) {
            tags.push_back(edits.make(70, std::to_string(firstCodePoint(value.text))));
        } else {
            tags.push_back(edits.make(def.dxfCode, file.fileText(value.text)));
        }
        break;
    }
    return tags;
}

// Group code under which a chain entry stands in a file: result-buffer types become the group
// codes of their kind; 0 for entries a file cannot hold (list markers).
int fileCode(int code) {
    switch (code) {
    case RTSTR:
        return 1;
    case RTREAL:
    case RTANG:
        return 40;
    case RTSHORT:
        return 70;
    case RTLONG:
        return 90;
    case RTPOINT:
    case RT3DPOINT:
        return 10;
    default:
        return code >= 0 && code <= 1071 ? code : 0;
    }
}

void appendChainTags(const std::vector<ChainEntry>& chain, const dxf::Drawing& file, dxf::Edits& edits,
                     std::vector<dxf::Tag>& tags) {
    for (const ChainEntry& e : chain) {
        const int code = fileCode(e.code);
        if (code == 0)
            continue;
        switch (kindOfCode(e.code)) {
        case ValueKind::Text:
            tags.push_back(edits.make(code, file.fileText(e.text)));
            break;
        case ValueKind::Real:
            tags.push_back(edits.make(code, realText(e.real[0])));
            break;
        case ValueKind::Short:
        case ValueKind::Long:
            tags.push_back(edits.make(code, std::to_string(e.integer)));
            break;
        case ValueKind::Point2:
        case ValueKind::Point3:
            for (int k = 0; k < (kindOfCode(e.code) == ValueKind::Point2 ? 2 : 3); ++k)
                tags.push_back(edits.make(code + 10 * k, realText(e.real[k])));
            break;
        default:
            break;
        }
    }
}

// The data of an xrecord: the tags after its subclass marker and cloning flag.
std::span<const dxf::Tag> xrecordData(std::span<const dxf::Tag> tags) {
    size_t i = 1;
    for (size_t k = 1; k < tags.size(); ++k)
        if (tags[k].code == 100 && trimmed(tags[k].value) == "AcDbXrecord") {
            i = k + 1;
            if (i < tags.size() && tags[i].code == 280)
                ++i;
            return tags.subspan(i);
        }
    // No subclass marker: the data follows the handle, reactors and owner.
    int group = 0;
    for (; i < tags.size(); ++i) {
        const dxf::Tag& t = tags[i];
        if (t.code == 102)
            group += trimmed(t.value).starts_with("{") ? 1 : -1;
        else if (!(group > 0 || t.code == 5 || t.code == 330 || t.code == 360))
            break;
    }
    return tags.subspan(i);
}

std::vector<ChainEntry> chainFromTags(std::span<const dxf::Tag> data, const dxf::Drawing& file) {
    std::vector<ChainEntry> chain;
    for (size_t i = 0; i < data.size(); ++i) {
        ChainEntry e;
        e.code = static_cast<short>(data[i].code);
        switch (kindOfCode(e.code)) {
        case ValueKind::Text:
            e.text = file.text(data[i].value);
            break;
        case ValueKind::Real:
            parseReal(data[i].value, e.real[0]);
            break;
        case ValueKind::Short:
        case ValueKind::Long:
            parseInteger(data[i].value, e.integer);
            break;
        case ValueKind::Point2:
        case ValueKind::Point3:
            parseReal(data[i].value, e.real[0]);
            for (int k = 1; k < 3 && i + 1 < data.size() && data[i + 1].code == e.code + 10 * k; ++k)
                parseReal(data[++i].value, e.real[k]);
            break;
        default:
            continue; // nothing a chain can hold; the record's tags stay as read until it changes
        }
        chain.push_back(std::move(e));
    }
    return chain;
}

// The first tags of a new object: type, handle, reactor and owner, subclass markers.
void beginNewObject(std::vector<dxf::Tag>& tags, dxf::Edits& edits, std::string_view type,
                    std::uint64_t handle, std::uint64_t owner, std::string_view subclass) {
    tags.push_back(edits.make(0, std::string(type)));
    tags.push_back(edits.make(5, dxf::handleText(handle)));
    if (owner) {
        tags.push_back(edits.make(102, "{ACAD_REACTORS"));
        tags.push_back(edits.make(330, dxf::handleText(owner)));
        tags.push_back(edits.make(102, "}"));
    }
    tags.push_back(edits.make(330, dxf::handleText(owner)));
    tags.push_back(edits.make(100, std::string(subclass)));
}

// An xrecord's tags with the chain as its data: the old record's head kept where the file has one
// (old not empty), else a new record of this handle under owner.
std::vector<dxf::Tag> xrecordTags(std::span<const dxf::Tag> old, std::uint64_t handle, std::uint64_t owner,
                                  const std::vector<ChainEntry>& chain, const dxf::Drawing& file,
                                  dxf::Edits& edits) {
    std::vector<dxf::Tag> tags;
    if (!old.empty()) {
        const std::span<const dxf::Tag> data = xrecordData(old);
        tags.assign(old.begin(), old.begin() + (data.data() - old.data()));
    } else {
        beginNewObject(tags, edits, "XRECORD", handle, owner, "AcDbXrecord");
        tags.push_back(edits.make(280, "1"));
    }
    appendChainTags(chain, file, edits, tags);
    return tags;
}

std::unique_ptr<dxf::Drawing> templateDrawing() {
    auto file = std::make_unique<dxf::Drawing>();
    std::string message;
    if (!file->parse(kDrawingTemplate, message)) {
        // Only a broken build gets here; the smallest drawing keeps the host working.
        static const char* const kSmallest = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1032\n0\nENDSEC\n"
                                             "0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n5\nC\n330\n0\n100\n"
                                             "AcDbDictionary\n281\n1\n0\nENDSEC\n0\nEOF\n";
        file->parse(kSmallest, message);
    }
    return file;
}

} // namespace

DrawingDatabase::DrawingDatabase(std::unique_ptr<dxf::Drawing> file)
    : m_file(std::move(file)), m_nod(new AcDbDictionary()) {}

DrawingDatabase::DrawingDatabase() : DrawingDatabase(templateDrawing()) {
    startFromTemplate(hostVariables());
}

std::unique_ptr<DrawingDatabase> DrawingDatabase::fromTemplate(const VariableTable& table) {
    std::unique_ptr<DrawingDatabase> db(new DrawingDatabase(templateDrawing()));
    db->startFromTemplate(table);
    return db;
}

void DrawingDatabase::startFromTemplate(const VariableTable& table) {
    // A new drawing has the host's defaults; the template gives the file around them, and its
    // header values are what a save compares with.
    std::vector<std::string> notes;
    readHeader(table, notes);
    readObjects(table);
    m_variables.clear();
}

std::unique_ptr<DrawingDatabase> DrawingDatabase::fromFile(std::string bytes, const VariableTable& table,
                                                           std::string& message,
                                                           std::vector<std::string>& notes) {
    const size_t first = bytes.find_first_not_of(" \t\r\n");
    if (first != std::string::npos && bytes[first] == '{')
        return fromJson(bytes, table, message);
    auto file = std::make_unique<dxf::Drawing>();
    if (!file->parse(std::move(bytes), message))
        return nullptr;
    std::unique_ptr<DrawingDatabase> db(new DrawingDatabase(std::move(file)));
    db->readHeader(table, notes);
    db->readObjects(table);
    if (!db->hasNamedObjects()) {
        std::string why = "It has no OBJECTS section, so no named objects dictionary";
        if (db->m_file->hasSection("OBJECTS"))
            why = "Its OBJECTS section has no root dictionary";
        else if (db->m_file->version() <= kR12Version)
            why = "It is an R12 drawing (AC1009), which has no named objects dictionary";
        notes.push_back(why + ": records that programs keep in a drawing cannot be stored in it.");
    }
    return db;
}

void DrawingDatabase::readHeader(const VariableTable& table, std::vector<std::string>& notes) {
    for (const VarDef& def : table.definitions()) {
        if (!def.dxfCode)
            continue;
        const std::string name = "$" + def.name;
        std::span<const dxf::Tag> tags = m_file->header(name);
        if (tags.empty())
            continue;
        VarValue value;
        std::string refusal = headerValue(def, tags, *m_file, value)
                                  ? admitValue(def, value)
                                  : std::string("it holds no value of its type.");
        if (!refusal.empty()) {
            notes.push_back("Header variable " + name + " (line " + std::to_string(tags.front().line) +
                            ") is not taken: " + refusal + " The host uses " +
                            valueToText(def.defaultValue, 6, ',') + " and keeps the file's value.");
            continue;
        }
        m_variables.set(def, value);
        m_valuesAtOpen[def.name] = value;
    }
    for (const std::string& app : m_file->registeredApplications())
        registerApplication(app);
}

void DrawingDatabase::readObjects(const VariableTable& table) {
    const std::uint64_t seed = handleSeed(*m_file);
    m_lastHandle = std::max<std::uint64_t>(m_file->largestHandle(), seed ? seed - 1 : 0);

    const std::vector<dxf::ObjectRecord>& objects = m_file->objects();
    long root = -1;
    for (size_t i = 0; i < objects.size() && root < 0; ++i)
        if (objects[i].type == "DICTIONARY")
            root = static_cast<long>(i);
    if (root < 0) {
        // No dictionary to stand for: the NOD stays out of the database, and takes no handle,
        // so that saving the drawing again writes the same file.
        makeLoaded(m_nod, this, nullptr, 0);
        return;
    }
    m_hasDictionary = true;
    std::vector<bool> reached(objects.size(), false);
    objectFromFile(root, nullptr, reached);

    // The host's own record stands in the root dictionary but is no object of the drawing's.
    if (m_hostRecord >= 0) {
        m_hostRecordAtOpen = chainFromTags(xrecordData(m_file->tags(objects[m_hostRecord])), *m_file);
        const std::vector<ChainEntry>& chain = m_hostRecordAtOpen;
        for (size_t i = 0; i + 1 < chain.size(); i += 2) {
            const VarDef* def =
                kindOfCode(chain[i].code) == ValueKind::Text ? table.find(chain[i].text) : nullptr;
            if (!def || !def->isDrawingVariable() || m_valuesAtOpen.count(def->name))
                continue;
            const ChainEntry& e = chain[i + 1];
            VarValue value = def->defaultValue;
            switch (def->type) {
            case VarType::Int:
            case VarType::Long:
                value.integer = e.integer;
                break;
            case VarType::Real:
                value.real[0] = e.real[0];
                break;
            case VarType::Point2:
            case VarType::Point3:
                std::copy(e.real, e.real + 3, value.real);
                if (def->type == VarType::Point2)
                    value.real[2] = 0;
                break;
            case VarType::String:
                value.text = e.text;
                break;
            }
            if (admitValue(*def, value).empty())
                m_variables.set(*def, value);
        }
    }
}

AcDbObject* DrawingDatabase::objectFromFile(long index, AcDbObject* owner, std::vector<bool>& reached) {
    const dxf::ObjectRecord& record = m_file->objects()[index];
    const bool root = owner == nullptr;
    AcDbObject* object = nullptr;
    int depth = 0;
    for (AcDbObject* o = owner; o; o = AcDbHostAccess::impl(o).owner)
        ++depth;
    if (reached[index]) {
        object = new ForeignObject();
        makeLoaded(object, this, owner, record.handle);
        AcDbHostAccess::impl(object).ownsRecord = false;
        return object;
    }
    reached[index] = true;
    if (root) {
        object = m_nod;
    } else if (record.type == "DICTIONARY" && depth < kMaxDepth) {
        object = new AcDbDictionary();
    } else if (record.type == "XRECORD") {
        object = new AcDbXrecord();
    } else {
        object = new ForeignObject();
    }
    makeLoaded(object, this, owner, record.handle);
    AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    d.record = index;

    std::span<const dxf::Tag> tags = m_file->tags(record);
    if (object->isKindOf(AcDbXrecord::desc())) {
        d.chain = chainFromTags(xrecordData(tags), *m_file);
    } else if (object->isKindOf(AcDbDictionary::desc())) {
        int group = 0;
        for (size_t i = 1; i < tags.size(); ++i) {
            if (tags[i].code == 102) {
                group += trimmed(tags[i].value).starts_with("{") ? 1 : (group > 0 ? -1 : 0);
                continue;
            }
            if (tags[i].code != 3 || group > 0 || i + 1 >= tags.size() ||
                (tags[i + 1].code != 350 && tags[i + 1].code != 360))
                continue;
            const std::string key = m_file->text(tags[i].value);
            const int code = tags[i + 1].code;
            std::uint64_t handle = 0;
            dxf::parseHandle(tags[i + 1].value, handle);
            ++i;
            const long target = m_file->objectIndex(handle);
            if (root && upperCase(key) == kHostRecordKey && target >= 0 &&
                m_file->objects()[target].type == "XRECORD") {
                m_hostRecord = target;
                reached[target] = true;
                continue;
            }
            if (key.empty() || d.entries.count(upperCase(key))) {
                // A second entry of one key (case ignored) cannot be reached through the
                // dictionary; it is kept in the file as it stands.
                d.keptEntries.emplace_back(key, code, handle);
                continue;
            }
            AcDbObject* child = nullptr;
            if (target >= 0) {
                child = objectFromFile(target, object, reached);
            } else {
                child = new ForeignObject(); // names something outside OBJECTS, a table record say
                makeLoaded(child, this, object, handle);
                AcDbHostAccess::impl(child).ownsRecord = false;
            }
            putEntry(object, key, child, code);
        }
    }
    return object;
}

std::string DrawingDatabase::toDxf(const VariableTable& table, std::vector<std::string>& notes) const {
    dxf::Edits edits;
    const int version = m_file->version();
    std::vector<const VarDef*> unplaced; // drawing variables the header cannot hold here
    for (const VarDef& def : table.definitions()) {
        if (!def.isDrawingVariable())
            continue;
        const bool placed = def.dxfCode && (m_file->hasHeader("$" + def.name) || version >= def.dxfSince);
        if (!placed) {
            unplaced.push_back(&def);
            continue;
        }
        const VarValue value = variable(def);
        auto atOpen = m_valuesAtOpen.find(def.name);
        if (value == (atOpen != m_valuesAtOpen.end() ? atOpen->second : def.defaultValue))
            continue;
        edits.header["$" + def.name] = headerTags(def, value, *m_file, edits);
    }

    // Variables without a header place, in the host's own record.
    std::vector<ChainEntry> record;
    for (const VarDef* def : unplaced) {
        const VarValue value = variable(*def);
        if (value == def->defaultValue)
            continue;
        ChainEntry name;
        name.code = 1;
        name.text = def->name;
        ChainEntry entry;
        switch (def->type) {
        case VarType::Int:
            entry.code = 70;
            entry.integer = value.integer;
            break;
        case VarType::Long:
            entry.code = 90;
            entry.integer = value.integer;
            break;
        case VarType::Real:
            entry.code = 40;
            entry.real[0] = value.real[0];
            break;
        case VarType::Point2:
        case VarType::Point3:
            entry.code = 10;
            std::copy(value.real, value.real + 3, entry.real);
            break;
        case VarType::String:
            entry.code = 1;
            entry.text = value.text;
            break;
        }
        record.push_back(std::move(name));
        record.push_back(std::move(entry));
    }
    std::uint64_t lastHandle = m_lastHandle;
    std::uint64_t hostRecordHandle = 0;
    bool nodChanged = AcDbHostAccess::impl(m_nod).changed;
    if (!hasNamedObjects()) {
        if (!record.empty()) {
            std::string names;
            for (size_t i = 0; i < record.size(); i += 2)
                names += (names.empty() ? "" : ", ") + record[i].text;
            notes.push_back("The drawing has no place for " + names +
                            ": they keep their values only while the drawing is open.");
        }
    } else if (record != m_hostRecordAtOpen) {
        if (m_hostRecord >= 0) {
            hostRecordHandle = m_file->objects()[m_hostRecord].handle;
            if (record.empty()) {
                edits.objects[m_hostRecord] = {};
                nodChanged = true;
                hostRecordHandle = 0;
            } else {
                edits.objects[m_hostRecord] = xrecordTags(m_file->tags(m_file->objects()[m_hostRecord]),
                                                          hostRecordHandle, 0, record, *m_file, edits);
            }
        } else if (!record.empty()) {
            hostRecordHandle = ++lastHandle;
            const std::vector<dxf::Tag> tags =
                xrecordTags({}, hostRecordHandle, AcDbHostAccess::impl(m_nod).handle, record, *m_file, edits);
            edits.newObjects.insert(edits.newObjects.end(), tags.begin(), tags.end());
            nodChanged = true;
        }
    } else if (m_hostRecord >= 0) {
        hostRecordHandle = m_file->objects()[m_hostRecord].handle;
    }

    if (hasNamedObjects())
        writeObjects(edits, nodChanged, hostRecordHandle);

    if (hasNamedObjects() && lastHandle + 1 > handleSeed(*m_file))
        edits.header["$HANDSEED"] = {edits.make(5, dxf::handleText(lastHandle + 1))};
    return m_file->write(edits);
}

void DrawingDatabase::writeObjects(dxf::Edits& edits, bool nodChanged, std::uint64_t hostRecordHandle) const {
    const std::vector<dxf::ObjectRecord>& objects = m_file->objects();

    auto regenerate = [&](const AcDbObject* object) {
        const AcDbObject::Impl& d = AcDbHostAccess::impl(object);
        const std::uint64_t owner = d.owner ? AcDbHostAccess::impl(d.owner).handle : 0;
        const bool dictionary = object->isKindOf(AcDbDictionary::desc());
        std::vector<dxf::Tag> tags;
        std::vector<dxf::Tag> entries;
        if (dictionary) {
            for (const std::string& upper : d.order) {
                const AcDbObject::Impl::Entry& entry = d.entries.at(upper);
                entries.push_back(edits.make(3, m_file->fileText(entry.key)));
                entries.push_back(
                    edits.make(entry.code, dxf::handleText(AcDbHostAccess::impl(entry.object).handle)));
            }
            for (const auto& [key, code, handle] : d.keptEntries) {
                entries.push_back(edits.make(3, m_file->fileText(key)));
                entries.push_back(edits.make(code, dxf::handleText(handle)));
            }
            if (object == m_nod && hostRecordHandle) {
                entries.push_back(edits.make(3, kHostRecordKey));
                entries.push_back(edits.make(350, dxf::handleText(hostRecordHandle)));
            }
        }
        if (d.record >= 0) {
            std::span<const dxf::Tag> old = m_file->tags(objects[d.record]);
            if (dictionary) {
                // The old tags without their entries; the entries go where the first one stood.
                bool placed = false;
                for (size_t i = 0; i < old.size(); ++i) {
                    const bool entryKey = old[i].code == 3 && i + 1 < old.size() &&
                                          (old[i + 1].code == 350 || old[i + 1].code == 360);
                    if (entryKey || (old[i].code == 1001 && !placed)) {
                        if (!placed)
                            tags.insert(tags.end(), entries.begin(), entries.end());
                        placed = true;
                        if (entryKey) {
                            ++i;
                            continue;
                        }
                    }
                    tags.push_back(old[i]);
                }
                if (!placed)
                    tags.insert(tags.end(), entries.begin(), entries.end());
                return tags;
            }
            return xrecordTags(old, d.handle, owner, d.chain, *m_file, edits);
        }
        if (!dictionary)
            return xrecordTags({}, d.handle, owner, d.chain, *m_file, edits);
        beginNewObject(tags, edits, "DICTIONARY", d.handle, owner, "AcDbDictionary");
        tags.push_back(edits.make(281, "1"));
        tags.insert(tags.end(), entries.begin(), entries.end());
        return tags;
    };

    std::function<void(const AcDbObject*)> visit = [&](const AcDbObject* object) {
        const AcDbObject::Impl& d = AcDbHostAccess::impl(object);
        const bool modelled =
            object->isKindOf(AcDbDictionary::desc()) || object->isKindOf(AcDbXrecord::desc());
        if (d.erased) {
            if (d.record >= 0 && d.ownsRecord)
                edits.objects[d.record] = {};
        } else if (d.ownsRecord && modelled && d.record < 0) {
            std::vector<dxf::Tag> tags = regenerate(object);
            edits.newObjects.insert(edits.newObjects.end(), tags.begin(), tags.end());
        } else if (d.ownsRecord && modelled && (d.changed || (object == m_nod && nodChanged))) {
            edits.objects[d.record] = regenerate(object);
        }
        for (const std::string& upper : d.order)
            visit(d.entries.at(upper).object);
    };
    visit(m_nod);
    for (const AcDbObject* erased : m_graveyard)
        visit(erased);
}

} // namespace cadhost
