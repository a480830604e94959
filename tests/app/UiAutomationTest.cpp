// Window lines against a small dialog. The dumps of the system's real dialogs (menus, tools, columns,
// rows with their colours) and the verbs text, select, cmd, key, move and resize on them are
// compared end to end by the dialog scenarios; here the quoting of texts, a screenshot, and the
// lines that stop a script.
#include "UiAutomation.h"
#include "TestDialog.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using cadhost::UiAutomation;

namespace {

class UiAutomationTest : public ::testing::Test {
protected:
    void SetUp() override {
        dialog.move(10, 20);
        dialog.resize(400, 500);
        dialog.show();
        QApplication::processEvents();
    }
    // Applies one window line given as its words; fails the test when it stops.
    void apply(const std::vector<std::string>& words) {
        auto outcome = UiAutomation::apply(dialog, words, [](const std::string&) {});
        ASSERT_TRUE(outcome.ok) << words[0] << ": " << outcome.message;
    }
    bool dumped(const std::string& line) {
        const auto lines = UiAutomation::dump(dialog);
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    TestDialog dialog;
};

TEST_F(UiAutomationTest, DumpQuotesTextsAndShowsStates) {
    const QRect frame = dialog.frameGeometry();
    EXPECT_EQ(UiAutomation::dump(dialog).front(),
              "WINDOW 1000 \"Variablen \\\"Werkhalle\\\"\" " + std::to_string(frame.x()) + " " +
                  std::to_string(frame.y()) + " " + std::to_string(frame.width()) + " " +
                  std::to_string(frame.height()));
    for (const char* line :
         {"FIELD 1002 \"C:\\\\pfad \\\"x\\\"\" readonly", "FIELD 1003 \"Beschreibung\" readonly",
          "STATUS \"Bereit\" \"3 Variablen\"", "TOOL 7003 disabled",
          "ROW 1004 1 2 - \"       ANGBASE\" \"0\" \"Real\" #FFFFC0 #000000 #FF0000 #000000"})
        EXPECT_TRUE(dumped(line)) << line;
    dialog.edit->setEnabled(false);
    EXPECT_TRUE(dumped("FIELD 1001 \"alt\" readonly")) << "a disabled field is read-only";
}

TEST_F(UiAutomationTest, ShotResizeMoveAndClose) {
    QTemporaryDir dir;
    const std::string path = QDir(dir.path()).filePath("fenster.png").toStdString();
    apply({"shot", path});
    EXPECT_EQ(QImage(QString::fromStdString(path)).size(), dialog.size());
    apply({"resize", "640", "480"});
    apply({"move", "30", "40"});
    EXPECT_EQ(dialog.frameGeometry(), QRect(30, 40, 640, 480));
    apply({"close"});
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST_F(UiAutomationTest, BadLinesStopWithReason) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"click", "9999"}, "no control 9999"},
        {{"cmd", "8099"}, "no command 8099"},
        {{"text", "1001"}, "usage"},
        {{"key", "1001", "F5"}, "unknown key"},
        {{"select", "1004", "#7"}, "no row #7"},
        {{"select", "1001", "x"}, "is no list"},
        {{"answer", "yes"}, "no message box"},
        {{"wave"}, "unknown window line"},
        {{"resize", "a", "b"}, "whole numbers"},
    };
    for (const auto& [words, reason] : cases) {
        auto outcome = UiAutomation::apply(dialog, words, [](const std::string&) {});
        EXPECT_FALSE(outcome.ok) << words[0];
        EXPECT_NE(outcome.message.find(reason), std::string::npos) << words[0] << ": " << outcome.message;
    }
    EXPECT_TRUE(dialog.isVisible());
}

} // namespace
