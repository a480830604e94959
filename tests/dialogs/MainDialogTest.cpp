// Tests of the main dialog: frame, layout, marks, tool bar, list orders, row colours, keys, end of a run.
#include "CommandsTestKit.h"

#include "dialogs/ModuleResources.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

using namespace commandstest;
using namespace mainids;

class MainDialog : public CommandsTest {
protected:
    std::string tool(int id) {
        QAction* a = d->toolAction(id);
        if (!a)
            return "missing";
        if (!a->isEnabled())
            return "disabled";
        if (a->property("indeterminate").toBool())
            return "indeterminate";
        return a->isChecked() ? "pressed" : "enabled";
    }
    // The rows as "<text of column 0 with its blanks>|<image>".
    std::vector<std::string> shownRows() {
        std::vector<std::string> out;
        for (int r = 0; r < rows().rowCount(); ++r)
            out.push_back(rows().cellText(r, 0).toStdString() + "|" +
                          std::to_string(rows().index(r, 0).data(kRowImageRole).toInt()));
        return out;
    }
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
    QRect storedRect() {
        return {context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY};
    }
};

std::string row(int level, const std::string& text, int image) {
    return std::string(7 * (level + 1), ' ') + text + "|" + std::to_string(image);
}

TEST_F(MainDialog, StartsWithTheFrameAndThreeMeasuredStatusPanes) {
    open();
    EXPECT_EQ(d->runCode, 16);
    EXPECT_EQ(d->frameGeometry(), QRect(20, 30, 600, 500));
    EXPECT_FALSE(d->windowIcon().isNull());
    ASSERT_NE(d->contextMenu, nullptr);
    EXPECT_EQ(d->contextMenu->actions().size(), 6);
    EXPECT_EQ(d->menuAction(kNew)->text().toStdString(), gMsg.MnNew);

    const QList<QLabel*> panes = d->statusBar->findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panes.size(), 3);
    const QFontMetrics m(d->statusBar->font());
    auto w = [&m](const std::string& t) { return m.horizontalAdvance(QString::fromStdString(t)); };
    EXPECT_EQ(panes[1]->width(), std::max(w(gMsg.StProtected), w(gMsg.StChangeable)));
    EXPECT_EQ(panes[2]->width(), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)));
    EXPECT_EQ(panes[2]->x() + panes[2]->width(), d->statusBar->width());
    EXPECT_EQ(panes[0]->x(), 0);
    d->ShowStatus(&at("OSMODE"));
    EXPECT_EQ(panes[0]->text(), "Anzeige");
    EXPECT_EQ(panes[1]->text().toStdString(), gMsg.StChangeable);
    EXPECT_EQ(panes[2]->text().toStdString(), gMsg.StGlobal);
    EXPECT_EQ(panes[2]->toolTip(), panes[2]->text());
    d->ShowStatus(&at("VIEWCTR"));
    EXPECT_EQ(panes[1]->text().toStdString(), gMsg.StProtected);
    EXPECT_EQ(panes[2]->text().toStdString(), gMsg.StDrawSpecific);
    d->ShowStatus(nullptr);
    EXPECT_TRUE(panes[1]->text().isEmpty());
}

