// The command line of cadhost and the start of the host: profile, variables, module, drawings.
#pragma once
#include <functional>
#include <string>
#include <vector>

namespace cadhost {

class HostSession;

// cadhost [--batch SCRIPT | --apply LIST] [--profile DIR] [--exec] [--no-module] [drawing ...]
struct Options {
    std::string batchScript;  // empty: the main window for people
    std::string applyList;    // a user list file to lay over each drawing; empty: no such run
    std::string profileDir;   // empty: defaultProfileDir()
    bool execForReal = false; // batch mode: start programs for real
    bool noModule = false;    // do not load VarDesk.so at start
    bool help = false;
    std::vector<std::string> drawings;
};

// Exit code of a command line that cannot be understood.
constexpr int kUsageExit = 1;
// The same for a command line that asks for --apply, whose exit 1 means skipped drawings.
constexpr int kApplyUsageExit = 2;

// False with a message on an unknown option, a missing option value, --apply together with
// --batch, or --apply without a drawing. "--" ends the options.
bool parseOptions(const std::vector<std::string>& args, Options& options, std::string& error);
// kApplyUsageExit when args hold --apply before any "--", else kUsageExit.
int usageExit(const std::vector<std::string>& args);
std::string usageText();

// $XDG_CONFIG_HOME/cadhost, else $HOME/.config/cadhost.
std::string defaultProfileDir();

// The folder of the module and its data files for an executable in exeDir: exeDir/../share/vardesk.
std::string moduleDataDir(const std::string& exeDir);

// Starts the host as cadhost does: profile folder, variable table (dataDir/hostvars.tsv),
// support path, the module dataDir/VarDesk.so (unless noModule), then the drawings named on the
// command line. Nothing here is fatal: what fails is told through note and the start goes on.
void startHost(HostSession& host, const Options& options, const std::string& dataDir,
               const std::function<void(const std::string&)>& note);

} // namespace cadhost
