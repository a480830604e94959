// A drawing's database: its drawing variables, its Named Objects Dictionary, and its file form.
#pragma once
#include "dbmain.h"
#include "DxfDrawing.h"
#include "ReactorList.h"
#include "ResbufUtil.h"
#include "VariableTable.h"
#include "VariableValues.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace cadhost {
class DrawingDatabase;
}

// The host's side of every database object: its place in the database, its open state, and the
// data of its class (entries of a dictionary, the chain of an xrecord).
struct AcDbObject::Impl {
    ~Impl();

    // One entry of a dictionary: the key as given, the owned object, and the group code that
    // links it in the file (350 soft owner, 360 hard owner).
    struct Entry {
        std::string key;
        AcDbObject* object = nullptr;
        int code = 350;
    };

    cadhost::DrawingDatabase* db = nullptr; // null until the object is added to a database
    AcDbObjectId id;
    std::uint64_t handle = 0;
    AcDbObject* owner = nullptr;
    int readers = 0;
    bool writer = true; // a new object is open for write until it is closed
    bool erased = false;

    // Where the object stands in the drawing file: its index among the file's objects (-1 for an
    // object made since), and whether it changed since, so that it is written anew.
    long record = -1;
    bool changed = false;
    // False for an entry that only refers to an object owned elsewhere: it has no tags of its own.
    bool ownsRecord = true;

    // Dictionary entries by upper-cased key, and the upper-cased keys in the file's order.
    std::map<std::string, Entry> entries;
    std::vector<std::string> order;
    // Entries of the file that the dictionary cannot show (a key given twice): key, code, handle.
    std::vector<std::tuple<std::string, int, std::uint64_t>> keptEntries;
    // Xrecord data.
    std::vector<cadhost::ChainEntry> chain;
};

// Reaches the protected parts of database objects for the host.
class AcDbHostAccess {
public:
    static void destroy(AcDbObject* object) { delete object; }
    static AcDbObject::Impl& impl(const AcDbObject* object) { return *object->m_impl; }
};

namespace cadhost {

// An object of a class the host does not model (a layout, a plot style, an entry that names a
// table record): kept by its handle and written as it was read.
class ForeignObject : public AcDbObject {
public:
    ForeignObject() = default;
};

class DrawingDatabase : public AcDbDatabase {
public:
    // A new drawing: the host's R2018 template.
    DrawingDatabase();
    ~DrawingDatabase() override;

    char dimdsep() const override;
    Adesk::Int16 luprec() const override;
    void addReactor(AcDbDatabaseReactor* reactor) const override;
    void removeReactor(AcDbDatabaseReactor* reactor) const override;
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dict, AcDb::OpenMode mode) override;

    // The stored value, or the default of the table.
    VarValue variable(const VarDef& def) const;
    // Stores a value already admitted by the rules, telling the reactors before and after.
    void setVariable(const VarDef& def, const VarValue& value);
    // The session loaded table to in place of from: the stored values move to its definitions.
    void rebindVariables(const VariableTable& from, const VariableTable& to) { m_variables.rebind(from, to); }

    bool registerApplication(const std::string& name);
    bool isApplicationRegistered(const std::string& name) const;

    // Reads a drawing file: ASCII DXF, or the host's former JSON form (which then stands on the
    // template). Null with the reason on failure. notes gets what the user should know of a
    // drawing that opened (values the host did not take, an R12 file's missing dictionary).
    // A new drawing on the template, read with this table.
    static std::unique_ptr<DrawingDatabase> fromTemplate(const VariableTable& table);
    static std::unique_ptr<DrawingDatabase> fromFile(std::string bytes, const VariableTable& table,
                                                     std::string& message, std::vector<std::string>& notes);
    // The drawing as DXF: what was read, with the changes since. notes gets what the file could
    // not keep (an R12 file has no place for some variables).
    std::string toDxf(const VariableTable& table, std::vector<std::string>& notes) const;
    // The drawing file as the host holds it, for a view of its entities.
    const dxf::Drawing& file() const { return *m_file; }
    // False for an R12 drawing, whose file has no OBJECTS section and so no dictionary (and for a
    // file whose OBJECTS section lacks its root dictionary).
    bool hasNamedObjects() const { return m_hasDictionary; }

