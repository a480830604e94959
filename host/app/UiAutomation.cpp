// Window lines of the batch console: acting on an open Qt dialog by control ids, and its dump.
#include "UiAutomation.h"

#include "CommandWords.h"
#include "UiAutomationControls.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QBrush>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPointer>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>

#include <algorithm>
#include <map>
#include <set>

namespace cadhost {

namespace automation {

// The numeric id of an object, or -1 when its name is not a number.
int numericId(const QObject* object) {
    const QString name = object->objectName();
    if (name.isEmpty())
        return -1;
    bool ok = false;
    int id = name.toInt(&ok);
    return ok && id >= 0 ? id : -1;
}

std::string str(const QString& text) {
    return text.toStdString();
}

// The widget belongs to window itself, not to a dialog or window opened below it.
bool ownedBy(const QWidget* widget, const QWidget* window) {
    return widget->window() == window;
}

bool isToolBarAction(const QAction* action) {
    for (QObject* o : action->associatedObjects())
        if (qobject_cast<QToolBar*>(o))
            return true;
    return false;
}

std::vector<QAction*> allActions(QWidget& window) {
    std::set<QAction*> seen;
    std::vector<QAction*> out;
    auto add = [&](QAction* a) {
        if (a && seen.insert(a).second)
            out.push_back(a);
    };
    for (QAction* a : window.findChildren<QAction*>())
        add(a);
    for (QAction* a : window.actions())
        add(a);
    for (QMenuBar* bar : window.findChildren<QMenuBar*>())
        for (QAction* a : bar->actions()) {
            add(a);
            if (a->menu())
                for (QAction* sub : a->menu()->findChildren<QAction*>())
                    add(sub);
        }
    for (QToolBar* bar : window.findChildren<QToolBar*>())
        for (QAction* a : bar->actions())
            add(a);
    return out;
}

void flushEvents() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

} // namespace automation

using namespace automation;

namespace {

using Print = std::function<void(const std::string&)>;
using Words = std::vector<std::string>;

UiAutomation::PopupHandler& popupHandler() {
    static UiAutomation::PopupHandler handler;
    return handler;
}

// Runs the popup handler once a menu is open: from the menu's own loop when the control runs it
// with exec(), or from the events flushed after the line when it uses popup().
void armPopupHandler() {
    QTimer::singleShot(0, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu && popupHandler())
            popupHandler()(*menu);
    });
}
using Outcome = UiAutomation::Outcome;

Outcome stop(std::string message) {
    return {false, std::move(message)};
}

bool parseInt(const std::string& text, int& value) {
    bool ok = false;
    value = QString::fromStdString(text).toInt(&ok);
    return ok;
}

QAction* findAction(QWidget& window, int id) {
    for (QAction* a : allActions(window))
        if (numericId(a) == id)
            return a;
    return nullptr;
}

void giveFocus(QWidget* control) {
    QWidget* window = control->window();
    if (!window->isActiveWindow())
        window->activateWindow();
    control->setFocus(Qt::OtherFocusReason);
    // Without an active window (no display) setFocus only records the wish: send the event the
    // user's click would bring, so focus handlers run.
    if (!control->hasFocus()) {
        QFocusEvent in(QEvent::FocusIn, Qt::OtherFocusReason);
        QCoreApplication::sendEvent(control, &in);
    }
}

void sendMouse(QWidget* target, const QPoint& pos, Qt::MouseButton button, Qt::KeyboardModifiers mods) {
    const QPointF local(pos);
    const QPointF global(target->mapToGlobal(pos));
    QMouseEvent press(QEvent::MouseButtonPress, local, global, button, button, mods);
    QCoreApplication::sendEvent(target, &press);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, button, Qt::NoButton, mods);
    QCoreApplication::sendEvent(target, &release);
}

struct KeyName {
    const char* name;
    int key;
    const char* text;
};

