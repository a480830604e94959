// VariableCommands: the main dialog's variable commands: selecting rows, add, delete, set, compare, search
// and help.
#include "VariableCommands.h"

#include "dialogs/cDlgSlctSysVar.h"
#include "dialogs/DlgFind2.h"
#include "dialogs/TemplateDialog.h"
#include "dialogs/VarListView.h"
#include "LoadStep.h"
#include "MainDialogPort.h"
#include "settings/cMsgCatalog.h"
#include "settings/HelpService.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include <new>

namespace {

// Hands the search dialog's notifications to the commands for the time of one search.
class MainFindOwner : public FindOwner {
public:
    explicit MainFindOwner(VariableCommands& commands) : m_commands(commands) {}
    void onFindNotify(const FindNotification& notification) override {
        m_commands.OnFindNotify(notification.value);
    }

private:
    VariableCommands& m_commands;
};

} // namespace

VariableCommands::VariableCommands(MainDialogPort& dialog, DocumentState& context)
    : m_dialog(dialog), m_context(context) {}

// ---- selection ----

void VariableCommands::OnSelectAll() {
    VarListView& list = m_dialog.listView();
    list.selectRecordRows([](const cSysVar&, bool) { return true; });
    list.setFocus(Qt::OtherFocusReason);
}

void VariableCommands::OnInverse() {
    VarListView& list = m_dialog.listView();
    list.selectRecordRows([](const cSysVar&, bool selected) { return !selected; });
    list.setFocus(Qt::OtherFocusReason);
}

void VariableCommands::OnSelectList() {
    VarListView& list = m_dialog.listView();
    list.selectRecordRows([](const cSysVar& record, bool) { return record.inUserList(); });
    list.setFocus(Qt::OtherFocusReason);
}

// ---- the user list ----

void VariableCommands::OnAdd() {
    auto* selection = new (std::nothrow) cDlgSlctSysVar(m_context, m_dialog.dialogParent());
    if (!selection)
        return;
    runDialog(*selection);
    m_dialog.FillList();
    delete selection;
}

void VariableCommands::OnDelete() {
    // The record keeps its new text: view 0 still shows it, and Set can still write it.
    VarListView& list = m_dialog.listView();
    for (int row : list.selectedRowNumbers())
        if (cSysVar* record = list.rowModel()->recordAt(row))
            record->clearInUserList();
    m_dialog.FillList();
}

// ---- set ----

void VariableCommands::OnSetSelection() {
    m_dialog.listView().forEachRecordRow([](cSysVar& record, bool selected) {
        if (selected)
            record.setMarkedToSet();
        else
            record.clearMarkedToSet();
    });
    WriteMarkedVariables();
    m_dialog.FillList();
}

void VariableCommands::OnSetAll() {
    // Only records with a row are reached: view, compare mode and order decide.
    m_dialog.listView().forEachRecordRow([](cSysVar& record, bool) { record.setMarkedToSet(); });
    WriteMarkedVariables();
    m_dialog.FillList();
}

void VariableCommands::WriteMarkedVariables() {
    cSysVarList& list = m_context.varList;
    list.writeMarkedToHost();
    list.readAllFromHost();

    // A value counts as set only when the host gives back the same text: one it took and
    // changed on the way (rounded, reduced modulo 2 pi) is a failure.
    int succeeded = 0;
    int failed = 0;
    for (cSysVar* v = list.first; v; v = v->next) {
        if (!v->isMarkedToSet())
            continue;
        v->clearMarkedToSet();
        if (v->setSucceeded()) {
            v->clearSetSucceeded();
            if (compareText(v->newText, v->currentText) == 0)
                ++succeeded;
            else
                ++failed;
        }
        if (v->setFailed()) {
            v->clearSetFailed();
            ++failed;
        }
    }

    std::string text;
    if (succeeded + failed == 0)
        text = gMsg.TxWriteNone;
    else
        text = countText(succeeded, gMsg.TxWriteSuccessOnce, gMsg.TxWriteSuccess) + " " +
               countText(failed, gMsg.TxWriteFailureOnce, gMsg.TxWriteFailure);
    ShowInfoBox(text);
    m_dialog.SetStatusTexts(text, {}, {});
    m_dialog.SetRunCode(RunCode::Done);
}

// ---- compare ----

void VariableCommands::OnCompare() {
    m_context.compareMode = m_context.compareMode == CompareMode::Off ? CompareMode::On : CompareMode::Off;
    m_dialog.ShowModeMarks(); // also gives the compare button the icon of the new state
    m_dialog.FillList();
    VarListView& list = m_dialog.listView();
    list.viewport()->repaint();
    list.setFocus(Qt::OtherFocusReason);
}

// ---- search ----

void VariableCommands::OnFind() {
    auto* find = new (std::nothrow) DlgFind2(m_context, m_dialog.dialogParent());
    if (!find)
        return;
    MainFindOwner owner(*this);
    find->setOwner(&owner);
    find->setLimitToUserList(m_context.view == ListView::UserList);
    runDialog(*find);
    delete find;
}

void VariableCommands::OnFindNotify(std::int32_t value) {
    m_dialog.FillList();
    VarListView& list = m_dialog.listView();
    const QList<int> selected = list.selectedRowNumbers();
    if (selected.isEmpty()) {
        m_dialog.SetStatusTexts(gMsg.TxVarNotFound, {}, {});
        return;
    }
    const FoundRow found = DlgFind2::rowToShow(selected, value);
    if (found.row < 0)
        return;
    list.scrollTo(list.model()->index(found.row, 0));
    cSysVar* record = list.rowModel()->recordAt(found.row);
    m_dialog.ShowVariable(record);
    if (found.isEveryHit)
        m_dialog.SetStatusTexts(
            countText(static_cast<int>(selected.size()), gMsg.TxOneVarFound, gMsg.TxVarFound), {}, {});
    else
        m_dialog.ShowStatus(record);
}

// ---- help ----

void VariableCommands::OnHelp() {
    ShowHelp("VarDesk", "MainDialog");
}
