// The host's editor, found in the system registry under "AcEditor", and its reactors.
#pragma once
#include "rxobject.h"

class AcDbDatabase;

class ACSDK_EXPORT AcRxEventReactor : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual void dwgFileOpened(AcDbDatabase*, const char* /*fileName*/) {}
    virtual void initialDwgFileOpenComplete(AcDbDatabase*) {}
    virtual void databaseConstructed(AcDbDatabase*) {}
    virtual void databaseToBeDestroyed(AcDbDatabase*) {}
};

// The host calls these around its commands, Lisp evaluation, drawing open, save and close, and
// system variable changes.
class ACSDK_EXPORT AcEditorReactor : public AcRxEventReactor {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual void unknownCommand(const char* /*cmdStr*/) {}
    virtual void commandWillStart(const char* /*cmdStr*/) {}
    virtual void commandEnded(const char* /*cmdStr*/) {}
    virtual void commandCancelled(const char* /*cmdStr*/) {}
    virtual void commandFailed(const char* /*cmdStr*/) {}
    virtual void lispWillStart(const char* /*firstLine*/) {}
    virtual void lispEnded() {}
    virtual void lispCancelled() {}
    virtual void beginDwgOpen(const char* /*fileName*/) {}
    virtual void endDwgOpen(const char* /*fileName*/, AcDbDatabase*) {}
    virtual void beginClose(AcDbDatabase*) {}
    virtual void beginSave(AcDbDatabase*, const char* /*intendedName*/) {}
    virtual void saveComplete(AcDbDatabase*, const char* /*actualName*/) {}
    virtual void sysVarWillChange(const char* /*varName*/) {}
    virtual void sysVarChanged(const char* /*varName*/, bool /*success*/) {}
};

class ACSDK_EXPORT AcEditor : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    // The object itself when it is an AcEditor, else null.
    static AcEditor* cast(AcRxObject* obj);
    virtual void addReactor(AcRxEventReactor* reactor) = 0;
    virtual void removeReactor(AcRxEventReactor* reactor) = 0;
};
