// A test hook of the window mode: writes where every visible window and control stands.
#include "ScreenReport.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSaveFile>
#include <QTreeView>
#include <QWidget>

#include <algorithm>

namespace cadhost {
namespace {

constexpr int kReportEveryMs = 150;
constexpr int kRowsReported = 8;

QJsonArray rectOf(const QRect& r) {
    return {r.x(), r.y(), r.width(), r.height()};
}

QString pathOf(const QWidget* widget, const QWidget* window) {
    QStringList parts;
    for (const QWidget* w = widget; w && w != window; w = w->parentWidget())
        parts.prepend(w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className())
                                                : w->objectName());
    return parts.join(QLatin1Char('/'));
}

QJsonObject controlOf(const QWidget* widget, const QWidget* window) {
    QJsonObject control{{"path", pathOf(widget, window)},
                        {"class", QString::fromLatin1(widget->metaObject()->className())},
                        {"rect", rectOf(QRect(widget->mapTo(window, QPoint(0, 0)), widget->size()))}};
    QString text;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        text = label->text();
        control["contents"] = rectOf(label->contentsRect());
        control["indent"] = label->indent();
        control["pixmap"] = !label->pixmap().isNull();
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        text = button->text();
    } else if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
        text = edit->text();
    }
    if (!text.isEmpty()) {
        control["text"] = text;
        control["advance"] = widget->fontMetrics().horizontalAdvance(text);
    }
    if (qobject_cast<const QMenuBar*>(widget) || qobject_cast<const QMenu*>(widget)) {
        QJsonArray entries;
        for (QAction* action : widget->actions()) {
            const QRect r = qobject_cast<const QMenuBar*>(widget)
                                ? static_cast<const QMenuBar*>(widget)->actionGeometry(action)
                                : static_cast<const QMenu*>(widget)->actionGeometry(action);
            if (!action->isSeparator() && action->isVisible())
                entries.append(QJsonObject{{"text", action->text()}, {"rect", rectOf(r)}});
        }
        control["entries"] = entries;
    }
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget)) {
        const QWidget* port = view->viewport();
        control["viewport"] = rectOf(QRect(port->mapTo(window, QPoint(0, 0)), port->size()));
        const QPalette& palette = view->palette();
        control["highlight"] = palette.color(QPalette::Active, QPalette::Highlight).name();
        control["base"] = palette.color(QPalette::Active, QPalette::Base).name();
        control["button"] = palette.color(QPalette::Active, QPalette::Button).name();
        QJsonArray rows;
        if (view->model())
            for (int row = 0; row < std::min(kRowsReported, view->model()->rowCount()); ++row)
                rows.append(rectOf(view->visualRect(view->model()->index(row, 0))));
        control["rows"] = rows;
        if (const auto* tree = qobject_cast<const QTreeView*>(view)) {
            control["current"] = tree->currentIndex().row();
            control["currentText"] = tree->currentIndex().siblingAtColumn(0).data().toString().trimmed();
        }
    }
    return control;
}

} // namespace

ScreenReport* ScreenReport::startIfAsked(QObject* parent) {
    const QString path = qEnvironmentVariable("CADHOST_SCREEN_REPORT");
    return path.isEmpty() ? nullptr : new ScreenReport(path, parent);
}

ScreenReport::ScreenReport(const QString& path, QObject* parent) : QObject(parent), m_path(path) {
    connect(&m_timer, &QTimer::timeout, this, &ScreenReport::writeNow);
    m_timer.start(kReportEveryMs);
}

void ScreenReport::writeNow() {
    QJsonArray windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || !window->windowHandle())
            continue;
        const QWidget* owner = window->parentWidget() ? window->parentWidget()->window() : nullptr;
        QJsonArray controls;
        if (qobject_cast<const QMenu*>(window))
            controls.append(controlOf(window, window));
        for (const QWidget* child : window->findChildren<QWidget*>())
            if (child->window() == window && child->isVisibleTo(window))
                controls.append(controlOf(child, window));
        windows.append(
            QJsonObject{{"title", window->windowTitle()},
                        {"class", QString::fromLatin1(window->metaObject()->className())},
                        {"xid", QString::number(window->winId())},
                        {"geometry", rectOf(window->geometry())},
                        {"owner", owner ? owner->windowTitle() : QString()},
                        {"modal", window->isModal() || window == QApplication::activeModalWidget()},
                        {"ratio", window->devicePixelRatio()},
                        {"controls", controls}});
    }
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QJsonDocument(QJsonObject{{"windows", windows}}).toJson(QJsonDocument::Compact));
    file.commit();
}

} // namespace cadhost
