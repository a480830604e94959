// The window lines that stop a script, against a dialog of one field and one list. Dumps of the
// system's real dialogs, the verbs on them, nested windows, context menus and pictures are run
// end to end by the dialog and host_window* scenarios.
#include "UiAutomation.h"

#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using cadhost::UiAutomation;

namespace {

TEST(UiAutomation, BadLinesStopWithReasonAndLeaveTheWindowOpen) {
    QDialog dialog;
    auto* layout = new QVBoxLayout(&dialog);
    auto* edit = new QLineEdit("alt");
    edit->setObjectName("1001");
    layout->addWidget(edit);
    auto* list = new QListWidget;
    list->setObjectName("1004");
    list->addItem("LUPREC");
    layout->addWidget(list);
    dialog.show();

    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"click", "9999"}, "no control 9999"},
        {{"cmd", "8099"}, "no command 8099"},
        {{"text", "1001"}, "usage"},
        {{"key", "1001", "F5"}, "unknown key"},
        {{"select", "1004", "#1"}, "no row #1"},
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
    EXPECT_EQ(edit->text(), "alt");
}

// Each verb takes its own count of words; a wrong count stops with that verb's usage, whatever
// the case of the verb, and the window stays as it was.
TEST(UiAutomation, EveryVerbChecksItsWordCount) {
    QDialog dialog;
    auto* layout = new QVBoxLayout(&dialog);
    auto* list = new QListWidget;
    list->setObjectName("1004");
    layout->addWidget(list);
    dialog.show();
    const QRect before = dialog.geometry();

    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"cmd"}, "usage: > cmd ID"},
        {{"Click", "1004", "1"}, "usage: > click ID"},
        {{"rclick", "1004", "5"}, "usage: > rclick ID [X Y]"},
        {{"rclick", "1004", "1", "2", "3"}, "usage: > rclick ID [X Y]"},
        {{"key", "1004"}, "usage: > key ID KEY"},
        {{"select", "1004"}, "usage: > select ID ROW..."},
        {{"RESIZE", "300"}, "usage: > resize W H"},
        {{"move", "1", "2", "3"}, "usage: > move X Y"},
        {{"move", "1", "x"}, "move needs two whole numbers"},
        {{"width", "1004", "0"}, "usage: > width ID COLUMN PIXELS"},
        {{"dump", "all"}, "usage: > dump"},
        {{"shot"}, "usage: > shot PATH"},
        {{"close", "now"}, "usage: > close"},
        {{"file", "a.txt"}, "no file dialog"},
    };
    for (const auto& [words, reason] : cases) {
        auto outcome = UiAutomation::apply(dialog, words, [](const std::string&) {});
        EXPECT_FALSE(outcome.ok) << words[0];
        EXPECT_NE(outcome.message.find(reason), std::string::npos) << words[0] << ": " << outcome.message;
    }
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.geometry(), before);
}

} // namespace
