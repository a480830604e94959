// cDlgVarDesk: the list's set-up and rows, the value field, the context menu, view and order.
#include "cDlgVarDesk.h"

#include "dialogs/DialogBuild.h"
#include "settings/cMsgCatalog.h"
#include "ValueEditing.h"
#include "VarListDelegate.h"
#include "vars/DocumentState.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

#include <new>

using namespace mainids;

void cDlgVarDesk::SetupList() {
    rowImages = makeRowImages();
    if (!qobject_cast<VarListDelegate*>(listCtrl->itemDelegate()))
        listCtrl->setItemDelegate(new VarListDelegate(*listCtrl, rowImages, m_context.viewOrder, listCtrl));

    // The clamped widths stay in the context.
    std::int32_t* widths[kListColumns] = {&m_context.listCtrlFirstCol, &m_context.listCtrlSecCol,
                                          &m_context.listCtrlThirdCol};
    for (int column = 0; column < kListColumns; ++column)
        *widths[column] = VarListView::clampedStartWidth(column, *widths[column]);
    m_model->clearRows();
    m_model->setHeaderTexts({qs(gMsg.ClVariable), qs(gMsg.ClAcadValue), qs(gMsg.ClNewValue)});
    for (int column = 0; column < kListColumns; ++column)
        listCtrl->setColumnWidth(column, *widths[column]);
}

void cDlgVarDesk::FillList() {
    ShowVariable(nullptr);
    listCtrl->setUpdatesEnabled(false);
    const RowFilter filter{m_context.view, m_context.compareMode};
    listCtrl->fillRows(buildListRows(m_context.varList, m_context.viewOrder, filter));
    listCtrl->setUpdatesEnabled(true);
    listCtrl->viewport()->repaint();
}

void cDlgVarDesk::RememberSelection() {
    listCtrl->rememberSelection();
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::ShowVariable(cSysVar* record) {
    m_editing->showVariable(record);
}

void cDlgVarDesk::ApplyValueEdit() {
    m_editing->applyValueEdit();
}

void cDlgVarDesk::BuildContextMenu() {
    contextMenu = new (std::nothrow) QMenu(this);
    if (!contextMenu)
        return;
    // The entries are the menu bar's own actions, so a choice is that command.
    for (int id : {kSelectAll, kInverse, kSelectList, 0, kSetAll, kSetSelection}) {
        if (id == 0)
            contextMenu->addSeparator();
        else if (QAction* action = menuAction(id))
            contextMenu->addAction(action);
    }
}

void cDlgVarDesk::OnContextMenu(const QPoint& screenPoint) {
    if (!contextMenu)
        return;
    // Strictly inside: a point on any edge of the list opens nothing.
    const QRect list(listCtrl->mapToGlobal(QPoint(0, 0)), listCtrl->size());
    if (screenPoint.x() > list.left() && screenPoint.x() < list.left() + list.width() &&
        screenPoint.y() > list.top() && screenPoint.y() < list.top() + list.height())
        contextMenu->exec(screenPoint);
}

void cDlgVarDesk::contextMenuEvent(QContextMenuEvent* event) {
    OnContextMenu(event->globalPos());
    event->accept();
}

void cDlgVarDesk::OnListClick(cSysVar* record) {
    ShowStatus(record);
    ShowVariable(record);
}

void cDlgVarDesk::OnListStep(cSysVar* record, bool single) {
    if (single) {
        ShowStatus(record);
        ShowVariable(record);
    } else {
        SetStatusTexts({}, {}, {});
        ShowVariable(nullptr);
    }
}

void cDlgVarDesk::OnShowView(ListView view) {
    m_context.view = view;
    RefreshTitle();
    applyMenuMarks();
    m_menuBar->update();
    applyToolMarks();
    FillList();
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::OnSortOrder(ListOrder order) {
    if (m_context.viewOrder == order)
        return;
    m_context.viewOrder = order;
    applyMenuMarks();
    m_menuBar->update();
    applyToolMarks();
    RememberSelection();
    FillList();
    SetStatusTexts({}, {}, {});
    ShowVariable(nullptr);
}
