// Documents and the document manager of the host, with their reactors and locks.
#pragma once
#include "acadstrc.h"
#include "rxobject.h"

class AcDbDatabase;

namespace AcAp {
enum DocLockMode {
    kNone = 0x00,
    kAutoWrite = 0x01,
    kNotLocked = 0x02,
    kWrite = 0x04,
    kProtectedAutoWrite = 0x14,
    kRead = 0x20,
    kXWrite = 0x40,
};
}

class ACSDK_EXPORT AcApDocument : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    // Full path of the drawing file; for a drawing never saved, its name alone ("Drawing1.dwg").
    virtual const char* fileName() const = 0;
    virtual AcDbDatabase* database() const = 0;
    virtual AcAp::DocLockMode myLockMode() const = 0;
};

// Receives document events. The host calls them in this order when a drawing is opened and made
// current: documentCreateStarted, documentCreated, documentToBeActivated, documentActivated,
// documentBecameCurrent; on a switch from A to B: documentToBeDeactivated(A), documentToBeActivated(B),
// documentActivated(B), documentBecameCurrent(B); on close: documentToBeDestroyed, documentDestroyed.
// A drawing opened while another is active: documentCreateStarted(B), documentCreated(B), then the
// switch from A to B. The new drawing is curDocument (and its database the working one) from
// documentCreateStarted on. After a close the last remaining drawing is activated as on a switch.
class ACSDK_EXPORT AcApDocManagerReactor : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual void documentCreateStarted(AcApDocument*) {}
    virtual void documentCreated(AcApDocument*) {}
    virtual void documentToBeDestroyed(AcApDocument*) {}
    virtual void documentDestroyed(const char* /*fileName*/) {}
    virtual void documentCreateCanceled(AcApDocument*) {}
    virtual void documentLockModeWillChange(AcApDocument*, AcAp::DocLockMode /*myCurrentMode*/,
                                            AcAp::DocLockMode /*myNewMode*/,
                                            AcAp::DocLockMode /*currentMode*/,
                                            const char* /*globalCmdName*/) {}
    virtual void documentLockModeChangeVetoed(AcApDocument*, const char* /*globalCmdName*/) {}
    virtual void documentLockModeChanged(AcApDocument*, AcAp::DocLockMode /*myPreviousMode*/,
                                         AcAp::DocLockMode /*myCurrentMode*/,
                                         AcAp::DocLockMode /*currentMode*/, const char* /*globalCmdName*/) {}
    virtual void documentBecameCurrent(AcApDocument*) {}
    virtual void documentToBeActivated(AcApDocument*) {}
    virtual void documentToBeDeactivated(AcApDocument*) {}
    virtual void documentActivationModified(bool /*bActivation*/) {}
    virtual void documentActivated(AcApDocument*) {}
};

class ACSDK_EXPORT AcApDocManager : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual void addReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(AcApDocManagerReactor* reactor) = 0;
    // Null when no drawing is open.
    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual int documentCount() const = 0;
    // Acad::eOk when locked. Refused (eLockViolation) for a null document or one the host keeps
    // locked by another command.
    virtual Acad::ErrorStatus lockDocument(AcApDocument* doc, AcAp::DocLockMode mode = AcAp::kWrite,
                                           const char* globalCmdName = nullptr,
                                           const char* localCmdName = nullptr, bool prompt = true) = 0;
    virtual Acad::ErrorStatus unlockDocument(AcApDocument* doc) = 0;
};

extern "C" ACSDK_EXPORT AcApDocManager* acDocManagerPtr();