TEST_F(MainDialog, LayoutKeepsMarginsAndGivesUpDescriptionLines) {
    open();
    QWidget* list = d->listCtrl;
    QWidget* description = d->descriptionEdit;
    QWidget* value = d->valueEdit;
    const int H = value->height();
    const int fixed = d->toolBar->height() + d->statusBar->height() + 4 * 10 + H;
    const int menu = d->height() - d->clientArea()->height();
    // Client heights that leave the list 6H, just below it, far below it, and almost nothing.
    const struct {
        const char* name;
        int listRoom; // client height less the fixed parts: list + description
        int lines;
        bool moves;
    } cases[] = {
        {"roomy", 9 * H + 40, 3, true},         {"list at 6H with three lines", 9 * H, 3, true},
        {"one pixel less", 9 * H - 1, 2, true}, {"two lines still short", 8 * H - 1, 1, true},
        {"list at 2H", 3 * H, 1, true},         {"below 2H", 3 * H - 1, 1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QRect listBefore = list->geometry();
        d->resize(500, menu + fixed + c.listRoom);
        QCoreApplication::processEvents();
        EXPECT_EQ(d->visibleLines, c.lines);
        const QRect client = d->clientArea()->rect();
        if (!c.moves) {
            EXPECT_EQ(list->geometry(), listBefore) << "nothing moves";
            EXPECT_EQ(d->statusPane(2)->x() + d->statusPane(2)->width(), client.width());
            continue;
        }
        EXPECT_EQ(list->y(), d->toolBar->y() + d->toolBar->height() + 10);
        EXPECT_EQ(value->y() + value->height(), d->statusBar->y() - 10);
        EXPECT_EQ(value->height(), H) << "the value field keeps its height";
        EXPECT_EQ(description->y() + description->height(), value->y() - 10);
        EXPECT_EQ(description->height(), c.lines * H);
        EXPECT_EQ(list->y() + list->height(), description->y() - 10);
        for (QWidget* w : {list, description, value})
            EXPECT_EQ(w->x() + w->width(), client.width() - 10) << w->objectName().toStdString();
    }
}

TEST_F(MainDialog, MarksFollowViewOrderAndCompareMode) {
    const struct { int view, order, compare; } states[] = {{0, 0, 0}, {1, 2, 0}, {0, 3, 1}, {1, 1, 1}};
    for (const auto& s : states) {
        SCOPED_TRACE("view " + std::to_string(s.view) + " order " + std::to_string(s.order) + " compare " +
                     std::to_string(s.compare));
        context->view = s.view;
        context->viewOrder = s.order;
        context->compareMode = s.compare;
        open();
        EXPECT_EQ(d->menuAction(kShowAll)->isChecked(), s.view == 0);
        EXPECT_EQ(d->menuAction(kShowList)->isChecked(), s.view == 1);
        EXPECT_EQ(d->menuAction(kAdd)->isEnabled(), s.view == 1);
        EXPECT_EQ(d->menuAction(kDelete)->isEnabled(), s.view == 1);
        EXPECT_EQ(tool(kButtonShowAll), s.view == 0 ? "pressed" : "enabled");
        EXPECT_EQ(tool(kButtonShowList), s.view == 1 ? "pressed" : "enabled");
        EXPECT_EQ(tool(kButtonAdd), s.view == 0 ? "indeterminate" : "enabled");
        EXPECT_EQ(tool(kButtonDelete), s.view == 0 ? "indeterminate" : "enabled");
        for (int n = 0; n < 4; ++n) {
            EXPECT_EQ(d->menuAction(kSortLetter + n)->isChecked(), n == s.order)
                << "entry " << kSortLetter + n;
            EXPECT_EQ(tool(kButtonSortLetter + n), n == s.order ? "pressed" : "enabled") << "button " << n;
        }
        EXPECT_EQ(d->menuAction(kCompare)->isChecked(), s.compare == 1);
        EXPECT_EQ(tool(kButtonCompare), s.compare == 1 ? "pressed" : "enabled");
        EXPECT_EQ(d->toolBarImages[18].pixmap(16, 16).toImage(),
                  moduleIconPixmap(s.compare ? kIconCompareOn : 1075).toImage());
        EXPECT_EQ(title().find('[') != std::string::npos, s.view == 1) << title();
        EXPECT_EQ(tool(kFirstButton), "enabled");
    }
}

TEST_F(MainDialog, ToolBarButtonsPostTheirCommandsAndKeepTheStateOfTheContext) {
    open();
    const QList<QAction*> entries = d->toolBar->actions();
    ASSERT_EQ(entries.size(), 27);
    EXPECT_EQ(std::count_if(entries.begin(), entries.end(), [](QAction* a) { return a->isSeparator(); }), 7);
    EXPECT_EQ(d->toolAction(7016)->toolTip().toStdString(), gMsg.MnSetAll);
    EXPECT_EQ(d->toolAction(7017)->toolTip().toStdString(), gMsg.MnSetSelection);
    const int posted[] = {8027, 8028, 8029, 8030, 8032, 8033, 8034, 8035, 8036, 8037,
                          8038, 8039, 8040, 8041, 8042, 8043, 8045, 8044, 8046, 8047};
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(cDlgVarDesk::commandOfButton(7000 + i), posted[i]) << "button " << 7000 + i;
    EXPECT_EQ(cDlgVarDesk::commandOfButton(6999), 0);
    EXPECT_EQ(cDlgVarDesk::commandOfButton(7020), 0);

    d->toolAction(7012)->trigger();
    EXPECT_EQ(context->viewOrder, 0) << "the command waits for the click to end";
    EXPECT_EQ(tool(7012), "enabled");
    QCoreApplication::processEvents();
    EXPECT_EQ(context->viewOrder, 2);
    EXPECT_TRUE(d->menuAction(kSortGlobeA)->isChecked());
    EXPECT_EQ(tool(7012), "pressed");
    EXPECT_EQ(tool(7010), "enabled");
    d->toolAction(7012)->trigger(); // a pressed button stays pressed
    QCoreApplication::processEvents();
    EXPECT_EQ(tool(7012), "pressed");
    d->toolAction(kButtonAdd)->trigger(); // indeterminate: no command
    QCoreApplication::processEvents();
    EXPECT_EQ(tool(kButtonAdd), "indeterminate");
    d->toolAction(kButtonShowList)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->view, 1);
    EXPECT_EQ(tool(kButtonAdd), "enabled");
    EXPECT_TRUE(d->menuAction(kAdd)->isEnabled());
    d->menuAction(kCompare)->trigger(); // the mark follows the context's compare mode
    EXPECT_EQ(context->compareMode, 1);
    EXPECT_TRUE(d->menuAction(kCompare)->isChecked());
}

