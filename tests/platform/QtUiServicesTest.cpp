// Tests of the Qt UI services' pure parts: program start result codes and filter translation.
#include "QtUiServices.h"
#include "ProgramStart.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <unistd.h>

namespace fs = std::filesystem;
using namespace kova;

namespace {

// A folder whose name holds blanks, with a script that writes its argument to "<argument>.seen".
class StartProgram : public ::testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(dir);
        fs::create_directories(dir);
        script = makeFile("copy.sh", "#!/bin/sh\nprintf '%s' \"$1\" > \"$1.seen\"\n", fs::perms::owner_all);
    }
    void TearDown() override { fs::remove_all(dir); }
    std::string makeFile(const std::string& name, const std::string& content, fs::perms perms) const {
        std::ofstream(dir / name, std::ios::binary) << content;
        fs::permissions(dir / name, perms);
        return (dir / name).string();
    }

    const fs::path dir = fs::temp_directory_path() / ("startprogram test " + std::to_string(getpid()));
    const std::string argument = (dir / "log file.err").string();
    std::string script;
};

// The unquoted rows also show the program found by its path with blanks in it.
TEST_F(StartProgram, ResultCodesTellWhyAProgramCannotStart) {
    const std::string plain =
        makeFile("notes.sh", "#!/bin/sh\n", fs::perms::owner_read | fs::perms::owner_write);
    const std::string data = makeFile("data.bin", "just text, no program", fs::perms::owner_all);
    const std::pair<std::string, int> rows[] = {
        {"\"" + script + "\" \"" + argument + "\"", ExecResult::Started},
        {"sh \"-c\" \"exit 0\"", ExecResult::Started},
        {plain + " \"/tmp/VarDesk.err\"", ExecResult::BadFormat},
        {data + " \"/tmp/VarDesk.err\"", ExecResult::BadFormat},
        {(dir / "missing").string() + " \"x\"", ExecResult::FileNotFound},
        {(dir / "no folder" / "editor").string() + " \"x\"", ExecResult::PathNotFound},
        {"", ExecResult::FileNotFound},
    };
    QtUiServices ui;
    for (const auto& [commandLine, expected] : rows) {
        EXPECT_EQ(checkProgram(parseCommandLine(commandLine)), expected) << "command line: " << commandLine;
        if (expected != ExecResult::Started) {
            EXPECT_EQ(ui.startProgram(commandLine), expected) << "command line: " << commandLine;
        }
    }
}

TEST_F(StartProgram, AStartedProgramGetsItsQuotedArgumentWhole) {
    QtUiServices ui;
    ASSERT_EQ(ui.startProgram("\"" + script + "\" \"" + argument + "\""), ExecResult::Started);
    const fs::path marker = argument + ".seen";
    for (int i = 0; i < 200 && !fs::exists(marker); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream in(marker);
    std::string seen;
    std::getline(in, seen);
    EXPECT_EQ(seen, argument) << "started detached";
}

TEST(QtUiServices, ShowsNoMissingHelpFile) {
    QtUiServices ui;
    EXPECT_EQ(ui.showHelp("/no/such/folder/VarDesk.html", "main"), 0);
}

TEST(QtUiServices, TranslatesTheModulesFilter) {
    const std::pair<const char*, const char*> rows[] = {
        {"Benutzerdefinierte Variablenliste (*.var)|*.var|Alle Dateien (*.*)|*.*||",
         "Benutzerdefinierte Variablenliste (*.var);;Alle Dateien (*)"},
        {"Text|*.txt;*.log|", "Text (*.txt *.log)"},
        {"No pattern given|", ""},
    };
    for (const auto& [module, qt] : rows)
        EXPECT_EQ(qtNameFilters(module).toStdString(), qt) << "filter " << module;
}

} // namespace
