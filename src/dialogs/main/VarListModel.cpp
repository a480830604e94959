// VarListModel: the rows of a variable list by view, compare mode and order, with their header rows.
#include "VarListModel.h"

#include "settings/cMsgCatalog.h"

#include <functional>

namespace {

constexpr int kLetterOrder = 0;
constexpr int kThemeOrder = 1;
constexpr int kScopeLetterOrder = 2;
constexpr int kScopeThemeOrder = 3;

std::string indented(int level, const std::string& text) {
    return std::string(kIndentBlanks[level], ' ') + text;
}

int imageOf(const cSysVar& record) {
    return record.isDrawingSpecific() ? rowimage::drawing : rowimage::global;
}

using RecordTest = std::function<bool(const cSysVar&)>;

// Appends one group: its header and the rows of the records that pass the filter and belong, the
// pending scope header ahead of them when it has not been shown. A group without such a record
// leaves no row.
class RowWriter {
public:
    RowWriter(const cSysVarList& list, const RowFilter& filter, std::vector<ListRow>& out)
        : m_list(list), m_filter(filter), m_out(out) {}

    void startScope(const ListRow* scopeHeader) {
        m_scope = scopeHeader;
        m_scopeShown = false;
    }

    void group(const ListRow& header, int recordLevel, const RecordTest& belongs) {
        bool headerShown = false;
        for (cSysVar* record = m_list.first; record; record = record->next) {
            if (!m_filter.passes(*record) || !belongs(*record))
                continue;
            if (m_scope && !m_scopeShown) {
                m_out.push_back(*m_scope);
                m_scopeShown = true;
            }
            if (!headerShown) {
                m_out.push_back(header);
                headerShown = true;
            }
            m_out.push_back({indented(recordLevel, record->name), imageOf(*record), record});
        }
    }

    // One group a letter "A" to "Z": records whose name begins with exactly that byte.
    void letters(int headerLevel, const RecordTest& inScope) {
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            const ListRow header{indented(headerLevel, std::string(1, letter)), rowimage::letter, nullptr};
            group(header, headerLevel + 1,
                  [&](const cSysVar& r) { return !r.name.empty() && r.name[0] == letter && inScope(r); });
        }
    }

    // One group a theme in title order, then one for the records of no theme of the list.
    void themes(int headerLevel, const RecordTest& inScope) {
        const cThemeList& themes = m_list.themes;
        for (int index = themes.firstThemeIndex(); index != 0; index = themes.themeIndexAfter(index)) {
            std::string title;
            themes.themeNameOf(title, index);
            const ListRow header{indented(headerLevel, title), rowimage::theme, nullptr};
            group(header, headerLevel + 1,
                  [&](const cSysVar& r) { return r.themeIndex == index && inScope(r); });
        }
        const ListRow header{indented(headerLevel, gMsg.TxDefaultTheme), rowimage::theme, nullptr};
        group(header, headerLevel + 1,
              [&](const cSysVar& r) { return !themes.hasThemeIndex(r.themeIndex) && inScope(r); });
    }

private:
    const cSysVarList& m_list;
    const RowFilter& m_filter;
    std::vector<ListRow>& m_out;
    const ListRow* m_scope = nullptr;
    bool m_scopeShown = false;
};

} // namespace

bool RowFilter::passes(const cSysVar& record) const {
    if (compareMode == 1)
        return record.inUserList() && record.currentText != record.newText;
    if (view == 1)
        return record.inUserList();
    return true;
}

std::vector<ListRow> buildListRows(const cSysVarList& list, int order, const RowFilter& filter) {
    std::vector<ListRow> rows;
    RowWriter writer(list, filter, rows);
    const RecordTest any = [](const cSysVar&) { return true; };
    switch (order) {
    case kLetterOrder:
        writer.letters(0, any);
        break;
    case kThemeOrder:
        writer.themes(0, any);
        break;
    case kScopeLetterOrder:
    case kScopeThemeOrder:
        for (const bool drawing : {false, true}) {
            const ListRow scope{indented(0, drawing ? gMsg.TxDrawSpecific : gMsg.TxGlobal),
                                drawing ? rowimage::drawing : rowimage::global, nullptr};
            writer.startScope(&scope);
            const RecordTest inScope = [drawing](const cSysVar& r) {
                return r.isDrawingSpecific() == drawing;
            };
            if (order == kScopeLetterOrder)
                writer.letters(1, inScope);
            else
                writer.themes(1, inScope);
        }
        break;
    default:
        break;
    }
    return rows;
}

// ---- VarListModel ----

VarListModel::VarListModel(int columns, QObject* parent)
    : QAbstractTableModel(parent), m_columns(columns < 1   ? 1
                                             : columns > 3 ? 3
                                                           : columns) {}

void VarListModel::setRows(const std::vector<ListRow>& rows) {
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(rows.size());
    for (const ListRow& r : rows) {
        Row row;
        row.texts[0] = QString::fromStdString(r.text);
        if (r.record) {
            row.texts[1] = QString::fromStdString(r.record->currentText);
            row.texts[2] = QString::fromStdString(r.record->newText);
        }
        row.image = r.image;
        row.record = r.record;
        m_rows.push_back(std::move(row));
    }
    endResetModel();
}

void VarListModel::clearRows() {
    beginResetModel();
    m_rows.clear();
    endResetModel();
}

void VarListModel::setHeaderTexts(const QStringList& texts) {
    m_headers = texts;
    emit headerDataChanged(Qt::Horizontal, 0, m_columns - 1);
}

cSysVar* VarListModel::recordAt(int row) const {
    return row >= 0 && row < rowCount() ? m_rows[row].record : nullptr;
}

int VarListModel::rowOf(const cSysVar* record) const {
    if (!record)
        return -1;
    for (int row = 0; row < rowCount(); ++row)
        if (m_rows[row].record == record)
            return row;
    return -1;
}

QString VarListModel::cellText(int row, int column) const {
    if (row < 0 || row >= rowCount() || column < 0 || column >= m_columns)
        return {};
    return m_rows[row].texts[column];
}

int VarListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int VarListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_columns;
}

QVariant VarListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= m_columns)
        return {};
    const Row& row = m_rows[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return row.texts[index.column()];
    case kRowImageRole:
        return index.column() == 0 ? QVariant(row.image) : QVariant();
    case kRowRecordRole:
        return index.column() == 0 ? QVariant::fromValue(static_cast<void*>(row.record)) : QVariant();
    default:
        return {};
    }
}

bool VarListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= m_columns ||
        (role != Qt::EditRole && role != Qt::DisplayRole))
        return false;
    m_rows[index.row()].texts[index.column()] = value.toString();
    emit dataChanged(index, index, {Qt::DisplayRole});
    return true;
}

QVariant VarListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= m_columns)
        return {};
    return section < m_headers.size() ? m_headers[section] : QString();
}

Qt::ItemFlags VarListModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}
