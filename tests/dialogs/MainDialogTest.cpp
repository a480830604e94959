// Tests of the main dialog: status panes, layout, tool bar, columns, list orders, row colours, keys,
// the search's notification, and the variable commands behind a port of their own. Set and its report are in
// the scenarios commands_set and dialogs_set.
#include "CommandsTestKit.h"

#include "dialogs/ListOrderTable.h"
#include "dialogs/main/FileCommands.h"
#include "dialogs/main/LoadStep.h"
#include "dialogs/main/MainDialogPort.h"
#include "dialogs/main/VariableCommands.h"
#include "dialogs/ModuleResources.h"
#include "dialogs/VarListView.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <map>
#include <sstream>

namespace {

using namespace commandstest;
using namespace mainids;

class MainDialog : public CommandsTest {
protected:
    // What the delegate reports it paints ("text", "foreground", "background"), as the dump reads it.
    QVariant painted(int row, int column, const char* what) {
        QVariantMap cell;
        QMetaObject::invokeMethod(list().itemDelegate(), "automationCell", Qt::DirectConnection,
                                  Q_RETURN_ARG(QVariantMap, cell),
                                  Q_ARG(QModelIndex, rows().index(row, column)));
        return cell[what];
    }
    QColor colour(int row, int column, const char* what = "foreground") {
        return painted(row, column, what).value<QColor>();
    }
};

// Rows as "<level><image> <text>" apart by ',', the image L(etter), T(heme), G(lobal) or D(rawing);
// each row as its indented text and image.
std::vector<std::string> rowsOf(const std::string& spec) {
    std::vector<std::string> out;
    std::istringstream in(spec);
    for (std::string item; std::getline(in, item, ',');) {
        const RowImage image = item[1] == 'L'   ? RowImage::Letter
                               : item[1] == 'T' ? RowImage::Theme
                               : item[1] == 'G' ? RowImage::Global
                                                : RowImage::Drawing;
        out.push_back(std::string(7 * (item[0] - '0' + 1), ' ') + item.substr(3) + "|" +
                      std::to_string(static_cast<int>(image)));
    }
    return out;
}

TEST_F(MainDialog, StatusPanesAreAsWideAsTheirLongestTextAndEndAtTheRight) {
    open();
    const QList<QLabel*> panes = statusBar().findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panes.size(), 3);
    const QFontMetrics m(statusBar().font());
    auto w = [&m](const std::string& t) { return m.horizontalAdvance(QString::fromStdString(t)); };
    // What the label gives its text: its contents less the indent on both sides.
    auto room = [](const QLabel* p) { return p->contentsRect().width() - 2 * p->indent(); };
    EXPECT_GE(room(panes[1]), std::max(w(gMsg.StProtected), w(gMsg.StChangeable)));
    EXPECT_GE(room(panes[2]), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)));
    EXPECT_LE(room(panes[2]), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)) + 2)
        << "a pane no wider than its text and frame";
    EXPECT_EQ(panes[2]->x() + panes[2]->width(), statusBar().width());
}

// Changeable and global records are in the scenarios.
TEST_F(MainDialog, StatusPanesTellAReadOnlyDrawingRecord) {
    open();
    d->ShowStatus(&at("VIEWCTR"));
    EXPECT_EQ(pane(0), "Anzeige");
    EXPECT_EQ(pane(1), gMsg.StProtected);
    EXPECT_EQ(pane(2), gMsg.StDrawSpecific);
}

// Heights of the window in which the list and the description share listRoom; H is the height
// of the value field.
struct LayoutCase {
    int listRoom;
    int lines;  // lines the description shows
    bool moves; // whether the controls follow the window
};

class MainDialogLayout : public MainDialog {
protected:
    // Makes the dialog as high as gives the list and the description room.
    void resizeToRoom(int room) {
        const int fixed = toolBar().height() + statusBar().height() + 4 * 10 + H();
        const int menu = d->height() - d->clientArea()->height();
        d->resize(500, menu + fixed + room);
        QCoreApplication::processEvents();
    }
    int H() { return value().height(); }
};

