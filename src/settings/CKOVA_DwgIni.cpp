// CKOVA_DwgIni: key and value pairs kept in an xrecord of the drawing, worked on as a copy in memory.
#include "CKOVA_DwgIni.h"

#include <acdocman.h>
#include <acutads.h>
#include <adscodes.h>
#include <dbmain.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

enum Fault {
    kFaultFillMap = 3701,
    kFaultCopyValue = 3702,
    kFaultNullEntry = 3703,
    kFaultUnsupported = 3704,
    kFaultNoDatabase = 3705,
    kFaultKeyEntry = 3707,
};

constexpr short kRealGroupCode = 40;
constexpr short kShortGroupCode = 70;
constexpr short kLongGroupCode = 90;

// Text, Real, Short and Long are the kinds a value is read as. A value of another kind that can
// be copied (a text under another group code; a point or number, which owns no memory) is kept
// and written back as it stood, and counts as not found. Other cannot be copied safely (binary
// chunks, object ids, unknown codes): its pair is dropped.
enum class Kind { Text, Real, Short, Long, ForeignText, ForeignValue, Other };

bool within(short code, short low, short high) {
    return code >= low && code <= high;
}

Kind kindOf(short restype) {
    switch (restype) {
    case CKOVA_DwgIni::kTextGroupCode:
    case RTSTR:
        return Kind::Text;
    case kRealGroupCode:
    case RTREAL:
        return Kind::Real;
    case kShortGroupCode:
    case RTSHORT:
        return Kind::Short;
    case kLongGroupCode:
    case RTLONG:
        return Kind::Long;
    case RTPOINT:
    case RT3DPOINT:
    case RTANG:
        return Kind::ForeignValue;
    default:
        break;
    }
    // The group codes of the drawing format that hold a text, or a point or a number.
    if (within(restype, 0, 9) || within(restype, 100, 102) || within(restype, 300, 309) ||
        within(restype, 410, 419) || within(restype, 999, 1003))
        return Kind::ForeignText;
    if (within(restype, 10, 99) || within(restype, 110, 179) || within(restype, 210, 239) ||
        within(restype, 270, 299) || within(restype, 370, 409) || within(restype, 420, 429) ||
        within(restype, 440, 469) || within(restype, 1010, 1071))
        return Kind::ForeignValue;
    return Kind::Other;
}

bool holdsText(Kind kind) {
    return kind == Kind::Text || kind == Kind::ForeignText;
}

// Upper-cases ASCII letters; bytes of multibyte characters stay as they are.
std::string upperCased(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

// A name usable as a dictionary key: upper case, with the signs that paths bring made "_".
std::string cleanedName(const std::string& name) {
    std::string text = upperCased(name);
    for (char& c : text)
        if (c == '.' || c == ':' || c == '\\' || c == ' ')
            c = '_';
    return text;
}

// A new text entry owning a copy of text; null when it cannot be built.
resbuf* newTextEntry(short restype, const char* text) {
    resbuf* rb = acutNewRb(restype);
    if (!rb)
        return nullptr;
    rb->rbnext = nullptr;
    rb->resval.rstring = strdup(text ? text : "");
    if (!rb->resval.rstring) {
        acutRelRb(rb);
        return nullptr;
    }
    return rb;
}

// A single-entry copy of source, of the same kind. Throws 3703 for null, 3704 for a kind that
// cannot be copied (Other), or when the copy cannot be built.
resbuf* copyEntry(const resbuf* source) {
    if (!source)
        throw static_cast<int>(kFaultNullEntry);
    const Kind kind = kindOf(source->restype);
    if (kind == Kind::Other)
        throw static_cast<int>(kFaultUnsupported);
    resbuf* rb = nullptr;
    if (holdsText(kind)) {
        rb = newTextEntry(source->restype, source->resval.rstring);
    } else {
        rb = acutNewRb(source->restype);
        if (rb) {
            rb->rbnext = nullptr;
            rb->resval = source->resval;
        }
    }
    if (!rb)
        throw static_cast<int>(kFaultUnsupported);
    return rb;
}

// The value as text; false for a kind that has no text form here.
bool valueText(const resbuf& value, std::string& out) {
    char buffer[64];
    switch (kindOf(value.restype)) {
    case Kind::Text:
        out = value.resval.rstring ? value.resval.rstring : "";
        return true;
    case Kind::Real:
        std::snprintf(buffer, sizeof buffer, "%.12g", value.resval.rreal);
        break;
    case Kind::Short:
        std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(value.resval.rint));
        break;
    case Kind::Long:
        std::snprintf(buffer, sizeof buffer, "%ld", static_cast<long>(value.resval.rlong));
        break;
    case Kind::ForeignText:
    case Kind::ForeignValue:
    case Kind::Other:
        return false;
    }
    out = buffer;
    return true;
}

