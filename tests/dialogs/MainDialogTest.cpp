// Tests of the main dialog's frame, driven in an in-process host with scripted UI services.
#include "dialogs/main/cDlgVarDesk.h"
#include "dialogs/ModuleResources.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"

#include "platform/ScriptedUiServices.h"

#include <arxheaders.h>
#include <hostsession.h>

#include <gtest/gtest.h>

#include <QAction>
#include <QCoreApplication>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QTreeView>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>

namespace {

// Boxes are answered "no"; a modal run is handed to the test's drive function.
class FakeScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override { return "no"; }
    int driveModal(QDialog& dialog) override {
        ++modalRuns;
        if (drive)
            drive(dialog);
        return dialog.result();
    }
    std::vector<std::string> lines;
    std::function<void(QDialog&)> drive;
    int modalRuns = 0;
};

FakeScript& script() {
    static FakeScript instance;
    return instance;
}

kova::ScriptedUiServices& services() {
    static kova::ScriptedUiServices instance(script());
    return instance;
}

constexpr const char* kHostVariables = "LUPREC int 4 rw drawing range 0 8\n"
                                       "DIMDSEP string \",\" rw drawing\n"
                                       "CLAYER string \"0\" rw drawing nonempty\n"
                                       "OSMODE int 4133 rw global range 0 16383\n"
                                       "VIEWCTR point3 0,0,0 ro drawing\n";

constexpr const char* kAvlFile = "0#Einheiten#1\n"
                                 "0#Zeichnung#2\n"
                                 "1#LUPREC#++#Nachkommastellen der Längen\n"
                                 "1#DIMDSEP#++#Dezimaltrenner\n"
                                 "2#CLAYER#++#Aktueller Layer\n"
                                 "2#OSMODE#+-#Objektfang\n"
                                 "2#VIEWCTR#-+#Mitte der Ansicht\n";

class MainDialog : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/vardesk-dialogs-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        host.setUiServices(&services());
        host.setOutput([](const std::string&) {});
        ASSERT_TRUE(host.setProfileDir(folder.string()));
        write(folder / "hostvars.tsv", kHostVariables);
        write(folder / "VarDesk.avl", kAvlFile);
        ASSERT_TRUE(host.loadVariableTable((folder / "hostvars.tsv").string()));
        AcApDocument* doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
        gContext.userIniFile = (folder / "VarDesk.ini").string();
        context = std::make_unique<cDocCntx>(doc);
        context->drawingFileName = "Drawing1.dwg";
        context->avlFilePath = (folder / "VarDesk.avl").string();
        context->mainPosX = 20;
        context->mainPosY = 30;
        context->mainSizeX = 450;
        context->mainSizeY = 320;
        context->listCtrlFirstCol = 150;
        context->listCtrlSecCol = 100;
        context->listCtrlThirdCol = 100;
        script().lines.clear();
        script().drive = nullptr;
        script().modalRuns = 0;
    }

    void TearDown() override {
        context.reset();
        host.shutdown();
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    static void write(const std::filesystem::path& path, const char* text) { std::ofstream(path) << text; }

    // A dialog shown for the context: the start sequence has run.
    std::unique_ptr<cDlgVarDesk> open() {
        auto dialog = std::make_unique<cDlgVarDesk>(*context);
        dialog->show();
        QCoreApplication::processEvents();
        return dialog;
    }

    static std::string tool(cDlgVarDesk& d, int id) {
        QAction* a = d.toolAction(id);
        if (!a)
            return "missing";
        if (!a->isEnabled())
            return "disabled";
        if (a->property("indeterminate").toBool())
            return "indeterminate";
        return a->isChecked() ? "pressed" : "enabled";
    }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::filesystem::path folder;
    std::unique_ptr<cDocCntx> context;
};

// Edges of a control inside the client area, right and bottom exclusive.
struct Edges {
    int top, bottom, right;
};
Edges edges(const QWidget* w) {
    return {w->y(), w->y() + w->height(), w->x() + w->width()};
}

} // namespace

