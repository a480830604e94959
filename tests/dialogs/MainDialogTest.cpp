// Tests of the main dialog: status panes, layout, tool bar, columns, list orders, row colours, keys,
// the search's notification. Set and its report are in the scenarios commands_set and dialogs_set.
#include "CommandsTestKit.h"

#include "dialogs/ModuleResources.h"
#include "dialogs/VarListView.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

using namespace commandstest;
using namespace mainids;

class MainDialog : public CommandsTest {
protected:
    // What the delegate reports it paints ("text", "foreground", "background"), as the dump reads it.
    QVariant painted(int row, int column, const char* what) {
        QVariantMap cell;
        QMetaObject::invokeMethod(d->listCtrl->itemDelegate(), "automationCell", Qt::DirectConnection,
                                  Q_RETURN_ARG(QVariantMap, cell),
                                  Q_ARG(QModelIndex, rows().index(row, column)));
        return cell[what];
    }
    QColor colour(int row, int column, const char* what = "foreground") {
        return painted(row, column, what).value<QColor>();
    }
};

// A row as its indented text and image.
std::string row(int level, const std::string& text, int image) {
    return std::string(7 * (level + 1), ' ') + text + "|" + std::to_string(image);
}

TEST_F(MainDialog, StatusPanesAreMeasuredAndTellARecordsKind) {
    open();
    const QList<QLabel*> panes = d->statusBar->findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panes.size(), 3);
    const QFontMetrics m(d->statusBar->font());
    auto w = [&m](const std::string& t) { return m.horizontalAdvance(QString::fromStdString(t)); };
    // What the label gives its text: its contents less the indent on both sides.
    auto room = [](const QLabel* p) { return p->contentsRect().width() - 2 * p->indent(); };
    EXPECT_GE(room(panes[1]), std::max(w(gMsg.StProtected), w(gMsg.StChangeable)));
    EXPECT_GE(room(panes[2]), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)));
    EXPECT_LE(room(panes[2]), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)) + 2)
        << "a pane no wider than its text and frame";
    EXPECT_EQ(panes[2]->x() + panes[2]->width(), d->statusBar->width());
    d->ShowStatus(&at("VIEWCTR")); // changeable and drawing-specific rows are in the scenarios
    EXPECT_EQ(pane(1), gMsg.StProtected);
    EXPECT_EQ(pane(2), gMsg.StDrawSpecific);
}

// The description gives up lines below a list of 6H and nothing moves below 2H; a description
// longer than the visible lines gets its scroll bar.
TEST_F(MainDialog, LayoutKeepsMarginsAndGivesUpDescriptionLines) {
    open();
    QWidget* list = d->listCtrl;
    QWidget* description = d->descriptionEdit;
    QWidget* value = d->valueEdit;
    const int H = value->height();
    const int fixed = d->toolBar->height() + d->statusBar->height() + 4 * 10 + H;
    const int menu = d->height() - d->clientArea()->height();
    at("LUPREC").description = "a\nb\nc";
    const struct {
        int listRoom; // client height less the fixed parts: list + description
        int lines;
        bool moves;
    } cases[] = {{9 * H, 3, true}, {9 * H - 1, 2, true}, {3 * H, 1, true}, {3 * H - 1, 1, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE("room " + std::to_string(c.listRoom) + " with H " + std::to_string(H));
        const QRect listBefore = list->geometry();
        d->resize(500, menu + fixed + c.listRoom);
        QCoreApplication::processEvents();
        EXPECT_EQ(d->visibleLines, c.lines);
        d->ShowVariable(&at("LUPREC"));
        EXPECT_EQ(d->descriptionEdit->verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn, c.lines < 3);
        if (!c.moves) {
            EXPECT_EQ(list->geometry(), listBefore) << "nothing moves";
            continue;
        }
        EXPECT_EQ(list->y(), d->toolBar->y() + d->toolBar->height() + 10);
        EXPECT_EQ(value->y() + value->height(), d->statusBar->y() - 10);
        EXPECT_EQ(value->height(), H);
        EXPECT_EQ(description->height(), c.lines * H);
        EXPECT_EQ(description->y() + description->height(), value->y() - 10);
        EXPECT_EQ(list->y() + list->height(), description->y() - 10);
        for (QWidget* w : {list, description, value})
            EXPECT_EQ(w->x() + w->width(), d->clientArea()->width() - 10) << w->objectName().toStdString();
    }
}

TEST_F(MainDialog, ToolBarButtonsPostTheirCommandsAfterTheClick) {
    open();
    auto pressed = [this](int id) { return d->toolAction(id)->isChecked(); };
    d->toolAction(kButtonSortLetter + 2)->trigger();
    EXPECT_EQ(context->viewOrder, ListOrder::Letter) << "the command waits for the click to end";
    QCoreApplication::processEvents();
    EXPECT_EQ(context->viewOrder, ListOrder::ScopeLetter);
    EXPECT_TRUE(pressed(kButtonSortLetter + 2));
    EXPECT_FALSE(pressed(kButtonSortLetter));
    d->toolAction(kButtonAdd)->trigger(); // indeterminate in view 0: no command
    QCoreApplication::processEvents();
    EXPECT_TRUE(d->toolAction(kButtonAdd)->property("indeterminate").toBool());
    d->toolAction(kButtonShowList)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->view, ListView::UserList);
    EXPECT_FALSE(d->toolAction(kButtonAdd)->property("indeterminate").toBool());
    d->toolAction(kButtonCompare)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->compareMode, CompareMode::On);
    EXPECT_EQ(d->toolBarImages[18].pixmap(16, 16).toImage(), moduleIconPixmap(kIconCompareOn).toImage());
}

