// The dump of UiAutomation: a window's fields, status bar, menu, tool bar and lists as text lines.
#include "UiAutomation.h"

#include "CommandWords.h"
#include "UiAutomationControls.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QBrush>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <QToolBar>
#include <QTreeView>

#include <map>

namespace cadhost {

using namespace automation;

namespace {

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

} // namespace

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
