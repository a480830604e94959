// Starting a program from a command line as the module builds it, with the result codes of the
// Windows program starter (see ExecResult in UiServices.h).
#pragma once
#include <string>
#include <vector>

namespace kova {

struct ProgramCall {
    std::string program; // as found: a name without "/" is looked up on PATH
    std::vector<std::string> arguments;
};

// Splits "program args..." into the program and its arguments. Arguments are separated by blanks;
// double quotes group blanks into one argument and are removed. A quoted program runs to its
// closing quote; an unquoted one with blanks in its path is found as the Windows starter finds
// it: the shortest prefix, ending before a blank, that names an existing file; when none exists,
// the text before the first quoted argument.
ProgramCall parseCommandLine(const std::string& commandLine);

// What starting call would give, without starting it: ExecResult::Started when the program is an
// executable file (a binary or a script with "#!"), FileNotFound when it does not exist,
// PathNotFound when its folder does not exist, BadFormat when it is no program.
int checkProgram(const ProgramCall& call);

// Checks and, when that passes, starts the program detached (it outlives the caller and is not
// waited for). A start that fails after the check passed can only lack resources: OutOfMemory.
int startProgramDetached(const std::string& commandLine);

} // namespace kova