constexpr KeyName kKeys[] = {
    {"RETURN", Qt::Key_Return, "\r"}, {"ESCAPE", Qt::Key_Escape, "\x1b"}, {"TAB", Qt::Key_Tab, "\t"},
    {"UP", Qt::Key_Up, ""},           {"DOWN", Qt::Key_Down, ""},
};

bool keyFor(const std::string& name, int& key, QString& text) {
    const std::string upper = upperCase(name);
    for (const auto& k : kKeys)
        if (upper == k.name) {
            key = k.key;
            text = QString::fromLatin1(k.text);
            return true;
        }
    if (upper.size() == 1 && upper[0] >= 'A' && upper[0] <= 'Z') {
        key = Qt::Key_A + (upper[0] - 'A');
        text = QString(QChar(name[0])).toLower();
        return true;
    }
    return false;
}

bool replaceText(QWidget* control, const QString& text) {
    if (auto* combo = qobject_cast<QComboBox*>(control)) {
        if (!combo->isEditable() || !combo->lineEdit())
            return false;
        control = combo->lineEdit();
    } else if (auto* spin = qobject_cast<QAbstractSpinBox*>(control)) {
        QLineEdit* edit = spin->findChild<QLineEdit*>();
        if (!edit)
            return false;
        control = edit;
    }
    if (auto* edit = qobject_cast<QLineEdit*>(control)) {
        if (edit->isReadOnly() || !edit->isEnabled())
            return true; // as typed: a read-only field takes nothing
        edit->selectAll();
        if (text.isEmpty())
            edit->del(); // emits textEdited("") as the user's Delete does
        else
            edit->insert(text);
        return true;
    }
    if (auto* edit = qobject_cast<QTextEdit*>(control)) {
        if (edit->isReadOnly() || !edit->isEnabled())
            return true;
        edit->selectAll();
        edit->textCursor().insertText(text);
        return true;
    }
    if (auto* edit = qobject_cast<QPlainTextEdit*>(control)) {
        if (edit->isReadOnly() || !edit->isEnabled())
            return true;
        edit->selectAll();
        edit->textCursor().insertText(text);
        return true;
    }
    return false;
}

// ---- the lines ----

Outcome needArgs(const std::vector<std::string>& words, size_t min, size_t max, const char* usage) {
    const size_t n = words.size() - 1;
    if (n < min || n > max)
        return stop(std::string("usage: > ") + usage);
    return {};
}

Outcome controlArg(QWidget& window, const std::string& word, QWidget*& control) {
    int id = 0;
    if (!parseInt(word, id))
        return stop("\"" + word + "\" is no control id");
    control = UiAutomation::findControl(window, id);
    if (!control)
        return stop("the window has no control " + word);
    return {};
}

Outcome doCmd(QDialog& window, const Words& words, const Print&) {
    int id = 0;
    if (!parseInt(words[1], id))
        return stop("\"" + words[1] + "\" is no command id");
    if (QAction* action = findAction(window, id)) {
        action->trigger(); // a disabled action does nothing, as a grayed menu entry
        return {};
    }
    if (auto* button = qobject_cast<QAbstractButton*>(UiAutomation::findControl(window, id))) {
        button->click();
        return {};
    }
    return stop("the window has no command " + words[1]);
}

Outcome doClick(QDialog& window, const Words& words, const Print&) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    if (auto* button = qobject_cast<QAbstractButton*>(control)) {
        button->click();
        return {};
    }
    QWidget* target = control;
    if (auto* area = qobject_cast<QAbstractScrollArea*>(control))
        target = area->viewport();
    sendMouse(target, target->rect().center(), Qt::LeftButton, Qt::NoModifier);
    return {};
}

