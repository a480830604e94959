// Dialog templates of the module: read from the resource data, turned into pixels by the dialog font.
#include "DialogTemplate.h"

#include <QFile>
#include <QFontMetrics>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr const char* kTemplatesResource = ":/vardesk/templates.json";
// The 52 letters whose average width is the horizontal base unit.
constexpr const char* kBaseLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

void setError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

bool readRect(const QJsonValue& value, QRect& rect) {
    const QJsonArray a = value.toArray();
    if (a.size() != 4)
        return false;
    for (const QJsonValue& v : a)
        if (!v.isDouble())
            return false;
    rect = QRect(a[0].toInt(), a[1].toInt(), a[2].toInt(), a[3].toInt());
    return true;
}

QStringList readStrings(const QJsonValue& value) {
    QStringList out;
    for (const QJsonValue& v : value.toArray())
        out << v.toString();
    return out;
}

// Rounded x * numerator / denominator, as the window system's MulDiv.
int mulDiv(int x, int numerator, int denominator) {
    const long long product = static_cast<long long>(x) * numerator;
    const long long half = denominator / 2;
    return static_cast<int>(product >= 0 ? (product + half) / denominator : (product - half) / denominator);
}

} // namespace

const DialogControl* DialogTemplate::control(int controlId) const {
    for (const DialogControl& c : controls)
        if (c.id == controlId)
            return &c;
    return nullptr;
}

bool parseDialogTemplate(const QByteArray& json, int id, DialogTemplate& out, QString* error) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (document.isNull()) {
        setError(error, QStringLiteral("templates: %1 at offset %2")
                            .arg(parseError.errorString())
                            .arg(parseError.offset));
        return false;
    }
    for (const QJsonValue& entry : document.object().value("templates").toArray()) {
        const QJsonObject t = entry.toObject();
        if (t.value("id").toInt(-1) != id)
            continue;
        const QJsonArray size = t.value("size").toArray();
        const QJsonArray font = t.value("font").toArray();
        if (size.size() != 2 || font.size() != 2) {
            setError(error, QStringLiteral("template %1: size or font is not a pair").arg(id));
            return false;
        }
        DialogTemplate result;
        result.id = id;
        result.size = QSize(size[0].toInt(), size[1].toInt());
        result.fontFamily = font[0].toString();
        result.fontPointSize = font[1].toInt(8);
        result.styles = readStrings(t.value("styles"));
        result.menuId = t.value("menu").toInt(0);
        result.title = t.value("title").toString();
        for (const QJsonValue& cv : t.value("controls").toArray()) {
            const QJsonObject c = cv.toObject();
            DialogControl control;
            control.id = c.value("id").toInt(-1);
            control.kind = c.value("kind").toString();
            control.text = c.value("text").toString();
            control.styles = readStrings(c.value("styles"));
            if (control.id < 0 || control.kind.isEmpty() || !readRect(c.value("rect"), control.rect)) {
                setError(error,
                         QStringLiteral("template %1: a control lacks its id, kind or rectangle").arg(id));
                return false;
            }
            result.controls.push_back(control);
        }
        out = result;
        return true;
    }
    setError(error, QStringLiteral("no dialog template %1").arg(id));
    return false;
}

bool loadDialogTemplate(int id, DialogTemplate& out, QString* error) {
    QFile file(QString::fromLatin1(kTemplatesResource));
    if (!file.open(QIODevice::ReadOnly)) {
        setError(error, QStringLiteral("the dialog templates of the module cannot be read"));
        return false;
    }
    return parseDialogTemplate(file.readAll(), id, out, error);
}

QFont dialogFontOf(const DialogTemplate& dialogTemplate) {
    QFont font(dialogTemplate.fontFamily);
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(dialogTemplate.fontPointSize > 0 ? dialogTemplate.fontPointSize : 8);
    return font;
}

DialogBaseUnits baseUnitsOf(const QFont& font) {
    const QFontMetrics metrics(font);
    const int letters = static_cast<int>(std::char_traits<char>::length(kBaseLetters));
    const int width = metrics.horizontalAdvance(QString::fromLatin1(kBaseLetters));
    // (width / 26 + 1) / 2 is the window system's rounding of the average over 52 letters.
    DialogBaseUnits base;
    base.x = (width / (letters / 2) + 1) / 2;
    base.y = metrics.height();
    return base;
}

QRect dialogUnitsToPixels(const QRect& units, const DialogBaseUnits& base) {
    return QRect(mulDiv(units.x(), base.x, 4), mulDiv(units.y(), base.y, 8), mulDiv(units.width(), base.x, 4),
                 mulDiv(units.height(), base.y, 8));
}

QSize dialogUnitsToPixels(const QSize& units, const DialogBaseUnits& base) {
    return QSize(mulDiv(units.width(), base.x, 4), mulDiv(units.height(), base.y, 8));
}
