// User list files: what the Open command shows after cSysVarList::readUserFile.
#pragma once
#include "cSysVarList.h"

// The boxes that follow a read of the user list file userDirectory + userFileName, by result and
// report of cSysVarList::readUserFile:
// - 0: nothing, the reader has shown its box;
// - a report with lines: an error box naming the file (TxReadErrorStart ... TxReadErrorEnd);
// - 2: a warning box TxInsertErrorOnce, behind that error box if there is one;
// - 3 or more: a warning box "<result - 1> TxInsertError", the same way.
// The report goes no further: its lines never reach the error log. The caller then refreshes its
// title (unless the result is 0) and rebuilds its list.
void showUserFileResult(int result, const ReportList& report, const cSysVarList& list);