TEST_F(MainDialog, StartsWithTheLoadedListAndTheFrame) {
    auto d = open();
    EXPECT_EQ(d->runCode, 16);
    EXPECT_EQ(d->property("templateId").toInt(), 1000);
    EXPECT_EQ(d->windowTitle().toStdString(), gMsg.TiVarDesk + " - Drawing1.dwg");
    EXPECT_EQ(d->frameGeometry(), QRect(20, 30, 450, 320));
    auto* list = d->findChild<QTreeView*>("9002");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->model()->rowCount(), 10) << "five records under their letters";
    EXPECT_EQ(list->model()->index(1, 0).data().toString(), QString(14, ' ') + "CLAYER");
    EXPECT_EQ(list->model()->headerData(1, Qt::Horizontal).toString().toStdString(), gMsg.ClAcadValue);
    EXPECT_EQ(list->columnWidth(0), 150);
    EXPECT_TRUE(d->findChild<QLineEdit*>("9004")->isReadOnly()) << "no record is shown";
    EXPECT_FALSE(d->windowIcon().isNull());
    ASSERT_NE(d->contextMenu, nullptr);
    EXPECT_EQ(d->contextMenu->actions().size(), 6);
    EXPECT_EQ(d->menuAction(8027)->text().toStdString(), gMsg.MnNew);
}

TEST_F(MainDialog, LayoutKeepsMarginsAndGivesUpDescriptionLines) {
    auto d = open();
    QWidget* list = d->findChild<QWidget*>("9002");
    QWidget* description = d->findChild<QWidget*>("9003");
    QWidget* value = d->findChild<QWidget*>("9004");
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
        const QRect listBefore = list->geometry();
        d->resize(500, menu + fixed + c.listRoom);
        QCoreApplication::processEvents();
        EXPECT_EQ(d->visibleLines, c.lines) << c.name;
        const QRect client = d->clientArea()->rect();
        if (!c.moves) {
            EXPECT_EQ(list->geometry(), listBefore) << c.name << ": nothing moves";
            EXPECT_EQ(d->statusPane(2)->x() + d->statusPane(2)->width(), client.width()) << c.name;
            continue;
        }
        EXPECT_EQ(edges(list).top, d->toolBar->y() + d->toolBar->height() + 10) << c.name;
        EXPECT_EQ(edges(value).bottom, d->statusBar->y() - 10) << c.name;
        EXPECT_EQ(value->height(), H) << c.name << ": the value field keeps its height";
        EXPECT_EQ(edges(description).bottom, value->y() - 10) << c.name;
        EXPECT_EQ(description->height(), c.lines * H) << c.name;
        EXPECT_EQ(edges(list).bottom, description->y() - 10) << c.name;
        for (QWidget* w : {list, description, value})
            EXPECT_EQ(edges(w).right, client.width() - 10) << c.name << " " << w->objectName().toStdString();
    }
}

TEST_F(MainDialog, StatusBarHasThreeMeasuredPanes) {
    auto d = open();
    const QList<QLabel*> panes = d->statusBar->findChildren<QLabel*>(Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panes.size(), 3);
    const QFontMetrics m(d->statusBar->font());
    auto w = [&m](const std::string& t) { return m.horizontalAdvance(QString::fromStdString(t)); };
    EXPECT_EQ(panes[1]->width(), std::max(w(gMsg.StProtected), w(gMsg.StChangeable)));
    EXPECT_EQ(panes[2]->width(), std::max(w(gMsg.StDrawSpecific), w(gMsg.StGlobal)));
    EXPECT_EQ(panes[2]->x() + panes[2]->width(), d->statusBar->width());
    EXPECT_EQ(panes[0]->x(), 0);
    for (QLabel* pane : panes)
        EXPECT_TRUE(pane->text().isEmpty());

    cSysVar* osmode = context->varList.findName("OSMODE");
    ASSERT_NE(osmode, nullptr);
    d->ShowStatus(osmode);
    EXPECT_EQ(panes[0]->text(), "Zeichnung");
    EXPECT_EQ(panes[1]->text().toStdString(), gMsg.StChangeable);
    EXPECT_EQ(panes[2]->text().toStdString(), gMsg.StGlobal);
    EXPECT_EQ(panes[2]->toolTip(), panes[2]->text());
    d->ShowStatus(context->varList.findName("VIEWCTR"));
    EXPECT_EQ(panes[1]->text().toStdString(), gMsg.StProtected);
    EXPECT_EQ(panes[2]->text().toStdString(), gMsg.StDrawSpecific);
    d->ShowStatus(nullptr);
    EXPECT_TRUE(panes[1]->text().isEmpty());
}