Outcome doRightClick(QDialog& window, const Words& words, const Print&) {
    if (words.size() == 3)
        return stop("usage: > rclick ID [X Y]");
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    QPoint pos = control->rect().center();
    if (words.size() == 4) {
        int x = 0, y = 0;
        if (!parseInt(words[2], x) || !parseInt(words[3], y))
            return stop("rclick needs whole numbers for X and Y");
        pos = QPoint(x, y);
    }
    QWidget* target = control;
    if (auto* area = qobject_cast<QAbstractScrollArea*>(control)) {
        target = area->viewport();
        pos = target->mapFrom(control, pos);
    }
    armPopupHandler();
    sendMouse(target, pos, Qt::RightButton, Qt::NoModifier);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, pos, target->mapToGlobal(pos), Qt::NoModifier);
    QCoreApplication::sendEvent(target, &menu);
    return {};
}

Outcome doText(QDialog& window, const Words& words, const Print&) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    giveFocus(control);
    if (!replaceText(control, QString::fromStdString(words[2])))
        return stop("control " + words[1] + " takes no text");
    return {};
}

Outcome doKey(QDialog& window, const Words& words, const Print&) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    int key = 0;
    QString text;
    if (!keyFor(words[2], key, text))
        return stop("unknown key \"" + words[2] + "\" (Return, Escape, Tab, Up, Down, A..Z)");
    giveFocus(control);
    QPointer<QWidget> guard(control);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(control, &press);
    if (guard) {
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(guard, &release);
    }
    return {};
}

Outcome doSelect(QDialog& window, const Words& words, const Print&) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    auto* view = qobject_cast<QAbstractItemView*>(control);
    if (!view || !view->model())
        return stop("control " + words[1] + " is no list");
    QAbstractItemModel* model = view->model();
    std::vector<int> rows;
    for (size_t i = 2; i < words.size(); ++i) {
        const std::string& w = words[i];
        int row = -1;
        if (w.size() > 1 && w[0] == '#') {
            if (!parseInt(w.substr(1), row) || row < 0 || row >= model->rowCount())
                return stop("list " + words[1] + " has no row " + w);
        } else {
            for (int r = 0; r < model->rowCount() && row < 0; ++r)
                if (trimmed(str(model->data(model->index(r, 0)).toString())) == trimmed(w))
                    row = r;
            if (row < 0)
                return stop("list " + words[1] + " has no row \"" + w + "\"");
        }
        rows.push_back(row);
    }
    giveFocus(view);
    for (size_t i = 0; i < rows.size(); ++i) {
        const QModelIndex index = model->index(rows[i], 0);
        const Qt::KeyboardModifiers mods = i == 0 ? Qt::NoModifier : Qt::ControlModifier;
        view->scrollTo(index);
        QRect rect = view->visualRect(index);
        if (rect.isValid() && view->viewport()->rect().intersects(rect)) {
            sendMouse(view->viewport(), rect.center(), Qt::LeftButton, mods);
        } else if (QItemSelectionModel* sel = view->selectionModel()) {
            // No place on the screen (a view never laid out): select as the click would.
            auto flags = QItemSelectionModel::Rows |
                         (i == 0 ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::Select);
            sel->setCurrentIndex(index, flags);
        }
    }
    return {};
}

// A column's width set as a drag of its header's divider sets it: the header tells the view.
Outcome doWidth(QDialog& window, const Words& words, const Print&) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    QHeaderView* header = nullptr;
    if (auto* t = qobject_cast<QTreeView*>(control))
        header = t->header();
    else if (auto* t = qobject_cast<QTableView*>(control))
        header = t->horizontalHeader();
    if (!header)
        return stop("control " + words[1] + " has no column header");
    int column = 0, width = 0;
    if (!parseInt(words[2], column) || !parseInt(words[3], width) || width < 0)
        return stop("width needs a column index and a width in pixels");
    if (column < 0 || column >= header->count())
        return stop("list " + words[1] + " has no column " + words[2]);
    header->resizeSection(column, width);
    return {};
}

Outcome doResize(QDialog& window, const Words& words, const Print&) {
    int width = 0, height = 0;
    if (!parseInt(words[1], width) || !parseInt(words[2], height))
        return stop("resize needs two whole numbers");
    const QSize frameExtra = window.frameGeometry().size() - window.size();
    window.resize(width - frameExtra.width(), height - frameExtra.height());
    return {};
}

