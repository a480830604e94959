// cDlgVarDesk: the list's set-up and rows, the value field, the context menu, view and order.
#include "cDlgVarDesk.h"

#include "dialogs/ModuleResources.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"
#include "VarListDelegate.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStandardItemModel>
#include <QTreeView>

#include <algorithm>
#include <new>

using namespace mainids;

namespace {

// Row images in their order: drawing-specific, global, the two scope orders, letter, theme.
constexpr int kRowIcons[] = {1074, 1102, 1110, 1111, 1072, 1073};
constexpr int kImageDrawing = 0;
constexpr int kImageGlobal = 1;
constexpr int kColumnFirstMin = 46;
constexpr int kColumnMin = 20;
constexpr int kColumnMax = 1200;

QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace

void cDlgVarDesk::SetupList() {
    rowImages.clear();
    for (int icon : kRowIcons)
        rowImages.push_back(moduleIcon(icon));
    if (!qobject_cast<VarListDelegate*>(listCtrl->itemDelegate()))
        listCtrl->setItemDelegate(new VarListDelegate(*this, listCtrl));

    std::int32_t* widths[3] = {&m_context.listCtrlFirstCol, &m_context.listCtrlSecCol,
                               &m_context.listCtrlThirdCol};
    for (int column = 0; column < 3; ++column) {
        std::int32_t& w = *widths[column];
        if (w > kColumnMax)
            w = kColumnMax;
        else if (column == 0 && w < kColumnFirstMin)
            w = kColumnFirstMin;
        else if (column > 0 && w < kColumnMin)
            w = kColumnMin;
    }
    m_model->removeRows(0, m_model->rowCount());
    m_model->setHorizontalHeaderLabels({qs(gMsg.ClVariable), qs(gMsg.ClAcadValue), qs(gMsg.ClNewValue)});
    for (int column = 0; column < 3; ++column)
        listCtrl->setColumnWidth(column, *widths[column]);
}

void cDlgVarDesk::FillList() {
    // A plain fill, all records in name order; the views, compare mode and orders with their
    // header rows are still to come.
    ShowVariable(nullptr);
    listCtrl->setUpdatesEnabled(false);
    m_model->removeRows(0, m_model->rowCount());
    int row = 0;
    for (cSysVar* var = m_context.varList.first; var; var = var->next, ++row) {
        QList<QStandardItem*> items;
        auto* name = new QStandardItem(qs(var->name));
        name->setData(var->isDrawingSpecific() ? kImageDrawing : kImageGlobal, kRowImageRole);
        name->setData(QVariant::fromValue(static_cast<void*>(var)), kRowRecordRole);
        items << name << new QStandardItem(qs(var->currentText)) << new QStandardItem(qs(var->newText));
        m_model->insertRow(row, items);
        if (var->isSelected()) {
            listCtrl->selectionModel()->select(m_model->index(row, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
            var->clearSelected();
        }
    }
    listCtrl->setUpdatesEnabled(true);
    listCtrl->viewport()->update();
}

void cDlgVarDesk::RememberSelection() {
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        auto* var = static_cast<cSysVar*>(index.data(kRowRecordRole).value<void*>());
        if (!var)
            continue;
        if (listCtrl->selectionModel()->isSelected(index))
            var->setSelected();
        else
            var->clearSelected();
    }
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::ShowVariable(cSysVar* record) {
    currentVar = record;
    if (record) {
        valueEdit->setReadOnly(record->isReadOnly());
        std::string text;
        record->editText(text);
        valueEdit->setText(qs(text));
        descriptionEdit->setPlainText(qs(record->description));
        updateDescriptionScrollBar();
        return;
    }
    listCtrl->setFocus(Qt::OtherFocusReason);
    valueEdit->clear();
    descriptionEdit->clear();
    updateDescriptionScrollBar();
    valueEdit->setReadOnly(true);
}

void cDlgVarDesk::ApplyValueEdit() {
    if (valueEdit->isReadOnly())
        return;
    const std::string text = valueEdit->text().toStdString();
    if (!currentVar)
        return;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex index = m_model->index(row, 0);
        if (index.data(kRowRecordRole).value<void*>() != currentVar)
            continue;
        if (currentVar->applyEditText(text))
            m_model->setData(m_model->index(row, 2), qs(currentVar->newText));
        break;
    }
    valueEdit->setModified(false);
    listCtrl->setFocus(Qt::OtherFocusReason);
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

void cDlgVarDesk::OnShowView(int view) {
    m_context.view = view;
    RefreshTitle();
    applyMenuMarks();
    applyToolMarks();
    FillList();
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::OnSortOrder(int order) {
    if (m_context.viewOrder == order)
        return;
    m_context.viewOrder = order;
    applyMenuMarks();
    applyToolMarks();
    RememberSelection();
    FillList();
    SetStatusTexts({}, {}, {});
    ShowVariable(nullptr);
}
