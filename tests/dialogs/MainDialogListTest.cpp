// Tests of the main dialog's list and value field, driven through the real dialog in an in-process host.
#include "dialogs/main/cDlgVarDesk.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include "platform/ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <memory>

namespace {

class QuietScript : public kova::ScriptHost {
public:
    void printLine(const std::string&) override {}
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override { return dialog.result(); }
};

kova::ScriptedUiServices& services() {
    static QuietScript script;
    static kova::ScriptedUiServices instance(script);
    return instance;
}

// Themes "Anzeige" and "Einheiten"; FILEDIA names a theme the file lacks; 3DOSMODE begins with a
// digit; global and drawing-specific, changeable and read-only records.
constexpr const char* kAvlFile = "0#Einheiten#1\n"
                                 "0#Anzeige#2\n"
                                 "1#LUPREC#++#Nachkommastellen der Längen\n"
                                 "1#AUNITS#++#Winkeleinheit\n"
                                 "2#OSMODE#+-#Objektfang\n"
                                 "9#FILEDIA#+-#Dateidialoge\n"
                                 "2#3DOSMODE#+-#3D-Objektfang\n"
                                 "2#VIEWCTR#-+#Mitte der Ansicht\n";

class MainDialogList : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/vardesk-list-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        host.setUiServices(&services());
        host.setOutput([](const std::string&) {});
        ASSERT_TRUE(host.setProfileDir(folder.string()));
        std::ofstream(folder / "VarDesk.avl") << kAvlFile;
        ASSERT_TRUE(host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv"));
        AcApDocument* doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
        gContext.userIniFile = (folder / "VarDesk.ini").string();
        context = std::make_unique<cDocCntx>(doc);
        context->drawingFileName = "Drawing1.dwg";
        context->avlFilePath = (folder / "VarDesk.avl").string();
        context->mainPosX = 20;
        context->mainPosY = 30;
        context->mainSizeX = 600;
        context->mainSizeY = 500;
        context->listCtrlFirstCol = 200;
        context->listCtrlSecCol = 100;
        context->listCtrlThirdCol = 100;
    }

    void TearDown() override {
        d.reset();
        context.reset();
        host.shutdown();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    void open() {
        d = std::make_unique<cDlgVarDesk>(*context);
        d->show();
        d->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(d.get()));
        QCoreApplication::processEvents();
    }

    cSysVar& at(const char* name) { return *context->varList.findName(name); }
    VarListModel& rows() { return *d->listCtrl->rowModel(); }
    int rowOf(const char* name) { return rows().rowOf(&at(name)); }

    // The rows as "<text of column 0 with its blanks>|<image>".
    std::vector<std::string> shownRows() {
        std::vector<std::string> out;
        for (int r = 0; r < rows().rowCount(); ++r)
            out.push_back(rows().cellText(r, 0).toStdString() + "|" +
                          std::to_string(rows().index(r, 0).data(kRowImageRole).toInt()));
        return out;
    }

    // What the delegate reports it paints, as the automation's dump reads it.
    QVariantMap painted(int row, int column) {
        QVariantMap cell;
        QMetaObject::invokeMethod(d->listCtrl->itemDelegate(), "automationCell", Qt::DirectConnection,
                                  Q_RETURN_ARG(QVariantMap, cell),
                                  Q_ARG(QModelIndex, rows().index(row, column)));
        return cell;
    }

    void clickRow(int row) {
        QTest::mouseClick(d->listCtrl->viewport(), Qt::LeftButton, {},
                          d->listCtrl->visualRect(rows().index(row, 0)).center());
    }

    std::string pane(int i) { return d->statusPane(i)->text().toStdString(); }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::filesystem::path folder;
    std::unique_ptr<cDocCntx> context;
    std::unique_ptr<cDlgVarDesk> d;
};

std::string row(int level, const std::string& text, int image) {
    return std::string(7 * (level + 1), ' ') + text + "|" + std::to_string(image);
}

