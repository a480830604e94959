// What the window lines and the dump of UiAutomation both need: the numeric ids of controls and
// commands, which of them belong to a window, and the delivery of pending events.
#pragma once
#include <QString>

#include <string>
#include <vector>

class QAction;
class QObject;
class QWidget;

namespace cadhost::automation {

// The numeric id of an object, or -1 when its name is not a number.
int numericId(const QObject* object);
std::string str(const QString& text);
// The widget belongs to window itself, not to a dialog or window opened below it.
bool ownedBy(const QWidget* widget, const QWidget* window);
bool isToolBarAction(const QAction* action);
// Every action of the window: its own, its menus' and its tool bars', each once.
std::vector<QAction*> allActions(QWidget& window);
// Delivers the posted events and runs those pending, as the event loop would before a look.
void flushEvents();

} // namespace cadhost::automation
