// Drawing databases and their objects (dictionaries, xrecords), with open tracking and the file form.
#include "DrawingDatabase.h"

#include "acutads.h"
#include "SessionInternal.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

using nlohmann::json;

namespace cadhost {

namespace {

constexpr int kFormatVersion = 1;
constexpr int kMaxDepth = 64;

int openCountOf(const AcDbObject* object) {
    const AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    int n = d.readers + (d.writer ? 1 : 0);
    for (const auto& [key, entry] : d.entries)
        n += openCountOf(entry.object);
    return n;
}

void markErased(AcDbObject* object) {
    AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    d.erased = true;
    for (auto& [key, entry] : d.entries)
        markErased(entry.object);
}

} // namespace

void makeResident(AcDbObject* object, DrawingDatabase* db, AcDbObject* owner, std::uint64_t handle) {
    AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    d.db = db;
    d.owner = owner;
    d.handle = handle ? handle : db->nextHandle();
    d.id = AcDbObjectId(static_cast<Adesk::UInt32>(d.handle));
    noteObjectsOpened(d.readers + (d.writer ? 1 : 0));
}

void makeLoaded(AcDbObject* object, DrawingDatabase* db, AcDbObject* owner, std::uint64_t handle) {
    AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    d.db = db;
    d.owner = owner;
    d.handle = handle;
    d.id = AcDbObjectId(static_cast<Adesk::UInt32>(handle));
    d.writer = false;
}

void putEntry(AcDbObject* dictionary, const std::string& key, AcDbObject* object, int code) {
    AcDbObject::Impl& d = AcDbHostAccess::impl(dictionary);
    const std::string upper = upperCase(key);
    auto [it, added] = d.entries.insert_or_assign(upper, AcDbObject::Impl::Entry{key, object, code});
    if (added)
        d.order.push_back(upper);
}

namespace {

// Takes an entry out of its dictionary and keeps it erased until the database ends.
void eraseEntry(AcDbObject::Impl& dict, std::map<std::string, AcDbObject::Impl::Entry>::iterator it) {
    AcDbObject* old = it->second.object;
    std::erase(dict.order, it->first);
    dict.entries.erase(it);
    dict.changed = true;
    markErased(old);
    AcDbHostAccess::impl(old).db->bury(old);
}

bool realFromJson(const json& j, double& v) {
    if (j.is_number()) {
        v = j.get<double>();
        return true;
    }
    if (j.is_string()) {
        std::string s = j.get<std::string>();
        if (s == "nan" || s == "inf" || s == "-inf") {
            v = s == "nan" ? NAN : s == "inf" ? INFINITY : -INFINITY;
            return true;
        }
    }
    return false;
}

bool entryFromJson(const json& item, ChainEntry& e, std::string& why) {
    if (!item.is_array() || item.empty() || !item[0].is_number_integer()) {
        why = "an xrecord item must be [group code, value]";
        return false;
    }
    long long code = item[0].get<long long>();
    ValueKind kind =
        code >= -32768 && code <= 32767 ? kindOfCode(static_cast<int>(code)) : ValueKind::Unsupported;
    if (kind == ValueKind::Unsupported) {
        why = "group code " + std::to_string(code) + " is not supported";
        return false;
    }
    e.code = static_cast<short>(code);
    if (kind == ValueKind::None) {
        if (item.size() != 1) {
            why = "group code " + std::to_string(code) + " takes no value";
            return false;
        }
        return true;
    }
    if (item.size() != 2) {
        why = "an xrecord item must be [group code, value]";
        return false;
    }
    const json& v = item[1];
    bool ok = false;
    switch (kind) {
    case ValueKind::Text:
        ok = v.is_string();
        if (ok)
            e.text = v.get<std::string>();
        break;
    case ValueKind::Real:
        ok = realFromJson(v, e.real[0]);
        break;
    case ValueKind::Short:
    case ValueKind::Long: {
        ok = v.is_number_integer() && !(v.is_number_unsigned() && v.get<unsigned long long>() > INT32_MAX);
        if (ok) {
            e.integer = v.get<long long>();
            long long lo = kind == ValueKind::Short ? -32768 : INT32_MIN;
            long long hi = kind == ValueKind::Short ? 32767 : INT32_MAX;
            ok = e.integer >= lo && e.integer <= hi;
        }
        break;
    }
    case ValueKind::Point2:
    case ValueKind::Point3: {
        size_t n = kind == ValueKind::Point2 ? 2 : 3;
        ok = v.is_array() && (v.size() == n || (kind == ValueKind::Point3 && v.size() == 2));
        for (size_t i = 0; ok && i < v.size(); ++i)
            ok = realFromJson(v[i], e.real[i]);
        break;
    }
    default:
        break;
    }
    if (!ok)
        why = "group code " + std::to_string(code) + " has a value of the wrong kind";
    return ok;
}

// Fills the dictionary from its JSON entries; path names the place in messages.
bool fillDictionary(AcDbDictionary* dict, const json& entries, DrawingDatabase* db, const std::string& path,
                    int depth, std::string& why) {
    if (depth > kMaxDepth) {
        why = path + ": dictionaries nested too deeply";
        return false;
    }
    if (!entries.is_object()) {
        why = path + ": a dictionary must be a JSON object";
        return false;
    }
    AcDbObject::Impl& d = AcDbHostAccess::impl(dict);
    std::set<std::string> seen;
    for (const auto& [key, value] : entries.items()) {
        std::string where = path.empty() ? key : path + "/" + key;
        if (key.empty()) {
            why = (path.empty() ? std::string("Named Objects Dictionary") : path) +
                  ": an entry has an empty key";
            return false;
        }
        std::string upper = upperCase(key);
        if (!seen.insert(upper).second) {
            why = where + ": the key is there twice (case is ignored)";
            return false;
        }
        if (!value.is_object() || value.size() != 1) {
            why = where + ": an entry must be {\"dictionary\": ...} or {\"xrecord\": ...}";
            return false;
        }
        // The drawing stands on the template, whose dictionaries (ACAD_GROUP ...) the file may
        // name again: a dictionary fills the template's, anything else replaces it.
        d.changed = true;
        auto existing = d.entries.find(upper);
        if (existing != d.entries.end()) {
            AcDbObject* old = existing->second.object;
            if (value.contains("dictionary") && old->isKindOf(AcDbDictionary::desc())) {
                if (!fillDictionary(static_cast<AcDbDictionary*>(old), value["dictionary"], db, where,
                                    depth + 1, why))
                    return false;
                continue;
            }
            eraseEntry(d, existing);
        }
        AcDbObject* child = nullptr;
        if (value.contains("dictionary")) {
            auto* sub = new AcDbDictionary();
            child = sub;
            makeResident(child, db, dict);
            bool ok = fillDictionary(sub, value["dictionary"], db, where, depth + 1, why);
            putEntry(dict, key, child, 350);
            if (!ok)
                return false;
        } else if (value.contains("xrecord")) {
            child = new AcDbXrecord();
            makeResident(child, db, dict);
            putEntry(dict, key, child, 350);
            const json& items = value["xrecord"];
            if (!items.is_array()) {
                why = where + ": xrecord data must be a JSON array";
                return false;
            }
            AcDbObject::Impl& c = AcDbHostAccess::impl(child);
            for (size_t i = 0; i < items.size(); ++i) {
                ChainEntry e;
                if (!entryFromJson(items[i], e, why)) {
                    why = where + " item " + std::to_string(i + 1) + ": " + why;
                    return false;
                }
                c.chain.push_back(std::move(e));
            }
        } else {
            why = where + ": an entry must be {\"dictionary\": ...} or {\"xrecord\": ...}";
            return false;
        }
        // Loaded objects start closed.
        AcDbObject::Impl& c = AcDbHostAccess::impl(child);
        if (c.writer) {
            c.writer = false;
            noteObjectsOpened(-1);
        }
    }
    return true;
}

void describe(const AcDbObject* object, const std::string& path, std::vector<std::string>& lines) {
    const AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    for (const auto& [upper, entry] : d.entries) {
        std::string where = path.empty() ? entry.key : path + "/" + entry.key;
        if (entry.object->isKindOf(AcDbDictionary::desc())) {
            describe(entry.object, where, lines);
        } else if (!entry.object->isKindOf(AcDbXrecord::desc())) {
            continue; // objects of other classes hold no chain to list
        } else {
            lines.push_back("XRECORD " + where);
            for (const ChainEntry& e : AcDbHostAccess::impl(entry.object).chain)
                lines.push_back("  " + std::to_string(e.code) + " " + chainEntryText(e));
        }
    }
}

} // namespace

std::string chainEntryText(const ChainEntry& e) {
    switch (kindOfCode(e.code)) {
    case ValueKind::Text:
        return e.text;
    case ValueKind::Real:
        return realText(e.real[0]);
    case ValueKind::Short:
    case ValueKind::Long:
        return std::to_string(e.integer);
    case ValueKind::Point2:
        return realText(e.real[0]) + "," + realText(e.real[1]);
    case ValueKind::Point3:
        return realText(e.real[0]) + "," + realText(e.real[1]) + "," + realText(e.real[2]);
    default:
        return {};
    }
}

Acad::ErrorStatus openObject(AcDbObject* object, AcDb::OpenMode mode) {
    AcDbObject::Impl& d = AcDbHostAccess::impl(object);
    if (d.erased)
        return Acad::eWasErased;
    if (d.writer)
        return Acad::eWasOpenForWrite;
    if (mode == AcDb::kForWrite) {
        if (d.readers > 0)
            return Acad::eWasOpenForRead;
        d.writer = true;
    } else {
        ++d.readers;
    }
    if (d.db)
        noteObjectsOpened(1);
    return Acad::eOk;
}

DrawingDatabase::~DrawingDatabase() {
    m_reactors.tell([&](AcDbDatabaseReactor* r) { r->goodbye(this); });
    m_reactors.clear();
    int stillOpen = openCountOf(m_nod);
    for (AcDbObject* o : m_graveyard)
        stillOpen += openCountOf(o);
    noteObjectsOpened(-stillOpen);
    AcDbHostAccess::destroy(m_nod);
    for (AcDbObject* o : m_graveyard)
        AcDbHostAccess::destroy(o);
}

char DrawingDatabase::dimdsep() const {
    const VarDef* def = hostVariables().find("DIMDSEP");
    if (!def || def->type != VarType::String)
        return '\0';
    std::string text = variable(*def).text;
    return text.empty() ? '\0' : text[0];
}

Adesk::Int16 DrawingDatabase::luprec() const {
    const VarDef* def = hostVariables().find("LUPREC");
    if (!def || def->type != VarType::Int)
        return -1;
    return static_cast<Adesk::Int16>(variable(*def).integer);
}

void DrawingDatabase::addReactor(AcDbDatabaseReactor* reactor) const {
    m_reactors.add(reactor);
}

void DrawingDatabase::removeReactor(AcDbDatabaseReactor* reactor) const {
    m_reactors.remove(reactor);
}

Acad::ErrorStatus DrawingDatabase::getNamedObjectsDictionary(AcDbDictionary*& dict, AcDb::OpenMode mode) {
    dict = nullptr;
    if (!hasNamedObjects())
        return Acad::eNotApplicable;
    Acad::ErrorStatus status = openObject(m_nod, mode);
    if (status == Acad::eOk)
        dict = m_nod;
    return status;
}

VarValue DrawingDatabase::variable(const VarDef& def) const {
    const VarValue* stored = m_variables.find(def);
    return stored ? *stored : def.defaultValue;
}

void DrawingDatabase::setVariable(const VarDef& def, const VarValue& value) {
    m_reactors.tell([&](AcDbDatabaseReactor* r) { r->headerSysVarWillChange(this, def.name.c_str()); });
    m_variables.set(def, value);
    m_reactors.tell([&](AcDbDatabaseReactor* r) { r->headerSysVarChanged(this, def.name.c_str(), true); });
}

bool DrawingDatabase::registerApplication(const std::string& name) {
    if (name.empty())
        return false;
    m_regApps.insert(upperCase(name));
    return true;
}

bool DrawingDatabase::isApplicationRegistered(const std::string& name) const {
    return m_regApps.count(upperCase(name)) > 0;
}

void DrawingDatabase::notifyAppended(const AcDbObject* object) {
    m_reactors.tell([&](AcDbDatabaseReactor* r) { r->objectAppended(this, object); });
}

int DrawingDatabase::openObjectCount() const {
    int n = openCountOf(m_nod);
    for (const AcDbObject* o : m_graveyard)
        n += openCountOf(o);
    return n;
}

std::unique_ptr<DrawingDatabase> DrawingDatabase::fromJson(const std::string& text,
                                                           const VariableTable& table, std::string& message) {
    try {
        json root = json::parse(text, nullptr, true);
        if (!root.is_object() || !root.contains("cadhostDrawing")) {
            message = "not a drawing file (no \"cadhostDrawing\" entry)";
            return nullptr;
        }
        if (!root["cadhostDrawing"].is_number_integer() ||
            root["cadhostDrawing"].get<long long>() != kFormatVersion) {
            message = "drawing format version " + root["cadhostDrawing"].dump() + " is not supported";
            return nullptr;
        }
        std::unique_ptr<DrawingDatabase> db = fromTemplate(table);
        if (root.contains("variables")) {
            const json& vars = root["variables"];
            if (!vars.is_object()) {
                message = "\"variables\" must be a JSON object";
                return nullptr;
            }
            for (const auto& [name, value] : vars.items()) {
                const VarDef* def = table.find(name);
                if (!def || !def->isDrawingVariable())
                    continue;
                VarValue v;
                std::string why;
                if (!valueFromJson(*def, value, v, why)) {
                    message = "variable " + name + ": " + why;
                    return nullptr;
                }
                db->m_variables.set(*def, v);
            }
        }
        if (root.contains("regApps")) {
            const json& apps = root["regApps"];
            if (!apps.is_array()) {
                message = "\"regApps\" must be a JSON array of names";
                return nullptr;
            }
            for (const json& a : apps) {
                if (!a.is_string()) {
                    message = "\"regApps\" must be a JSON array of names";
                    return nullptr;
                }
                db->registerApplication(a.get<std::string>());
            }
        }
        if (root.contains("namedObjects") &&
            !fillDictionary(db->m_nod, root["namedObjects"], db.get(), "", 0, message)) {
            return nullptr;
        }
        return db;
    } catch (const json::exception& e) {
        message = std::string("not valid JSON: ") + e.what();
    } catch (const std::exception& e) {
        message = e.what();
    }
    return nullptr;
}

std::vector<std::string> DrawingDatabase::describeNamedObjects() const {
    std::vector<std::string> lines;
    describe(m_nod, "", lines);
    return lines;
}

} // namespace cadhost

