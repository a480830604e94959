// Objects of the host found by name in its system registry and class dictionary.
#pragma once

class AcDbDatabase;
class AcEditor;
class AcRxClass;
class AcRxDynamicLinker;

namespace hostLookup {

// Class descriptor registered under name in the registry's "ClassDictionary"; null when absent.
AcRxClass* classNamed(const char* name);
// The registry's "AcEditor", cast to the editor class; null when absent or of another class.
AcEditor* editor();
// The registry's "DynamicLinker", cast to the linker class; null when absent or of another class.
AcRxDynamicLinker* dynamicLinker();
// The working database of the host services; null when there is none.
AcDbDatabase* workingDatabase();

} // namespace hostLookup