TEST_F(MainDialog, ColumnWidthsAreClampedOnTheWayInAndOutAndTheEndStoresTheRectangle) {
    context->listCtrlFirstCol = 10;
    context->listCtrlSecCol = 5000;
    context->listCtrlThirdCol = 300;
    open();
    EXPECT_EQ(context->listCtrlFirstCol, 46);
    EXPECT_EQ(context->listCtrlSecCol, 1200);
    EXPECT_EQ(context->listCtrlThirdCol, 300);
    EXPECT_EQ(d->listCtrl->columnWidth(0), 46);
    EXPECT_EQ(d->listCtrl->columnWidth(1), 1200);
    d->move(40, 50);
    d->resize(600, 400);
    d->listCtrl->setColumnWidth(0, 1500);
    d->listCtrl->setColumnWidth(1, 7);
    d->listCtrl->setColumnWidth(2, 0);
    at("LUPREC").setSelected();
    d->close();
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(d->runCode, 0);
    EXPECT_EQ(d->toolTips, nullptr);
    EXPECT_EQ(d->contextMenu, nullptr);
    EXPECT_EQ(storedRect(), d->frameGeometry());
    EXPECT_EQ(context->listCtrlFirstCol, 1200);
    EXPECT_EQ(context->listCtrlSecCol, 20);
    EXPECT_EQ(context->listCtrlThirdCol, 300) << "a width of 0 is not stored";
    EXPECT_FALSE(at("LUPREC").isSelected());
    const QRect stored = storedRect();
    d->EndRun(); // a second end stores the same and finds nothing to free
    EXPECT_EQ(storedRect(), stored);

    // The next run opens where this one ended, on the list already read; a hidden column keeps
    // its stored width.
    const cSysVar* first = context->varList.first;
    open();
    EXPECT_EQ(d->frameGeometry(), stored);
    EXPECT_EQ(context->varList.first, first);
    d->listCtrl->setColumnHidden(2, true);
    d->EndRun();
    EXPECT_EQ(context->listCtrlThirdCol, 300);
}

TEST_F(MainDialog, RunLoopRunsTheDialogUntilItEnds) {
    int runs = 0, shownWith = -1;
    user().modal = [&](QDialog& dialog) {
        ++runs;
        dialog.show();
        shownWith = dialog.property("templateId").toInt();
        QCoreApplication::processEvents();
        dialog.close();
        return dialog.result();
    };
    context->mainPosX = -5;
    runMainDialog(*context);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(shownWith, 1000);
    EXPECT_EQ(context->mainPosX, 0) << "placed on the screen and stored at the end";
    EXPECT_NE(context->varList.first, nullptr);
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
        EXPECT_EQ(context->viewOrder, order);
        EXPECT_EQ(shownRows(), byOrder[order]);
        EXPECT_TRUE(d->menuAction(kSortLetter + order)->isChecked());
        EXPECT_TRUE(d->toolAction(kButtonSortLetter + order)->isChecked());
    }
    EXPECT_EQ(rows().rowOf(nullptr), -1) << "no record has no row, though headers hold none";
}

TEST_F(MainDialog, OrderChangeKeepsTheSelectionOfRecordsAndEmptiesTheFields) {
    open();
    clickRow(rowOf("LUPREC"));
    EXPECT_EQ(d->currentVar, &at("LUPREC"));
    EXPECT_EQ(pane(0), "Einheiten");
    clickRow(0, Qt::ControlModifier); // a header
    d->OnCommand(kSortTheme);
    EXPECT_EQ(selectedNames(), std::vector<std::string>{"LUPREC"}) << "the header's selection is lost";
    EXPECT_EQ(d->currentVar, nullptr);
    EXPECT_TRUE(d->valueEdit->text().isEmpty());
    EXPECT_EQ(pane(0), "");
    EXPECT_TRUE(d->listCtrl->hasFocus());

    d->OnCommand(kShowList); // the user list, empty
    EXPECT_EQ(rows().rowCount(), 0);
    d->OnCommand(kShowAll);
    EXPECT_EQ(d->listCtrl->selectedCount(), 0) << "a change of view drops the selection";
}

