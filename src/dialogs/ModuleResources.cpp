// Icons and bitmaps of the module by resource number, drawn from the SVG pictures in its resources.
#include "ModuleResources.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

namespace {

QString iconPath(int id) {
    return QStringLiteral(":/vardesk/icons/%1.svg").arg(id);
}

// The screen's pixels per logical pixel: 2 at a scale factor of 2, where a picture drawn at its
// logical size would be blown up and blurred.
qreal screenRatio() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) ? qGuiApp->devicePixelRatio() : 1.0;
}

// The picture at path in size logical pixels, drawn with ratio device pixels to each.
QPixmap render(const QString& path, const QSize& size, qreal ratio = 1.0) {
    if (!QFile::exists(path) || size.isEmpty())
        return {};
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return {};
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

// Icons already drawn, by id. Every dialog asks for the same few dozen, and drawing each from
// its SVG at three sizes was most of what opening a dialog cost. Kept until the module leaves
// the process (no clean-up routine: the host unloads the module before the application ends).
QHash<int, QIcon>& drawnIcons() {
    static QHash<int, QIcon> icons;
    return icons;
}

} // namespace

bool hasModuleIcon(int id) {
    return QFile::exists(iconPath(id));
}

QIcon moduleIcon(int id) {
    QHash<int, QIcon>& icons = drawnIcons();
    if (auto found = icons.constFind(id); found != icons.constEnd())
        return *found;
    if (!hasModuleIcon(id))
        return {};
    QIcon icon;
    for (int size : {16, 32, 48})
        icon.addPixmap(render(iconPath(id), QSize(size, size)));
    icons.insert(id, icon);
    return icon;
}

QPixmap moduleIconPixmap(int id, int size) {
    return render(iconPath(id), QSize(size, size), screenRatio());
}

QPixmap moduleBitmap(int id, const QSize& size) {
    return render(QStringLiteral(":/vardesk/bitmaps/%1.svg").arg(id), size, screenRatio());
}
