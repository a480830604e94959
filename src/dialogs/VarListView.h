// VarListView: the list control of the variable rows: clicks, Up and Down, letter keys, selection.
#pragma once
#include "VarListModel.h"

#include <QTreeView>

#include <cstdint>
#include <functional>
#include <vector>

// A report list of variable rows over a VarListModel. It tells its owner of clicks and of the
// keys Up and Down by signals, and goes to a row by its first letter on its own.
class VarListView : public QTreeView {
    Q_OBJECT
public:
    explicit VarListView(QWidget* parent = nullptr);

    VarListModel* rowModel() const;

    // Replaces the rows; the row of a record with isSelected is selected, and the flag cleared.
    void fillRows(std::vector<ListRow> rows);
    // Carries the rows' selection into isSelected of their records; header rows are passed over.
    void rememberSelection();
    int selectedCount() const;
    // The numbers of the selected rows, ascending.
    QList<int> selectedRowNumbers() const;
    // Calls visit for each record row, in row order, with whether the row is selected; header rows
    // are passed over.
    void forEachRecordRow(const std::function<void(cSysVar& record, bool selected)>& visit) const;
    // Selects exactly the record rows that wanted says yes to, each asked with its selection as it
    // stood before; header rows end up unselected.
    void selectRecordRows(const std::function<bool(const cSysVar& record, bool selected)>& wanted);

    // A width read at start: at most 1200, and at least 46 for column 0 and 20 for the others.
    static std::int32_t clampedStartWidth(int column, std::int32_t width);
    // A width to store at the end: 20 to 1200. False for a width of 0, which is never stored.
    static bool storedWidth(int width, std::int32_t& stored);

signals:
    // A left click on the list, on a row or beside the rows: the clicked row's record when exactly
    // one row is selected after the click, else null.
    void rowClicked(cSysVar* record);
    // Up or Down is about to move the focus onto the row of record (null for a header row).
    // single: at most one row is selected at that moment.
    void rowStepping(cSysVar* record, bool single);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Gives the focus to the next row whose text in column 0, less its leading blanks, begins
    // with letter, from the row behind the focused one, wrapping once. Selects nothing.
    void goToLetter(QChar letter);
};
