// VarListDelegate: paints the rows of the main list from their records.
#include "VarListDelegate.h"

#include "cDlgVarDesk.h"

#include <QPainter>

VarListDelegate::VarListDelegate(cDlgVarDesk& dialog, QObject* parent)
    : QStyledItemDelegate(parent), m_dialog(dialog) {}

void VarListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem opt(option);
    if (index.column() == 0) {
        const int image = index.data(kRowImageRole).toInt();
        if (image >= 0 && image < static_cast<int>(m_dialog.rowImages.size()))
            opt.icon = m_dialog.rowImages[image];
        opt.features |= QStyleOptionViewItem::HasDecoration;
        opt.decorationSize = QSize(16, 16);
    }
    QStyledItemDelegate::paint(painter, opt, index);
}

QVariantMap VarListDelegate::automationCell(const QModelIndex&) const {
    return {};
}