TEST_F(MainDialogLayout, DescriptionGivesUpLinesBelowAListOfSixValueHeights) {
    open();
    const int H = this->H();
    const LayoutCase cases[] = {
        {9 * H, 3, true}, {9 * H - 1, 2, true}, {3 * H, 1, true}, {3 * H - 1, 1, false}};
    for (const LayoutCase& c : cases) {
        SCOPED_TRACE("room " + std::to_string(c.listRoom) + " with H " + std::to_string(H));
        resizeToRoom(c.listRoom);
        EXPECT_EQ(d->visibleLines(), c.lines);
        if (c.moves) {
            EXPECT_EQ(description().height(), c.lines * H);
        }
    }
}

TEST_F(MainDialogLayout, NothingMovesBelowAListOfTwoValueHeights) {
    open();
    const int H = this->H();
    resizeToRoom(3 * H);
    const QRect listBefore = list().geometry();
    resizeToRoom(3 * H - 1);
    EXPECT_EQ(list().geometry(), listBefore);
}

TEST_F(MainDialogLayout, ControlsKeepMarginsOfTenAndFillTheWidth) {
    open();
    const int H = this->H();
    for (int room : {9 * H, 9 * H - 1, 3 * H}) {
        SCOPED_TRACE("room " + std::to_string(room) + " with H " + std::to_string(H));
        resizeToRoom(room);
        EXPECT_EQ(list().y(), toolBar().y() + toolBar().height() + 10);
        EXPECT_EQ(value().y() + value().height(), statusBar().y() - 10);
        EXPECT_EQ(value().height(), H);
        EXPECT_EQ(description().y() + description().height(), value().y() - 10);
        EXPECT_EQ(list().y() + list().height(), description().y() - 10);
        for (QWidget* w : {static_cast<QWidget*>(&list()), static_cast<QWidget*>(&description()),
                           static_cast<QWidget*>(&value())})
            EXPECT_EQ(w->x() + w->width(), d->clientArea()->width() - 10) << w->objectName().toStdString();
    }
}

// A description of three lines needs its scroll bar only when fewer lines show.
TEST_F(MainDialogLayout, DescriptionScrollBarShowsWhenLinesAreHidden) {
    open();
    at("LUPREC").description = "a\nb\nc";
    const int H = this->H();
    for (const auto& [room, shown] :
         {std::pair{9 * H, false}, {9 * H - 1, true}, {3 * H, true}, {3 * H - 1, true}}) {
        SCOPED_TRACE("room " + std::to_string(room) + " with H " + std::to_string(H));
        resizeToRoom(room);
        d->ShowVariable(&at("LUPREC"));
        EXPECT_EQ(description().verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn, shown);
    }
}

TEST_F(MainDialog, ToolBarButtonPostsItsCommandAfterTheClick) {
    open();
    const ListOrderEntry& scopeLetter = *listOrderEntry(ListOrder::ScopeLetter);
    d->toolAction(scopeLetter.button)->trigger();
    EXPECT_EQ(context->viewOrder, ListOrder::Letter) << "the command waits for the click to end";
    QCoreApplication::processEvents();
    EXPECT_EQ(context->viewOrder, ListOrder::ScopeLetter);
    EXPECT_TRUE(d->toolAction(scopeLetter.button)->isChecked());
    EXPECT_FALSE(d->toolAction(listOrderEntry(ListOrder::Letter)->button)->isChecked());
}

