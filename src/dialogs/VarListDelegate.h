// VarListDelegate: paints the rows of a variable list from their records: colours, image, indent, clip.
#pragma once
#include "VarListModel.h"

#include <QColor>
#include <QIcon>
#include <QStyledItemDelegate>
#include <QVariantMap>

#include <cstdint>
#include <vector>

class QAbstractItemView;

// Colours of a row that are not the system's: 0x00BBGGRR values as the records keep them.
inline constexpr std::uint32_t kReadOnlyBackground = 0xC0C0C0;
inline constexpr std::uint32_t kGlobalNameColour = 0xFF0000; // blue

// The row images of a list, indexed by RowImage: the two kinds of record, and each order's image at
// the place its row of the order table names.
std::vector<QIcon> makeRowImages();

// A 0x00BBGGRR colour as Qt's.
QColor colourOfRef(std::uint32_t colourRef);

// The system colours a row uses: window, window text, highlight and highlight text.
struct RowPalette {
    QColor window, windowText, highlight, highlightText;
    static RowPalette of(const QPalette& palette);
};

// What one row shows, column by column, and where its image stands.
struct RowLook {
    QString texts[kListColumns];
    QColor backgrounds[kListColumns];
    QColor foregrounds[kListColumns];
    RowImage image = RowImage::Drawing;
    int imageIndent = 0; // pixels right of the cell margin of column 0
};

// The look of a row whose column 0 holds text0 and image, for record (null: a header row) in view
// order order. A record gives its own texts for columns 1 and 2 as they are now, whatever the
// cells hold; a read-only record a grey background, a global one a blue name, the new value its
// compareColour. Selected rows take the highlight colours over all of it. Column 0's text is cut
// at 255 characters.
RowLook lookOfRow(const QString& text0, RowImage image, const cSysVar* record, ListOrder order, bool selected,
                  const RowPalette& palette);

// Paints every cell itself, as the window system's owner-drawn list did: the background one pixel
// wider than the cell, the image of column 0 over the leading blanks of its text, each text
// clipped to its cell less a margin of 6, and the grid lines. Serves three-column and two-column
// lists alike. A row is as high as its image or its text, whichever is higher, and its grid line.
class VarListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    // images are the row images by index and order the view order the rows were built in; both
    // must outlive the delegate, which reads them at each paint.
    VarListDelegate(QAbstractItemView& view, const std::vector<QIcon>& images, const ListOrder& order,
                    QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // What paint draws for index, for the UI automation: keys text, background, foreground, image.
    Q_INVOKABLE QVariantMap automationCell(const QModelIndex& index) const;

    // Column 0's left edge relative to the cell Qt gives, and the inner margin of every cell.
    static constexpr int kFirstEdge = -1;
    static constexpr int kCellMargin = 6;
    static constexpr int kTextDrop = 1;
    static constexpr int kImageSize = 16;
    static constexpr int kGridLine = 1; // the grid line below each row and right of each cell

private:
    RowLook lookAt(const QModelIndex& index, bool selected) const;

    QAbstractItemView& m_view;
    const std::vector<QIcon>& m_images;
    const ListOrder& m_order;
};
