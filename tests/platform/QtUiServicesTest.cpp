// Tests of the Qt UI services' pure parts: program start result codes and filter translation.
#include "QtUiServices.h"
#include "ProgramStart.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;
using namespace kova;

namespace {

class StartProgram : public ::testing::Test {
protected:
    void SetUp() override {
        // One folder per test: ctest runs the tests of this fixture side by side.
        m_dir = fs::temp_directory_path() / (std::string("startprogram test ") +
                                             ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
    }
    void TearDown() override { fs::remove_all(m_dir); }

    std::string makeFile(const std::string& name, const std::string& content, bool executable) {
        const fs::path path = m_dir / name;
        std::ofstream(path, std::ios::binary) << content;
        fs::permissions(path,
                        executable ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write);
        return path.string();
    }

    fs::path m_dir;
};

TEST_F(StartProgram, ResultCodesTellWhyAProgramCannotStart) {
    const std::string script = makeFile("editor.sh", "#!/bin/sh\nexit 0\n", true);
    const std::string plain = makeFile("notes.sh", "#!/bin/sh\nexit 0\n", false);
    const std::string data = makeFile("data.bin", "just text, no program", true);
    struct Row {
        std::string commandLine;
        int expected;
    };
    const std::vector<Row> rows = {
        {"\"" + script + "\" \"/tmp/VarDesk.err\"", ExecResult::Started},
        {"sh \"-c\" \"exit 0\"", ExecResult::Started},
        {plain + " \"/tmp/VarDesk.err\"", ExecResult::BadFormat},
        {data + " \"/tmp/VarDesk.err\"", ExecResult::BadFormat},
        {(m_dir / "missing").string() + " \"x\"", ExecResult::FileNotFound},
        {(m_dir / "no folder" / "editor").string() + " \"x\"", ExecResult::PathNotFound},
        {"", ExecResult::FileNotFound},
    };
    QtUiServices ui;
    for (const Row& row : rows) {
        EXPECT_EQ(checkProgram(parseCommandLine(row.commandLine)), row.expected)
            << "command line: " << row.commandLine;
        if (row.expected != ExecResult::Started) {
            EXPECT_EQ(ui.startProgram(row.commandLine), row.expected) << "command line: " << row.commandLine;
        }
    }
}

TEST_F(StartProgram, StartsDetachedWithItsQuotedArgument) {
    const fs::path marker = m_dir / "log file.err.seen";
    const std::string script = makeFile("copy.sh", "#!/bin/sh\nprintf '%s' \"$1\" > \"$1.seen\"\n", true);
    const std::string argument = (m_dir / "log file.err").string();
    QtUiServices ui;
    ASSERT_EQ(ui.startProgram(script + " \"" + argument + "\""), ExecResult::Started);
    for (int i = 0; i < 200 && !fs::exists(marker); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream in(marker);
    std::string seen;
    std::getline(in, seen);
    EXPECT_EQ(seen, argument);
}

TEST(ParseCommandLine, SplitsProgramAndArguments) {
    const fs::path dir = fs::temp_directory_path() / "parse cmd test";
    fs::create_directories(dir);
    const std::string unquoted = (dir / "my editor").string(); // a program with blanks in its path
    std::ofstream(unquoted) << "#!/bin/sh\n";
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"\"/opt/my editor/ed\" \"/a b/c.err\" -x", {"/opt/my editor/ed", "/a b/c.err", "-x"}},
        {unquoted + " \"/x/y.err\"", {unquoted, "/x/y.err"}},
    };
    for (const auto& [line, expected] : cases) {
        const ProgramCall call = parseCommandLine(line);
        std::vector<std::string> words = {call.program};
        words.insert(words.end(), call.arguments.begin(), call.arguments.end());
        EXPECT_EQ(words, expected) << "command line: " << line;
    }
    fs::remove_all(dir);
}

TEST(QtUiServices, TranslatesTheModulesFilterAndShowsNoMissingHelpFile) {
    QtUiServices ui;
    EXPECT_EQ(ui.showHelp("/no/such/folder/VarDesk.html", "main"), 0);
    struct Row {
        const char* module;
        const char* qt;
    };
    const Row rows[] = {
        {"Benutzerdefinierte Variablenliste (*.var)|*.var|Alle Dateien (*.*)|*.*||",
         "Benutzerdefinierte Variablenliste (*.var);;Alle Dateien (*)"},
        {"Text|*.txt;*.log|", "Text (*.txt *.log)"},
        {"No pattern given|", ""},
        {"|*.var|", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(qtNameFilters(row.module).toStdString(), row.qt) << "filter " << row.module;
}

} // namespace
