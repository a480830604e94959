// The boxes that tell the user how a file was read or written.
#pragma once
#include "vars/cSysVarList.h"

// The box of result: none, a warning or an error box with its text.
void showFileResult(const FileResult& result);

// The boxes that follow a read of the user list file userDirectory + userFileName, by the result
// and report of cSysVarList::readUserFile:
// - a failed read: the failure's box alone;
// - a report with lines: an error box naming the file (TxReadErrorStart ... TxReadErrorEnd);
// - one unknown name: a warning box TxInsertErrorOnce, behind that error box if there is one;
// - more: a warning box "<count> TxInsertError", the same way.
// The report goes no further: its lines never reach the error log. The caller then refreshes its
// title (unless the read failed) and rebuilds its list.
void showUserFileResult(const UserListRead& read, const ReportList& report, const cSysVarList& list);