Outcome doMove(QDialog& window, const Words& words, const Print&) {
    int x = 0, y = 0;
    if (!parseInt(words[1], x) || !parseInt(words[2], y))
        return stop("move needs two whole numbers");
    window.move(x, y);
    return {};
}

Outcome doDump(QDialog& window, const Words&, const Print& print) {
    flushEvents();
    for (const auto& line : UiAutomation::dump(window))
        print(line);
    return {};
}

Outcome doShot(QDialog& window, const Words& words, const Print&) {
    flushEvents();
    if (!window.grab().save(QString::fromStdString(words[1]), "PNG"))
        return stop("cannot write the picture \"" + words[1] + "\"");
    return {};
}

Outcome doClose(QDialog& window, const Words&, const Print&) {
    window.close();
    return {};
}

// Boxes and file dialogs take these lines when they ask; a window line has none to answer.
Outcome noBox(QDialog&, const Words&, const Print&) {
    return stop("no message box asks for an answer");
}

Outcome noFileDialog(QDialog&, const Words&, const Print&) {
    return stop("no file dialog asks for a file");
}

// A verb of the window lines: its name (upper case), how many words may follow it, the usage
// shown when their count is wrong, and what it does.
struct Verb {
    const char* name;
    size_t minArgs;
    size_t maxArgs;
    const char* usage;
    Outcome (*handler)(QDialog& window, const Words& words, const Print& print);
};

constexpr size_t kAnyCount = static_cast<size_t>(-1);

constexpr Verb kVerbs[] = {
    {"CMD", 1, 1, "cmd ID", doCmd},
    {"CLICK", 1, 1, "click ID", doClick},
    {"RCLICK", 1, 3, "rclick ID [X Y]", doRightClick},
    {"TEXT", 2, 2, "text ID \"...\"", doText},
    {"KEY", 2, 2, "key ID KEY", doKey},
    {"SELECT", 2, 1000, "select ID ROW...", doSelect},
    {"RESIZE", 2, 2, "resize W H", doResize},
    {"MOVE", 2, 2, "move X Y", doMove},
    {"WIDTH", 3, 3, "width ID COLUMN PIXELS", doWidth},
    {"DUMP", 0, 0, "dump", doDump},
    {"SHOT", 1, 1, "shot PATH", doShot},
    {"CLOSE", 0, 0, "close", doClose},
    {"ANSWER", 0, kAnyCount, "answer ...", noBox},
    {"FILE", 0, kAnyCount, "file ...", noFileDialog},
};

} // namespace

void UiAutomation::setPopupHandler(PopupHandler handler) {
    popupHandler() = std::move(handler);
}

bool UiAutomation::chooseMenuEntry(QMenu& menu, int id) {
    for (QAction* action : menu.actions()) {
        if (numericId(action) != id || action->isSeparator())
            continue;
        if (!action->isEnabled())
            return true; // a grayed entry takes no click; the menu stays open
        menu.setActiveAction(action);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        QCoreApplication::sendEvent(&menu, &press);
        return true;
    }
    return false;
}

QWidget* UiAutomation::findControl(QWidget& window, int id) {
    const QString name = QString::number(id);
    for (QWidget* w : window.findChildren<QWidget*>(name))
        if (ownedBy(w, &window))
            return w;
    return nullptr;
}

Outcome UiAutomation::apply(QDialog& window, const std::vector<std::string>& words, const Print& print) {
    if (words.empty())
        return stop("a window line needs a verb after '>'");
    const std::string verb = upperCase(words[0]);
    const auto known =
        std::find_if(std::begin(kVerbs), std::end(kVerbs), [&](const Verb& v) { return verb == v.name; });
    if (known == std::end(kVerbs))
        return stop("unknown window line \"" + words[0] + "\"");
    Outcome result = needArgs(words, known->minArgs, known->maxArgs, known->usage);
    if (result.ok)
        result = known->handler(window, words, print);
    if (result.ok)
        flushEvents();
    return result;
}

} // namespace cadhost