TEST_F(MainDialog, AddAndDeleteButtonsTakeNoClickInViewAll) {
    open();
    for (int button : {kButtonAdd, kButtonDelete})
        EXPECT_TRUE(d->toolAction(button)->property("indeterminate").toBool()) << button;
    user().modal = [](QDialog&) -> int {
        ADD_FAILURE() << "the selection dialog opened";
        return QDialog::Rejected;
    };
    d->toolAction(kButtonAdd)->trigger();
    QCoreApplication::processEvents();
    EXPECT_TRUE(d->toolAction(kButtonAdd)->property("indeterminate").toBool()) << "the click changed nothing";
    d->toolAction(kButtonShowList)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->view, ListView::UserList);
    for (int button : {kButtonAdd, kButtonDelete})
        EXPECT_FALSE(d->toolAction(button)->property("indeterminate").toBool()) << button;
}

TEST_F(MainDialog, CompareButtonShowsTheIconOfItsState) {
    open();
    QAction* compare = d->toolAction(kButtonCompare);
    EXPECT_EQ(compare->icon().pixmap(16, 16).toImage(), moduleIconPixmap(kIconCompareOff).toImage());
    compare->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->compareMode, CompareMode::On);
    EXPECT_TRUE(compare->isChecked());
    EXPECT_EQ(compare->icon().pixmap(16, 16).toImage(), moduleIconPixmap(kIconCompareOn).toImage());
}

TEST_F(MainDialog, ColumnWidthsAreClampedAsTheListIsSetUp) {
    context->listCtrlFirstCol = 10;
    context->listCtrlSecCol = 5000;
    open();
    EXPECT_EQ(list().columnWidth(0), 46);
    EXPECT_EQ(list().columnWidth(1), 1200);
    EXPECT_EQ(list().columnWidth(2), 100);
    EXPECT_EQ(context->listCtrlFirstCol, 46) << "the clamped width stays in the context";
}

TEST_F(MainDialog, TheEndStoresClampedWidthsButNoWidthOfZero) {
    open();
    list().setColumnWidth(0, 1500);
    list().setColumnWidth(1, 7);
    list().setColumnWidth(2, 0);
    d->close();
    EXPECT_EQ(context->listCtrlFirstCol, 1200);
    EXPECT_EQ(context->listCtrlSecCol, 20);
    EXPECT_EQ(context->listCtrlThirdCol, 100) << "a width of 0 is not stored";
}

TEST_F(MainDialog, TheEndStoresTheRectangleClearsTheSelectionFlagsAndEndsTheRun) {
    open();
    d->move(40, 50);
    d->resize(600, 400);
    at("LUPREC").setSelected();
    d->close();
    EXPECT_EQ(d->runCode(), RunCode::Idle);
    const QRect stored(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY);
    EXPECT_EQ(stored, d->frameGeometry());
    EXPECT_FALSE(at("LUPREC").isSelected());
}

// A modal run that ends without EndRun leaves the run code Done: the dialog is run again, as it
// was, until End; then the rectangle of the last run is stored and the dialog deleted.
TEST_F(MainDialog, RunRepeatsUntilTheEndAndStoresTheLastRectangle) {
    int runs = 0;
    QPointer<QDialog> dialog;
    QRect last;
    user().modal = [&](QDialog& shown) {
        dialog = &shown;
        shown.show();
        QCoreApplication::processEvents();
        if (++runs == 1) {
            shown.setGeometry(60, 70, 500, 420);
            return shown.result();
        }
        EXPECT_EQ(shown.geometry(), QRect(60, 70, 500, 420)) << "the same window, run again";
        last = shown.frameGeometry();
        shown.close();
        return shown.result();
    };
    runMainDialog(*context);
    EXPECT_EQ(runs, 2);
    EXPECT_TRUE(dialog.isNull()) << "deleted after the run";
    EXPECT_EQ(QRect(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY), last);
}

TEST_F(MainDialog, TheNextRunOpensWhereTheLastEndedOnTheListAlreadyRead) {
    open();
    d->move(40, 50);
    d->resize(600, 400);
    d->close();
    const QRect stored = d->frameGeometry();
    const cSysVar* first = context->varList.first;
    open();
    EXPECT_EQ(d->frameGeometry(), stored);
    EXPECT_EQ(context->varList.first, first);
}

// ---- the list ----

