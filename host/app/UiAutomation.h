// Window lines of the batch console: acting on an open Qt dialog by control ids, and its dump.
#pragma once
#include <functional>
#include <string>
#include <vector>

class QDialog;
class QMenu;
class QWidget;

namespace cadhost {

// How the automation sees a dialog. Every dialog of the system follows these conventions, so
// that scripts and tests address it without knowing its class:
//
// - A control's numeric id is its objectName ("1001"). Controls without a numeric name cannot
//   be addressed and are left out of the dump.
// - A dialog's template id is its dynamic property "templateId" (int); 0 when it has none.
// - The status bar is a QStatusBar in the dialog; its panes are its QLabel children in the
//   order they were created.
// - Menu commands are QActions whose objectName is the numeric id, anywhere below the dialog
//   (menu bar, menus, context menus parented to the dialog) and not in a tool bar.
//   MENU: checked when the action is checked, grayed when it is disabled.
// - Tool bar buttons are QActions with numeric objectNames in a QToolBar of the dialog.
//   TOOL: disabled when the action is disabled; else indeterminate when its dynamic property
//   "indeterminate" is true; else pressed when it is checked; else enabled.
// - Fields are QLineEdit, QTextEdit, QPlainTextEdit, QComboBox, QAbstractSpinBox and QLabel
//   with numeric ids (status bar panes excepted). readonly: a read-only edit, a combo box
//   without an editable text, a label, or a disabled control.
// - Lists are QAbstractItemViews with a model, top-level rows only:
//   headers: headerData(column, Horizontal, DisplayRole); widths: the view's column width
//     (a QListView's one column: its viewport width; a hidden column: 0);
//   row texts: DisplayRole per column, column 0 with its leading blanks;
//   background: BackgroundRole of column 0 (QColor or QBrush), else the view's Base colour;
//   text colour: ForegroundRole per column, else the view's Text colour;
//   image: role Qt::UserRole + 1 of column 0 (int), -1 when unset;
//   selected: the selection model holds column 0 of the row.
//   A delegate that paints differently from the model reports what it paints: when the view's
//   item delegate has an invokable method
//       Q_INVOKABLE QVariantMap automationCell(const QModelIndex& index) const;
//   its keys "text" (QString), "background" (QColor), "foreground" (QColor) and "image" (int)
//   take the place of the model's roles for that cell; missing keys fall back to the model.
//
// The lines (the words after '>', verb case ignored):
//   cmd ID           triggers the QAction with that id, or clicks the button with that id
//   click ID         a left click: QAbstractButton::click(), otherwise press and release at the
//                    control's centre
//   rclick ID [X Y]  right press, release and a context menu event at X Y in control coordinates
//                    (default: the centre); for item views the viewport gets them
//   text ID "..."    focus, then the whole text replaced as if typed (textEdited fires)
//   key ID KEY       focus, then press and release of Return, Escape, Tab, Up, Down or A..Z
//   select ID ROW... rows by their trimmed column-0 text or "#index": the first as a click, the
//                    others as Ctrl+clicks
//   resize W H       the window's outer size;  move X Y  the window's outer place
//   width ID COL W   a list column's width, as a drag of the header's divider sets it
//   dump             the state, in the form of dump() below
//   shot PATH        a PNG of the window (QWidget::grab)
//   close            closes the window as its close box does
// Context menus: a right click may open a QMenu (with exec() or popup()). While one is open the
// popup handler runs (from within the menu's own loop when exec() runs it); the console's handler
// takes the next lines: "> cmd ID" chooses the entry with that id as a click does (exec() returns
// it; a disabled entry does nothing), "> close" closes the menu.
// "answer" and "file" belong to boxes and file dialogs and are taken by the console when one
// asks; here they stop the script.
class UiAutomation {
public:
    struct Outcome {
        bool ok = true;
        std::string message; // why the script must stop, when not ok
    };

    // Applies one window line (words after '>') to window; printed lines go to print.
    static Outcome apply(QDialog& window, const std::vector<std::string>& words,
                         const std::function<void(const std::string&)>& print);

    // The window's state, one line a thing, in this order:
    //   WINDOW <template id> "<title>" <left> <top> <width> <height>
    //   FIELD <id> "<text>" <readonly|writable>                 by id
    //   STATUS "<pane 0>" "<pane 1>" ...                         when there is a status bar
    //   MENU <id> <checked|-> <grayed|->                         by id
    //   TOOL <id> <enabled|pressed|indeterminate|disabled>       in tool bar order
    //   COLUMN <list id> <index> "<header>" <width>              lists by id
    //   ROW <list id> <index> <image> <selected|-> "<text 0>" "<text 1>" ... <background>
    //       <text colour 0> <text colour 1> ...                   one line per row
    // Texts in double quotes with \" and \\ escaped, line ends as \n; colours as #RRGGBB.
    static std::vector<std::string> dump(QWidget& window);

    // The texts of a list's rows as dump() gives them (column 0 with its leading blanks), one
    // vector of column texts a row; empty when window has no list with that id.
    static std::vector<std::vector<std::string>> listTexts(QWidget& window, int id);

    using PopupHandler = std::function<void(QMenu&)>;
    static void setPopupHandler(PopupHandler handler);
    // Chooses the entry of an open menu with that numeric id as a click does. False when the
    // menu has no such entry.
    static bool chooseMenuEntry(QMenu& menu, int id);

    // The control with that numeric id below window, or null.
    static QWidget* findControl(QWidget& window, int id);
};

} // namespace cadhost