TEST_F(MainDialog, MarksFollowViewOrderAndCompareMode) {
    const struct { int view, order, compare; } states[] = {{0, 0, 0}, {1, 2, 0}, {0, 3, 1}, {1, 1, 1}};
    for (const auto& s : states) {
        context->view = s.view;
        context->viewOrder = s.order;
        context->compareMode = s.compare;
        auto d = open();
        const std::string name = "view " + std::to_string(s.view) + " order " + std::to_string(s.order) +
                                 " compare " + std::to_string(s.compare);
        EXPECT_EQ(d->menuAction(8036)->isChecked(), s.view == 0) << name;
        EXPECT_EQ(d->menuAction(8037)->isChecked(), s.view == 1) << name;
        EXPECT_EQ(d->menuAction(8042)->isEnabled(), s.view == 1) << name;
        EXPECT_EQ(d->menuAction(8043)->isEnabled(), s.view == 1) << name;
        EXPECT_EQ(tool(*d, 7008), s.view == 0 ? "pressed" : "enabled") << name;
        EXPECT_EQ(tool(*d, 7009), s.view == 1 ? "pressed" : "enabled") << name;
        EXPECT_EQ(tool(*d, 7014), s.view == 0 ? "indeterminate" : "enabled") << name;
        EXPECT_EQ(tool(*d, 7015), s.view == 0 ? "indeterminate" : "enabled") << name;
        for (int n = 0; n < 4; ++n) {
            EXPECT_EQ(d->menuAction(8038 + n)->isChecked(), n == s.order) << name << " entry " << 8038 + n;
            EXPECT_EQ(tool(*d, 7010 + n), n == s.order ? "pressed" : "enabled")
                << name << " button " << 7010 + n;
        }
        EXPECT_EQ(d->menuAction(8046)->isChecked(), s.compare == 1) << name;
        EXPECT_EQ(tool(*d, 7018), s.compare == 1 ? "pressed" : "enabled") << name;
        const QImage shown = d->toolBarImages[18].pixmap(16, 16).toImage();
        EXPECT_EQ(shown, moduleIconPixmap(s.compare ? 1109 : 1075).toImage()) << name;
        const std::string title = d->windowTitle().toStdString();
        EXPECT_EQ(title.find("[") != std::string::npos, s.view == 1) << name << ": " << title;
        EXPECT_EQ(tool(*d, 7000), "enabled") << name;
    }
}

TEST_F(MainDialog, ToolBarHasItsButtonsSeparatorsAndTips) {
    auto d = open();
    const QList<QAction*> entries = d->toolBar->actions();
    ASSERT_EQ(entries.size(), 27);
    int separators = 0;
    for (QAction* a : entries)
        separators += a->isSeparator() ? 1 : 0;
    EXPECT_EQ(separators, 7);
    EXPECT_EQ(d->toolAction(7016)->toolTip().toStdString(), gMsg.MnSetAll);
    EXPECT_EQ(d->toolAction(7017)->toolTip().toStdString(), gMsg.MnSetSelection);
    const int posted[] = {8027, 8028, 8029, 8030, 8032, 8033, 8034, 8035, 8036, 8037,
                          8038, 8039, 8040, 8041, 8042, 8043, 8045, 8044, 8046, 8047};
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(cDlgVarDesk::commandOfButton(7000 + i), posted[i]) << "button " << 7000 + i;
    EXPECT_EQ(cDlgVarDesk::commandOfButton(6999), 0);
    EXPECT_EQ(cDlgVarDesk::commandOfButton(7020), 0);
}

TEST_F(MainDialog, ToolBarClickIsPostedAndKeepsTheStateOfTheContext) {
    auto d = open();
    d->toolAction(7012)->trigger();
    EXPECT_EQ(context->viewOrder, 0) << "the command waits for the click to end";
    EXPECT_EQ(tool(*d, 7012), "enabled");
    QCoreApplication::processEvents();
    EXPECT_EQ(context->viewOrder, 2);
    EXPECT_TRUE(d->menuAction(8040)->isChecked());
    EXPECT_EQ(tool(*d, 7012), "pressed");
    EXPECT_EQ(tool(*d, 7010), "enabled");

    d->toolAction(7012)->trigger(); // a pressed button stays pressed
    QCoreApplication::processEvents();
    EXPECT_EQ(tool(*d, 7012), "pressed");

    d->toolAction(7014)->trigger(); // indeterminate: no command
    QCoreApplication::processEvents();
    EXPECT_EQ(tool(*d, 7014), "indeterminate");

    d->toolAction(7009)->trigger();
    QCoreApplication::processEvents();
    EXPECT_EQ(context->view, 1);
    EXPECT_EQ(tool(*d, 7014), "enabled");
    EXPECT_TRUE(d->menuAction(8042)->isEnabled());
    EXPECT_NE(d->windowTitle().indexOf("["), -1);

    d->menuAction(8046)->trigger(); // the mark follows the context's compare mode
    EXPECT_EQ(context->compareMode, 1);
    EXPECT_TRUE(d->menuAction(8046)->isChecked());
}

