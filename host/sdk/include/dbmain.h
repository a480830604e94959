// Drawing databases and their objects: the Named Objects Dictionary, dictionaries and xrecords.
#pragma once
#include "acadstrc.h"
#include "adsdef.h"
#include "rxobject.h"

class AcDbDatabase;
class AcDbDictionary;

namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };
}

// Opaque id of a database-resident object.
class ACSDK_EXPORT AcDbObjectId {
public:
    AcDbObjectId() = default;
    explicit AcDbObjectId(Adesk::UInt32 handle) : m_handle(handle) {}
    bool isNull() const { return m_handle == 0; }
    Adesk::UInt32 handle() const { return m_handle; }
    bool operator==(const AcDbObjectId& o) const = default;

private:
    Adesk::UInt32 m_handle = 0;
};

// An object of a drawing. Objects handed out by getAt or getNamedObjectsDictionary are open and
// must be closed exactly once with close(); a new object added with setAt is open for write and is
// closed by its creator. A new object never added to a database is deleted by its creator.
class ACSDK_EXPORT AcDbObject : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    Acad::ErrorStatus close();
    AcDbObjectId objectId() const;
    AcDbDatabase* database() const;
    bool isWriteEnabled() const;
    bool isReadEnabled() const;

protected:
    AcDbObject();
    friend class AcDbHostAccess;
    ~AcDbObject() override;

public:
    struct Impl;
    Impl* m_impl;
};

class ACSDK_EXPORT AcDbDictionary : public AcDbObject {
public:
    AcDbDictionary();
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    // Opens the entry. Acad::eKeyNotFound (22) when the key is missing; key case is ignored.
    Acad::ErrorStatus getAt(const char* key, AcDbObject*& entry, AcDb::OpenMode mode) const;
    // Adds newValue under key, replacing (and erasing) an older entry. Needs the dictionary open
    // for write; the new object becomes resident and stays open for write.
    Acad::ErrorStatus setAt(const char* key, AcDbObject* newValue, AcDbObjectId& newId);
    // Erases the entry. eKeyNotFound when there is none.
    Acad::ErrorStatus remove(const char* key);
    bool has(const char* key) const;
    Adesk::UInt32 numEntries() const;

protected:
    ~AcDbDictionary() override;
};

class ACSDK_EXPORT AcDbXrecord : public AcDbObject {
public:
    AcDbXrecord();
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    // A copy of the data chain; the caller releases it with acutRelRb. eOk with null for no data.
    Acad::ErrorStatus rbChain(resbuf** chain, AcDbDatabase* auxDb = nullptr) const;
    // Replaces the data with a copy of the chain starting at first. Needs the record open for write.
    // eInvalidInput for an entry a drawing file cannot hold: its types are group codes (1, 40,
    // 70, 90, 10 ...), not result types (RTSTR ...) or list markers.
    Acad::ErrorStatus setFromRbChain(const resbuf& first, AcDbDatabase* auxDb = nullptr);

protected:
    ~AcDbXrecord() override;
};

class ACSDK_EXPORT AcDbDatabaseReactor : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual void objectAppended(const AcDbDatabase*, const AcDbObject*) {}
    virtual void objectUnAppended(const AcDbDatabase*, const AcDbObject*) {}
    virtual void objectReAppended(const AcDbDatabase*, const AcDbObject*) {}
    virtual void objectOpenedForModify(const AcDbDatabase*, const AcDbObject*) {}
    virtual void objectModified(const AcDbDatabase*, const AcDbObject*) {}
    virtual void objectErased(const AcDbDatabase*, const AcDbObject*, bool /*erased*/) {}
    virtual void headerSysVarWillChange(const AcDbDatabase*, const char* /*name*/) {}
    virtual void headerSysVarChanged(const AcDbDatabase*, const char* /*name*/, bool /*success*/) {}
    virtual void proxyResurrectionCompleted(const AcDbDatabase*, const char* /*appName*/) {}
    // The database is about to be destroyed; reactors still on it are dropped afterwards.
    virtual void goodbye(const AcDbDatabase*) {}
};

class ACSDK_EXPORT AcDbDatabase : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    // DIMDSEP: the dimension decimal separator, one (signed) character.
    virtual char dimdsep() const = 0;
    // LUPREC: the linear unit precision.
    virtual Adesk::Int16 luprec() const = 0;
    virtual void addReactor(AcDbDatabaseReactor* reactor) const = 0;
    virtual void removeReactor(AcDbDatabaseReactor* reactor) const = 0;
    // Opens the Named Objects Dictionary: eOk, or an error (eWasOpenForWrite while it is open).
    virtual Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dict, AcDb::OpenMode mode) = 0;
};

class ACSDK_EXPORT AcDbHostApplicationServices {
public:
    virtual ~AcDbHostApplicationServices() = default;
    // The database of the current document; null when none is open (or the host has none).
    virtual AcDbDatabase* workingDatabase() const = 0;
};

extern "C" ACSDK_EXPORT AcDbHostApplicationServices* acdbHostApplicationServices();
extern "C" ACSDK_EXPORT bool acdbRegApp(const char* appName);
