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
    void SetUp() override {
        HostTest::SetUp();
        if (HasFatalFailure())
            return;
        context->varList.themes.addTheme(1, "Einheiten");
        context->varList.themes.addTheme(2, "Zeichnung");
        // _PKSER begins with no letter "A" to "Z" and names no theme of the list.
        addRecord("9", "_PKSER", "+-", "\"123\"");
        addRecord("2", "CLAYER", "++", "\"0\"");
        addRecord("1", "LUPREC", "++", "4");
        addRecord("2", "OSMODE", "+-", "4133");
        addRecord("2", "VIEWCTR", "-+", "0 0 0");
        context->varList.findName("LUPREC")->setInUserList();
        context->viewOrder = 0;
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

    static VarListModel& model(cDlgSlctSysVar& d) { return *d.listCtrl->rowModel(); }

    // The rows as "text|column 1|image", one string each.
    static std::vector<std::string> rows(cDlgSlctSysVar& d) {
        std::vector<std::string> out;
        VarListModel& m = model(d);
        for (int row = 0; row < m.rowCount(); ++row)
            out.push_back(m.cellText(row, 0).toStdString() + "|" + m.cellText(row, 1).toStdString() + "|" +
                          std::to_string(m.data(m.index(row, 0), kRowImageRole).toInt()));
        return out;
    }

    // The trimmed column-0 texts of the selected rows, in row order, joined by blanks.
    static std::string selectedRows(cDlgSlctSysVar& d) {
        std::string out;
        VarListModel& m = model(d);
        for (int row = 0; row < m.rowCount(); ++row)
            if (d.listCtrl->selectionModel()->isSelected(m.index(row, 0)))
                out += (out.empty() ? "" : " ") + m.cellText(row, 0).trimmed().toStdString();
        return out;
    }

    static void selectRows(cDlgSlctSysVar& d, const std::vector<QString>& texts) {
        VarListModel& m = model(d);
        for (int row = 0; row < m.rowCount(); ++row)
            if (std::find(texts.begin(), texts.end(), m.cellText(row, 0).trimmed()) != texts.end())
                d.listCtrl->selectionModel()->select(m.index(row, 0),
                                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    std::string userList() {
        std::string out;
        for (const std::string& name : userListNames())
            out += (out.empty() ? "" : " ") + name;
        return out;
    }
};

std::string blanks(int n) {
    return std::string(n, ' ');
}

} // namespace

// The letter order with current values is in the scenario dialogs_remember.
// A record marked selected comes up selected when it has a row, and the mark is cleared.
TEST_F(SelectionDialog, ShowsEveryVariableInTheMainDialogsOrder) {
    context->viewOrder = 1;
    context->varList.findName("OSMODE")->setSelected();
    auto d = open();
    // Unknown themes gather under the default theme; the user list's LUPREC is not selected.
    EXPECT_EQ(rows(*d), (std::vector<std::string>{
                            blanks(7) + "Einheiten||5", blanks(14) + "LUPREC|4|0", blanks(7) + "Zeichnung||5",
                            blanks(14) + "CLAYER|\"0\"|0", blanks(14) + "OSMODE|4133|1",
                            blanks(14) + "VIEWCTR|0 0 0|0", blanks(7) + gMsg.TxDefaultTheme + "||5",
                            blanks(14) + "_PKSER|\"123\"|1"}));
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
        {2000, 2000, 1200, 1200, 300, 5, 300, 20},
        {5, 5, 46, 20, 30, 1500, 46, 1200},
        {150, 100, 150, 100, 0, 0, 150, 100}, // a width of 0 leaves the stored one alone
    };
    for (const Case& c : cases) {
        context->listCtrl2FirstCol = c.storedFirst;
        context->listCtrl2SecCol = c.storedSecond;
        auto d = open();
        const std::string name = std::to_string(c.storedFirst) + "/" + std::to_string(c.storedSecond);
        EXPECT_EQ(context->listCtrl2FirstCol, c.startFirst) << name;
        EXPECT_EQ(context->listCtrl2SecCol, c.startSecond) << name;
        EXPECT_EQ(d->listCtrl->columnWidth(0), c.startFirst) << name;
        EXPECT_EQ(d->listCtrl->columnWidth(1), c.startSecond) << name;
        d->listCtrl->setColumnWidth(0, c.endFirst);
        d->listCtrl->setColumnWidth(1, c.endSecond);
        d->reject();
        EXPECT_EQ(context->listCtrl2FirstCol, c.savedFirst) << name;
        EXPECT_EQ(context->listCtrl2SecCol, c.savedSecond) << name;
    }
}

TEST_F(SelectionDialog, OkOnlyAddsTheSelectedVariables) {
    struct Case {
        const char* way;
        std::vector<QString> selected;
        const char* userList;
        int result;
    } cases[] = {
        {"ok", {"C", "CLAYER", "VIEWCTR"}, "CLAYER LUPREC VIEWCTR", QDialog::Accepted}, // header ignored
        {"close", {"CLAYER", "OSMODE"}, "LUPREC", QDialog::Rejected},
    };
    for (const Case& c : cases) {
        for (cSysVar* r = context->varList.first; r; r = r->next)
            r->clearInUserList();
        context->varList.findName("LUPREC")->setInUserList();
        auto d = open();
        selectRows(*d, c.selected);
        const std::string way = c.way;
        if (way == "ok")
            QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdOk), Qt::LeftButton);
        else
            d->close();
        EXPECT_FALSE(d->isVisible()) << way;
        EXPECT_EQ(d->result(), c.result) << way;
        EXPECT_EQ(userList(), c.userList) << way << " with " << c.selected.size() << " rows";
        EXPECT_EQ(QRect(context->selectionPosX, context->selectionPosY, context->selectionSizeX,
                        context->selectionSizeY),
                  d->frameGeometry())
            << way;
        EXPECT_EQ(d->contextMenu, nullptr) << way;
    }
}