using namespace cadhost;

AcDbObject::Impl::~Impl() {
    for (auto& [key, entry] : entries)
        delete entry.object;
}

AcDbObject::AcDbObject() : m_impl(new Impl) {}

AcDbObject::~AcDbObject() {
    delete m_impl;
}

Acad::ErrorStatus AcDbObject::close() {
    Impl& d = *m_impl;
    if (!d.db) {
        // A new object that never became part of a database has no other owner.
        delete this;
        return Acad::eOk;
    }
    if (d.writer)
        d.writer = false;
    else if (d.readers > 0)
        --d.readers;
    else
        return Acad::eNotOpenForRead;
    noteObjectsOpened(-1);
    return Acad::eOk;
}

AcDbObjectId AcDbObject::objectId() const {
    return m_impl->id;
}

AcDbDatabase* AcDbObject::database() const {
    return m_impl->db;
}

bool AcDbObject::isWriteEnabled() const {
    return m_impl->writer;
}

bool AcDbObject::isReadEnabled() const {
    return m_impl->writer || m_impl->readers > 0;
}

AcDbDictionary::AcDbDictionary() = default;
AcDbDictionary::~AcDbDictionary() = default;

Acad::ErrorStatus AcDbDictionary::getAt(const char* key, AcDbObject*& entry, AcDb::OpenMode mode) const {
    entry = nullptr;
    if (!isReadEnabled())
        return Acad::eNotOpenForRead;
    if (!key)
        return Acad::eInvalidKey;
    auto it = m_impl->entries.find(upperCase(key));
    if (it == m_impl->entries.end())
        return Acad::eKeyNotFound;
    Acad::ErrorStatus status = openObject(it->second.object, mode);
    if (status == Acad::eOk)
        entry = it->second.object;
    return status;
}

