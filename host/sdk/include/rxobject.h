// Runtime classes of the host: objects with class descriptors, the system registry, app messages.
#pragma once
#include "adesk.h"

class AcRxClass;

class ACSDK_EXPORT AcRxObject {
public:
    virtual ~AcRxObject();
    static AcRxClass* desc();
    virtual AcRxClass* isA() const;
    bool isKindOf(const AcRxClass* cls) const;
};

// Descriptor of a runtime class: a name and its parent.
class ACSDK_EXPORT AcRxClass : public AcRxObject {
public:
    AcRxClass(const char* name, AcRxClass* parent);
    const char* name() const;
    AcRxClass* myParent() const;
    bool isDerivedFrom(const AcRxClass* other) const;
    AcRxClass* isA() const override;

private:
    const char* m_name;
    AcRxClass* m_parent;
};

// A dictionary of runtime objects by name, as the system registry and the class dictionary are.
class ACSDK_EXPORT AcRxDictionary : public AcRxObject {
public:
    // Null when absent.
    virtual AcRxObject* at(const char* key) const = 0;
    AcRxClass* isA() const override;
    static AcRxClass* desc();
};

// The host's dynamic linker, found in the system registry under "DynamicLinker".
class ACSDK_EXPORT AcRxDynamicLinker : public AcRxObject {
public:
    static AcRxClass* desc();
    AcRxClass* isA() const override;
    virtual bool unlockApplication(void* appId) const = 0;
    virtual bool lockApplication(void* appId) const = 0;
    virtual bool isApplicationLocked(const char* name) const = 0;
};

// Registry entries: "DynamicLinker" (AcRxDynamicLinker), "AcEditor" (AcEditor),
// "ClassDictionary" (AcRxDictionary of AcRxClass by class name).
extern "C" ACSDK_EXPORT AcRxDictionary* acrxSysRegistry();
extern "C" ACSDK_EXPORT AcRxDictionary* acrxClassDictionary();
extern "C" ACSDK_EXPORT bool acrxRegisterAppMDIAware(void* appId);

namespace AcRx {
enum AppMsgCode {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
};
enum AppRetCode { kRetOK = 0, kRetError = 3 };
} // namespace AcRx

// What a module exports. The host finds these with dlsym; appId is the module's own handle.
extern "C" {
using AcRxEntryPointFn = AcRx::AppRetCode (*)(AcRx::AppMsgCode msg, void* appId);
using AcRxGetApiVersionFn = int (*)();
using AcRxSetPtpFn = void (*)(void* ptp);
}
constexpr int kAcSdkApiVersion = 24;