TEST_F(MainDialog, EnterAndEscapeDoNotEndTheDialog) {
    auto d = open();
    QTest::keyClick(d.get(), Qt::Key_Escape);
    QTest::keyClick(d.get(), Qt::Key_Return);
    EXPECT_TRUE(d->isVisible());
    EXPECT_EQ(d->runCode, 16);
}

TEST_F(MainDialog, EndRunStoresGeometryWithClamps) {
    auto d = open();
    d->move(40, 50);
    d->resize(600, 400);
    auto* list = d->findChild<QTreeView*>("9002");
    list->setColumnWidth(0, 30);
    list->setColumnWidth(1, 10);
    list->setColumnWidth(2, 1500);
    context->varList.findName("LUPREC")->setSelected();
    d->close();
    EXPECT_FALSE(d->isVisible());
    EXPECT_EQ(d->runCode, 0);
    EXPECT_EQ(d->toolTips, nullptr);
    EXPECT_EQ(d->contextMenu, nullptr);
    EXPECT_EQ(QRect(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY),
              d->frameGeometry());
    EXPECT_EQ(context->listCtrlFirstCol, 30);
    EXPECT_EQ(context->listCtrlSecCol, 20);
    EXPECT_EQ(context->listCtrlThirdCol, 1200);
    EXPECT_FALSE(context->varList.findName("LUPREC")->isSelected());

    // A second end stores the same numbers and finds nothing to free.
    const QRect stored(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY);
    d->EndRun();
    EXPECT_EQ(QRect(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY), stored);

    // A column dragged to nothing, or hidden, keeps its stored width.
    context->listCtrlSecCol = 80;
    auto again = open();
    again->findChild<QTreeView*>("9002")->setColumnWidth(1, 0);
    again->findChild<QTreeView*>("9002")->setColumnHidden(2, true);
    again->EndRun();
    EXPECT_EQ(context->listCtrlSecCol, 80);
    EXPECT_EQ(context->listCtrlThirdCol, 1200);
}

TEST_F(MainDialog, NextRunOpensWhereTheLastEnded) {
    {
        auto d = open();
        d->move(70, 80);
        d->resize(520, 360);
        d->findChild<QTreeView*>("9002")->setColumnWidth(0, 30);
        d->EndRun();
        EXPECT_EQ(QRect(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY),
                  d->frameGeometry());
    }
    const QRect stored(context->mainPosX, context->mainPosY, context->mainSizeX, context->mainSizeY);
    EXPECT_EQ(stored.topLeft(), QPoint(70, 80));
    const cSysVar* first = context->varList.first;
    auto d = open();
    EXPECT_EQ(d->frameGeometry(), stored);
    EXPECT_EQ(d->findChild<QTreeView*>("9002")->columnWidth(0), 46) << "column 0 opens at least 46 wide";
    EXPECT_EQ(context->varList.first, first) << "the list was not read again";
    EXPECT_TRUE(script().lines.empty()) << "no box on a second run";
}

TEST_F(MainDialog, RunLoopRunsTheDialogUntilItEnds) {
    int shownWith = -1;
    script().drive = [&shownWith](QDialog& dialog) {
        dialog.show();
        shownWith = dialog.property("templateId").toInt();
        QCoreApplication::processEvents();
        dialog.close();
    };
    context->mainPosX = -5;
    runMainDialog(*context);
    EXPECT_EQ(script().modalRuns, 1);
    EXPECT_EQ(shownWith, 1000);
    EXPECT_EQ(context->mainPosX, 0) << "placed on the screen and stored at the end";
    EXPECT_NE(context->varList.first, nullptr);
}

TEST_F(MainDialog, InfoCommandRunsTheInfoDialog) {
    auto d = open();
    std::string title, copyright;
    script().drive = [&](QDialog& info) {
        info.show();
        title = info.findChild<QLabel*>("1201")->text().toStdString();
        copyright = info.findChild<QLabel*>("1200")->text().toStdString();
        info.accept();
    };
    d->OnCommand(8048);
    EXPECT_EQ(title, gMsg.TiVarDesk);
    EXPECT_FALSE(copyright.empty());
    EXPECT_TRUE(d->isVisible());
}
