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

// The tabs and the command line of one window; its place is remembered for the next.
TEST(MainWindow, TabsFollowDocumentsSwitchingActivatesAndThePlaceIsRemembered) {
    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
    ASSERT_TRUE(host.loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
    const std::string samples = std::string(VARDESK_SOURCE_DIR) + "/data/samples/";
    const QString settings = profile.filePath("cadhost.conf");
    {
        MainWindow window(host, settings);
        host.setOutput([&](const std::string& t) { window.appendOutput(QString::fromStdString(t)); });
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
        type(*input, "GETVAR DWGNAME");
        const QString output = window.findChild<QPlainTextEdit*>()->toPlainText();
        EXPECT_TRUE(output.contains("Command: GETVAR DWGNAME\nDWGNAME = Lageplan.dxf"))
            << output.toStdString();
        host.setOutput({});

        window.show();
        window.resize(812, 534);
        QApplication::processEvents();
        window.close();
    }
    EXPECT_EQ(MainWindow(host, settings).size(), QSize(812, 534));
    host.shutdown();
}

// The view beside the variables shows the current drawing and follows it through tab switches,
// OPEN, NEW and CLOSE; the splitter between them keeps its place.
TEST(MainWindow, TheViewShowsTheCurrentDrawing) {
    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
    ASSERT_TRUE(host.loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
    const std::string samples = std::string(VARDESK_SOURCE_DIR) + "/data/samples/";
    const QString settings = profile.filePath("cadhost.conf");
    QList<int> sizes;
    {
        MainWindow window(host, settings);
        auto* view = window.findChild<DrawingView*>();
        auto* tabs = window.findChild<QTabBar*>();
        auto* input = window.findChild<CommandInput*>();
        ASSERT_TRUE(view && tabs && input);
        window.refresh();
        EXPECT_FALSE(view->scene());
        type(*input, "OPEN " + QString::fromStdString(samples) + "Werkhalle.dxf");
        ASSERT_TRUE(view->scene());
        const ModelSpaceScene* werkhalle = view->scene();
        EXPECT_GT(werkhalle->polylines().size(), 50u);
        type(*input, "OPEN " + QString::fromStdString(samples) + "Schnitt.dxf");
        const ModelSpaceScene* schnitt = view->scene();
        EXPECT_NE(schnitt, werkhalle);
        EXPECT_NE(schnitt->extents().maxX, werkhalle->extents().maxX);
        tabs->setCurrentIndex(0);
        EXPECT_EQ(view->scene(), werkhalle); // built once per drawing
        type(*input, "NEW");
        ASSERT_TRUE(view->scene());
        EXPECT_TRUE(view->scene()->isEmpty());
        type(*input, "CLOSE");
        EXPECT_EQ(view->scene(), schnitt); // the last drawing in the list becomes current
        tabs->setCurrentIndex(0);
        EXPECT_EQ(view->scene(), werkhalle);
        window.show();
        window.resize(1280, 800);
        auto* splitter = window.findChild<QSplitter*>();
        ASSERT_TRUE(splitter);
        splitter->setSizes({300, 700});
        QApplication::processEvents();
        sizes = splitter->sizes();
        // CADHOST_SCREENSHOT=path saves what the window shows now.
        if (const char* path = std::getenv("CADHOST_SCREENSHOT"))
            window.grab().save(path);
        // What the view cannot draw it says in the status bar.
        const QString broken = profile.filePath("broken.dxf");
        std::ofstream(broken.toStdString())
            << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n"
               "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nabc\n0\nENDSEC\n0\nEOF\n";
        type(*input, "OPEN " + broken);
        ASSERT_TRUE(view->scene());
        EXPECT_TRUE(view->scene()->isEmpty());
        EXPECT_TRUE(window.statusBar()->currentMessage().contains("cannot read (1)"))
            << window.statusBar()->currentMessage().toStdString();
        for (int i = 0; i < 4; ++i)
            type(*input, "CLOSE");
        EXPECT_FALSE(view->scene());
        window.close();
    }
    {
        MainWindow window(host, settings);
        window.show();
        QApplication::processEvents();
        EXPECT_EQ(window.findChild<QSplitter*>()->sizes(), sizes);
    }
    host.shutdown();
}

} // namespace
