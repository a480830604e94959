// Routines that all dialogs of the module share: placing a window, its icon, file dialog filters.
#include "DialogRoutines.h"

#include "ModuleResources.h"

#include <QAbstractButton>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

QRect correctWindowRect(const QRect& stored, const QSize& screen) {
    int left = stored.x();
    int top = stored.y();
    int width = stored.width();
    int height = stored.height();
    if (left < 0)
        left = 0;
    if (top < 0)
        top = 0;
    if (width > screen.width())
        width = screen.width();
    if (height > screen.height())
        height = screen.height();
    if (left > screen.width() - width / 4)
        left = screen.width() - width / 4;
    if (top > screen.height() - height / 4)
        top = screen.height() - height / 4;
    return QRect(left, top, width, height);
}

bool PlaceWindow(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                 QWidget* window) {
    if (!window)
        return true;
    QSize screen(width, height); // without a screen the rectangle stands as stored
    if (const QScreen* primary = QGuiApplication::primaryScreen())
        screen = primary->geometry().size();
    const QRect place = correctWindowRect(QRect(left, top, width, height), screen);
    // The stored numbers are the outer rectangle; Qt sizes the inside of the frame.
    const QSize frameExtra = windowFrameExtra(*window);
    window->move(place.topLeft());
    window->resize(place.width() - frameExtra.width(), place.height() - frameExtra.height());
    window->update();
    return true;
}

QSize windowFrameExtra(QWidget& window) {
    if (window.isWindow())
        window.winId();
    return window.frameGeometry().size() - window.size();
}

void storeWindowRect(const QWidget& window, std::int32_t& left, std::int32_t& top, std::int32_t& width,
                     std::int32_t& height) {
    const QRect frame = window.frameGeometry();
    left = frame.x();
    top = frame.y();
    width = frame.width();
    height = frame.height();
}

bool SetDialogIcon(QWidget* window) {
    if (window)
        window->setWindowIcon(moduleIcon(kDialogIconId));
    return true;
}

std::string MakeFilterEntry(const std::string& displayName, const std::string& extension, bool closing) {
    std::string entry = displayName + " (*." + extension + ")|*." + extension + "|";
    if (closing)
        entry += "|";
    return entry;
}

int fittedButtonWidth(int templateWidth, std::initializer_list<const QAbstractButton*> buttons) {
    constexpr int kCaptionMargin = 8; // on each side of a caption, inside the button's frame
    int needed = 0;
    for (const QAbstractButton* button : buttons)
        if (button)
            needed = std::max(needed,
                              button->fontMetrics().horizontalAdvance(button->text()) + 2 * kCaptionMargin);
    return needed > 0 ? std::min(templateWidth, needed) : templateWidth;
}
