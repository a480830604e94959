// The main window: drawing tabs follow the host's documents, and the command line's history.
#include "MainWindow.h"
#include "acdocman.h"
#include "CommandLinePane.h"
#include "DrawingView.h"
#include "hostsession.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace cadhost;

namespace {

void press(QWidget* w, int key, const QString& text = {}) {
    QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(w, &e);
}

void type(CommandInput& input, const QString& command) {
    input.setText(command);
    press(&input, Qt::Key_Return, "\r");
}

TEST(CommandInput, UpAndDownRecallEarlierCommands) {
    CommandInput input;
    QStringList entered;
    QObject::connect(&input, &CommandInput::commandEntered, [&](const QString& c) { entered << c; });
    type(input, " NEW ");
    type(input, "GETVAR LUPREC");
    type(input, "GETVAR LUPREC"); // a repeat joins the history once
    EXPECT_EQ(entered, (QStringList{"NEW", "GETVAR LUPREC", "GETVAR LUPREC"}));
    EXPECT_EQ(input.history(), (QStringList{"NEW", "GETVAR LUPREC"}));

    QStringList seen;
    for (int key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}) {
        press(&input, key);
        seen << input.text();
    }
    EXPECT_EQ(seen, (QStringList{"GETVAR LUPREC", "NEW", "NEW", "GETVAR LUPREC", "", ""}));
}

// A host with the variable table and a profile folder of its own, where the windows keep their places.
class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
        ASSERT_TRUE(host.loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
    }
    void TearDown() override {
        host.setOutput({});
        host.shutdown();
    }
    static void open(CommandInput& input, const std::string& sample) {
        type(input, "OPEN " + QString::fromStdString(samples + sample));
    }

    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    const QString settings = profile.filePath("cadhost.conf");
    static inline const std::string samples = std::string(VARDESK_SOURCE_DIR) + "/data/samples/";
};

TEST_F(MainWindowTest, TabsFollowTheDocumentsAndATabSwitchActivatesItsDrawing) {
    MainWindow window(host, settings);
    ASSERT_TRUE(host.openDocument(samples + "Werkhalle.dxf"));
    ASSERT_TRUE(host.openDocument(samples + "Lageplan.dxf"));
    window.refresh();
    auto* tabs = window.findChild<QTabBar*>();
    ASSERT_TRUE(tabs);
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(1), "Lageplan.dxf");
    EXPECT_EQ(tabs->currentIndex(), 1);
    tabs->setCurrentIndex(0);
    ASSERT_TRUE(host.currentDocument());
    EXPECT_EQ(std::filesystem::path(host.currentDocument()->fileName()).filename(), "Werkhalle.dxf");
    auto* input = window.findChild<CommandInput*>();
    ASSERT_TRUE(input);
    type(*input, "CLOSE");
    EXPECT_EQ(tabs->count(), 1);
}

TEST_F(MainWindowTest, TheCommandLineShowsTheCommandAndTheHostsAnswer) {
    MainWindow window(host, settings);
    host.setOutput([&](const std::string& t) { window.appendOutput(QString::fromStdString(t)); });
    auto* input = window.findChild<CommandInput*>();
    ASSERT_TRUE(input);
    open(*input, "Lageplan.dxf");
    type(*input, "GETVAR DWGNAME");
    const QString output = window.findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_TRUE(output.contains("Command: GETVAR DWGNAME\nDWGNAME = Lageplan.dxf")) << output.toStdString();
}

TEST_F(MainWindowTest, TheSizeIsRememberedForTheNextWindow) {
    {
        MainWindow window(host, settings);
        window.show();
        window.resize(812, 534);
        QApplication::processEvents();
        window.close();
    }
    EXPECT_EQ(MainWindow(host, settings).size(), QSize(812, 534));
}

// The view beside the variables follows the current drawing through tab switches, OPEN, NEW and
// CLOSE, and builds each drawing's scene once.
TEST_F(MainWindowTest, TheViewShowsTheCurrentDrawing) {
    MainWindow window(host, settings);
    auto* view = window.findChild<DrawingView*>();
    auto* tabs = window.findChild<QTabBar*>();
    auto* input = window.findChild<CommandInput*>();
    ASSERT_TRUE(view && tabs && input);
    window.refresh();
    EXPECT_FALSE(view->scene());
    open(*input, "Werkhalle.dxf");
    ASSERT_TRUE(view->scene());
    const ModelSpaceScene* werkhalle = view->scene();
    EXPECT_GT(werkhalle->polylines().size(), 50u);
    open(*input, "Schnitt.dxf");
    const ModelSpaceScene* schnitt = view->scene();
    EXPECT_NE(schnitt, werkhalle);
    EXPECT_NE(schnitt->extents().maxX, werkhalle->extents().maxX);
    tabs->setCurrentIndex(0);
    EXPECT_EQ(view->scene(), werkhalle);
    type(*input, "NEW");
    ASSERT_TRUE(view->scene());
    EXPECT_TRUE(view->scene()->isEmpty());
    type(*input, "CLOSE");
    EXPECT_EQ(view->scene(), schnitt); // the last drawing in the list becomes current
    tabs->setCurrentIndex(0);
    EXPECT_EQ(view->scene(), werkhalle);
    // CADHOST_SCREENSHOT=path saves what the window shows now.
    if (const char* path = std::getenv("CADHOST_SCREENSHOT")) {
        window.show();
        window.resize(1280, 800);
        QApplication::processEvents();
        window.grab().save(path);
    }
    for (int i = 0; i < 2; ++i)
        type(*input, "CLOSE");
    EXPECT_FALSE(view->scene());
}

TEST_F(MainWindowTest, WhatTheViewCannotDrawIsToldInTheStatusBar) {
    MainWindow window(host, settings);
    auto* view = window.findChild<DrawingView*>();
    auto* input = window.findChild<CommandInput*>();
    ASSERT_TRUE(view && input);
    const QString broken = profile.filePath("broken.dxf");
    std::ofstream(broken.toStdString()) << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n"
                                           "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nabc\n0\nENDSEC\n0\nEOF\n";
    type(*input, "OPEN " + broken);
    ASSERT_TRUE(view->scene());
    EXPECT_TRUE(view->scene()->isEmpty());
    EXPECT_TRUE(window.statusBar()->currentMessage().contains("cannot read (1)"))
        << window.statusBar()->currentMessage().toStdString();
}

TEST_F(MainWindowTest, TheSplitterPlaceIsRememberedForTheNextWindow) {
    QList<int> sizes;
    {
        MainWindow window(host, settings);
        window.show();
        window.resize(1280, 800);
        auto* splitter = window.findChild<QSplitter*>();
        ASSERT_TRUE(splitter);
        splitter->setSizes({300, 700});
        QApplication::processEvents();
        sizes = splitter->sizes();
        window.close();
    }
    MainWindow window(host, settings);
    window.show();
    QApplication::processEvents();
    EXPECT_EQ(window.findChild<QSplitter*>()->sizes(), sizes);
}

} // namespace
