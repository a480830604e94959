// Tests of the selection dialog: rows, column widths, layout, OK that only adds, marking and search.
#include "CommandsTestKit.h"

#include "dialogs/cDlgSlctSysVar.h"
#include "dialogs/CEditEx.h"
#include "dialogs/DlgFind2.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>

namespace {

using namespace commandstest;

class SelectionDialog : public HostTest {
protected:
    void prepareContext() override {
        context->varList.themes.addTheme(1, "Einheiten");
        context->varList.themes.addTheme(2, "Zeichnung");
        // _PKSER begins with no letter "A" to "Z" and names no theme of the list.
        addRecord("9", "_PKSER", "+-", "\"123\"");
        addRecord("2", "CLAYER", "++", "\"0\"");
        addRecord("1", "LUPREC", "++", "4");
        addRecord("2", "OSMODE", "+-", "4133");
        addRecord("2", "VIEWCTR", "-+", "0 0 0");
        context->varList.findName("LUPREC")->setInUserList();
        context->viewOrder = ListOrder::Letter;
        context->selectionPosX = 30;
        context->selectionPosY = 40;
        context->selectionSizeX = 600;
        context->selectionSizeY = 400;
        context->listCtrl2FirstCol = 150;
        context->listCtrl2SecCol = 100;
        context->searchCheck = DlgFind2::kMaskName;
        context->searchSizeX = 300;
        context->searchSizeY = 235;
    }

    std::unique_ptr<cDlgSlctSysVar> open() {
        auto d = std::make_unique<cDlgSlctSysVar>(*context);
        d->show();
        QCoreApplication::processEvents();
        return d;
    }

    static VarListModel& model(cDlgSlctSysVar& d) { return *d.listView().rowModel(); }

    // The trimmed column-0 texts of the selected rows, in row order, joined by blanks.
    static std::string selectedRows(cDlgSlctSysVar& d) {
        std::string out;
        for (int row = 0; row < model(d).rowCount(); ++row)
            if (d.listView().selectionModel()->isSelected(model(d).index(row, 0)))
                out += (out.empty() ? "" : " ") + model(d).cellText(row, 0).trimmed().toStdString();
        return out;
    }
    static void selectRows(cDlgSlctSysVar& d, const std::vector<QString>& texts) {
        for (int row = 0; row < model(d).rowCount(); ++row)
            if (std::find(texts.begin(), texts.end(), model(d).cellText(row, 0).trimmed()) != texts.end())
                d.listView().selectionModel()->select(model(d).index(row, 0), QItemSelectionModel::Select |
                                                                                  QItemSelectionModel::Rows);
    }
    std::string userList() {
        std::string out;
        for (const cSysVar* v = context->varList.first; v; v = v->next)
            if (v->inUserList())
                out += (out.empty() ? "" : " ") + v->name;
        return out;
    }
};

std::string blanks(int n) {
    return std::string(n, ' ');
}

} // namespace

// The letter order with current values is in the scenario dialogs_remember.
TEST_F(SelectionDialog, ShowsEveryVariableInTheMainDialogsOrder) {
    context->viewOrder = ListOrder::Theme;
    auto d = open();
    // Unknown themes gather under the default theme; the user list's LUPREC stands as any other.
    std::vector<std::string> rows;
    VarListModel& m = model(*d);
    for (int row = 0; row < m.rowCount(); ++row)
        rows.push_back(m.cellText(row, 0).toStdString() + "|" + m.cellText(row, 1).toStdString() + "|" +
                       std::to_string(m.data(m.index(row, 0), kRowImageRole).toInt()));
    EXPECT_EQ(rows, (std::vector<std::string>{blanks(7) + "Einheiten||5", blanks(14) + "LUPREC|4|0",
                                              blanks(7) + "Zeichnung||5", blanks(14) + "CLAYER|\"0\"|0",
                                              blanks(14) + "OSMODE|4133|1", blanks(14) + "VIEWCTR|0 0 0|0",
                                              blanks(7) + gMsg.TxDefaultTheme + "||5",
                                              blanks(14) + "_PKSER|\"123\"|1"}));
    EXPECT_EQ(selectedRows(*d), "");
}

TEST_F(SelectionDialog, RecordMarkedSelectedComesUpSelectedAndLosesTheMark) {
    context->varList.findName("OSMODE")->setSelected();
    auto d = open();
    EXPECT_EQ(selectedRows(*d), "OSMODE");
    EXPECT_FALSE(context->varList.findName("OSMODE")->isSelected());
}

TEST_F(SelectionDialog, ClampsColumnWidthsAtStartAndAtTheEnd) {
    struct Case {
        int storedFirst, storedSecond;
        int startFirst, startSecond;
        int endFirst, endSecond; // widths set by the user before the end
        int savedFirst, savedSecond;
    } cases[] = {
        {2000, 5, 1200, 20, 0, 1500, 1200, 1200}, // a width of 0 leaves the stored one alone
        {5, 2000, 46, 1200, 300, 5, 300, 20},
    };
    for (const Case& c : cases) {
        context->listCtrl2FirstCol = c.storedFirst;
        context->listCtrl2SecCol = c.storedSecond;
        SCOPED_TRACE(std::to_string(c.storedFirst) + "/" + std::to_string(c.storedSecond));
        auto d = open();
        EXPECT_EQ(QPoint(context->listCtrl2FirstCol, context->listCtrl2SecCol),
                  QPoint(c.startFirst, c.startSecond));
        EXPECT_EQ(QPoint(d->listView().columnWidth(0), d->listView().columnWidth(1)),
                  QPoint(c.startFirst, c.startSecond));
        d->listView().setColumnWidth(0, c.endFirst);
        d->listView().setColumnWidth(1, c.endSecond);
        d->reject();
        EXPECT_EQ(QPoint(context->listCtrl2FirstCol, context->listCtrl2SecCol),
                  QPoint(c.savedFirst, c.savedSecond));
    }
}

