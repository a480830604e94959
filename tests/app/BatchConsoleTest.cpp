// The batch console against a real host: parsing of script lines and the stops for bad arguments.
// Refused values, unknown commands, window lines, their stops and the exit codes are run end to end
// by the scenarios (bad_setvar, script_errors, host_window*, ...).
#include "BatchConsole.h"
#include "hostsession.h"

#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace cadhost;

namespace {

// A console over the real host, printing into `text`; each run starts a fresh session.
class BatchConsoleTest : public ::testing::Test {
protected:
    void SetUp() override {
        host.setOutput([&](const std::string& t) { output.write(t); });
    }
    void TearDown() override {
        host.shutdown();
        host.setOutput({});
    }
    int run(const std::string& script) {
        host.shutdown();
        text.clear();
        EXPECT_TRUE(host.setProfileDir(profile.path().toStdString()) &&
                    host.loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
        console.setScript(script);
        return console.run();
    }

    HostSession& host = HostSession::instance();
    QTemporaryDir profile;
    std::string text;
    ConsoleOutput output{[&](const std::string& t) { text += t; }};
    BatchConsole console{host, output};
};

TEST_F(BatchConsoleTest, EchoesCommandsAndSkipsCommentsAndBlankLines) {
    EXPECT_EQ(run("; a comment\n\n  NEW  \r\nsetvar LUPREC 2\nGETVAR luprec\n"), BatchExit::Completed);
    EXPECT_EQ(text, "Command: NEW\nCommand: setvar LUPREC 2\nCommand: GETVAR luprec\nLUPREC = 2\n");
}

TEST_F(BatchConsoleTest, StopsAtBadArgumentsWithTheLineAndRunsNothingAfter) {
    const std::pair<const char*, const char*> cases[] = {
        {"NEW\n\nSETVAR LUPREC\nGETVAR LUPREC\n", "Script stopped at line 3: Usage: SETVAR name value"},
        {"NEW\nGETVAR LUPREC 2\n", "Script stopped at line 2: Usage: GETVAR name"},
        {"NEW\nSETVAR CLAYER \"open\nGETVAR LUPREC\n", "Script stopped at line 2: missing closing quote"}};
    for (const auto& [script, message] : cases) {
        EXPECT_EQ(run(script), BatchExit::Stopped) << script;
        EXPECT_NE(text.find(message), std::string::npos) << script << "\n" << text;
        EXPECT_EQ(text.find("LUPREC = "), std::string::npos) << script;
    }
}

// A folder, an endless device or a FIFO without a writer is unreadable (exit 3); the alarm ends a
// reader that would hang.
TEST_F(BatchConsoleTest, OnlyARegularFileIsAScript) {
    ASSERT_EQ(mkfifo((profile.path() + "/fifo.scr").toLocal8Bit().constData(), 0600), 0);
    for (const std::string& path : {std::string("/no/such/script.scr"), profile.path().toStdString(),
                                    std::string("/dev/zero"), profile.path().toStdString() + "/fifo.scr"}) {
        std::string error;
        alarm(10);
        EXPECT_FALSE(console.loadScript(path, error)) << path;
        alarm(0);
        EXPECT_EQ(error.find("Cannot read the script \"" + path + "\""), 0u) << error;
    }
}

} // namespace