TEST_F(MainDialog, EveryOrderCommandBuildsItsRowsWithHeaders) {
    open();
    const std::string global = gMsg.TxGlobal, drawing = gMsg.TxDrawSpecific, other = gMsg.TxDefaultTheme;
    const std::map<ListOrder, std::vector<std::string>> byOrder = {
        {ListOrder::Letter, rowsOf("0L A,1D ANGBASE,1D AUNITS,0L F,1G FILEDIA,0L I,1D INSBASE,0L L,1D LUPREC,"
                                   "0L O,1G OSMODE,0L V,1D VIEWCTR")},
        {ListOrder::Theme, rowsOf("0T Anzeige,1G 3DOSMODE,1D INSBASE,1G OSMODE,1D VIEWCTR,0T Einheiten,"
                                  "1D ANGBASE,1D AUNITS,1D LUPREC,0T " +
                                  other + ",1G FILEDIA")},
        {ListOrder::ScopeLetter, rowsOf("0G " + global + ",1L F,2G FILEDIA,1L O,2G OSMODE,0D " + drawing +
                                        ",1L A,2D ANGBASE,2D AUNITS,1L I,2D INSBASE,1L L,2D LUPREC,1L V,"
                                        "2D VIEWCTR")},
        {ListOrder::ScopeTheme, rowsOf("0G " + global + ",1T Anzeige,2G 3DOSMODE,2G OSMODE,1T " + other +
                                       ",2G FILEDIA,0D " + drawing +
                                       ",1T Anzeige,2D INSBASE,2D VIEWCTR,"
                                       "1T Einheiten,2D ANGBASE,2D AUNITS,2D LUPREC")},
    };
    // From the last order back, so that every command changes the order.
    const auto orders = listOrderTable();
    ASSERT_EQ(orders.size(), byOrder.size());
    for (auto order = orders.rbegin(); order != orders.rend(); ++order) {
        SCOPED_TRACE("command " + std::to_string(order->command));
        d->OnCommand(order->command);
        std::vector<std::string> shown;
        for (int r = 0; r < rows().rowCount(); ++r)
            shown.push_back(rows().cellText(r, 0).toStdString() + "|" +
                            std::to_string(rows().index(r, 0).data(kRowImageRole).toInt()));
        EXPECT_EQ(shown, byOrder.at(order->order));
    }
}

// The orders' entries are not in the template: the menu takes them from the order table, in its
// order, at the place the template marks between the view entries and the error log.
TEST_F(MainDialog, ViewMenuHoldsTheOrderEntriesOfTheTableAtTheirPlace) {
    open();
    auto* view = qobject_cast<QMenu*>(d->menuAction(kShowAll)->parent());
    ASSERT_NE(view, nullptr);
    std::vector<int> expected = {kShowAll, kShowList, 0};
    for (const ListOrderEntry& order : listOrderTable())
        expected.push_back(order.command);
    expected.insert(expected.end(), {0, kShowErrorLog});
    std::vector<int> ids;
    for (const QAction* a : view->actions())
        ids.push_back(a->isSeparator() ? 0 : a->objectName().toInt());
    EXPECT_EQ(ids, expected);
    for (const ListOrderEntry& order : listOrderTable()) {
        const QAction* a = d->menuAction(order.command);
        ASSERT_NE(a, nullptr) << order.command;
        EXPECT_EQ(a->text().toStdString(), gMsg.*order.menuText) << order.command;
        EXPECT_EQ(catalogText(a->property("catalogKey").toString()), &(gMsg.*order.menuText))
            << order.command;
        EXPECT_TRUE(a->isCheckable()) << order.command;
    }
}

TEST_F(MainDialog, OrderCommandMarksItsOwnMenuEntryAndButtonOnly) {
    open();
    for (const ListOrderEntry& order : listOrderTable()) {
        SCOPED_TRACE("command " + std::to_string(order.command));
        d->OnCommand(order.command);
        EXPECT_EQ(context->viewOrder, order.order);
        for (const ListOrderEntry& other : listOrderTable()) {
            EXPECT_EQ(d->menuAction(other.command)->isChecked(), &other == &order) << other.command;
            EXPECT_EQ(d->toolAction(other.button)->isChecked(), &other == &order) << other.button;
        }
    }
}

