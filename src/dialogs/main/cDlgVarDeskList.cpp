// cDlgVarDesk: the list's set-up and rows, the value field, the context menu, view and order.
#include "cDlgVarDesk.h"

#include "dialogs/DialogBuild.h"
#include "settings/cMsgCatalog.h"
#include "ValueEditing.h"
#include "VarListDelegate.h"
#include "vars/DocumentState.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

#include <new>

using namespace mainids;

void cDlgVarDesk::SetupList() {
    m_rowImages = makeRowImages();
    if (!qobject_cast<VarListDelegate*>(m_listCtrl->itemDelegate()))
        m_listCtrl->setItemDelegate(
            new VarListDelegate(*m_listCtrl, m_rowImages, m_context.viewOrder, m_listCtrl));

    // The clamped widths stay in the context.
    std::int32_t* widths[kListColumns] = {&m_context.listCtrlFirstCol, &m_context.listCtrlSecCol,
                                          &m_context.listCtrlThirdCol};
    for (int column = 0; column < kListColumns; ++column)
        *widths[column] = VarListView::clampedStartWidth(column, *widths[column]);
    m_model->clearRows();
    m_model->setHeaderTexts({qs(gMsg.ClVariable), qs(gMsg.ClAcadValue), qs(gMsg.ClNewValue)});
    for (int column = 0; column < kListColumns; ++column)
        m_listCtrl->setColumnWidth(column, *widths[column]);
}

void cDlgVarDesk::FillList() {
    ShowVariable(nullptr);
    m_listCtrl->setUpdatesEnabled(false);
    const RowFilter filter{m_context.view, m_context.compareMode};
    m_listCtrl->fillRows(buildListRows(m_context.varList, m_context.viewOrder, filter));
    m_listCtrl->setUpdatesEnabled(true);
    m_listCtrl->viewport()->repaint();
}

void cDlgVarDesk::RememberSelection() {
    m_listCtrl->rememberSelection();
    m_listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::ShowVariable(cSysVar* record) {
    m_editing->showVariable(record);
}

void cDlgVarDesk::ApplyValueEdit() {
    m_editing->applyValueEdit();
}

void cDlgVarDesk::BuildContextMenu() {
    m_contextMenu.reset(new (std::nothrow) QMenu(this));
    if (!m_contextMenu)
        return;
    // The entries are the menu bar's own actions, so a choice is that command.
    for (int id : {kSelectAll, kInverse, kSelectList, 0, kSetAll, kSetSelection}) {
        if (id == 0)
            m_contextMenu->addSeparator();
        else if (QAction* action = menuAction(id))
            m_contextMenu->addAction(action);
    }
}

void cDlgVarDesk::OnContextMenu(const QPoint& screenPoint) {
    if (!m_contextMenu)
        return;
    // Strictly inside: a point on any edge of the list opens nothing.
    const QRect list(m_listCtrl->mapToGlobal(QPoint(0, 0)), m_listCtrl->size());
    if (screenPoint.x() > list.left() && screenPoint.x() < list.left() + list.width() &&
        screenPoint.y() > list.top() && screenPoint.y() < list.top() + list.height())
        m_contextMenu->exec(screenPoint);
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

void cDlgVarDesk::ShowView(ListView view) {
    m_context.view = view;
    RefreshTitle();
    ShowModeMarks();
    FillList();
    m_listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::OnSortOrder(ListOrder order) {
    if (m_context.viewOrder == order)
        return;
    m_context.viewOrder = order;
    ShowModeMarks();
    RememberSelection();
    FillList();
    SetStatusTexts({}, {}, {});
    ShowVariable(nullptr);
}
