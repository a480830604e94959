// The batch console: runs a script of command-line input against the host, and drives the
// windows the module opens by the script's window lines.
#pragma once
#include "BatchScript.h"
#include "ConsoleOutput.h"
#include "HostCommands.h"
#include "ScriptedUiServices.h"

#include <functional>
#include <string>
#include <vector>

class QMenu;

namespace cadhost {

class HostSession;

// Exit codes of a batch run.
namespace BatchExit {
constexpr int Completed = 0;  // the script ran to its end
constexpr int Stopped = 2;    // a line stopped the script (message names the line)
constexpr int Unreadable = 3; // the script file cannot be read
} // namespace BatchExit

// The script: one command with its arguments a line, ';' starts a comment line, blank lines are
// skipped, lines starting with '>' act on the open window. Each line is echoed before its output:
// "Command: <line>" for commands, the line itself for window lines.
//
// A refused command prints the host's message and the script goes on. Stopping lines: no
// command, a bad argument count, an unclosed quote, a window line with no window open, a file
// that cannot be read (OPEN, APPLOAD), a window line that cannot be done, a window still open at
// the script's end. They print "Script stopped at line N: <why>".
class BatchConsole : public kova::ScriptHost {
public:
    BatchConsole(HostSession& host, ConsoleOutput& output);
    ~BatchConsole() override;

    // Reads the script file; false with a message when it cannot be read.
    bool loadScript(const std::string& path, std::string& error);
    // The script as text (for tests).
    void setScript(const std::string& text);

    // Runs the script to its end or to a stopping line; returns a BatchExit code.
    int run();

    // kova::ScriptHost
    void printLine(const std::string& text) override;
    std::string takeAnswer(const std::string& verb) override;
    int driveModal(QDialog& dialog) override;

    // How a stop inside a window or box run ends the process: the module's code is on the stack
    // then, so the run cannot unwind to run(). Default: flush output and _Exit(code).
    void setAbortHandler(std::function<void(int)> handler) { m_abort = std::move(handler); }

private:
    using Line = BatchScript::Line;
    // Next script line that is no comment or blank; false at the end.
    bool nextLine(Line& line);
    // Prints the stop message; at top level returns, inside a window run aborts.
    void stop(int lineNumber, const std::string& why);
    [[noreturn]] void abortRun(int lineNumber, const std::string& why);
    bool runCommandLine(const Line& line);
    // Takes the window lines that answer an open context menu.
    void drivePopup(QMenu& menu);

    HostSession& m_host;
    ConsoleOutput& m_output;
    HostCommands m_commands;
    BatchScript m_script;
    int m_lastLine = 0;
    std::function<void(int)> m_abort;
};

} // namespace cadhost