TEST_F(MainDialogList, EveryOrderCommandBuildsItsRowsWithHeaders) {
    open();
    const std::string global = gMsg.TxGlobal, drawing = gMsg.TxDrawSpecific, other = gMsg.TxDefaultTheme;
    struct Case {
        int command;
        std::vector<std::string> rows;
    };
    const Case cases[] = {
        {8039,
         {row(0, "Anzeige", 5), row(1, "3DOSMODE", 1), row(1, "OSMODE", 1), row(1, "VIEWCTR", 0),
          row(0, "Einheiten", 5), row(1, "AUNITS", 0), row(1, "LUPREC", 0), row(0, other, 5),
          row(1, "FILEDIA", 1)}},
        {8040,
         {row(0, global, 1), row(1, "F", 4), row(2, "FILEDIA", 1), row(1, "O", 4), row(2, "OSMODE", 1),
          row(0, drawing, 0), row(1, "A", 4), row(2, "AUNITS", 0), row(1, "L", 4), row(2, "LUPREC", 0),
          row(1, "V", 4), row(2, "VIEWCTR", 0)}},
        {8041,
         {row(0, global, 1), row(1, "Anzeige", 5), row(2, "3DOSMODE", 1), row(2, "OSMODE", 1),
          row(1, other, 5), row(2, "FILEDIA", 1), row(0, drawing, 0), row(1, "Anzeige", 5),
          row(2, "VIEWCTR", 0), row(1, "Einheiten", 5), row(2, "AUNITS", 0), row(2, "LUPREC", 0)}},
        {8038,
         {row(0, "A", 4), row(1, "AUNITS", 0), row(0, "F", 4), row(1, "FILEDIA", 1), row(0, "L", 4),
          row(1, "LUPREC", 0), row(0, "O", 4), row(1, "OSMODE", 1), row(0, "V", 4), row(1, "VIEWCTR", 0)}},
    };
    for (const Case& c : cases) {
        d->OnCommand(c.command);
        EXPECT_EQ(context->viewOrder, c.command - 8038);
        EXPECT_EQ(shownRows(), c.rows) << "command " << c.command;
        EXPECT_TRUE(d->menuAction(c.command)->isChecked()) << "command " << c.command;
        EXPECT_TRUE(d->toolAction(c.command - 8038 + 7010)->isChecked()) << "command " << c.command;
    }
}

TEST_F(MainDialogList, OrderChangeKeepsTheSelectionOfRecordsAndEmptiesTheFields) {
    open();
    clickRow(rowOf("LUPREC"));
    EXPECT_EQ(d->currentVar, &at("LUPREC"));
    EXPECT_EQ(pane(0), "Einheiten");
    EXPECT_EQ(pane(1), gMsg.StChangeable);
    EXPECT_EQ(pane(2), gMsg.StDrawSpecific);
    QTest::mouseClick(d->listCtrl->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      d->listCtrl->visualRect(rows().index(0, 0)).center()); // a header
    d->OnCommand(8039);
    EXPECT_EQ(d->listCtrl->selectedCount(), 1) << "the header's selection is lost";
    EXPECT_TRUE(d->listCtrl->selectionModel()->isSelected(rows().index(rowOf("LUPREC"), 0)));
    EXPECT_EQ(d->currentVar, nullptr);
    EXPECT_TRUE(d->valueEdit->text().isEmpty());
    EXPECT_EQ(pane(0), "");
    EXPECT_TRUE(d->listCtrl->hasFocus());

    d->OnCommand(8037); // the user list, empty
    EXPECT_EQ(rows().rowCount(), 0);
    EXPECT_NE(d->windowTitle().indexOf('['), -1);
    d->OnCommand(8036);
    EXPECT_EQ(d->listCtrl->selectedCount(), 0) << "a change of view drops the selection";
}

TEST_F(MainDialogList, ViewAndCompareModeFilterTheRecords) {
    open();
    clickRow(rowOf("LUPREC"));
    d->valueEdit->setText("6");
    QTest::keyClick(d->valueEdit, Qt::Key_Return);
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Return); // the same value: in the user list, equal
    ASSERT_EQ(at("LUPREC").newText, "6");
    ASSERT_TRUE(at("AUNITS").inUserList());

    d->OnCommand(8037);
    EXPECT_EQ(shownRows(), (std::vector<std::string>{row(0, "A", 4), row(1, "AUNITS", 0), row(0, "L", 4),
                                                     row(1, "LUPREC", 0)}));
    for (int view : {1, 0}) {
        context->view = view;
        context->compareMode = 1;
        d->FillList();
        EXPECT_EQ(shownRows(), (std::vector<std::string>{row(0, "L", 4), row(1, "LUPREC", 0)}))
            << "compare mode in view " << view;
    }
}

TEST_F(MainDialogList, RowsArePaintedInTheColoursOfTheirRecords) {
    open();
    const QColor base = d->listCtrl->palette().color(QPalette::Base);
    const QColor text = d->listCtrl->palette().color(QPalette::Text);
    const QColor grey(192, 192, 192), blue(0, 0, 255), green(0, 193, 0), red(193, 0, 0);
    clickRow(rowOf("LUPREC"));
    d->valueEdit->setText("7");
    QTest::keyClick(d->valueEdit, Qt::Key_Return);
    d->listCtrl->selectionModel()->clearSelection();

    struct Case {
        int row;
        QColor background, colour0;
        QString text2;
        QColor colour2;
    };
    const Case cases[] = {
        {0, base, text, "", text},                // header "A"
        {rowOf("LUPREC"), base, text, "7", red},  // drawing, new value differs
        {rowOf("OSMODE"), base, blue, "", text},  // global, never compared
        {rowOf("VIEWCTR"), grey, text, "", text}, // read-only, drawing
    };
    for (const Case& c : cases) {
        const std::string name = rows().cellText(c.row, 0).trimmed().toStdString();
        EXPECT_EQ(painted(c.row, 0)["background"].value<QColor>(), c.background) << name;
        EXPECT_EQ(painted(c.row, 0)["foreground"].value<QColor>(), c.colour0) << name;
        EXPECT_EQ(painted(c.row, 2)["text"].toString(), c.text2) << name;
        EXPECT_EQ(painted(c.row, 2)["foreground"].value<QColor>(), c.colour2) << name;
    }
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Return);
    EXPECT_EQ(painted(rowOf("AUNITS"), 2)["foreground"].value<QColor>(),
              d->listCtrl->palette().color(QPalette::Active, QPalette::HighlightedText))
        << "a selected row";
    d->listCtrl->selectionModel()->clearSelection();
    EXPECT_EQ(painted(rowOf("AUNITS"), 2)["foreground"].value<QColor>(), green) << "value equals the current";

    at("OSMODE").currentText = "99"; // as after a read from the host, cell not written
    EXPECT_EQ(painted(rowOf("OSMODE"), 1)["text"].toString(), "99");
    EXPECT_NE(rows().cellText(rowOf("OSMODE"), 1), "99") << "the cell itself was not written";
}