TEST_F(MainDialog, OrderChangeKeepsTheSelectionOfRecordsButNotOfHeaders) {
    open();
    clickRow(rowOf("LUPREC"));
    clickRow(0, Qt::ControlModifier); // a header
    at("3DOSMODE").setSelected();     // no row in the letter order: keeps its flag until it has one
    d->OnCommand(listOrderEntry(ListOrder::Theme)->command);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"3DOSMODE", "LUPREC"}))
        << "the header's selection is lost";
    EXPECT_FALSE(at("LUPREC").isSelected() || at("3DOSMODE").isSelected()) << "flags cleared once shown";
}

TEST_F(MainDialog, OrderChangeEmptiesTheFieldsAndTheStatus) {
    open();
    clickRow(rowOf("LUPREC"));
    ASSERT_EQ(d->currentVar(), &at("LUPREC"));
    ASSERT_FALSE(value().text().isEmpty());
    ASSERT_NE(pane(0), "");
    d->OnCommand(listOrderEntry(ListOrder::Theme)->command);
    EXPECT_EQ(d->currentVar(), nullptr);
    EXPECT_TRUE(value().text().isEmpty());
    EXPECT_EQ(pane(0), "");
}

TEST_F(MainDialog, ViewChangeDropsTheSelection) {
    open();
    clickRow(rowOf("LUPREC"));
    ASSERT_EQ(list().selectedCount(), 1);
    d->OnCommand(kShowList);
    d->OnCommand(kShowAll);
    EXPECT_EQ(list().selectedCount(), 0);
}

TEST_F(MainDialog, RowsArePaintedInTheColoursOfTheirRecords) {
    open();
    const QColor base = list().palette().color(QPalette::Base);
    const QColor text = list().palette().color(QPalette::Text);
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
}

TEST_F(MainDialog, SelectedRowIsPaintedInTheHighlightColoursOverItsOwn) {
    open();
    setNew("LUPREC", "7"); // red new value
    d->FillList();
    selectRow(rowOf("LUPREC"));
    const QPalette& palette = list().palette();
    for (int column : {0, 2}) {
        EXPECT_EQ(colour(rowOf("LUPREC"), column, "background"),
                  palette.color(QPalette::Active, QPalette::Highlight));
        EXPECT_EQ(colour(rowOf("LUPREC"), column), palette.color(QPalette::Active, QPalette::HighlightedText))
            << "column " << column;
    }
}

TEST_F(MainDialog, EnterAndEscapeNeverEndTheDialog) {
    open();
    QTest::keyClick(d.get(), Qt::Key_Escape);
    QTest::keyClick(d.get(), Qt::Key_Return);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->runCode(), RunCode::Done);
    clickRow(rowOf("LUPREC"));
    value().setFocus();
    QTest::keyClick(&value(), Qt::Key_Escape);
    QTest::keyClick(&value(), Qt::Key_Return);
    EXPECT_TRUE(d->isVisible()) << "keys in the value field";
}

TEST_F(MainDialog, TabFromTheListReachesTheValueFieldWithItsTextSelected) {
    open();
    clickRow(rowOf("LUPREC"));
    QTest::keyClick(&list(), Qt::Key_Tab);
    EXPECT_TRUE(value().hasFocus()) << "Tab reaches the description, which hands on";
    QCoreApplication::processEvents();
    EXPECT_EQ(value().selectedText(), "4");
}

TEST_F(MainDialog, EscapeInTheValueFieldDropsTheRecordAndAppliesNothing) {
    open();
    clickRow(rowOf("LUPREC"));
    QTest::keyClick(&list(), Qt::Key_Tab);
    QCoreApplication::processEvents();
    QTest::keyClicks(&value(), "5");
    QTest::keyClick(&value(), Qt::Key_Escape);
    EXPECT_EQ(d->currentVar(), nullptr);
    EXPECT_TRUE(at("LUPREC").newText.empty());
    EXPECT_TRUE(list().hasFocus());
}

