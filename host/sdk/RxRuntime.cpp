// The runtime classes of the host: class descriptors, the class dictionary and the system registry.
#include "acdocman.h"
#include "aced.h"
#include "dbmain.h"
#include "rxobject.h"
#include "SessionInternal.h"

#include <cstring>

// Each class's descriptor lives in a function-local static, so it exists before any use, also from
// static initialisers of modules.
#define CADHOST_RX_CLASS(Cls, Parent)                                                                        \
    AcRxClass* Cls::desc() {                                                                                 \
        static AcRxClass cls(#Cls, Parent::desc());                                                          \
        return &cls;                                                                                         \
    }                                                                                                        \
    AcRxClass* Cls::isA() const {                                                                            \
        return Cls::desc();                                                                                  \
    }

namespace {
AcRxClass* classClassDesc() {
    static AcRxClass cls("AcRxClass", AcRxObject::desc());
    return &cls;
}
} // namespace

AcRxObject::~AcRxObject() = default;

AcRxClass* AcRxObject::desc() {
    static AcRxClass cls("AcRxObject", nullptr);
    return &cls;
}

AcRxClass* AcRxObject::isA() const {
    return AcRxObject::desc();
}

bool AcRxObject::isKindOf(const AcRxClass* cls) const {
    const AcRxClass* mine = isA();
    return cls && mine && mine->isDerivedFrom(cls);
}

AcRxClass::AcRxClass(const char* name, AcRxClass* parent) : m_name(name), m_parent(parent) {}

const char* AcRxClass::name() const {
    return m_name;
}

AcRxClass* AcRxClass::myParent() const {
    return m_parent;
}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    for (const AcRxClass* c = this; c; c = c->m_parent)
        if (c == other)
            return true;
    return false;
}

AcRxClass* AcRxClass::isA() const {
    return classClassDesc();
}

CADHOST_RX_CLASS(AcRxDictionary, AcRxObject)
CADHOST_RX_CLASS(AcRxDynamicLinker, AcRxObject)
CADHOST_RX_CLASS(AcRxEventReactor, AcRxObject)
CADHOST_RX_CLASS(AcEditorReactor, AcRxEventReactor)
CADHOST_RX_CLASS(AcEditor, AcRxObject)
CADHOST_RX_CLASS(AcApDocument, AcRxObject)
CADHOST_RX_CLASS(AcApDocManagerReactor, AcRxObject)
CADHOST_RX_CLASS(AcApDocManager, AcRxObject)
CADHOST_RX_CLASS(AcDbObject, AcRxObject)
CADHOST_RX_CLASS(AcDbDictionary, AcDbObject)
CADHOST_RX_CLASS(AcDbXrecord, AcDbObject)
CADHOST_RX_CLASS(AcDbDatabaseReactor, AcRxObject)
CADHOST_RX_CLASS(AcDbDatabase, AcRxObject)

AcEditor* AcEditor::cast(AcRxObject* obj) {
    return obj && obj->isKindOf(AcEditor::desc()) ? static_cast<AcEditor*>(obj) : nullptr;
}

namespace {

// Every class descriptor of the host by its name.
class ClassDictionary : public AcRxDictionary {
public:
    AcRxObject* at(const char* key) const override {
        if (!key)
            return nullptr;
        AcRxClass* classes[] = {AcRxObject::desc(),
                                classClassDesc(),
                                AcRxDictionary::desc(),
                                AcRxDynamicLinker::desc(),
                                AcRxEventReactor::desc(),
                                AcEditorReactor::desc(),
                                AcEditor::desc(),
                                AcApDocument::desc(),
                                AcApDocManagerReactor::desc(),
                                AcApDocManager::desc(),
                                AcDbObject::desc(),
                                AcDbDictionary::desc(),
                                AcDbXrecord::desc(),
                                AcDbDatabaseReactor::desc(),
                                AcDbDatabase::desc()};
        for (AcRxClass* c : classes)
            if (std::strcmp(c->name(), key) == 0)
                return c;
        return nullptr;
    }
};

class SystemRegistry : public AcRxDictionary {
public:
    AcRxObject* at(const char* key) const override {
        if (!key)
            return nullptr;
        if (std::strcmp(key, "DynamicLinker") == 0)
            return cadhost::hostDynamicLinker();
        if (std::strcmp(key, "AcEditor") == 0)
            return cadhost::hostEditor();
        if (std::strcmp(key, "ClassDictionary") == 0)
            return acrxClassDictionary();
        return nullptr;
    }
};

} // namespace

extern "C" AcRxDictionary* acrxSysRegistry() {
    static SystemRegistry registry;
    return &registry;
}

extern "C" AcRxDictionary* acrxClassDictionary() {
    static ClassDictionary dictionary;
    return &dictionary;
}
