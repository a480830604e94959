// The batch console against a real host: parsing of script lines, stops, window runs and answers.
// Refused values, DICT, quoted arguments, unknown commands, a window line without a window and the
// exit codes are run end to end by the scenarios (bad_setvar, host_basics, script_errors, ...).
#include "BatchConsole.h"
#include "hostsession.h"
#include "TestDialog.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>

using namespace cadhost;

namespace {

const std::string kTable = std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv";

class BatchConsoleTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(profile.isValid());
        host.setOutput([this](const std::string& t) { output.write(t); });
        ASSERT_TRUE(restart());
    }
    void TearDown() override {
        host.shutdown();
        host.setOutput({});
    }
    bool restart() {
        host.shutdown();
        return host.setProfileDir(profile.path().toStdString()) && host.loadVariableTable(kTable);
    }
    int run(const std::string& script) {
        console.setScript(script);
        return console.run();
    }

    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    std::string text;
    ConsoleOutput output{[this](const std::string& t) { text += t; }};
    BatchConsole console{host, output};
};

TEST_F(BatchConsoleTest, EchoesCommandsAndSkipsCommentsBlanksAndLineEnds) {
    EXPECT_EQ(run("; a comment\n\n  NEW  \r\nsetvar LUPREC 2\nGETVAR luprec\n"), BatchExit::Completed);
    EXPECT_EQ(text, "Command: NEW\nCommand: setvar LUPREC 2\nCommand: GETVAR luprec\nLUPREC = 2\n");
}

TEST_F(BatchConsoleTest, BadArgumentsStopAtTheirLineAndAnUnreadableScriptIsNamed) {
    const std::pair<const char*, const char*> cases[] = {
        {"NEW\n\nSETVAR LUPREC\nGETVAR LUPREC\n", "Script stopped at line 3: Usage: SETVAR name value"},
        {"NEW\nGETVAR LUPREC 2\n", "Script stopped at line 2: Usage: GETVAR name"},
        {"NEW\nSETVAR CLAYER \"open\n", "Script stopped at line 2: missing closing quote"}};
    for (const auto& [script, message] : cases) {
        text.clear();
        ASSERT_TRUE(restart());
        EXPECT_EQ(run(script), BatchExit::Stopped) << script;
        EXPECT_NE(text.find(message), std::string::npos) << script << "\n" << text;
        EXPECT_EQ(text.find("LUPREC = "), std::string::npos) << "nothing runs after the stop: " << script;
    }
    std::string error;
    EXPECT_FALSE(console.loadScript("/no/such/script.scr", error));
    EXPECT_NE(error.find("/no/such/script.scr"), std::string::npos) << error;
}

TEST_F(BatchConsoleTest, WindowLinesDriveNestedWindowsAndContextMenusUntilClosed) {
    TestDialog outer;
    TestDialog inner;
    int innerResult = -1;
    QObject::connect(outer.menuChecked, &QAction::triggered, &outer,
                     [&] { innerResult = console.driveModal(inner); });
    console.setScript("> text 1001 \"neu\"\n; comment\n> cmd 7000\n"
                      "> cmd 8027\n> text 1001 \"innen\"\n> rclick 1004 20 20\n> cmd 8041\n> close\n"
                      "> rclick 1004\n> close\n> cmd 1\nGETVAR LUPREC\n");
    EXPECT_EQ(console.driveModal(outer), QDialog::Accepted);
    EXPECT_EQ(innerResult, QDialog::Rejected);
    EXPECT_EQ(outer.edit->text().toStdString(), "neu");
    EXPECT_EQ(inner.edit->text().toStdString(), "innen");
    EXPECT_EQ(outer.events, (std::vector<std::string>{"edited neu", "tool 0", "menu none"}));
    EXPECT_EQ(inner.events, (std::vector<std::string>{"edited innen", "menu 8041"}));
    EXPECT_EQ(text.find("comment"), std::string::npos);
    EXPECT_EQ(text.find("LUPREC"), std::string::npos) << "the command line waits for the windows to close";

    console.setScript("> answer Yes\n> file \"mein plan.var\"\n");
    EXPECT_EQ(console.takeAnswer("answer"), "Yes");
    EXPECT_EQ(console.takeAnswer("file"), "mein plan.var");
}

using BatchWindowDeathTest = BatchConsoleTest;

TEST_F(BatchWindowDeathTest, WrongLinesWhileAWindowOrQuestionIsOpenStop) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TestDialog dialog;
    const char* windowScripts[] = {
        "> text 1001 \"x\"\n",                // window still open at the script's end
        "NEW\n",                              // a command line while the window is open
        "> rclick 1004\n> text 1001 \"x\"\n", // the context menu takes only its lines
    };
    for (const char* s : windowScripts) {
        console.setScript(s);
        EXPECT_EXIT(console.driveModal(dialog), ::testing::ExitedWithCode(BatchExit::Stopped), "") << s;
    }
    for (const char* s : {"> file x.var\n", "> answer perhaps\n", ""}) {
        console.setScript(s);
        EXPECT_EXIT(console.takeAnswer("answer"), ::testing::ExitedWithCode(BatchExit::Stopped), "") << s;
    }
}

} // namespace
