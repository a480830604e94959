// Routines that all dialogs of the module share: placing a window, its icon, file dialog filters.
#pragma once
#include <QRect>
#include <QSize>

#include <cstdint>
#include <initializer_list>
#include <string>

class QAbstractButton;
class QWidget;

// Resource number of the window icon of every dialog.
inline constexpr int kDialogIconId = 1113;

// The stored outer rectangle corrected for a screen of that size, in this order: a negative
// left or top becomes 0; a width or height above the screen's becomes the screen's; a left
// beyond the screen's width less a quarter of the window's width (integer division) becomes
// that value, and the same for top with the heights. So at least a quarter of the window stays
// on the screen at the right and the bottom. A width or height below the window's own limits is
// left alone.
QRect correctWindowRect(const QRect& stored, const QSize& screen);

// Places window with its outer rectangle at the corrected rectangle of left, top, width and
// height, for the primary screen's size. Always true.
bool PlaceWindow(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                 QWidget* window);
// The window's outer rectangle on the screen as left, top, width and height.
void storeWindowRect(const QWidget& window, std::int32_t& left, std::int32_t& top, std::int32_t& width,
                     std::int32_t& height);

// How much the window's frame adds to its inner size. The window is made native first: the
// frame is the window system's, and unknown before that.
QSize windowFrameExtra(QWidget& window);

// The width of the buttons of a row: the template's width, narrowed to what the widest caption
// needs with its margins. Templates were made for a narrower font than the desktop's; so a row
// of buttons keeps within the dialog's size.
int fittedButtonWidth(int templateWidth, std::initializer_list<const QAbstractButton*> buttons);

// Gives window the module's icon 1113. Always true.
bool SetDialogIcon(QWidget* window);

// "name (*.ext)|*.ext|", with one further "|" when closing is set: the last entry of a filter.
std::string MakeFilterEntry(const std::string& displayName, const std::string& extension, bool closing);