TEST_F(MainDialog, ColumnWidthsAreClampedOnTheWayInAndOutAndTheEndStoresTheRectangle) {
    context->listCtrlFirstCol = 10;
    context->listCtrlSecCol = 5000;
    open();
    EXPECT_EQ(d->listCtrl->columnWidth(0), 46);
    EXPECT_EQ(d->listCtrl->columnWidth(1), 1200);
    EXPECT_EQ(context->listCtrlFirstCol, 46);
    d->move(40, 50);
    d->resize(600, 400);
    d->listCtrl->setColumnWidth(0, 1500);
    d->listCtrl->setColumnWidth(1, 7);
    d->listCtrl->setColumnWidth(2, 0);
    at("LUPREC").setSelected();
    d->close();
    EXPECT_EQ(d->runCode, 0);
    const QRect stored(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY);
    EXPECT_EQ(stored, d->frameGeometry());
    EXPECT_EQ(context->listCtrlFirstCol, 1200);
    EXPECT_EQ(context->listCtrlSecCol, 20);
    EXPECT_EQ(context->listCtrlThirdCol, 100) << "a width of 0 is not stored";
    EXPECT_FALSE(at("LUPREC").isSelected());

    // The next run opens where this one ended, on the list already read.
    const cSysVar* first = context->varList.first;
    open();
    EXPECT_EQ(d->frameGeometry(), stored);
    EXPECT_EQ(context->varList.first, first);
}

// ---- the list ----

TEST_F(MainDialog, EveryOrderCommandBuildsItsRowsWithHeaders) {
    open();
    const std::string global = gMsg.TxGlobal, drawing = gMsg.TxDrawSpecific, other = gMsg.TxDefaultTheme;
    const std::vector<std::string> byOrder[] = {
        {row(0, "A", 4), row(1, "ANGBASE", 0), row(1, "AUNITS", 0), row(0, "F", 4), row(1, "FILEDIA", 1),
         row(0, "I", 4), row(1, "INSBASE", 0), row(0, "L", 4), row(1, "LUPREC", 0), row(0, "O", 4),
         row(1, "OSMODE", 1), row(0, "V", 4), row(1, "VIEWCTR", 0)},
        {row(0, "Anzeige", 5), row(1, "3DOSMODE", 1), row(1, "INSBASE", 0), row(1, "OSMODE", 1),
         row(1, "VIEWCTR", 0), row(0, "Einheiten", 5), row(1, "ANGBASE", 0), row(1, "AUNITS", 0),
         row(1, "LUPREC", 0), row(0, other, 5), row(1, "FILEDIA", 1)},
        {row(0, global, 1), row(1, "F", 4), row(2, "FILEDIA", 1), row(1, "O", 4), row(2, "OSMODE", 1),
         row(0, drawing, 0), row(1, "A", 4), row(2, "ANGBASE", 0), row(2, "AUNITS", 0), row(1, "I", 4),
         row(2, "INSBASE", 0), row(1, "L", 4), row(2, "LUPREC", 0), row(1, "V", 4), row(2, "VIEWCTR", 0)},
        {row(0, global, 1), row(1, "Anzeige", 5), row(2, "3DOSMODE", 1), row(2, "OSMODE", 1),
         row(1, other, 5), row(2, "FILEDIA", 1), row(0, drawing, 0), row(1, "Anzeige", 5),
         row(2, "INSBASE", 0), row(2, "VIEWCTR", 0), row(1, "Einheiten", 5), row(2, "ANGBASE", 0),
         row(2, "AUNITS", 0), row(2, "LUPREC", 0)},
    };
    for (int order : {1, 2, 3, 0}) {
        SCOPED_TRACE("order " + std::to_string(order));
        d->OnCommand(kSortLetter + order);
        std::vector<std::string> shown;
        for (int r = 0; r < rows().rowCount(); ++r)
            shown.push_back(rows().cellText(r, 0).toStdString() + "|" +
                            std::to_string(rows().index(r, 0).data(kRowImageRole).toInt()));
        EXPECT_EQ(shown, byOrder[order]);
        EXPECT_TRUE(d->menuAction(kSortLetter + order)->isChecked());
        EXPECT_TRUE(d->toolAction(kButtonSortLetter + order)->isChecked());
    }
}

