// Dialog templates of the module: read from the resource data, turned into pixels by the dialog font.
#pragma once
#include <QFont>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

// One control of a template; rect in dialog units (x, y, width, height).
struct DialogControl {
    int id = 0;
    QString kind; // listview, edit, static, picture, pushbutton, defpushbutton, checkbox, ...
    QString text; // the template's caption; for pictures and icon buttons the resource number
    QRect rect;
    QStringList styles;
    bool hasStyle(const QString& style) const { return styles.contains(style); }
};

// A dialog template: size in dialog units, the font its units are measured in, styles, the
// menu's resource number (0 for none) and the controls in template order.
struct DialogTemplate {
    int id = 0;
    QSize size;
    QString fontFamily;
    int fontPointSize = 8;
    QStringList styles;
    int menuId = 0;
    QString title;
    QVector<DialogControl> controls;

    // The control with that id, or null.
    const DialogControl* control(int controlId) const;
    bool hasStyle(const QString& style) const { return styles.contains(style); }
};

// The base units of a dialog font, in pixels: the average width of the letters A to Z and a to
// z (rounded as the window system does) and the font's line height.
struct DialogBaseUnits {
    int x = 0;
    int y = 0;
};

// Parses the template with resource number id out of json (the form of templates.json). False,
// with the reason in error when not null, for text that is no such document or lacks the id.
bool parseDialogTemplate(const QByteArray& json, int id, DialogTemplate& out, QString* error = nullptr);
// The template id of the module's resources; false, with the reason, when it cannot be had.
bool loadDialogTemplate(int id, DialogTemplate& out, QString* error = nullptr);

// The template's font: its family at its point size; a family the system lacks falls back to
// the system's sans serif face.
QFont dialogFontOf(const DialogTemplate& dialogTemplate);
DialogBaseUnits baseUnitsOf(const QFont& font);
// Dialog units to pixels: x * baseX / 4 and y * baseY / 8, each rounded to the nearest pixel.
QRect dialogUnitsToPixels(const QRect& units, const DialogBaseUnits& base);
QSize dialogUnitsToPixels(const QSize& units, const DialogBaseUnits& base);
