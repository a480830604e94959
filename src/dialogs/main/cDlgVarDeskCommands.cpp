// cDlgVarDesk: the info command, and the places of the file and variable commands.
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

// Not built yet: the file commands (new, open, save, save as, error log, configuration) and the
// variable commands (select, find, add, delete, set, compare, help) land in these. Until then
// their menu entries and buttons do nothing.
void cDlgVarDesk::OnFileNew() {}
void cDlgVarDesk::OnFileOpen() {}
void cDlgVarDesk::OnFileSave() {}
void cDlgVarDesk::OnFileSaveAs() {}
void cDlgVarDesk::OnShowErrorLog() {}
void cDlgVarDesk::OnConfig() {}
void cDlgVarDesk::OnSelectAll() {}
void cDlgVarDesk::OnInverse() {}
void cDlgVarDesk::OnSelectList() {}
void cDlgVarDesk::OnFind() {}
void cDlgVarDesk::OnAdd() {}
void cDlgVarDesk::OnDelete() {}
void cDlgVarDesk::OnSetSelection() {}
void cDlgVarDesk::OnSetAll() {}
void cDlgVarDesk::OnCompare() {}
void cDlgVarDesk::OnHelp() {}
