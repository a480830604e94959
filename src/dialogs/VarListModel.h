// VarListModel: the rows of a variable list by view, compare mode and order, with their header rows.
#pragma once
#include "vars/cSysVarList.h"
#include "vars/ListModes.h"

#include <QAbstractTableModel>
#include <QStringList>

#include <string>
#include <vector>

// The columns of a variable list: name, current value, new value. A list may show fewer.
inline constexpr int kListColumns = 3;

// Roles of column 0 of a list row: the row image (a RowImage as int) and the record (a cSysVar*,
// null for a header row).
inline constexpr int kRowImageRole = Qt::UserRole + 1;
inline constexpr int kRowRecordRole = Qt::UserRole + 2;

// The places of the row images, as the window automation reports them: the two kinds of record,
// then the orders' images, each at the place its row of the order table names. The two images of
// the scope orders are made with the others and shown by no row. A new order's image takes the
// next place, so that the others keep theirs.
enum class RowImage : int {
    Drawing,     // a drawing-specific variable, and its scope header
    Global,      // a global variable, and its scope header
    ScopeLetter, // the image of the order by scope then letter
    ScopeTheme,  // the image of the order by scope then theme
    Letter,      // a letter header: the image of the order by letter
    Theme,       // a theme header: the image of the order by theme
};

// The indents of the three levels: leading blanks of the text of column 0, over which the row's
// image is drawn.
inline constexpr int kIndentBlanks[] = {7, 14, 21};

// Which records get a row. Compare mode is tested first, so it narrows the user list too.
struct RowFilter {
    ListView view = ListView::All;
    CompareMode compareMode = CompareMode::Off;
    bool passes(const cSysVar& record) const;
};

// One row as it is inserted: column 0's text with its indent, the image, and the record (null for
// a header row). Columns 1 and 2 of a variable row are its currentText and newText.
struct ListRow {
    std::string text;
    RowImage image = RowImage::Drawing;
    cSysVar* record = nullptr;
};

// The rows of list in order for the records that pass filter, built by the order's row builder in
// the order table; an order without a row there gives no rows. A header stands only ahead of a
// record that passed. Names that do not begin with "A" to "Z" have no row in the letter orders;
// records of a theme that the list does not hold gather under TxDefaultTheme.
std::vector<ListRow> buildListRows(const cSysVarList& list, ListOrder order, const RowFilter& filter);

// The row builders of the four orders: by letter, by theme, and the same under a header for each
// scope (global first).
std::vector<ListRow> rowsByLetter(const cSysVarList& list, const RowFilter& filter);
std::vector<ListRow> rowsByTheme(const cSysVarList& list, const RowFilter& filter);
std::vector<ListRow> rowsByScopeThenLetter(const cSysVarList& list, const RowFilter& filter);
std::vector<ListRow> rowsByScopeThenTheme(const cSysVarList& list, const RowFilter& filter);

// The rows of a list control: three columns (or two, without the new value) whose cells are
// written at insertion and by setData of a cell, and whose header texts are set by the owner.
class VarListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit VarListModel(int columns, QObject* parent = nullptr);

    // Replaces all rows at once. The rows keep the texts as they are now; a cell turns into Qt
    // text only when it is shown or asked for, so filling costs nothing per row beyond a copy.
    void setRows(std::vector<ListRow> rows);
    void clearRows();
    void setHeaderTexts(const QStringList& texts);

    // The record of row, or null for a header row and a row that does not exist.
    cSysVar* recordAt(int row) const;
    // The row of record, or -1.
    int rowOf(const cSysVar* record) const;
    // The text of a cell as the row holds it; empty for a cell that does not exist.
    QString cellText(int row, int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Row {
        std::string texts[kListColumns]; // UTF-8
        RowImage image = RowImage::Drawing;
        cSysVar* record = nullptr;
    };
    int m_columns;
    std::vector<Row> m_rows;
    QStringList m_headers;
};
