// A drawing's database: its drawing variables, its Named Objects Dictionary, and its file form.
#pragma once
#include "dbmain.h"
#include "ResbufUtil.h"
#include "VariableTable.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace cadhost {
class DrawingDatabase;
}

// The host's side of every database object: its place in the database, its open state, and the
// data of its class (entries of a dictionary, the chain of an xrecord).
struct AcDbObject::Impl {
    ~Impl();

    cadhost::DrawingDatabase* db = nullptr; // null until the object is added to a database
    AcDbObjectId id;
    AcDbObject* owner = nullptr;
    int readers = 0;
    bool writer = true; // a new object is open for write until it is closed
    bool erased = false;

    // Dictionary entries by upper-cased key: the key as given, and the owned object.
    std::map<std::string, std::pair<std::string, AcDbObject*>> entries;
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

class DrawingDatabase : public AcDbDatabase {
public:
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

    bool registerApplication(const std::string& name);
    bool isApplicationRegistered(const std::string& name) const;

    // File form: JSON of this shape (the reader checks every part of it):
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
    std::string toJson(const VariableTable& table) const;

    // Every xrecord under the Named Objects Dictionary: "XRECORD path/to/entry" and a line
    // "  <code> <value>" for each of its entries.
    std::vector<std::string> describeNamedObjects() const;

    // Database objects open right now.
    int openObjectCount() const;

    // For objects: the next handle, and a place for erased objects until the database ends.
    Adesk::UInt32 nextHandle() { return ++m_lastHandle; }
    void bury(AcDbObject* erased) { m_graveyard.push_back(erased); }
    void notifyAppended(const AcDbObject* object);
    // Drops the reactors for which drop answers true (those of a module that leaves the process).
    template <class Pred> void dropReactors(Pred drop) { std::erase_if(m_reactors, drop); }

private:
    AcDbDictionary* m_nod;
    std::vector<AcDbObject*> m_graveyard;
    mutable std::vector<AcDbDatabaseReactor*> m_reactors;
    std::map<std::string, VarValue> m_variables;
    std::set<std::string> m_regApps;
    Adesk::UInt32 m_lastHandle = 0;
};

// Opens a resident object: eOk, or eWasOpenForWrite / eWasOpenForRead / eWasErased.
Acad::ErrorStatus openObject(AcDbObject* object, AcDb::OpenMode mode);
// Text of one chain entry as the DICT listing shows it.
std::string chainEntryText(const ChainEntry& entry);

} // namespace cadhost
