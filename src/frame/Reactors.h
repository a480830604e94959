// The module's reactors: document events, editor events, and one database reactor per context.
#pragma once
#include <acdocman.h>
#include <aced.h>
#include <dbmain.h>

// Moves the current document context: every activation event hands its document to
// gDocList.ActivateDocument. Creation and destruction of documents change nothing else; a
// closed document's context stays in the list.
class CDocReactor : public AcApDocManagerReactor {
public:
    // The descriptor of AcApDocManagerReactor, looked up once in the host's class dictionary.
    AcRxClass* isA() const override;

    void documentCreated(AcApDocument* document) override;
    void documentBecameCurrent(AcApDocument* document) override;
    void documentToBeActivated(AcApDocument* document) override;
    // The document about to lose the focus stays current until the next of these events.
    void documentToBeDeactivated(AcApDocument* document) override;
    void documentActivated(AcApDocument* document) override;
};

// Registered with the editor and reacting to nothing: every operation keeps the empty body of
// AcEditorReactor.
class CEdiReactor : public AcEditorReactor {
public:
    // The descriptor of AcEditorReactor, looked up once in the host's class dictionary.
    AcRxClass* isA() const override;
};

// Hangs on the database that was working when its document context was made. It remembers
// that database, so that it is taken from the right one however the working database has
// changed since, and it forgets it when the database says goodbye, so a dead database is
// never touched.
class cDbsReactor : public AcDbDatabaseReactor {
public:
    cDbsReactor() = default;
    // Takes itself from its database, if it still hangs on a live one.
    ~cDbsReactor() override;
    cDbsReactor(const cDbsReactor&) = delete;
    cDbsReactor& operator=(const cDbsReactor&) = delete;

    // Puts the reactor on database (taking it from an earlier one first).
    void attachTo(const AcDbDatabase* database);
    // Takes the reactor from its database; nothing when there is none or it said goodbye.
    void detach();
    // The database the reactor hangs on; null before attachTo, after detach and after goodbye.
    const AcDbDatabase* database() const { return m_database; }

    void headerSysVarChanged(const AcDbDatabase*, const char*, bool) override {}
    void goodbye(const AcDbDatabase* database) override;

private:
    const AcDbDatabase* m_database = nullptr;
};