// Typed text a record cannot take leaves its former new value.
TEST_F(MainDialog, EnterAppliesOnlyTextTheRecordTakes) {
    open();
    const struct {
        const char* name;
        const char* typed;
        const char* newText;
    } typed[] = {{"LUPREC", "2", "2"}, {"LUPREC", "abc", "2"}, {"INSBASE", "1", ""}, {"LUPREC", "", ""}};
    for (const auto& t : typed) {
        SCOPED_TRACE(std::string(t.name) + " typed " + t.typed);
        clickRow(rowOf(t.name));
        value().setFocus();
        value().setText(t.typed);
        QTest::keyClick(&value(), Qt::Key_Return);
        EXPECT_EQ(at(t.name).newText, t.newText);
        EXPECT_EQ(rows().cellText(rowOf(t.name), 2).toStdString(), t.newText);
        EXPECT_TRUE(list().hasFocus());
    }
}

TEST_F(MainDialog, ReadOnlyRecordHandsTheFocusBackAndTakesNoText) {
    open();
    clickRow(rowOf("VIEWCTR"));
    QTest::keyClick(&list(), Qt::Key_Tab);
    EXPECT_TRUE(list().hasFocus()) << "a read-only record hands the focus back to the list";
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_TRUE(at("VIEWCTR").newText.empty()) << "Enter on a read-only record";
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_EQ(d->currentVar(), nullptr) << "Escape in the list";
}

// Letter keys are in VarListTest; here the step of the current row reaches the fields.
TEST_F(MainDialog, DownShowsTheNextRecordAndAHeaderEmptiesTheFields) {
    open();
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(&list(), Qt::Key_Down); // the header "F"
    EXPECT_EQ(d->currentVar(), nullptr);
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(d->currentVar(), &at("FILEDIA"));
    EXPECT_EQ(pane(0), "") << "a theme the list lacks has no title";
}

TEST_F(MainDialog, ContextMenuOpensOnlyStrictlyInsideTheList) {
    open();
    bool opened = false;
    auto closeWhenOpen = [&] {
        opened = false;
        QTimer::singleShot(0, [&] {
            if (QWidget* popup = QApplication::activePopupWidget()) {
                // The menu bar's popups have the menu bar as parent.
                opened = popup->parentWidget() == d.get();
                popup->close();
            }
        });
    };
    QWidget* viewport = list().viewport();
    closeWhenOpen();
    QContextMenuEvent inList(QContextMenuEvent::Mouse, viewport->rect().center(),
                             viewport->mapToGlobal(viewport->rect().center()));
    QCoreApplication::sendEvent(viewport, &inList);
    EXPECT_TRUE(opened) << "a right click inside the list";

    const QPoint topLeft = list().mapToGlobal(QPoint(0, 0));
    for (const QPoint& p : {topLeft, value().mapToGlobal(QPoint(2, 2))}) {
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
        d->variableCommands().OnFindNotify(c.value);
        EXPECT_EQ(std::string(d->currentVar() ? d->currentVar()->name : "(none)"),
                  std::string(c.current ? c.current : "(none)"));
        EXPECT_EQ(pane(0), c.status);
        EXPECT_EQ(static_cast<int>(selectedNames().size()), static_cast<int>(c.marked.size()));
        for (const char* name : c.marked)
            EXPECT_FALSE(at(name).isSelected()) << name << " keeps its search mark";
    }
}

} // namespace

// ---- the commands behind the port, without the dialog ----

// A port over a bare list view that notes what the commands asked of it.
class RecordingPort : public MainDialogPort {
public:
    explicit RecordingPort(DocumentState& context) : m_context(context) { m_view.setModel(&m_rows); }