// A value entry of the group code built from text; null when the text does not fit the kind.
resbuf* valueFromText(short groupCode, const std::string& text) {
    const Kind kind = kindOf(groupCode);
    if (kind == Kind::Text)
        return newTextEntry(groupCode, text.c_str());
    if (kind != Kind::Real && kind != Kind::Short && kind != Kind::Long)
        return nullptr;
    if (text.empty())
        return nullptr;
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    resbuf* rb = nullptr;
    if (kind == Kind::Real) {
        const double number = std::strtod(begin, &end);
        if (*end != '\0' || errno != 0 || !(rb = acutNewRb(groupCode)))
            return nullptr;
        rb->resval.rreal = number;
    } else {
        const long number = std::strtol(begin, &end, 10);
        const long low = kind == Kind::Short ? SHRT_MIN : INT32_MIN;
        const long high = kind == Kind::Short ? SHRT_MAX : INT32_MAX;
        if (*end != '\0' || errno != 0 || number < low || number > high || !(rb = acutNewRb(groupCode)))
            return nullptr;
        if (kind == Kind::Short)
            rb->resval.rint = static_cast<short>(number);
        else
            rb->resval.rlong = static_cast<Adesk::Int32>(number);
    }
    rb->rbnext = nullptr;
    return rb;
}

AcDbDatabase* workingDatabase() {
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

// Opens entry key of dict as an object of class cls; null when missing or of another class
// (which is then closed again).
template <typename T> T* openEntryAs(AcDbDictionary* dict, const std::string& key, AcDb::OpenMode mode) {
    AcDbObject* object = nullptr;
    if (dict->getAt(key.c_str(), object, mode) != Acad::eOk || !object)
        return nullptr;
    if (!object->isKindOf(T::desc())) {
        object->close();
        return nullptr;
    }
    return static_cast<T*>(object);
}

} // namespace

void CKOVA_DwgIni::ReleaseRb::operator()(resbuf* rb) const {
    acutRelRb(rb);
}

CKOVA_DwgIni::~CKOVA_DwgIni() noexcept(false) {
    if (m_dirty && hasAllNames())
        writeBack();
}

bool CKOVA_DwgIni::hasAllNames() const {
    return !m_rootName.empty() && !m_drawingName.empty() && !m_entryName.empty();
}

void CKOVA_DwgIni::SetRootName(const std::string& name) {
    rename(m_rootName, upperCased(name));
}

void CKOVA_DwgIni::SetDrawingName(const std::string& name) {
    rename(m_drawingName, cleanedName(name));
}

void CKOVA_DwgIni::SetEntryName(const std::string& name) {
    rename(m_entryName, cleanedName(name));
}

void CKOVA_DwgIni::rename(std::string& field, std::string normalised) {
    if (normalised == field)
        return;
    if (m_dirty && hasAllNames())
        writeBack();
    field = std::move(normalised);
    reload();
}

void CKOVA_DwgIni::reload() {
    if (m_dirty && hasAllNames())
        writeBack();
    if (!hasAllNames())
        return;
    m_values.clear();
    load();
}

void CKOVA_DwgIni::load() {
    m_dirty = false;
    // Without a working database the drawing counts as holding no record.
    AcDbDatabase* db = workingDatabase();
    if (!db)
        return;
    AcDbDictionary* nod = nullptr;
    if (db->getNamedObjectsDictionary(nod, AcDb::kForRead) != Acad::eOk || !nod)
        return;
    AcDbDictionary* dict = openEntryAs<AcDbDictionary>(nod, dictionaryName(), AcDb::kForRead);
    nod->close();
    if (!dict)
        return;
    AcDbXrecord* record = openEntryAs<AcDbXrecord>(dict, m_entryName, AcDb::kForRead);
    dict->close();
    if (!record)
        return;
    resbuf* chain = nullptr;
    const Acad::ErrorStatus status = record->rbChain(&chain);
    record->close();
    if (status != Acad::eOk || !chain) {
        acutRelRb(chain);
        return;
    }

    const resbuf* rb = chain;
    try {
        while (rb) {
            if (kindOf(rb->restype) != Kind::Text) {
                // Not a key: the pair is dropped, and the next write back leaves it out.
                m_dirty = true;
                rb = rb->rbnext;
                if (rb)
                    rb = rb->rbnext;
                continue;
            }
            std::string key = rb->resval.rstring ? rb->resval.rstring : "";
            rb = rb->rbnext;
            if (!rb)
                break; // a key at the very end has no value
            if (kindOf(rb->restype) == Kind::Other) {
                // A value that cannot be copied: the pair is dropped, the rest is read on.
                m_dirty = true;
                rb = rb->rbnext;
                continue;
            }
            try {
                m_values.insert_or_assign(std::move(key), Value(copyEntry(rb)));
            } catch (int) {
                throw static_cast<int>(kFaultFillMap);
            }
            rb = rb->rbnext;
        }
    } catch (...) {
        acutRelRb(chain);
        throw;
    }
    acutRelRb(chain);
}

