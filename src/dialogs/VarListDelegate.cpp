// VarListDelegate: paints the rows of a variable list from their records: colours, image, indent, clip.
#include "VarListDelegate.h"

#include "ListOrderTable.h"
#include "ModuleResources.h"
#include "vars/QtText.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

// The images of the two kinds of record; each order's image comes from the order table.
constexpr int kDrawingIcon = 1074;
constexpr int kGlobalIcon = 1102;

constexpr int kMostCharacters = 255;
constexpr int kRecordIndentLetterThemeOrders = 20;
constexpr int kRecordIndentScopeOrders = 40;
constexpr int kSecondLevelHeaderIndent = 20;

bool isScopeOrder(ListOrder order) {
    const ListOrderEntry* entry = listOrderEntry(order);
    return entry && entry->byScope;
}

int imageIndentOf(const cSysVar* record, RowImage image, ListOrder order) {
    if (record)
        return isScopeOrder(order) ? kRecordIndentScopeOrders : kRecordIndentLetterThemeOrders;
    // Under a scope header, a header of the letter or theme kind is the second level.
    if (isScopeOrder(order) && image != RowImage::Drawing && image != RowImage::Global)
        return kSecondLevelHeaderIndent;
    return 0;
}

// The first count characters of text, never half of a surrogate pair.
QString firstCharacters(const QString& text, int count) {
    int units = 0;
    for (int characters = 0; units < text.size() && characters < count; ++characters)
        units += text[units].isHighSurrogate() && units + 1 < text.size() ? 2 : 1;
    return text.left(units);
}

} // namespace

std::vector<QIcon> makeRowImages() {
    std::vector<QIcon> images(2);
    images[static_cast<std::size_t>(RowImage::Drawing)] = moduleIcon(kDrawingIcon);
    images[static_cast<std::size_t>(RowImage::Global)] = moduleIcon(kGlobalIcon);
    for (const ListOrderEntry& entry : listOrderTable()) {
        const auto place = static_cast<std::size_t>(entry.image);
        if (images.size() <= place)
            images.resize(place + 1);
        images[place] = moduleIcon(entry.icon);
    }
    return images;
}

QColor colourOfRef(std::uint32_t colourRef) {
    return QColor(colourRef & 0xFF, (colourRef >> 8) & 0xFF, (colourRef >> 16) & 0xFF);
}

RowPalette RowPalette::of(const QPalette& palette) {
    return {palette.color(QPalette::Active, QPalette::Base), palette.color(QPalette::Active, QPalette::Text),
            palette.color(QPalette::Active, QPalette::Highlight),
            palette.color(QPalette::Active, QPalette::HighlightedText)};
}

RowLook lookOfRow(const QString& text0, RowImage image, const cSysVar* record, ListOrder order, bool selected,
                  const RowPalette& palette) {
    RowLook look;
    look.texts[0] = firstCharacters(text0, kMostCharacters);
    look.image = image;
    look.imageIndent = imageIndentOf(record, image, order);
    for (int i = 0; i < kListColumns; ++i) {
        look.backgrounds[i] = palette.window;
        look.foregrounds[i] = palette.windowText;
    }
    if (record) {
        if (record->isReadOnly())
            for (QColor& c : look.backgrounds)
                c = colourOfRef(kReadOnlyBackground);
        if (!record->isDrawingSpecific())
            look.foregrounds[0] = colourOfRef(kGlobalNameColour);
        look.texts[1] = qs(record->currentText);
        look.texts[2] = qs(record->newText);
        look.foregrounds[2] = colourOfRef(record->compareColour);
    }
    if (selected)
        for (int i = 0; i < kListColumns; ++i) {
            look.backgrounds[i] = palette.highlight;
            look.foregrounds[i] = palette.highlightText;
        }
    return look;
}

VarListDelegate::VarListDelegate(QAbstractItemView& view, const std::vector<QIcon>& images,
                                 const ListOrder& order, QObject* parent)
    : QStyledItemDelegate(parent), m_view(view), m_images(images), m_order(order) {}

RowLook VarListDelegate::lookAt(const QModelIndex& index, bool selected) const {
    const QModelIndex first = index.siblingAtColumn(0);
    const auto* record = static_cast<const cSysVar*>(first.data(kRowRecordRole).value<void*>());
    return lookOfRow(first.data(Qt::DisplayRole).toString(),
                     static_cast<RowImage>(first.data(kRowImageRole).toInt()), record, m_order, selected,
                     RowPalette::of(m_view.palette()));
}

void VarListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const int column = index.column();
    if (column < 0 || column >= kListColumns)
        return;
    const RowLook look = lookAt(index, option.state & QStyle::State_Selected);
    // Windows' edges: the cell Qt gives starts one pixel right of the list's own column edge.
    const int left = option.rect.left() + kFirstEdge;
    const int right = left + option.rect.width();
    const int top = option.rect.top();
    const int height = option.rect.height();

    painter->save();
    painter->fillRect(QRect(left, top, right - left + 1, height), look.backgrounds[column]);
    if (const auto image = static_cast<std::size_t>(look.image); column == 0 && image < m_images.size())
        m_images[image].paint(painter,
                              QRect(left + kCellMargin + look.imageIndent, top, kImageSize, kImageSize));
    const QRect clip(left + kCellMargin, top, std::max(0, right - left - kCellMargin), height);
    painter->setClipRect(clip);
    painter->setFont(option.font);
    painter->setPen(look.foregrounds[column]);
    painter->drawText(QRect(left + kCellMargin, top + kTextDrop, 1 << 20, height),
                      Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, look.texts[column]);
    // Grid lines in the button face colour, as the window system's list draws them: one below
    // the row, one at the column's left edge (which the fill of the column before reached), and
    // one after the last column.
    painter->setClipping(false);
    painter->setPen(m_view.palette().color(QPalette::Active, QPalette::Button));
    const int bottom = top + height - 1;
    painter->drawLine(left, bottom, right, bottom);
    if (column > 0)
        painter->drawLine(left, top, left, bottom);
    if (index.model() && column == index.model()->columnCount(index.parent()) - 1)
        painter->drawLine(right, top, right, bottom);
    painter->restore();
}

QSize VarListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize text = QStyledItemDelegate::sizeHint(option, index);
    const int lineHeight = QFontMetrics(option.font).height() + kTextDrop;
    return {text.width(), std::max(kImageSize, lineHeight) + kGridLine};
}

QVariantMap VarListDelegate::automationCell(const QModelIndex& index) const {
    const int column = index.column();
    if (!index.isValid() || column < 0 || column >= kListColumns)
        return {};
    const QItemSelectionModel* selection = m_view.selectionModel();
    const bool selected = selection && selection->isSelected(index.siblingAtColumn(0));
    const RowLook look = lookAt(index, selected);
    return {{QStringLiteral("text"), look.texts[column]},
            {QStringLiteral("background"), look.backgrounds[0]},
            {QStringLiteral("foreground"), look.foregrounds[column]},
            {QStringLiteral("image"), static_cast<int>(look.image)}};
}