TEST_F(MainDialog, OrderChangeKeepsTheSelectionOfRecordsAndEmptiesTheFields) {
    open();
    clickRow(rowOf("LUPREC"));
    EXPECT_EQ(d->currentVar, &at("LUPREC"));
    clickRow(0, Qt::ControlModifier); // a header
    at("3DOSMODE").setSelected();     // no row in the letter order: keeps its flag until it has one
    d->OnCommand(kSortTheme);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"3DOSMODE", "LUPREC"}))
        << "the header's selection is lost";
    EXPECT_FALSE(at("LUPREC").isSelected() || at("3DOSMODE").isSelected()) << "flags cleared once shown";
    EXPECT_EQ(d->currentVar, nullptr);
    EXPECT_TRUE(d->valueEdit->text().isEmpty());
    EXPECT_EQ(pane(0), "");
    d->OnCommand(kShowList);
    d->OnCommand(kShowAll);
    EXPECT_EQ(d->listCtrl->selectedCount(), 0) << "a change of view drops the selection";
}

TEST_F(MainDialog, RowsArePaintedInTheColoursOfTheirRecords) {
    open();
    const QColor base = d->listCtrl->palette().color(QPalette::Base);
    const QColor text = d->listCtrl->palette().color(QPalette::Text);
    const QColor grey(192, 192, 192), blue(0, 0, 255), green(0, 193, 0), red(193, 0, 0);
    setNew("LUPREC", "7");
    at("FILEDIA").setReadOnly();
    setNew("FILEDIA", "1");
    d->FillList();
    const struct {
        int row;
        QColor background, colour0;
        QString text2;
        QColor colour2;
    } cases[] = {
        {0, base, text, "", text},                  // header "A"
        {rowOf("LUPREC"), base, text, "7", red},    // drawing, new value differs
        {rowOf("OSMODE"), base, blue, "", text},    // global, never compared
        {rowOf("VIEWCTR"), grey, text, "", text},   // read-only, drawing
        {rowOf("FILEDIA"), grey, blue, "1", green}, // read-only, global, new value equal
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(rows().cellText(c.row, 0).trimmed().toStdString());
        EXPECT_EQ(colour(c.row, 0, "background"), c.background);
        EXPECT_EQ(colour(c.row, 0), c.colour0);
        EXPECT_EQ(colour(c.row, 1), text);
        EXPECT_EQ(painted(c.row, 2, "text").toString(), c.text2);
        EXPECT_EQ(colour(c.row, 2), c.colour2);
    }
    selectRow(rowOf("LUPREC"));
    const QPalette& palette = d->listCtrl->palette();
    for (int column : {0, 2}) {
        EXPECT_EQ(colour(rowOf("LUPREC"), column, "background"),
                  palette.color(QPalette::Active, QPalette::Highlight));
        EXPECT_EQ(colour(rowOf("LUPREC"), column), palette.color(QPalette::Active, QPalette::HighlightedText))
            << "a selected row, column " << column;
    }
}

