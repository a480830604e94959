// VarListModel: the rows of a variable list by view, compare mode and order, with their header rows.
#include "VarListModel.h"

#include "ListOrderTable.h"
#include "settings/cMsgCatalog.h"
#include "vars/QtText.h"

#include <algorithm>
#include <unordered_map>

namespace {

std::string indented(int level, const std::string& text) {
    return std::string(kIndentBlanks[level], ' ') + text;
}

RowImage imageOf(const cSysVar& record) {
    return record.isDrawingSpecific() ? RowImage::Drawing : RowImage::Global;
}

using Members = std::vector<cSysVar*>;

// The records of one scope that pass the filter, sorted into their groups in one walk of the
// chain; each group keeps the chain's order.
struct Groups {
    Members letters['Z' - 'A' + 1];          // by the first byte of the name, "A" to "Z"
    std::unordered_map<int, Members> themes; // by themeIndex, of the themes the list holds
    Members noTheme;                         // of a themeIndex the list does not hold
};

// Appends one group: its header and the rows of its records, the pending scope header ahead of
// them when it has not been shown. A group without a record leaves no row.
class RowWriter {
public:
    explicit RowWriter(std::vector<ListRow>& out) : m_out(out) {}

    void startScope(const ListRow* scopeHeader) {
        m_scope = scopeHeader;
        m_scopeShown = false;
    }

    void group(const ListRow& header, int recordLevel, const Members& members) {
        if (members.empty())
            return;
        if (m_scope && !m_scopeShown) {
            m_out.push_back(*m_scope);
            m_scopeShown = true;
        }
        m_out.push_back(header);
        for (cSysVar* record : members)
            m_out.push_back({indented(recordLevel, record->name), imageOf(*record), record});
    }

    // One group a letter "A" to "Z".
    void letters(int headerLevel, const Groups& groups) {
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            const ListRow header{indented(headerLevel, std::string(1, letter)), RowImage::Letter, nullptr};
            group(header, headerLevel + 1, groups.letters[letter - 'A']);
        }
    }

    // One group a theme in title order, then one for the records of no theme of the list.
    void themes(int headerLevel, const cThemeList& themes, const Groups& groups) {
        for (int index = themes.firstThemeIndex(); index != 0; index = themes.themeIndexAfter(index)) {
            const auto members = groups.themes.find(index);
            if (members == groups.themes.end())
                continue;
            std::string title;
            themes.themeNameOf(title, index);
            group({indented(headerLevel, title), RowImage::Theme, nullptr}, headerLevel + 1, members->second);
        }
        group({indented(headerLevel, gMsg.TxDefaultTheme), RowImage::Theme, nullptr}, headerLevel + 1,
              groups.noTheme);
    }

private:
    std::vector<ListRow>& m_out;
    const ListRow* m_scope = nullptr;
    bool m_scopeShown = false;
};

constexpr int kAllScopes = -1;

// inScope: 0 global records only, 1 drawing-specific ones only, kAllScopes all of them.
Groups groupRecords(const cSysVarList& list, const RowFilter& filter, int inScope, bool byTheme) {
    Groups groups;
    for (cSysVar* record = list.first; record; record = record->next) {
        if (!filter.passes(*record) || (inScope == 0 && record->isDrawingSpecific()) ||
            (inScope == 1 && !record->isDrawingSpecific()))
            continue;
        if (!byTheme) {
            if (!record->name.empty() && record->name[0] >= 'A' && record->name[0] <= 'Z')
                groups.letters[record->name[0] - 'A'].push_back(record);
        } else if (list.themes.hasThemeIndex(record->themeIndex)) {
            groups.themes[record->themeIndex].push_back(record);
        } else {
            groups.noTheme.push_back(record);
        }
    }
    return groups;
}

// A header for each scope, global first, and under it the groups of its records.
std::vector<ListRow> rowsByScope(const cSysVarList& list, const RowFilter& filter, bool byTheme) {
    std::vector<ListRow> rows;
    RowWriter writer(rows);
    for (const bool drawing : {false, true}) {
        const ListRow scope{indented(0, drawing ? gMsg.TxDrawSpecific : gMsg.TxGlobal),
                            drawing ? RowImage::Drawing : RowImage::Global, nullptr};
        writer.startScope(&scope);
        const Groups groups = groupRecords(list, filter, drawing ? 1 : 0, byTheme);
        if (byTheme)
            writer.themes(1, list.themes, groups);
        else
            writer.letters(1, groups);
    }
    return rows;
}

} // namespace

bool RowFilter::passes(const cSysVar& record) const {
    if (compareMode == CompareMode::On)
        return record.inUserList() && record.currentText != record.newText;
    if (view == ListView::UserList)
        return record.inUserList();
    return true;
}

std::vector<ListRow> buildListRows(const cSysVarList& list, ListOrder order, const RowFilter& filter) {
    const ListOrderEntry* entry = listOrderEntry(order);
    return entry ? entry->rows(list, filter) : std::vector<ListRow>{};
}

std::vector<ListRow> rowsByLetter(const cSysVarList& list, const RowFilter& filter) {
    std::vector<ListRow> rows;
    RowWriter(rows).letters(0, groupRecords(list, filter, kAllScopes, false));
    return rows;
}

std::vector<ListRow> rowsByTheme(const cSysVarList& list, const RowFilter& filter) {
    std::vector<ListRow> rows;
    RowWriter(rows).themes(0, list.themes, groupRecords(list, filter, kAllScopes, true));
    return rows;
}

std::vector<ListRow> rowsByScopeThenLetter(const cSysVarList& list, const RowFilter& filter) {
    return rowsByScope(list, filter, false);
}

std::vector<ListRow> rowsByScopeThenTheme(const cSysVarList& list, const RowFilter& filter) {
    return rowsByScope(list, filter, true);
}

// ---- VarListModel ----

VarListModel::VarListModel(int columns, QObject* parent)
    : QAbstractTableModel(parent), m_columns(std::clamp(columns, 1, kListColumns)) {}

void VarListModel::setRows(std::vector<ListRow> rows) {
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(rows.size());
    for (ListRow& r : rows) {
        Row row;
        row.texts[0] = std::move(r.text);
        if (r.record) {
            row.texts[1] = r.record->currentText;
            row.texts[2] = r.record->newText;
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
    return qs(m_rows[row].texts[column]);
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
        return qs(row.texts[index.column()]);
    case kRowImageRole:
        return index.column() == 0 ? QVariant(static_cast<int>(row.image)) : QVariant();
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
    m_rows[index.row()].texts[index.column()] = stdText(value.toString());
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
