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
        {{"click", "9999"}, "no control 9999"},  {{"cmd", "8099"}, "no command 8099"},
        {{"key", "1001", "F5"}, "unknown key"},  {{"select", "1004", "#1"}, "no row #1"},
        {{"select", "1001", "x"}, "is no list"}, {{"answer", "yes"}, "no message box"},
        {{"wave"}, "unknown window line"},       {{"resize", "a", "b"}, "whole numbers"},
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

    for (const QString line :
         {"cmd", "Click 1004 1", "rclick 1004 5", "rclick 1004 1 2 3", "key 1004", "select 1004",
          "RESIZE 300", "move 1 2 3", "dump all", "width 1004 0", "shot", "close now", "text 1004"}) {
        std::vector<std::string> words;
        for (const QString& word : line.split(' '))
            words.push_back(word.toStdString());
        auto outcome = UiAutomation::apply(dialog, words, [](const std::string&) {});
        const std::string usage = "usage: > " + line.section(' ', 0, 0).toLower().toStdString();
        EXPECT_FALSE(outcome.ok) << words[0];
        EXPECT_TRUE(outcome.message == usage || outcome.message.starts_with(usage + " "))
            << words[0] << ": " << outcome.message;
    }
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.geometry(), before);
}

} // namespace
