// The batch console against a real host: parsing of script lines, exit codes, DICT, window runs.
#include "BatchConsole.h"
#include "hostsession.h"
#include "TestDialog.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace cadhost;

namespace {

const std::string kTable = std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv";
const std::string kSamples = std::string(VARDESK_SOURCE_DIR) + "/data/samples";

class BatchConsoleTest : public ::testing::Test {
protected:
    // Tests of commands need the host's variable table; tests of window runs do not.
    virtual bool needsVariables() const { return true; }

    void SetUp() override {
        if (needsVariables() && !std::filesystem::exists(kTable))
            GTEST_SKIP() << "no variable table at " << kTable;
        ASSERT_TRUE(profile.isValid());
        host.setOutput([this](const std::string& t) { output.write(t); });
        ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
        if (needsVariables()) {
            ASSERT_TRUE(host.loadVariableTable(kTable));
        }
    }
    void TearDown() override {
        host.shutdown();
        host.setOutput({});
    }

    int run(const std::string& script) {
        console.setScript(script);
        return console.run();
    }
    bool printed(const std::string& line) const { return text.find(line + "\n") != std::string::npos; }

    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    std::string text;
    ConsoleOutput output{[this](const std::string& t) { text += t; }};
    BatchConsole console{host, output};
};

TEST_F(BatchConsoleTest, EchoesCommandsAndSkipsCommentsAndBlanks) {
    EXPECT_EQ(run("; a comment\n\n  NEW  \r\nsetvar LUPREC 2\nGETVAR luprec\n"), BatchExit::Completed);
    EXPECT_EQ(text, "Command: NEW\nCommand: setvar LUPREC 2\nCommand: GETVAR luprec\nLUPREC = 2\n");
}

TEST_F(BatchConsoleTest, RefusedCommandsPrintTheHostsMessageAndGoOn) {
    EXPECT_EQ(run("NEW\nSETVAR VIEWCTR 1,2,3\nSETVAR NOSUCHVAR 1\nSETVAR LUPREC 99\nGETVAR NOSUCHVAR\nGETVAR "
                  "LUPREC\n"),
              BatchExit::Completed);
    EXPECT_TRUE(printed("Variable VIEWCTR is read-only.")) << text;
    EXPECT_TRUE(printed("Unknown variable name: NOSUCHVAR")) << text;
    EXPECT_TRUE(printed("LUPREC = 4")) << "the refused value left the default: " << text;
}

TEST_F(BatchConsoleTest, StoppingLinesNameTheirLineNumber) {
    struct Case {
        const char* script;
        const char* message;
    };
    const Case cases[] = {
        {"NEW\n\nFROBNICATE\nGETVAR LUPREC\n", "Script stopped at line 3: Unknown command \"FROBNICATE\"."},
        {"NEW\nSETVAR LUPREC\n", "Script stopped at line 2: Usage: SETVAR name value"},
        {"NEW\nGETVAR LUPREC 2\n", "Script stopped at line 2: Usage: GETVAR name"},
        {"NEW\nSETVAR CLAYER \"open\n", "Script stopped at line 2: missing closing quote"},
        {"; start\n> dump\n", "Script stopped at line 2: no window is open"},
        {"OPEN /no/such/drawing.dwg\n", "Script stopped at line 1: "},
    };
    for (const auto& c : cases) {
        text.clear();
        host.shutdown();
        ASSERT_TRUE(host.setProfileDir(profile.path().toStdString()));
        ASSERT_TRUE(host.loadVariableTable(kTable));
        EXPECT_EQ(run(c.script), BatchExit::Stopped) << c.script;
        EXPECT_NE(text.find(c.message), std::string::npos) << c.script << "\n" << text;
        EXPECT_EQ(text.find("LUPREC = "), std::string::npos) << "nothing runs after the stop: " << c.script;
    }
}

TEST_F(BatchConsoleTest, QuotedArgumentsKeepBlanks) {
    EXPECT_EQ(run("NEW\nSETVAR CLAYER \"Achse \\\"B\\\"\"\nGETVAR CLAYER\n"), BatchExit::Completed);
    EXPECT_NE(text.find("CLAYER = "), std::string::npos);
    EXPECT_NE(text.find("Achse \"B\""), std::string::npos) << text;
}

TEST_F(BatchConsoleTest, UnreadableScriptAndDictWithoutDrawingAreReported) {
    std::string error;
    EXPECT_FALSE(console.loadScript("/no/such/script.scr", error));
    EXPECT_NE(error.find("/no/such/script.scr"), std::string::npos);
    EXPECT_EQ(run("DICT\n"), BatchExit::Completed);
    EXPECT_TRUE(printed("No drawing is open.")) << "DICT without a drawing is refused: " << text;
}

TEST_F(BatchConsoleTest, DictListsNestedXrecords) {
    EXPECT_EQ(run("OPEN \"" + kSamples + "/Werkhalle.dwg\"\nDICT\n"), BatchExit::Completed) << text;
    EXPECT_TRUE(printed("XRECORD KOVA_PROJEKT/KOPF")) << text;
    EXPECT_TRUE(printed("  1 Werkhalle Nord, Bauteil B")) << text;
    EXPECT_TRUE(printed("  70 3")) << text;
    EXPECT_TRUE(printed("  90 20240115")) << text;
    EXPECT_TRUE(printed("XRECORD KOVA_PROJEKT/MASSSTAB")) << text;
    EXPECT_EQ(text.find("ACAD_GROUP"), std::string::npos) << "an empty dictionary has no xrecord: " << text;
}

class BatchWindowTest : public BatchConsoleTest {
protected:
    bool needsVariables() const override { return false; }
};

TEST_F(BatchWindowTest, DriveModalRunsWindowLinesUntilClosed) {
    TestDialog dialog;
    console.setScript("> text 1001 \"neu\"\n; comment\n> cmd 7000\n> cmd 1\nGETVAR LUPREC\n");
    EXPECT_EQ(console.driveModal(dialog), QDialog::Accepted);
    EXPECT_EQ(dialog.edit->text().toStdString(), "neu");
    EXPECT_EQ(dialog.events, (std::vector<std::string>{"edited neu", "tool 0"}));
    EXPECT_EQ(text, "> text 1001 \"neu\"\n> cmd 7000\n> cmd 1\n");
}

TEST_F(BatchWindowTest, NestedWindowsAreDrivenInTurn) {
    TestDialog outer;
    TestDialog inner;
    int innerResult = -1;
    QObject::connect(outer.menuChecked, &QAction::triggered, &outer,
                     [&] { innerResult = console.driveModal(inner); });
    console.setScript("> cmd 8027\n> text 1001 \"innen\"\n> close\n> text 1001 \"aussen\"\n> cmd 1\n");
    EXPECT_EQ(console.driveModal(outer), QDialog::Accepted);
    EXPECT_EQ(innerResult, QDialog::Rejected);
    EXPECT_EQ(inner.edit->text().toStdString(), "innen");
    EXPECT_EQ(outer.edit->text().toStdString(), "aussen");
}

TEST_F(BatchWindowTest, ContextMenuEntryIsChosenOrClosed) {
    TestDialog dialog;
    console.setScript("> rclick 1004 20 20\n> cmd 8041\n> rclick 1004\n> close\n> cmd 2\n");
    EXPECT_EQ(console.driveModal(dialog), QDialog::Rejected);
    EXPECT_EQ(dialog.events, (std::vector<std::string>{"menu 8041", "menu none"}));
}

TEST_F(BatchWindowTest, TakeAnswerReturnsTheWord) {
    console.setScript("> answer Yes\n> file \"mein plan.var\"\n");
    EXPECT_EQ(console.takeAnswer("answer"), "Yes");
    EXPECT_EQ(console.takeAnswer("file"), "mein plan.var");
}

using BatchWindowDeathTest = BatchWindowTest;

TEST_F(BatchWindowDeathTest, WrongLinesWhileAWindowOrQuestionIsOpenStop) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TestDialog dialog;
    const char* windowScripts[] = {
        "> text 1001 \"x\"\n",         // window still open at the script's end
        "NEW\n",                       // a command line while the window is open
        "> rclick 1004\n> cmd 8099\n", // the context menu takes only its lines
        "> rclick 1004\n> text 1001 \"x\"\n",
        "> rclick 1004\n",
    };
    for (const char* s : windowScripts) {
        console.setScript(s);
        EXPECT_EXIT(console.driveModal(dialog), ::testing::ExitedWithCode(BatchExit::Stopped), "") << s;
    }
    for (const char* s : {"> file x.var\n", "> answer perhaps\n", "NEW\n", ""}) {
        console.setScript(s);
        EXPECT_EXIT(console.takeAnswer("answer"), ::testing::ExitedWithCode(BatchExit::Stopped), "") << s;
    }
}

} // namespace
