// The boxes that tell the user how a file was read or written.
#include "FileBoxes.h"

#include "settings/cMsgCatalog.h"
#include "vars/TextHelpers.h"

void showFileResult(const FileResult& result) {
    switch (result.box) {
    case FileResult::Box::None:
        break;
    case FileResult::Box::Warning:
        ShowWarningBox(result.text);
        break;
    case FileResult::Box::Error:
        ShowErrorBox(result.text);
        break;
    }
}

void showUserFileResult(const UserListRead& read, const ReportList& report, const cSysVarList& list) {
    if (!read.isRead()) {
        showFileResult(read.failure);
        return;
    }
    if (!report.empty())
        ShowErrorBox(gMsg.TxReadErrorStart + " " + list.userDirectory + list.userFileName + " " +
                     gMsg.TxReadErrorEnd);
    if (read.unknownNames > 0)
        ShowWarningBox(countText(read.unknownNames, gMsg.TxInsertErrorOnce, gMsg.TxInsertError));
}
