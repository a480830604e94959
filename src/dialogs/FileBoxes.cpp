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

void showUserFileResult(int result, const FileResult& outcome, const ReportList& report,
                        const cSysVarList& list) {
    if (result == 0) {
        showFileResult(outcome);
        return;
    }
    if (!report.empty())
        ShowErrorBox(gMsg.TxReadErrorStart + " " + list.userDirectory + list.userFileName + " " +
                     gMsg.TxReadErrorEnd);
    if (result == 2)
        ShowWarningBox(gMsg.TxInsertErrorOnce);
    else if (result >= 3)
        ShowWarningBox(formatText("%d %s", result - 1, gMsg.TxInsertError.c_str()));
}