TEST_F(MainDialogList, EnterEscapeAndTabInTheValueField) {
    open();
    clickRow(rowOf("LUPREC"));
    QTest::keyClick(d->listCtrl, Qt::Key_Tab);
    EXPECT_TRUE(d->valueEdit->hasFocus()) << "Tab reaches the description, which hands on";
    QCoreApplication::processEvents();
    EXPECT_EQ(d->valueEdit->selectedText(), "4");

    QTest::keyClicks(d->valueEdit, "5");
    QTest::keyClick(d->valueEdit, Qt::Key_Escape);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->currentVar, nullptr);
    EXPECT_EQ(d->valueEdit->text(), "5") << "Escape leaves the typed text";
    EXPECT_TRUE(at("LUPREC").newText.empty()) << "and applies nothing";
    EXPECT_TRUE(d->listCtrl->hasFocus());
    clickRow(rowOf("LUPREC"));
    EXPECT_EQ(d->valueEdit->text(), "4");

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

TEST_F(MainDialogList, LetterKeyMovesTheFocusOnly) {
    open();
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_O);
    EXPECT_EQ(d->listCtrl->currentIndex().row(), rowOf("OSMODE") - 1) << "the letter's header";
    EXPECT_EQ(d->listCtrl->selectedCount(), 1);
    EXPECT_EQ(d->currentVar, &at("AUNITS")) << "the fields do not change";
    EXPECT_EQ(pane(0), "Einheiten");
}

TEST_F(MainDialogList, UpAndDownShowTheNextRecord) {
    open();
    clickRow(rowOf("AUNITS"));
    QTest::keyClick(d->listCtrl, Qt::Key_Down); // the header "F"
    EXPECT_EQ(d->currentVar, nullptr);
    QTest::keyClick(d->listCtrl, Qt::Key_Down);
    EXPECT_EQ(d->currentVar, &at("FILEDIA"));
    EXPECT_EQ(pane(0), "") << "a theme the list lacks has no title";
    EXPECT_EQ(pane(2), gMsg.StGlobal);
}

TEST_F(MainDialogList, ContextMenuOpensOnlyStrictlyInsideTheList) {
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
    const QPoint points[] = {topLeft, topLeft + QPoint(d->listCtrl->width(), 5),
                             d->valueEdit->mapToGlobal(QPoint(2, 2))};
    for (const QPoint& p : points) {
        opened = false;
        closeWhenOpen();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, d->mapFromGlobal(p), p);
        QCoreApplication::sendEvent(d.get(), &event);
        QCoreApplication::processEvents();
        EXPECT_FALSE(opened) << "at " << p.x() << "," << p.y() << ", list from " << topLeft.x() << ","
                             << topLeft.y();
    }
}

TEST_F(MainDialogList, ColumnWidthsAreClampedOnTheWayInAndOut) {
    context->listCtrlFirstCol = 10;
    context->listCtrlSecCol = 5000;
    context->listCtrlThirdCol = 3;
    open();
    EXPECT_EQ(context->listCtrlFirstCol, 46);
    EXPECT_EQ(context->listCtrlSecCol, 1200);
    EXPECT_EQ(context->listCtrlThirdCol, 20);
    EXPECT_EQ(d->listCtrl->columnWidth(0), 46);
    EXPECT_EQ(d->listCtrl->columnWidth(1), 1200);
    EXPECT_EQ(d->listCtrl->columnWidth(2), 20);
    d->listCtrl->setColumnWidth(0, 1500);
    d->listCtrl->setColumnWidth(1, 7);
    d->listCtrl->setColumnWidth(2, 0);
    d->EndRun();
    EXPECT_EQ(context->listCtrlFirstCol, 1200);
    EXPECT_EQ(context->listCtrlSecCol, 20);
    EXPECT_EQ(context->listCtrlThirdCol, 20) << "a width of 0 is not stored";
}

} // namespace
