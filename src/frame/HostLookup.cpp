// Objects of the host found by name in its system registry and class dictionary.
#include "HostLookup.h"

#include <aced.h>
#include <dbmain.h>
#include <rxobject.h>

namespace hostLookup {

namespace {

AcRxObject* registryEntry(const char* name) {
    AcRxDictionary* registry = acrxSysRegistry();
    return registry ? registry->at(name) : nullptr;
}

} // namespace

AcRxClass* classNamed(const char* name) {
    AcRxObject* entry = registryEntry("ClassDictionary");
    if (!entry || !entry->isKindOf(AcRxDictionary::desc()))
        return nullptr;
    // The class dictionary holds nothing but descriptors; the cast only guards a broken host.
    return dynamic_cast<AcRxClass*>(static_cast<AcRxDictionary*>(entry)->at(name));
}

AcEditor* editor() {
    AcRxObject* entry = registryEntry("AcEditor");
    return entry ? AcEditor::cast(entry) : nullptr;
}

AcRxDynamicLinker* dynamicLinker() {
    AcRxObject* entry = registryEntry("DynamicLinker");
    if (!entry || !entry->isKindOf(AcRxDynamicLinker::desc()))
        return nullptr;
    return static_cast<AcRxDynamicLinker*>(entry);
}

AcDbDatabase* workingDatabase() {
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    return services ? services->workingDatabase() : nullptr;
}

} // namespace hostLookup