    VarListView& listView() override { return m_view; }
    QWidget* dialogParent() override { return nullptr; }
    void FillList() override {
        calls.push_back("FillList");
        m_view.fillRows(buildListRows(m_context.varList, m_context.viewOrder, {}));
    }
    void RememberSelection() override { calls.push_back("RememberSelection"); }
    void ShowVariable(cSysVar*) override { calls.push_back("ShowVariable"); }
    void ShowStatus(const cSysVar*) override { calls.push_back("ShowStatus"); }
    void SetStatusTexts(const std::string& pane0, const std::string&, const std::string&) override {
        calls.push_back("SetStatusTexts " + pane0);
    }
    void RefreshTitle() override { calls.push_back("RefreshTitle"); }
    void ShowView(ListView) override { calls.push_back("ShowView"); }
    void ShowModeMarks() override { calls.push_back("ShowModeMarks"); }
    void RunLoadStep() override { calls.push_back("RunLoadStep"); }
    void SetRunCode(RunCode code) override {
        calls.push_back("SetRunCode " + std::to_string(static_cast<int>(code)));
    }

    std::vector<std::string> calls;

private:
    DocumentState& m_context;
    VarListModel m_rows{kListColumns};
    VarListView m_view;
};

// The commands on the context's list as the load step leaves it, with no dialog made.
class CommandsOnAPort : public CommandsTest {
protected:
    void prepareContext() override {
        CommandsTest::prepareContext();
        ReportList lines;
        RunCode runCode = RunCode::Idle;
        runLoadStep(*context, lines, runCode);
        ASSERT_NE(context->varList.first, nullptr);
        user().lines.clear();
    }
};

TEST_F(CommandsOnAPort, SetSelectionWritesOnlyTheSelectedRowsAndReportsThroughThePort) {
    setNew("LUPREC", "3");
    setNew("AUNITS", "1");
    RecordingPort port(*context);
    VariableCommands commands(port, *context);
    port.FillList();
    VarListView& view = port.listView();
    const int row = view.rowModel()->rowOf(&at("LUPREC"));
    view.selectionModel()->select(view.model()->index(row, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
    port.calls.clear();

    commands.OnSetSelection();
    EXPECT_EQ(at("LUPREC").currentText, "3") << "the selected record was set";
    EXPECT_EQ(at("AUNITS").currentText, "0") << "the other record kept the host's value";
    EXPECT_FALSE(at("AUNITS").isMarkedToSet());
    const std::vector<std::string> expected = {
        "SetStatusTexts " + gMsg.TxWriteSuccessOnce + " ",
        "SetRunCode " + std::to_string(static_cast<int>(RunCode::Done)), "FillList"};
    EXPECT_EQ(port.calls, expected);
    EXPECT_EQ(user().lines, std::vector<std::string>{infoBox(gMsg.TxWriteSuccessOnce + " ")});
}

TEST_F(CommandsOnAPort, NewListAsksBeforeItEmptiesAUserListWithEntries) {
    at("LUPREC").setInUserList();
    setNew("LUPREC", "3");
    context->varList.userFileName = "mine.var";
    RecordingPort port(*context);
    FileCommands commands(port, *context);

    user().answers = {"no"};
    EXPECT_FALSE(commands.NewList());
    EXPECT_TRUE(at("LUPREC").inUserList());
    EXPECT_EQ(context->varList.userFileName, "mine.var");
    EXPECT_EQ(port.calls, std::vector<std::string>{"ShowView"}) << "the user sees the list asked about";

    user().answers = {"yes"};
    port.calls.clear();
    EXPECT_TRUE(commands.NewList());
    EXPECT_FALSE(context->varList.hasUserEntries());
    EXPECT_TRUE(at("LUPREC").newText.empty());
    EXPECT_EQ(context->varList.userFileName, gMsg.TxNewVarFile);
    EXPECT_EQ(port.calls, (std::vector<std::string>{"ShowView", "ShowView"}));
}