    // Former file form: JSON of this shape (the reader checks every part of it):
    //   { "cadhostDrawing": 1,
    //     "variables": { "LUPREC": 4, "DIMDSEP": ",", "INSBASE": [0, 0, 0], ... },
    //     "regApps": [ "APPNAME", ... ],
    //     "namedObjects": { "<key>": <entry>, ... } }
    // where <entry> is { "dictionary": { "<key>": <entry>, ... } } or { "xrecord": [ <item>, ... ] }
    // and <item> is [code, value]: a string for text codes (1, 2..9, 300..309, 1000..1003, 5005), a
    // number for real codes (40..59, 140..149, 5001; "nan", "inf", "-inf" for the others), an
    // integer for short and long codes (70..79, 90..99, 5003, 5010, ...), [x, y] or [x, y, z] for
    // point codes (10..18, 5002, 5009), and [code] alone for list markers (5016, 5017, ...).
    // Dictionary keys are unique without regard to case. Variables the table does not know, global
    // and computed variables are skipped; a known variable with a value of the wrong kind or out of
    // its range makes the file invalid.
    static std::unique_ptr<DrawingDatabase> fromJson(const std::string& text, const VariableTable& table,
                                                     std::string& message);

    // Every xrecord under the Named Objects Dictionary: "XRECORD path/to/entry" and a line
    // "  <code> <value>" for each of its entries.
    std::vector<std::string> describeNamedObjects() const;

    // Database objects open right now.
    int openObjectCount() const;

    // For objects: the next handle, and a place for erased objects until the database ends.
    std::uint64_t nextHandle() { return ++m_lastHandle; }
    void bury(AcDbObject* erased) { m_graveyard.push_back(erased); }
    void notifyAppended(const AcDbObject* object);
    // Drops the reactors for which drop answers true (those of a module that leaves the process).
    template <class Pred> void dropReactors(Pred drop) { m_reactors.removeIf(drop); }

private:
    explicit DrawingDatabase(std::unique_ptr<dxf::Drawing> file);
    void startFromTemplate(const VariableTable& table);
    void readHeader(const VariableTable& table, std::vector<std::string>& notes);
    void readObjects(const VariableTable& table);
    AcDbObject* objectFromFile(long index, AcDbObject* owner, std::vector<bool>& reached);
    void writeObjects(dxf::Edits& edits, bool nodChanged, std::uint64_t hostRecordHandle) const;

    std::unique_ptr<dxf::Drawing> m_file;
    // Values of drawing variables as the file gave them (or the default where it gave none): a
    // variable still at it is written as it was read.
    VarValues m_valuesAtOpen;
    // The host's own record of the variables that have no header variable; -1: none in the file.
    long m_hostRecord = -1;
    bool m_hasDictionary = false;
    std::vector<ChainEntry> m_hostRecordAtOpen;
    AcDbDictionary* m_nod;
    std::vector<AcDbObject*> m_graveyard;
    mutable ReactorList<AcDbDatabaseReactor> m_reactors;
    VariableValues m_variables;
    std::set<std::string> m_regApps;
    std::uint64_t m_lastHandle = 0;
};

// Makes an object resident in db under owner, with the handle it has in the file or, for 0, the
// next free one; it keeps its open state.
void makeResident(AcDbObject* object, DrawingDatabase* db, AcDbObject* owner, std::uint64_t handle = 0);
// Makes an object read from a file resident under owner with the file's handle (0 where the file
// gave none), closed; it takes no handle from the database.
void makeLoaded(AcDbObject* object, DrawingDatabase* db, AcDbObject* owner, std::uint64_t handle);
// Adds or replaces a dictionary entry, keeping the entries' order.
void putEntry(AcDbObject* dictionary, const std::string& key, AcDbObject* object, int code);

// Opens a resident object: eOk, or eWasOpenForWrite / eWasOpenForRead / eWasErased.
Acad::ErrorStatus openObject(AcDbObject* object, AcDb::OpenMode mode);
// Text of one chain entry as the DICT listing shows it.
std::string chainEntryText(const ChainEntry& entry);

} // namespace cadhost
