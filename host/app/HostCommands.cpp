// The host's own commands of the command line, shared by the batch console and the main window.
#include "HostCommands.h"

#include "acdocman.h"
#include "CommandWords.h"
#include "hostsession.h"

namespace cadhost {

namespace {

struct CommandForm {
    const char* name;
    size_t minArgs;
    size_t maxArgs;
    const char* usage;
};

constexpr CommandForm kCommands[] = {
    {"NEW", 0, 1, "NEW [path]"},
    {"OPEN", 1, 1, "OPEN path"},
    {"SAVE", 0, 1, "SAVE [path]"},
    {"CLOSE", 0, 0, "CLOSE"},
    {"ACTIVATE", 1, 1, "ACTIVATE name"},
    {"SETVAR", 2, 2, "SETVAR name value"},
    {"GETVAR", 1, 1, "GETVAR name"},
    {"APPLOAD", 1, 1, "APPLOAD path"},
    {"DICT", 0, 0, "DICT"},
};

CommandOutcome refused(std::string message) {
    return {CommandStatus::Refused, std::move(message)};
}

CommandOutcome fromResult(const HostResult& result) {
    if (result)
        return {};
    return refused(result.message);
}

} // namespace

HostCommands::HostCommands(HostSession& host, PrintLine printLine)
    : m_host(host), m_print(std::move(printLine)) {}

const std::vector<std::string>& HostCommands::hostCommandNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> out;
        for (const auto& c : kCommands)
            out.emplace_back(c.name);
        return out;
    }();
    return names;
}

CommandOutcome HostCommands::execute(const std::vector<std::string>& words) {
    if (words.empty())
        return {};
    const std::string name = upperCase(words[0]);
    const size_t argc = words.size() - 1;
    auto arg = [&](size_t i) { return i < argc ? words[i + 1] : std::string(); };

    const CommandForm* form = nullptr;
    for (const auto& c : kCommands)
        if (name == c.name)
            form = &c;
    if (!form) {
        std::string bare = name.rfind("C:", 0) == 0 ? name.substr(2) : name;
        if (!m_host.isCommand(bare))
            return {CommandStatus::NotACommand, "Unknown command \"" + words[0] + "\"."};
        if (argc != 0)
            return {CommandStatus::BadArguments, "Usage: " + bare + " (no arguments)"};
        return fromResult(m_host.runCommand(bare));
    }
    if (argc < form->minArgs || argc > form->maxArgs)
        return {CommandStatus::BadArguments, std::string("Usage: ") + form->usage};

    if (name == "NEW") {
        if (!m_host.newDocument(arg(0)))
            return refused("Cannot create a new drawing.");
        return {};
    }
    if (name == "OPEN") {
        std::string message;
        if (!m_host.openDocument(arg(0), &message))
            return {CommandStatus::Unreadable, message.empty() ? "Cannot open \"" + arg(0) + "\"." : message};
        return {};
    }
    if (name == "SAVE") {
        AcApDocument* doc = m_host.currentDocument();
        if (!doc)
            return refused("No drawing is open.");
        return fromResult(m_host.saveDocument(doc, arg(0)));
    }
    if (name == "CLOSE") {
        AcApDocument* doc = m_host.currentDocument();
        if (!doc)
            return refused("No drawing is open.");
        return fromResult(m_host.closeDocument(doc));
    }
    if (name == "ACTIVATE") {
        AcApDocument* doc = m_host.findDocument(arg(0));
        if (!doc)
            return refused("No open drawing \"" + arg(0) + "\".");
        return fromResult(m_host.activateDocument(doc));
    }
    if (name == "SETVAR")
        return fromResult(m_host.setVariableText(arg(0), arg(1)));
    if (name == "GETVAR") {
        std::string text;
        HostResult result = m_host.variableText(arg(0), text);
        if (!result)
            return refused(result.message);
        // The session may give the value alone or the whole "NAME = value" line.
        const std::string prefix = upperCase(arg(0)) + " = ";
        if (upperCase(text.substr(0, prefix.size())) == prefix)
            m_print(text);
        else
            m_print(upperCase(arg(0)) + " = " + text);
        return {};
    }
    if (name == "APPLOAD") {
        HostResult result = m_host.loadModule(arg(0));
        if (!result)
            return {CommandStatus::Unreadable, result.message};
        return {};
    }
    // DICT
    std::vector<std::string> lines;
    HostResult result = m_host.namedObjectsListing(lines);
    if (!result)
        return refused(result.message);
    for (const auto& line : lines)
        m_print(line);
    return {};
}

} // namespace cadhost
