// cDlgVarDesk: the info command; the file and variable commands are the classes FileCommands and
// VariableCommands.
#include "cDlgVarDesk.h"

#include "dialogs/cDlgInfo.h"
#include "settings/cMsgCatalog.h"

#include "hostui.h"
#include "UiServices.h"

#include <new>

void cDlgVarDesk::OnInfo() {
    auto* info =
        new (std::nothrow) cDlgInfo(gMsg.TiVarDesk, cDlgInfo::versionLineText(), cDlgInfo::commandLineText(),
                                    cDlgInfo::copyrightLineText(), this);
    if (!info)
        return;
    if (kova::UiServices* ui = acHostUiServices())
        ui->runModal(*info);
    else
        info->exec();
    delete info;
}
