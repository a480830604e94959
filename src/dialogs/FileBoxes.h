// The boxes that tell the user how a file was read or written.
#pragma once
#include "vars/cSysVarList.h"

// The box of result: none, a warning or an error box with its text.
void showFileResult(const FileResult& result);

// The boxes that follow a read of the user list file userDirectory + userFileName, by result,
// outcome and report of cSysVarList::readUserFile:
// - 0: the outcome's box, the reader's failure;
// - a report with lines: an error box naming the file (TxReadErrorStart ... TxReadErrorEnd);
// - 2: a warning box TxInsertErrorOnce, behind that error box if there is one;
// - 3 or more: a warning box "<result - 1> TxInsertError", the same way.
// The report goes no further: its lines never reach the error log. The caller then refreshes its
// title (unless the result is 0) and rebuilds its list.
void showUserFileResult(int result, const FileResult& outcome, const ReportList& report,
                        const cSysVarList& list);