// Typed text a record cannot take leaves its former new value; Escape applies nothing; a
// read-only record hands the focus back.
TEST_F(MainDialog, EnterEscapeAndTabNeverEndTheDialog) {
    open();
    QTest::keyClick(d.get(), Qt::Key_Escape);
    QTest::keyClick(d.get(), Qt::Key_Return);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->runCode, 16);

    clickRow(rowOf("LUPREC"));
    QTest::keyClick(d->listCtrl, Qt::Key_Tab);
    EXPECT_TRUE(d->valueEdit->hasFocus()) << "Tab reaches the description, which hands on";
    QCoreApplication::processEvents();
    EXPECT_EQ(d->valueEdit->selectedText(), "4");
    QTest::keyClicks(d->valueEdit, "5");
    QTest::keyClick(d->valueEdit, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->currentVar, nullptr);
    EXPECT_TRUE(at("LUPREC").newText.empty()) << "Escape applies nothing";
    EXPECT_TRUE(d->listCtrl->hasFocus());

    const struct {
        const char* name;
        const char* typed;
        const char* newText;
    } typed[] = {{"LUPREC", "2", "2"}, {"LUPREC", "abc", "2"}, {"INSBASE", "1", ""}, {"LUPREC", "", ""}};
    for (const auto& t : typed) {
        clickRow(rowOf(t.name));
        d->valueEdit->setFocus();
        d->valueEdit->setText(t.typed);
        QTest::keyClick(d->valueEdit, Qt::Key_Return);
        EXPECT_TRUE(d->isVisible());
        EXPECT_EQ(at(t.name).newText, t.newText) << t.name << " typed " << t.typed;
        EXPECT_EQ(rows().cellText(rowOf(t.name), 2).toStdString(), t.newText) << t.name;
        EXPECT_TRUE(d->listCtrl->hasFocus());
    }

    clickRow(rowOf("VIEWCTR"));
    QTest::keyClick(d->listCtrl, Qt::Key_Tab);
    EXPECT_TRUE(d->listCtrl->hasFocus()) << "a read-only record hands the focus back to the list";
    QTest::keyClick(d->listCtrl, Qt::Key_Return);
    EXPECT_TRUE(at("VIEWCTR").newText.empty()) << "Enter on a read-only record";
    QTest::keyClick(d->listCtrl, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->currentVar, nullptr) << "Escape in the list";
}

// Letter keys are in VarListTest; here the step of the current row reaches the fields.
TEST_F(MainDialog, DownShowsTheNextRecordAndAHeaderEmptiesTheFields) {
    open();
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Down); // the header "F"
    EXPECT_EQ(d->currentVar, nullptr);
    QTest::keyClick(d->listCtrl, Qt::Key_Down);
    EXPECT_EQ(d->currentVar, &at("FILEDIA"));
    EXPECT_EQ(pane(0), "") << "a theme the list lacks has no title";
}

TEST_F(MainDialog, ContextMenuOpensOnlyStrictlyInsideTheList) {
    open();
    bool opened = false;
    auto closeWhenOpen = [&] {
        opened = false;
        QTimer::singleShot(0, [&] {
            if (QWidget* popup = QApplication::activePopupWidget()) {
                opened = popup == d->contextMenu;
                popup->close();
            }
        });
    };
    QWidget* viewport = d->listCtrl->viewport();
    closeWhenOpen();
    QContextMenuEvent inList(QContextMenuEvent::Mouse, viewport->rect().center(),
                             viewport->mapToGlobal(viewport->rect().center()));
    QCoreApplication::sendEvent(viewport, &inList);
    EXPECT_TRUE(opened) << "a right click inside the list";

    const QPoint topLeft = d->listCtrl->mapToGlobal(QPoint(0, 0));
    for (const QPoint& p : {topLeft, d->valueEdit->mapToGlobal(QPoint(2, 2))}) {
        closeWhenOpen();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, d->mapFromGlobal(p), p);
        QCoreApplication::sendEvent(d.get(), &event);
        QCoreApplication::processEvents();
        EXPECT_FALSE(opened) << "at " << p.x() << "," << p.y();
    }
}

// The search's notification, with the rows that the search marked.
TEST_F(MainDialog, FindNotificationShowsTheHitsInTheStatusAndFields) {
    open();
    struct Case {
        const char* label;
        std::vector<const char*> marked;
        std::int32_t value;  // N
        std::string status;  // pane 0 afterwards: a result text or the shown record's theme
        const char* current; // the record in the fields, or null
    };
    const std::vector<Case> cases = {
        {"no hit", {}, 0, gMsg.TxVarNotFound, nullptr},
        {"two hits of two", {"AUNITS", "LUPREC"}, -2, "2 " + gMsg.TxVarFound, "AUNITS"},
        {"a step onto one hit", {"OSMODE"}, 1, "Anzeige", "OSMODE"},
        {"all hits from index 1", {"AUNITS", "LUPREC"}, -1, "Einheiten", "LUPREC"},
        {"more hits than rows", {"AUNITS", "LUPREC"}, -3, "", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        d->SetStatusTexts({}, {}, {});
        for (const char* name : c.marked)
            at(name).setSelected();
        d->OnFindNotify(c.value);
        EXPECT_EQ(std::string(d->currentVar ? d->currentVar->name : "(none)"),
                  std::string(c.current ? c.current : "(none)"));
        EXPECT_EQ(pane(0), c.status);
        EXPECT_EQ(static_cast<int>(selectedNames().size()), static_cast<int>(c.marked.size()));
        for (const char* name : c.marked)
            EXPECT_FALSE(at(name).isSelected()) << name << " keeps its search mark";
    }
}

} // namespace
