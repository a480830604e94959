// The module's reactors: document events, editor events, and one database reactor per context.
#include "Reactors.h"

#include "cDocList.h"
#include "HostLookup.h"

namespace {

// Looked up once and kept; a miss is tried again at the next call.
AcRxClass* keptClass(AcRxClass*& kept, const char* name) {
    if (!kept)
        kept = hostLookup::classNamed(name);
    return kept;
}

} // namespace

AcRxClass* CDocReactor::isA() const {
    static AcRxClass* kept = nullptr;
    return keptClass(kept, "AcApDocManagerReactor");
}

void CDocReactor::documentCreated(AcApDocument* document) {
    gDocList.ActivateDocument(document);
}

void CDocReactor::documentBecameCurrent(AcApDocument* document) {
    gDocList.ActivateDocument(document);
}

void CDocReactor::documentToBeActivated(AcApDocument* document) {
    gDocList.ActivateDocument(document);
}

void CDocReactor::documentToBeDeactivated(AcApDocument* document) {
    gDocList.ActivateDocument(document);
}

void CDocReactor::documentActivated(AcApDocument* document) {
    gDocList.ActivateDocument(document);
}

AcRxClass* CEdiReactor::isA() const {
    static AcRxClass* kept = nullptr;
    return keptClass(kept, "AcEditorReactor");
}

cDbsReactor::~cDbsReactor() {
    detach();
}

void cDbsReactor::attachTo(const AcDbDatabase* database) {
    detach();
    if (!database)
        return;
    database->addReactor(this);
    m_database = database;
}

void cDbsReactor::detach() {
    if (m_database)
        m_database->removeReactor(this);
    m_database = nullptr;
}

void cDbsReactor::goodbye(const AcDbDatabase* database) {
    if (database == m_database)
        m_database = nullptr; // the host drops its reactors itself
}