TEST_F(MainDialog, RowsArePaintedInTheColoursOfTheirRecords) {
    open();
    const QColor base = d->listCtrl->palette().color(QPalette::Base);
    const QColor text = d->listCtrl->palette().color(QPalette::Text);
    const QColor grey(192, 192, 192), blue(0, 0, 255), green(0, 193, 0), red(193, 0, 0);
    clickRow(rowOf("LUPREC"));
    d->valueEdit->setText("7");
    QTest::keyClick(d->valueEdit, Qt::Key_Return);
    d->listCtrl->selectionModel()->clearSelection();
    at("FILEDIA").setReadOnly();
    setNew("FILEDIA", "1");
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
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Return); // the shown value, applied: equal to the current
    const QPalette& palette = d->listCtrl->palette();
    for (int column : {0, 1, 2}) {
        EXPECT_EQ(colour(rowOf("AUNITS"), column, "background"),
                  palette.color(QPalette::Active, QPalette::Highlight));
        EXPECT_EQ(colour(rowOf("AUNITS"), column), palette.color(QPalette::Active, QPalette::HighlightedText))
            << "a selected row, column " << column;
    }
    d->listCtrl->selectionModel()->clearSelection();
    EXPECT_EQ(colour(rowOf("AUNITS"), 2), green);

    at("OSMODE").currentText = "99"; // as after a read from the host, cell not written
    EXPECT_EQ(painted(rowOf("OSMODE"), 1, "text").toString(), "99");
    EXPECT_NE(rows().cellText(rowOf("OSMODE"), 1), "99") << "the cell itself was not written";
}

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

    clickRow(rowOf("LUPREC"));
    d->valueEdit->setFocus();
    d->valueEdit->setText("2");
    QTest::keyClick(d->valueEdit, Qt::Key_Return);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(at("LUPREC").newText, "2");
    EXPECT_EQ(rows().cellText(rowOf("LUPREC"), 2), "2");
    EXPECT_TRUE(d->listCtrl->hasFocus());

    clickRow(rowOf("VIEWCTR"));
    QTest::keyClick(d->listCtrl, Qt::Key_Tab);
    EXPECT_TRUE(d->listCtrl->hasFocus()) << "a read-only record hands the focus back to the list";
    QTest::keyClick(d->listCtrl, Qt::Key_Return);
    EXPECT_TRUE(at("VIEWCTR").newText.empty()) << "Enter on a read-only record";
    QTest::keyClick(d->listCtrl, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->currentVar, nullptr) << "Escape in the list";
}

TEST_F(MainDialog, LetterKeyMovesTheFocusOnlyAndUpDownShowTheNextRecord) {
    open();
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_O);
    EXPECT_EQ(d->listCtrl->currentIndex().row(), rowOf("OSMODE") - 1) << "the letter's header";
    EXPECT_EQ(selectedNames(), std::vector<std::string>{"AUNITS"});
    EXPECT_EQ(d->currentVar, &at("AUNITS")) << "the fields do not change";
    EXPECT_EQ(pane(0), "Einheiten");

    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Down); // the header "F"
    EXPECT_EQ(d->currentVar, nullptr);
    QTest::keyClick(d->listCtrl, Qt::Key_Down);
    EXPECT_EQ(d->currentVar, &at("FILEDIA"));
    EXPECT_EQ(pane(0), "") << "a theme the list lacks has no title";
    EXPECT_EQ(pane(2), gMsg.StGlobal);
}

TEST_F(MainDialog, ContextMenuOpensOnlyStrictlyInsideTheList) {
    open();
    bool opened = false;
    auto closeWhenOpen = [&] {
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
    for (const QPoint& p :
         {topLeft, topLeft + QPoint(d->listCtrl->width(), 5), d->valueEdit->mapToGlobal(QPoint(2, 2))}) {
        opened = false;
        closeWhenOpen();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, d->mapFromGlobal(p), p);
        QCoreApplication::sendEvent(d.get(), &event);
        QCoreApplication::processEvents();
        EXPECT_FALSE(opened) << "at " << p.x() << "," << p.y() << ", list from " << topLeft.x() << ","
                             << topLeft.y();
    }
}

} // namespace
