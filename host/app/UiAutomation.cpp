// Window lines of the batch console: acting on an open Qt dialog by control ids, and its dump.
#include "UiAutomation.h"

#include "CommandWords.h"

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

namespace {

using Print = std::function<void(const std::string&)>;

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

// The numeric id of an object, or -1 when its name is not a number.
int numericId(const QObject* object) {
    const QString name = object->objectName();
    if (name.isEmpty())
        return -1;
    bool ok = false;
    int id = name.toInt(&ok);
    return ok && id >= 0 ? id : -1;
}

bool parseInt(const std::string& text, int& value) {
    bool ok = false;
    value = QString::fromStdString(text).toInt(&ok);
    return ok;
}

std::string str(const QString& text) {
    return text.toStdString();
}

// A dump text: quoted, and a line end kept on the line as \n.
std::string dumpText(const QString& text) {
    QString flat = text;
    flat.remove(QLatin1Char('\r'));
    std::string q = quoted(str(flat));
    std::string out;
    for (char c : q) {
        if (c == '\n')
            out += "\\n";
        else
            out += c;
    }
    return out;
}

std::string colourText(const QColor& colour) {
    return str(colour.name(QColor::HexRgb).toUpper());
}

QColor colourOf(const QVariant& value, const QColor& fallback) {
    if (value.canConvert<QBrush>() && value.userType() == QMetaType::QBrush)
        return value.value<QBrush>().color();
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>();
    return fallback;
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

QAction* findAction(QWidget& window, int id) {
    for (QAction* a : allActions(window))
        if (numericId(a) == id)
            return a;
    return nullptr;
}

void flushEvents() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
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

// ---- dump helpers ----

QString fieldText(QWidget* w, bool& readOnly) {
    readOnly = !w->isEnabled();
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        readOnly = readOnly || e->isReadOnly();
        return e->text();
    }
    if (auto* e = qobject_cast<QTextEdit*>(w)) {
        readOnly = readOnly || e->isReadOnly();
        return e->toPlainText();
    }
    if (auto* e = qobject_cast<QPlainTextEdit*>(w)) {
        readOnly = readOnly || e->isReadOnly();
        return e->toPlainText();
    }
    if (auto* c = qobject_cast<QComboBox*>(w)) {
        readOnly = readOnly || !c->isEditable();
        return c->currentText();
    }
    if (auto* s = qobject_cast<QAbstractSpinBox*>(w)) {
        readOnly = readOnly || s->isReadOnly();
        return s->text();
    }
    if (auto* l = qobject_cast<QLabel*>(w)) {
        readOnly = true;
        return l->text();
    }
    return {};
}

bool isField(QWidget* w) {
    return qobject_cast<QLineEdit*>(w) || qobject_cast<QTextEdit*>(w) || qobject_cast<QPlainTextEdit*>(w) ||
           qobject_cast<QComboBox*>(w) || qobject_cast<QAbstractSpinBox*>(w) || qobject_cast<QLabel*>(w);
}

bool insideStatusBar(QWidget* w, QWidget* window) {
    for (QWidget* p = w->parentWidget(); p && p != window; p = p->parentWidget())
        if (qobject_cast<QStatusBar*>(p))
            return true;
    return false;
}

// A line edit inside a combo or spin box is part of that control, not a field of its own.
bool insideCompositeControl(QWidget* w, QWidget* window) {
    for (QWidget* p = w->parentWidget(); p && p != window; p = p->parentWidget())
        if (qobject_cast<QComboBox*>(p) || qobject_cast<QAbstractSpinBox*>(p))
            return true;
    return false;
}

int columnWidth(QAbstractItemView* view, int column) {
    if (auto* t = qobject_cast<QTableView*>(view))
        return t->isColumnHidden(column) ? 0 : t->columnWidth(column);
    if (auto* t = qobject_cast<QTreeView*>(view))
        return t->isColumnHidden(column) ? 0 : t->columnWidth(column);
    return view->viewport()->width();
}

QVariantMap paintedCell(QAbstractItemView* view, const QModelIndex& index) {
    QVariantMap painted;
    QAbstractItemDelegate* delegate = view->itemDelegateForIndex(index);
    if (!delegate)
        return painted;
    const QMetaObject* meta = delegate->metaObject();
    if (meta->indexOfMethod("automationCell(QModelIndex)") < 0)
        return painted;
    QMetaObject::invokeMethod(delegate, "automationCell", Qt::DirectConnection,
                              Q_RETURN_ARG(QVariantMap, painted), Q_ARG(QModelIndex, index));
    return painted;
}

QString cellText(QAbstractItemView* view, const QModelIndex& index, const QVariantMap& painted) {
    return painted.contains("text") ? painted.value("text").toString()
                                    : view->model()->data(index, Qt::DisplayRole).toString();
}

void dumpList(QAbstractItemView* view, int id, std::vector<std::string>& out) {
    QAbstractItemModel* model = view->model();
    if (!model)
        return;
    const int columns = model->columnCount();
    for (int c = 0; c < columns; ++c)
        out.push_back("COLUMN " + std::to_string(id) + " " + std::to_string(c) + " " +
                      dumpText(model->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString()) + " " +
                      std::to_string(columnWidth(view, c)));
    const QColor base = view->palette().color(QPalette::Base);
    const QColor textColour = view->palette().color(QPalette::Text);
    QItemSelectionModel* selection = view->selectionModel();
    const int rows = model->rowCount();
    for (int r = 0; r < rows; ++r) {
        std::string texts, colours;
        QColor background = base;
        int image = -1;
        for (int c = 0; c < columns; ++c) {
            const QModelIndex index = model->index(r, c);
            const QVariantMap painted = paintedCell(view, index);
            const QString text = cellText(view, index, painted);
            QColor fg = painted.contains("foreground")
                            ? painted.value("foreground").value<QColor>()
                            : colourOf(model->data(index, Qt::ForegroundRole), textColour);
            if (c == 0) {
                background = painted.contains("background")
                                 ? painted.value("background").value<QColor>()
                                 : colourOf(model->data(index, Qt::BackgroundRole), base);
                QVariant img =
                    painted.contains("image") ? painted.value("image") : model->data(index, Qt::UserRole + 1);
                bool ok = false;
                int value = img.toInt(&ok);
                image = img.isValid() && ok ? value : -1;
            }
            texts += " " + dumpText(text);
            colours += " " + colourText(fg);
        }
        const bool selected = selection && selection->isSelected(model->index(r, 0));
        out.push_back("ROW " + std::to_string(id) + " " + std::to_string(r) + " " + std::to_string(image) +
                      (selected ? " selected" : " -") + texts + " " + colourText(background) + colours);
    }
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

Outcome doCmd(QDialog& window, const std::vector<std::string>& words) {
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

Outcome doClick(QDialog& window, const std::vector<std::string>& words) {
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

Outcome doRightClick(QDialog& window, const std::vector<std::string>& words) {
    if (words.size() != 2 && words.size() != 4)
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

Outcome doText(QDialog& window, const std::vector<std::string>& words) {
    QWidget* control = nullptr;
    if (Outcome o = controlArg(window, words[1], control); !o.ok)
        return o;
    giveFocus(control);
    if (!replaceText(control, QString::fromStdString(words[2])))
        return stop("control " + words[1] + " takes no text");
    return {};
}

Outcome doKey(QDialog& window, const std::vector<std::string>& words) {
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

Outcome doSelect(QDialog& window, const std::vector<std::string>& words) {
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
Outcome doWidth(QDialog& window, const std::vector<std::string>& words) {
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

Outcome doResizeMove(QDialog& window, const std::vector<std::string>& words, bool resize) {
    int a = 0, b = 0;
    if (!parseInt(words[1], a) || !parseInt(words[2], b))
        return stop(std::string(resize ? "resize" : "move") + " needs two whole numbers");
    if (resize) {
        const QSize frameExtra = window.frameGeometry().size() - window.size();
        window.resize(a - frameExtra.width(), b - frameExtra.height());
    } else {
        window.move(a, b);
    }
    return {};
}

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
    Outcome result;
    if (verb == "CMD") {
        if (result = needArgs(words, 1, 1, "cmd ID"); result.ok)
            result = doCmd(window, words);
    } else if (verb == "CLICK") {
        if (result = needArgs(words, 1, 1, "click ID"); result.ok)
            result = doClick(window, words);
    } else if (verb == "RCLICK") {
        result = doRightClick(window, words);
    } else if (verb == "TEXT") {
        if (result = needArgs(words, 2, 2, "text ID \"...\""); result.ok)
            result = doText(window, words);
    } else if (verb == "KEY") {
        if (result = needArgs(words, 2, 2, "key ID KEY"); result.ok)
            result = doKey(window, words);
    } else if (verb == "SELECT") {
        if (result = needArgs(words, 2, 1000, "select ID ROW..."); result.ok)
            result = doSelect(window, words);
    } else if (verb == "RESIZE" || verb == "MOVE") {
        if (result = needArgs(words, 2, 2, verb == "RESIZE" ? "resize W H" : "move X Y"); result.ok)
            result = doResizeMove(window, words, verb == "RESIZE");
    } else if (verb == "WIDTH") {
        if (result = needArgs(words, 3, 3, "width ID COLUMN PIXELS"); result.ok)
            result = doWidth(window, words);
    } else if (verb == "DUMP") {
        if (result = needArgs(words, 0, 0, "dump"); result.ok) {
            flushEvents();
            for (const auto& line : dump(window))
                print(line);
        }
    } else if (verb == "SHOT") {
        if (result = needArgs(words, 1, 1, "shot PATH"); result.ok) {
            flushEvents();
            if (!window.grab().save(QString::fromStdString(words[1]), "PNG"))
                result = stop("cannot write the picture \"" + words[1] + "\"");
        }
    } else if (verb == "CLOSE") {
        if (result = needArgs(words, 0, 0, "close"); result.ok)
            window.close();
    } else if (verb == "ANSWER") {
        result = stop("no message box asks for an answer");
    } else if (verb == "FILE") {
        result = stop("no file dialog asks for a file");
    } else {
        result = stop("unknown window line \"" + words[0] + "\"");
    }
    if (result.ok)
        flushEvents();
    return result;
}

std::vector<std::vector<std::string>> UiAutomation::listTexts(QWidget& window, int id) {
    std::vector<std::vector<std::string>> rows;
    auto* view = qobject_cast<QAbstractItemView*>(findControl(window, id));
    QAbstractItemModel* model = view ? view->model() : nullptr;
    if (!model)
        return rows;
    flushEvents();
    const int columns = model->columnCount();
    for (int r = 0; r < model->rowCount(); ++r) {
        std::vector<std::string> texts;
        for (int c = 0; c < columns; ++c) {
            const QModelIndex index = model->index(r, c);
            texts.push_back(str(cellText(view, index, paintedCell(view, index))));
        }
        rows.push_back(std::move(texts));
    }
    return rows;
}

std::vector<std::string> UiAutomation::dump(QWidget& window) {
    std::vector<std::string> out;
    const QRect frame = window.frameGeometry();
    out.push_back("WINDOW " + std::to_string(window.property("templateId").toInt()) + " " +
                  dumpText(window.windowTitle()) + " " + std::to_string(frame.x()) + " " +
                  std::to_string(frame.y()) + " " + std::to_string(frame.width()) + " " +
                  std::to_string(frame.height()));

    std::map<int, QWidget*> fields;
    std::map<int, QAbstractItemView*> lists;
    for (QWidget* w : window.findChildren<QWidget*>()) {
        const int id = numericId(w);
        if (id < 0 || !ownedBy(w, &window) || !w->isVisibleTo(&window))
            continue;
        if (auto* view = qobject_cast<QAbstractItemView*>(w)) {
            lists.emplace(id, view);
            continue;
        }
        if (isField(w) && !insideStatusBar(w, &window) && !insideCompositeControl(w, &window))
            fields.emplace(id, w);
    }
    for (const auto& [id, w] : fields) {
        bool readOnly = false;
        const QString text = fieldText(w, readOnly);
        out.push_back("FIELD " + std::to_string(id) + " " + dumpText(text) +
                      (readOnly ? " readonly" : " writable"));
    }

    for (QStatusBar* bar : window.findChildren<QStatusBar*>()) {
        if (!ownedBy(bar, &window))
            continue;
        std::string line = "STATUS";
        for (QLabel* pane : bar->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
            line += " " + dumpText(pane->text());
        // Panes added with addWidget are re-parented inside the bar's own layout holder.
        if (line == "STATUS")
            for (QLabel* pane : bar->findChildren<QLabel*>())
                line += " " + dumpText(pane->text());
        out.push_back(line);
        break;
    }

    std::map<int, QAction*> menu;
    std::vector<QAction*> tools;
    for (QToolBar* bar : window.findChildren<QToolBar*>())
        if (ownedBy(bar, &window))
            for (QAction* a : bar->actions())
                if (numericId(a) >= 0 && !a->isSeparator())
                    tools.push_back(a);
    for (QAction* a : allActions(window))
        if (numericId(a) >= 0 && !a->isSeparator() && !isToolBarAction(a))
            menu.emplace(numericId(a), a);
    for (const auto& [id, a] : menu)
        out.push_back("MENU " + std::to_string(id) + (a->isChecked() ? " checked" : " -") +
                      (a->isEnabled() ? " -" : " grayed"));
    for (QAction* a : tools) {
        const char* state = !a->isEnabled()                         ? "disabled"
                            : a->property("indeterminate").toBool() ? "indeterminate"
                            : a->isChecked()                        ? "pressed"
                                                                    : "enabled";
        out.push_back("TOOL " + std::to_string(numericId(a)) + " " + state);
    }

    for (const auto& [id, view] : lists)
        dumpList(view, id, out);
    return out;
}

} // namespace cadhost
