// The load step of the main dialog: the AVL file into the list, the checks against the host, the
// log and showing it.
#pragma once
#include "vars/cSysVarList.h"
#include "vars/TextHelpers.h"

#include <cstdint>

class DocumentState;

// The main dialog's run code: where the load step stands, and whether the run goes on. The run of
// the dialog repeats until the code is Idle again.
enum class RunCode : std::int32_t {
    Idle = 0,     // nothing under way: before the load step of a later run, and once the run has ended
    ListRead = 1, // the AVL file was just read into the list
    Reading = 2,  // the values are being read again
    Done = 16,    // the load step has nothing left to do; the run goes on
};

// Fills or refreshes context's variable list as the main dialog opens.
//
// With an empty list it reads the AVL file of context's settings (avlFilePath) and collects its
// report lines, the records the host cannot read and the host's variables the file does not
// describe in errorLines and context's error count. When records survive and the count is above
// 0, the log is written to the user ini file's folder and the user is asked (TxShowErrorLog)
// whether to see it. When no record was read, the lines stay in errorLines: the reader's boxes
// have told the user already. The log's head block is begun only while the error count is 0, and
// moment gives its date and time.
//
// With a filled list (runCode not ListRead) it reads every current value from the host again.
// runCode ends as RunCode::Done. Always true.
bool runLoadStep(DocumentState& context, ReportList& errorLines, RunCode& runCode,
                 DateTime moment = currentDateTime());

// Opens the log in the editor of context's Editor setting: the command line is the editor path,
// a blank and the quoted path of the user ini file with its extension replaced by ".err". Does
// not wait for the editor nor look whether the log exists. A start that fails shows an error box
// (TxSpawnNoMemory; or the editor path and TxSpawnNotFound or TxSpawnNoExe). An editor that the
// drawing brought is asked about first (DocumentState::AskForDrawingPath).
void ShowErrorLog(DocumentState& context);
