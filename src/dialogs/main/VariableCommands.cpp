// cDlgVarDesk: the variable commands: selecting rows, add, delete, set, compare, search and help.
#include "cDlgVarDesk.h"

#include "dialogs/cDlgSlctSysVar.h"
#include "dialogs/DlgFind2.h"
#include "dialogs/TemplateDialog.h"
#include "LoadStep.h"
#include "settings/cMsgCatalog.h"
#include "settings/HelpService.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include "hostui.h"
#include "UiServices.h"

#include <QItemSelection>
#include <QMenuBar>

#include <algorithm>
#include <functional>
#include <new>

namespace {

// Hands the search dialog's notifications to the main dialog for the time of one search.
class MainFindOwner : public FindOwner {
public:
    explicit MainFindOwner(cDlgVarDesk& dialog) : m_dialog(dialog) {}
    void onFindNotify(const FindNotification& notification) override {
        m_dialog.OnFindNotify(notification.value);
    }

private:
    cDlgVarDesk& m_dialog;
};

// "<n> <many>", or the text for exactly one; empty for none.
std::string countText(int count, const std::string& once, const std::string& many) {
    if (count == 0)
        return {};
    if (count == 1)
        return once;
    return formatText("%d %s", count, many.c_str());
}

// The rows of view whose records wanted says yes to, ascending; header rows never.
QItemSelection recordRows(VarListView& view, const std::function<bool(int row, cSysVar&)>& wanted) {
    VarListModel* rows = view.rowModel();
    QItemSelection selection;
    if (!rows)
        return selection;
    const int lastColumn = rows->columnCount() - 1;
    for (int row = 0; row < rows->rowCount(); ++row)
        if (cSysVar* record = rows->recordAt(row); record && wanted(row, *record))
            selection.select(rows->index(row, 0), rows->index(row, lastColumn));
    return selection;
}

// The selected rows of view, ascending.
QList<int> selectedRowNumbers(const VarListView& view) {
    QList<int> numbers;
    if (!view.selectionModel())
        return numbers;
    for (const QModelIndex& index : view.selectionModel()->selectedRows())
        numbers.push_back(index.row());
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace

// ---- selection ----

void cDlgVarDesk::OnSelectAll() {
    listCtrl->selectionModel()->select(recordRows(*listCtrl, [](int, cSysVar&) { return true; }),
                                       QItemSelectionModel::ClearAndSelect);
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::OnInverse() {
    QItemSelectionModel* selection = listCtrl->selectionModel();
    const QItemSelection turned = recordRows(
        *listCtrl, [&](int row, cSysVar&) { return !selection->isSelected(m_model->index(row, 0)); });
    selection->select(turned, QItemSelectionModel::ClearAndSelect);
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::OnSelectList() {
    listCtrl->selectionModel()->select(
        recordRows(*listCtrl, [](int, cSysVar& record) { return record.inUserList(); }),
        QItemSelectionModel::ClearAndSelect);
    listCtrl->setFocus(Qt::OtherFocusReason);
}

// ---- the user list ----

void cDlgVarDesk::OnAdd() {
    auto* selection = new (std::nothrow) cDlgSlctSysVar(m_context, this);
    if (!selection)
        return;
    runDialog(*selection);
    FillList();
    delete selection;
}

void cDlgVarDesk::OnDelete() {
    // The record keeps its new text: view 0 still shows it, and Set can still write it.
    for (int row : selectedRowNumbers(*listCtrl))
        if (cSysVar* record = m_model->recordAt(row))
            record->clearInUserList();
    FillList();
}

// ---- set ----

void cDlgVarDesk::OnSetSelection() {
    for (int row = 0; row < m_model->rowCount(); ++row) {
        cSysVar* record = m_model->recordAt(row);
        if (!record)
            continue;
        if (listCtrl->selectionModel()->isSelected(m_model->index(row, 0)))
            record->setMarkedToSet();
        else
            record->clearMarkedToSet();
    }
    WriteMarkedVariables();
    FillList();
}

void cDlgVarDesk::OnSetAll() {
    // Only records with a row are reached: view, compare mode and order decide.
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (cSysVar* record = m_model->recordAt(row))
            record->setMarkedToSet();
    WriteMarkedVariables();
    FillList();
}

void cDlgVarDesk::WriteMarkedVariables() {
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
    SetStatusTexts(text, {}, {});
    runCode = runcode::done;
}

// ---- compare ----

void cDlgVarDesk::OnCompare() {
    m_context.compareMode = m_context.compareMode == CompareMode::Off ? CompareMode::On : CompareMode::Off;
    applyMenuMarks();
    m_menuBar->update();
    applyToolMarks(); // also replaces image 18 by the icon of the new state
    FillList();
    listCtrl->viewport()->repaint();
    listCtrl->setFocus(Qt::OtherFocusReason);
}

// ---- search ----

void cDlgVarDesk::OnFind() {
    auto* find = new (std::nothrow) DlgFind2(m_context, this);
    if (!find)
        return;
    MainFindOwner owner(*this);
    find->setOwner(&owner);
    find->setLimitToUserList(m_context.view == ListView::UserList);
    runDialog(*find);
    delete find;
}

void cDlgVarDesk::OnFindNotify(std::int32_t value) {
    FillList();
    const QList<int> selected = selectedRowNumbers(*listCtrl);
    if (selected.isEmpty()) {
        SetStatusTexts(gMsg.TxVarNotFound, {}, {});
        return;
    }
    const FoundRow found = DlgFind2::rowToShow(selected, value);
    if (found.row < 0)
        return;
    listCtrl->scrollTo(m_model->index(found.row, 0));
    cSysVar* record = m_model->recordAt(found.row);
    ShowVariable(record);
    if (found.isEveryHit)
        SetStatusTexts(countText(static_cast<int>(selected.size()), gMsg.TxOneVarFound, gMsg.TxVarFound), {},
                       {});
    else
        ShowStatus(record);
}

// ---- help ----

void cDlgVarDesk::OnHelp() {
    ShowHelp("VarDesk", "MainDialog");
}
