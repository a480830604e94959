// Icons and bitmaps of the module by resource number, drawn from the SVG pictures in its resources.
#include "ModuleResources.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

namespace {

QString iconPath(int id) {
    return QStringLiteral(":/vardesk/icons/%1.svg").arg(id);
}

QPixmap render(const QString& path, const QSize& size) {
    if (!QFile::exists(path) || size.isEmpty())
        return {};
    QSvgRenderer renderer(path);
    if (!renderer.isValid())
        return {};
    QPixmap pixmap(size);
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
    return render(iconPath(id), QSize(size, size));
}

QPixmap moduleBitmap(int id, const QSize& size) {
    return render(QStringLiteral(":/vardesk/bitmaps/%1.svg").arg(id), size);
}
