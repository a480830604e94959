// The main window: drawing tabs follow the host's documents, and the command line's history.
#include "MainWindow.h"
#include "acdocman.h"
#include "CommandLinePane.h"
#include "hostsession.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>

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

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
        ASSERT_TRUE(host.loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
    }
    void TearDown() override { host.shutdown(); }

    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
};

TEST_F(MainWindowTest, TabsFollowDocumentsAndSwitchingActivates) {
    const std::string samples = std::string(VARDESK_SOURCE_DIR) + "/data/samples/";
    MainWindow window(host, profile.filePath("cadhost.conf"));
    host.setOutput([&](const std::string& t) { window.appendOutput(QString::fromStdString(t)); });
    ASSERT_TRUE(host.openDocument(samples + "Werkhalle.dwg"));
    ASSERT_TRUE(host.openDocument(samples + "Lageplan.dwg"));
    window.refresh();
    auto* tabs = window.findChild<QTabBar*>();
    ASSERT_TRUE(tabs);
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(1), "Lageplan.dwg");
    EXPECT_EQ(tabs->currentIndex(), 1);

    tabs->setCurrentIndex(0);
    ASSERT_TRUE(host.currentDocument());
    EXPECT_EQ(std::filesystem::path(host.currentDocument()->fileName()).filename(), "Werkhalle.dwg");

    auto* input = window.findChild<CommandInput*>();
    ASSERT_TRUE(input);
    type(*input, "CLOSE");
    EXPECT_EQ(tabs->count(), 1);
    type(*input, "GETVAR DWGNAME");
    auto* output = window.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(output);
    EXPECT_TRUE(output->toPlainText().contains("Command: GETVAR DWGNAME\nDWGNAME = Lageplan.dwg"))
        << output->toPlainText().toStdString();
    host.setOutput({});
}

TEST_F(MainWindowTest, WindowPlaceIsRememberedInTheProfile) {
    const QString settings = profile.filePath("cadhost.conf");
    {
        MainWindow window(host, settings);
        window.show();
        window.resize(812, 534);
        QApplication::processEvents();
        window.close();
    }
    MainWindow again(host, settings);
    EXPECT_EQ(again.size(), QSize(812, 534));
}

} // namespace
