// The command line of cadhost and the start of the host: profile, variables, module, drawings.
#include "HostStartup.h"

#include "hostsession.h"

#include <cstdlib>
#include <filesystem>

namespace cadhost {

namespace fs = std::filesystem;

bool parseOptions(const std::vector<std::string>& args, Options& options, std::string& error) {
    options = Options();
    bool optionsEnded = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (optionsEnded || a.empty() || a[0] != '-' || a == "-") {
            options.drawings.push_back(a);
            continue;
        }
        auto value = [&](std::string& out) {
            if (i + 1 >= args.size() || args[i + 1].empty()) {
                error = "Option " + a + " needs a value.";
                return false;
            }
            out = args[++i];
            return true;
        };
        if (a == "--") {
            optionsEnded = true;
        } else if (a == "--batch") {
            if (!value(options.batchScript))
                return false;
        } else if (a == "--apply") {
            if (!value(options.applyList))
                return false;
        } else if (a == "--profile") {
            if (!value(options.profileDir))
                return false;
        } else if (a == "--exec") {
            options.execForReal = true;
        } else if (a == "--no-module") {
            options.noModule = true;
        } else if (a == "--help" || a == "-h") {
            options.help = true;
        } else {
            error = "Unknown option " + a + ".";
            return false;
        }
    }
    if (options.applyList.empty() || options.help)
        return true;
    if (!options.batchScript.empty()) {
        error = "--apply and --batch cannot go together.";
        return false;
    }
    if (options.drawings.empty()) {
        error = "--apply needs at least one drawing.";
        return false;
    }
    return true;
}

int usageExit(const std::vector<std::string>& args) {
    for (const auto& a : args) {
        if (a == "--")
            break;
        if (a == "--apply")
            return kApplyUsageExit;
    }
    return kUsageExit;
}

std::string usageText() {
    return "Usage: cadhost [--batch SCRIPT | --apply LIST] [--profile DIR] [--exec] [--no-module]\n"
           "               [drawing ...]\n"
           "  --batch SCRIPT  run SCRIPT as command-line input without a window, then exit\n"
           "                  (exit 0: ran to its end, 2: stopped by a line, 3: script unreadable)\n"
           "  --apply LIST    without a window: open each drawing, read the user list file LIST\n"
           "                  in VarDesk, set all its values, save; one line a drawing, then exit\n"
           "                  (exit 0: all saved, 1: some skipped, 2: stopped, 3: LIST unreadable)\n"
           "  --profile DIR   profile folder (ini file, error log, global variables)\n"
           "  --exec          in batch mode, start programs for real\n"
           "  --no-module     do not load the VarDesk module at start\n";
}

std::string defaultProfileDir() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg)
        return (fs::path(xdg) / "cadhost").string();
    const char* home = std::getenv("HOME");
    return (fs::path(home && *home ? home : ".") / ".config" / "cadhost").string();
}

std::string moduleDataDir(const std::string& exeDir) {
    return (fs::path(exeDir) / ".." / "share" / "vardesk").lexically_normal().string();
}

void startHost(HostSession& host, const Options& options, const std::string& dataDir,
               const std::function<void(const std::string&)>& note) {
    const std::string profile = options.profileDir.empty() ? defaultProfileDir() : options.profileDir;
    if (HostResult r = host.setProfileDir(profile); !r)
        note(r.message);

    const std::string table = (fs::path(dataDir) / "hostvars.tsv").string();
    std::error_code ec;
    if (!fs::exists(table, ec))
        note("The variable table \"" + table + "\" is missing; the host knows no variables.");
    else if (HostResult r = host.loadVariableTable(table); !r)
        note(r.message);

    host.setSupportPath({dataDir, profile});

    const std::string module = (fs::path(dataDir) / "VarDesk.so").string();
    if (options.noModule)
        note("The VarDesk module is not loaded (--no-module).");
    else if (!fs::exists(module, ec))
        note("The VarDesk module \"" + module + "\" is missing; the host runs without it.");
    else if (HostResult r = host.loadModule(module); !r)
        note(r.message);

    for (const auto& drawing : options.drawings) {
        std::string message;
        if (!host.openDocument(drawing, &message))
            note(message.empty() ? "Cannot open \"" + drawing + "\"." : message);
    }
}

} // namespace cadhost
