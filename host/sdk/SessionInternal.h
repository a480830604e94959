// What the parts of the host SDK need of the running session, apart from the public HostSession.
#pragma once
#include <string>

namespace cadhost {

class VariableTable;
}
class AcRxObject;
class AcEditor;
class AcRxDynamicLinker;

namespace cadhost {

// Writes to the command line (the output sink, or stdout).
void hostPrint(const std::string& text);
// The variable table of the session.
const VariableTable& hostVariables();
// Keeps the count of open database objects (HostSession::openObjectCount).
void noteObjectsOpened(int delta);
// The session's editor and dynamic linker, as the system registry hands them out.
AcEditor* hostEditor();
AcRxDynamicLinker* hostDynamicLinker();

} // namespace cadhost