Acad::ErrorStatus AcDbDictionary::setAt(const char* key, AcDbObject* newValue, AcDbObjectId& newId) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!newValue)
        return Acad::eNullObjectPointer;
    if (!key || !*key)
        return Acad::eInvalidKey;
    if (!m_impl->db)
        return Acad::eNotInDatabase;
    Impl& v = *newValue->m_impl;
    if (v.db || newValue == this)
        return Acad::eInvalidInput;
    std::string upper = upperCase(key);
    auto it = m_impl->entries.find(upper);
    if (it != m_impl->entries.end())
        eraseEntry(*m_impl, it);
    makeResident(newValue, m_impl->db, this);
    putEntry(this, key, newValue, 350);
    m_impl->changed = true;
    newId = v.id;
    m_impl->db->notifyAppended(newValue);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(const char* key) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!key)
        return Acad::eInvalidKey;
    auto it = m_impl->entries.find(upperCase(key));
    if (it == m_impl->entries.end())
        return Acad::eKeyNotFound;
    eraseEntry(*m_impl, it);
    return Acad::eOk;
}

bool AcDbDictionary::has(const char* key) const {
    return key && m_impl->entries.count(upperCase(key)) > 0;
}

Adesk::UInt32 AcDbDictionary::numEntries() const {
    return static_cast<Adesk::UInt32>(m_impl->entries.size());
}

AcDbXrecord::AcDbXrecord() = default;
AcDbXrecord::~AcDbXrecord() = default;

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase*) const {
    if (!chain)
        return Acad::eInvalidInput;
    *chain = nullptr;
    if (!isReadEnabled())
        return Acad::eNotOpenForRead;
    if (m_impl->chain.empty())
        return Acad::eOk;
    *chain = chainFromEntries(m_impl->chain);
    return *chain ? Acad::eOk : Acad::eOutOfMemory;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& first, AcDbDatabase*) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    std::vector<ChainEntry> chain;
    if (!entriesFromChain(&first, chain))
        return Acad::eInvalidInput;
    // A drawing file holds group codes only: no result types (RTSTR ...) and no list markers.
    for (const ChainEntry& e : chain)
        if (e.code < 0 || e.code > 1071 || kindOfCode(e.code) == ValueKind::None)
            return Acad::eInvalidInput;
    // The same data again leaves the record as the file has it.
    if (chain != m_impl->chain) {
        m_impl->chain = std::move(chain);
        m_impl->changed = true;
    }
    return Acad::eOk;
}
