// The host's own commands of the command line, shared by the batch console and the main window.
#pragma once
#include <functional>
#include <string>
#include <vector>

namespace cadhost {

class HostSession;

enum class CommandStatus {
    Done,         // the command ran
    Refused,      // the host refused it; message says why, and input goes on
    NotACommand,  // neither a host command nor one a module defined
    BadArguments, // wrong number of arguments; message gives the usage
    Unreadable,   // a file named by the command cannot be read (OPEN, APPLOAD)
};

struct CommandOutcome {
    CommandStatus status = CommandStatus::Done;
    std::string message;
};

// Runs one command line, already split into words (command name first, case ignored):
//   NEW [path]  OPEN path  SAVE [path]  CLOSE  ACTIVATE name  SETVAR name value  GETVAR name
//   APPLOAD path  DICT  and every command a module defined for the current drawing.
// What a command shows goes to printLine, one line per call; failures are only reported in
// the outcome, so the caller decides whether input goes on.
class HostCommands {
public:
    using PrintLine = std::function<void(const std::string&)>;
    HostCommands(HostSession& host, PrintLine printLine);

    CommandOutcome execute(const std::vector<std::string>& words);

    // The host's own command names, upper case.
    static const std::vector<std::string>& hostCommandNames();

private:
    HostSession& m_host;
    PrintLine m_print;
};

} // namespace cadhost