TEST_F(SelectionDialog, ClosingAddsNothing) {
    auto d = open();
    selectRows(*d, {"CLAYER", "OSMODE"});
    d->close();
    EXPECT_EQ(d->result(), QDialog::Rejected);
    EXPECT_EQ(userList(), "LUPREC");
}

// OK adds the variables of the selected rows, ignores a header, and takes none out.
TEST_F(SelectionDialog, OkOnlyAddsTheSelectedVariables) {
    auto d = open();
    selectRows(*d, {"C", "CLAYER", "VIEWCTR"});
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdOk), Qt::LeftButton);
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(d->result(), QDialog::Accepted);
    EXPECT_EQ(userList(), "CLAYER LUPREC VIEWCTR");
}

TEST_F(SelectionDialog, MarkAllAndInvertSelectVariableRowsAndNeverHeaders) {
    auto d = open();
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdMarkAll), Qt::LeftButton);
    EXPECT_EQ(selectedRows(*d), "CLAYER LUPREC OSMODE VIEWCTR");

    d->listView().clearSelection();
    selectRows(*d, {"L", "CLAYER", "VIEWCTR"});
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdInvert), Qt::LeftButton);
    EXPECT_EQ(selectedRows(*d), "LUPREC OSMODE");
}

TEST_F(SelectionDialog, ContextMenuEntriesRunTheStepsOfTheButtons) {
    auto d = open();
    QAction* selectAll = d->findChild<QAction*>("8100");
    QAction* inverse = d->findChild<QAction*>("8101");
    ASSERT_TRUE(selectAll && inverse);
    selectRows(*d, {"L", "LUPREC", "OSMODE"});
    inverse->trigger();
    EXPECT_EQ(selectedRows(*d), "CLAYER VIEWCTR");
    selectAll->trigger();
    EXPECT_EQ(selectedRows(*d), "CLAYER LUPREC OSMODE VIEWCTR");
}

// The button row sits at the bottom, or below the list's least height when the dialog is low; OK,
// Cancel and Help go to the right edge when there is room and follow the icon buttons when not.
TEST_F(SelectionDialog, LaysOutTheListAndTheButtonRowAtEachSize) {
    auto d = open();
    auto* find = control<QPushButton>(*d, cDlgSlctSysVar::kIdFind);
    const int bw = find->width(), bh = find->height(); // the icon buttons are bh square
    const int wideEnough = 2 * (bh + 2 * bw) + 62;
    const QSize sizes[] = {{wideEnough + 40, 300}, {wideEnough, 300}, {wideEnough + 40, 3 * bh + 30}};
    for (const QSize& size : sizes) {
        SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()));
        d->resize(size);
        QCoreApplication::processEvents();
        ASSERT_EQ(d->size(), size);
        const int top = size.height() > 3 * bh + 30 ? size.height() - 10 - bh : 2 * bh + 20;
        EXPECT_EQ(d->listView().geometry(), QRect(10, 10, size.width() - 20, top - 20));
        EXPECT_EQ(find->geometry(), QRect(10, top, bw, bh));
        EXPECT_EQ(control<QPushButton>(*d, cDlgSlctSysVar::kIdMarkAll)->geometry(),
                  QRect(bw + 20, top, bh, bh));
        EXPECT_EQ(control<QPushButton>(*d, cDlgSlctSysVar::kIdInvert)->geometry(),
                  QRect(bw + bh + 24, top, bh, bh));
        const int okX = size.width() > wideEnough ? size.width() - 3 * bw - 30 : bw + 2 * bh + 34;
        const int right[] = {cDlgSlctSysVar::kIdOk, cDlgSlctSysVar::kIdCancel, cDlgSlctSysVar::kIdHelp};
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(control<QPushButton>(*d, right[i])->geometry(),
                      QRect(okX + i * (bw + 10), top, bw, bh));
    }
}

TEST_F(SelectionDialog, SearchStepsRefillTheListAndSelectTheHits) {
    auto d = open();
    selectRows(*d, {"VIEWCTR"}); // a selection by hand is gone after the first step
    std::vector<std::string> seen;
    user().modal = [&](QDialog& dialog) {
        dialog.show();
        EXPECT_NE(qobject_cast<DlgFind2*>(&dialog), nullptr);
        control<CEditEx>(dialog, DlgFind2::kIdPattern)->setText("p"); // LUPREC, then _PKSER
        for (auto [step, id] : {std::pair{"search", DlgFind2::kIdSearch}, {"next", DlgFind2::kIdNext}}) {
            QTest::mouseClick(control<QPushButton>(dialog, id), Qt::LeftButton);
            seen.push_back(std::string(step) + ": " + selectedRows(*d));
        }
        dialog.reject();
        return dialog.result();
    };
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdFind), Qt::LeftButton);
    // _PKSER has no row in the letter order: it selects nothing and keeps its flag.
    EXPECT_EQ(seen, (std::vector<std::string>{"search: LUPREC", "next: "}));
    EXPECT_TRUE(context->varList.findName("_PKSER")->isSelected());
    EXPECT_EQ(user().lines.front(), infoBox("2 " + gMsg.TxVarFound));
    EXPECT_TRUE(d->isVisible());
}
