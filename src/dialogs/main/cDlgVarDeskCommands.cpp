// cDlgVarDesk: the info command; the file and variable commands are the classes FileCommands and
// VariableCommands.
#include "cDlgVarDesk.h"

#include "dialogs/cDlgInfo.h"
#include "dialogs/TemplateDialog.h"
#include "settings/cMsgCatalog.h"

#include <new>

void cDlgVarDesk::OnInfo() {
    auto* info =
        new (std::nothrow) cDlgInfo(gMsg.TiVarDesk, cDlgInfo::versionLineText(), cDlgInfo::commandLineText(),
                                    cDlgInfo::copyrightLineText(), this);
    if (!info)
        return;
    runDialog(*info);
    delete info;
}
