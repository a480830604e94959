// VarListDelegate: paints the rows of the main list from their records.
#pragma once
#include <QStyledItemDelegate>
#include <QVariantMap>

class cDlgVarDesk;

// Roles of column 0 of a list row: the row image's index and the record (a cSysVar*, null for a
// header row).
inline constexpr int kRowImageRole = Qt::UserRole + 1;
inline constexpr int kRowRecordRole = Qt::UserRole + 2;

// For now the rows paint as the model holds them, with the row image at the left; the colours
// of read-only, global and compared values and the indents by order are still to come.
class VarListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    VarListDelegate(cDlgVarDesk& dialog, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

    // What paint draws for index, for the UI automation: keys text, background, foreground,
    // image. Empty while the model's roles are what is painted.
    Q_INVOKABLE QVariantMap automationCell(const QModelIndex& index) const;

private:
    cDlgVarDesk& m_dialog;
};
