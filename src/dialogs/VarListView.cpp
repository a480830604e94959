// VarListView: the list control of the variable rows: clicks, Up and Down, letter keys, selection.
#include "VarListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace {

constexpr std::int32_t kFirstColumnLeast = 46; // room for the image of a level-one header
constexpr std::int32_t kColumnLeast = 20;
constexpr std::int32_t kColumnMost = 1200;

} // namespace

VarListView::VarListView(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    // The rows are painted by the delegate alone: no focus frame of the style over the row.
    setAllColumnsShowFocus(false);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
}

VarListModel* VarListView::rowModel() const {
    return qobject_cast<VarListModel*>(model());
}

void VarListView::fillRows(std::vector<ListRow> rows) {
    VarListModel* rowsModel = rowModel();
    if (!rowsModel)
        return;
    rowsModel->setRows(std::move(rows));
    QItemSelection selection;
    for (int row = 0; row < rowsModel->rowCount(); ++row) {
        cSysVar* record = rowsModel->recordAt(row);
        if (record && record->isSelected()) {
            selection.select(rowsModel->index(row, 0), rowsModel->index(row, rowsModel->columnCount() - 1));
            record->clearSelected();
        }
    }
    if (!selection.isEmpty())
        selectionModel()->select(selection, QItemSelectionModel::Select);
}

void VarListView::rememberSelection() {
    forEachRecordRow([](cSysVar& record, bool selected) {
        if (selected)
            record.setSelected();
        else
            record.clearSelected();
    });
}

int VarListView::selectedCount() const {
    return selectionModel() ? static_cast<int>(selectionModel()->selectedRows().size()) : 0;
}

QList<int> VarListView::selectedRowNumbers() const {
    QList<int> numbers;
    if (!selectionModel())
        return numbers;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        numbers.push_back(index.row());
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void VarListView::forEachRecordRow(const std::function<void(cSysVar& record, bool selected)>& visit) const {
    VarListModel* rowsModel = rowModel();
    if (!rowsModel || !selectionModel())
        return;
    for (int row = 0; row < rowsModel->rowCount(); ++row)
        if (cSysVar* record = rowsModel->recordAt(row))
            visit(*record, selectionModel()->isSelected(rowsModel->index(row, 0)));
}

void VarListView::selectRecordRows(const std::function<bool(const cSysVar& record, bool selected)>& wanted) {
    VarListModel* rowsModel = rowModel();
    if (!rowsModel || !selectionModel())
        return;
    QItemSelection selection;
    const int lastColumn = rowsModel->columnCount() - 1;
    for (int row = 0; row < rowsModel->rowCount(); ++row)
        if (const cSysVar* record = rowsModel->recordAt(row);
            record && wanted(*record, selectionModel()->isSelected(rowsModel->index(row, 0))))
            selection.select(rowsModel->index(row, 0), rowsModel->index(row, lastColumn));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

std::int32_t VarListView::clampedStartWidth(int column, std::int32_t width) {
    if (width > kColumnMost)
        return kColumnMost;
    return std::max(width, column == 0 ? kFirstColumnLeast : kColumnLeast);
}

bool VarListView::storedWidth(int width, std::int32_t& stored) {
    if (width == 0)
        return false;
    stored = std::clamp<std::int32_t>(width, kColumnLeast, kColumnMost);
    return true;
}

void VarListView::focusInEvent(QFocusEvent* event) {
    // The list starts without a current row, so that the first Down selects the first row; Qt
    // would make the first row current on focus without selecting it.
    const bool hadCurrent = currentIndex().isValid();
    QTreeView::focusInEvent(event);
    if (!hadCurrent && currentIndex().isValid() && selectionModel())
        selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
}

void VarListView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    VarListModel* rowsModel = rowModel();
    cSysVar* record = nullptr;
    if (rowsModel && selectedCount() == 1)
        record = rowsModel->recordAt(indexAt(event->position().toPoint()).row());
    emit rowClicked(record);
}

void VarListView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (plain && key >= Qt::Key_A && key <= Qt::Key_Z) {
        goToLetter(QChar('A' + (key - Qt::Key_A)));
        return;
    }
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        // Told before the view moves the focus, as the row that is about to get it.
        VarListModel* rowsModel = rowModel();
        const int next = currentIndex().row() + (key == Qt::Key_Down ? 1 : -1);
        if (rowsModel && next >= 0 && next < rowsModel->rowCount())
            emit rowStepping(rowsModel->recordAt(next), selectedCount() <= 1);
    }
    QTreeView::keyPressEvent(event);
}

void VarListView::goToLetter(QChar letter) {
    VarListModel* rowsModel = rowModel();
    if (!rowsModel)
        return;
    const int count = rowsModel->rowCount();
    const int start = currentIndex().isValid() ? currentIndex().row() + 1 : 0;
    if (start >= count)
        return;
    int row = start;
    bool wrapped = false;
    while (true) {
        const QString text = rowsModel->cellText(row, 0).trimmed();
        if (!text.isEmpty() && text[0].toUpper() == letter) {
            const QModelIndex index = rowsModel->index(row, 0);
            scrollTo(index);
            selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
            return;
        }
        if (++row >= count) {
            if (wrapped)
                return;
            wrapped = true;
            row = 0;
        }
    }
}