TEST_F(SelectionDialog, MarkAllAndInvertSelectVariableRowsAndNeverHeaders) {
    auto d = open();
    // Buttons and the context menu's entries run the same steps.
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdMarkAll), Qt::LeftButton);
    EXPECT_EQ(selectedRows(*d), "CLAYER LUPREC OSMODE VIEWCTR");

    d->listCtrl->clearSelection();
    selectRows(*d, {"L", "CLAYER", "VIEWCTR"});
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdInvert), Qt::LeftButton);
    EXPECT_EQ(selectedRows(*d), "LUPREC OSMODE");

    ASSERT_NE(d->contextMenu, nullptr);
    QAction* selectAll = d->contextMenu->findChild<QAction*>("8100");
    QAction* inverse = d->contextMenu->findChild<QAction*>("8101");
    ASSERT_NE(selectAll, nullptr);
    ASSERT_NE(inverse, nullptr);
    inverse->trigger();
    EXPECT_EQ(selectedRows(*d), "CLAYER VIEWCTR");
    selectAll->trigger();
    EXPECT_EQ(selectedRows(*d), "CLAYER LUPREC OSMODE VIEWCTR");
}

TEST_F(SelectionDialog, LaysOutTheListAndTheButtonRowAtEachSize) {
    auto d = open();
    auto* ok = control<QPushButton>(*d, cDlgSlctSysVar::kIdOk);
    auto* cancel = control<QPushButton>(*d, cDlgSlctSysVar::kIdCancel);
    auto* help = control<QPushButton>(*d, cDlgSlctSysVar::kIdHelp);
    auto* find = control<QPushButton>(*d, cDlgSlctSysVar::kIdFind);
    auto* markAll = control<QPushButton>(*d, cDlgSlctSysVar::kIdMarkAll);
    auto* invert = control<QPushButton>(*d, cDlgSlctSysVar::kIdInvert);
    const int bw = find->width();
    const int bh = find->height();
    const int iw = bh; // after the first layout the icon buttons are square
    const int wideEnough = 2 * (iw + 2 * bw) + 62;
    struct Case {
        const char* name;
        QSize client;
        bool wide;
        bool tall;
    } cases[] = {
        {"wide and tall", {wideEnough + 40, 300}, true, true},
        {"narrow", {wideEnough, 300}, false, true},
        {"low", {wideEnough + 40, 3 * bh + 30}, true, false},
    };
    for (const Case& c : cases) {
        d->resize(c.client);
        QCoreApplication::processEvents();
        const int cw = d->width();
        const int ch = d->height();
        ASSERT_EQ(QSize(cw, ch), c.client) << c.name;
        const int rowTop = c.tall ? ch - 10 - bh : 10 + 2 * bh + 10;
        EXPECT_EQ(d->listCtrl->geometry(), QRect(10, 10, cw - 20, rowTop - 20)) << c.name;
        EXPECT_EQ(find->geometry(), QRect(10, rowTop, bw, bh)) << c.name;
        EXPECT_EQ(markAll->geometry(), QRect(10 + bw + 10, rowTop, bh, bh)) << c.name;
        EXPECT_EQ(invert->geometry(), QRect(markAll->x() + bh + 4, rowTop, bh, bh)) << c.name;
        if (c.wide) {
            EXPECT_EQ(help->geometry(), QRect(cw - 10 - bw, rowTop, bw, bh)) << c.name;
            EXPECT_EQ(cancel->x() + bw, help->x() - 10) << c.name;
            EXPECT_EQ(ok->x() + bw, cancel->x() - 10) << c.name;
        } else {
            EXPECT_EQ(ok->geometry(), QRect(invert->x() + bh + 10, rowTop, bw, bh)) << c.name;
            EXPECT_EQ(cancel->x(), ok->x() + bw + 10) << c.name;
            EXPECT_EQ(help->x(), cancel->x() + bw + 10) << c.name;
        }
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
        for (auto [step, id] : {std::pair{"search", DlgFind2::kIdSearch},
                                {"next", DlgFind2::kIdNext},
                                {"next", DlgFind2::kIdNext},
                                {"all", DlgFind2::kIdAll}}) {
            QTest::mouseClick(control<QPushButton>(dialog, id), Qt::LeftButton);
            seen.push_back(std::string(step) + ": " + selectedRows(*d));
        }
        dialog.reject();
        return dialog.result();
    };
    QTest::mouseClick(control<QPushButton>(*d, cDlgSlctSysVar::kIdFind), Qt::LeftButton);
    // _PKSER has no row in the letter order: it selects nothing and keeps its flag.
    const std::vector<std::string> expected = {"search: LUPREC", "next: ", "next: LUPREC", "all: LUPREC"};
    EXPECT_EQ(seen, expected);
    EXPECT_TRUE(context->varList.findName("_PKSER")->isSelected());
    EXPECT_EQ(user().lines.front(), infoBox("2 " + gMsg.TxVarFound));
    EXPECT_EQ(context->searchPattern, "p");
    EXPECT_TRUE(d->isVisible());
    // OK adds what the search left selected.
    d->accept();
    EXPECT_EQ(userList(), "LUPREC");
}