bool CKOVA_DwgIni::Get(const std::string& key, std::string& out) {
    if (!hasAllNames())
        return false;
    if (m_values.empty()) {
        reload();
        if (m_values.empty())
            return false;
    }
    const auto found = m_values.find(upperCased(key));
    if (found == m_values.end() || !found->second)
        return false;
    return valueText(*found->second, out);
}

bool CKOVA_DwgIni::Put(const std::string& key, const std::string& text, short groupCode) {
    if (!hasAllNames())
        return false;
    if (kindOf(groupCode) == Kind::Other)
        return false;
    resbuf* value = valueFromText(groupCode, text);
    if (!value) {
        if (kindOf(groupCode) == Kind::Text)
            throw static_cast<int>(kFaultUnsupported); // the text copy could not be built
        return false;
    }
    m_values.insert_or_assign(upperCased(key), Value(value));
    m_dirty = true;
    return true;
}

namespace {

// The chain of key and value entries in map order; the caller releases it. Throws 3707 or
// 3702, having released what was built.
template <typename Map> resbuf* buildChain(const Map& values) {
    resbuf* head = nullptr;
    resbuf* tail = nullptr;
    auto append = [&](resbuf* rb) {
        if (tail)
            tail->rbnext = rb;
        else
            head = rb;
        tail = rb;
    };
    for (const auto& [key, value] : values) {
        resbuf* keyEntry = newTextEntry(CKOVA_DwgIni::kTextGroupCode, key.c_str());
        if (!keyEntry) {
            acutRelRb(head);
            throw static_cast<int>(kFaultKeyEntry);
        }
        append(keyEntry);
        try {
            append(copyEntry(value.get()));
        } catch (int) {
            acutRelRb(head);
            throw static_cast<int>(kFaultCopyValue);
        }
    }
    return head;
}

} // namespace

void CKOVA_DwgIni::writeBack() {
    const std::string name = dictionaryName();
    m_dirty = false; // a write that fails is not tried again
    AcDbDatabase* db = workingDatabase();
    if (!db)
        throw static_cast<int>(kFaultNoDatabase);

    AcApDocManager* manager = acDocManagerPtr();
    AcApDocument* document = manager ? manager->curDocument() : nullptr;
    const bool locked =
        manager && manager->lockDocument(document, AcAp::kWrite, nullptr, nullptr, true) == Acad::eOk;
    if (!locked)
        acutPrintf("Die Zeichnung kann nicht gesperrt werden.\n");

    Acad::ErrorStatus status = Acad::eOk;
    try {
        AcDbDictionary* nod = nullptr;
        status = db->getNamedObjectsDictionary(nod, AcDb::kForWrite);
        if (status == Acad::eOk && !nod)
            status = Acad::eNullObjectPointer;
        if (status != Acad::eOk) {
            acutPrintf("Das Dictionary kann nicht geöffnet werden.\n");
        } else {
            AcDbDictionary* dict = nullptr;
            AcDbObject* object = nullptr;
            status = nod->getAt(name.c_str(), object, AcDb::kForWrite);
            if (status == Acad::eKeyNotFound) {
                dict = new AcDbDictionary;
                AcDbObjectId id;
                status = nod->setAt(name.c_str(), dict, id);
                if (status != Acad::eOk) {
                    dict->close(); // never resident: closing the new object discards it
                    dict = nullptr;
                }
            } else if (status == Acad::eOk && object) {
                if (object->isKindOf(AcDbDictionary::desc())) {
                    dict = static_cast<AcDbDictionary*>(object);
                } else {
                    object->close(); // something else stands under our name: leave it alone
                    status = Acad::eNotApplicable;
                }
            }
            nod->close();

            if (dict && m_values.empty()) {
                dict->remove(m_entryName.c_str());
                dict->close();
            } else if (dict) {
                AcDbXrecord* record = new AcDbXrecord;
                AcDbObjectId id;
                const Acad::ErrorStatus added = dict->setAt(m_entryName.c_str(), record, id);
                dict->close();
                if (added != Acad::eOk) {
                    record->close();
                    status = added;
                } else {
                    try {
                        resbuf* chain = buildChain(m_values);
                        record->setFromRbChain(*chain);
                        acutRelRb(chain);
                    } catch (...) {
                        record->close();
                        throw;
                    }
                    record->close();
                }
            }
        }
    } catch (...) {
        if (locked)
            manager->unlockDocument(document);
        throw;
    }

    if (status != Acad::eOk)
        acutPrintf("\nCKOVA_DwgIni: Could not open NamedObjectsDictionary!° Error-Status: %ld\n",
                   static_cast<long>(status));
    if (locked)
        manager->unlockDocument(document);
}
