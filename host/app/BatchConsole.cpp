// The batch console: runs a script of command-line input against the host, and drives the
// windows the module opens by the script's window lines.
#include "BatchConsole.h"

#include "CommandWords.h"
#include "hostsession.h"
#include "UiAutomation.h"

#include <QCoreApplication>
#include <QDialog>
#include <QMenu>
#include <QPointer>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace cadhost {

namespace {

bool isWindowLine(const std::string& text) {
    return !text.empty() && text[0] == '>';
}

std::string windowName(const QDialog& dialog) {
    return "\"" + dialog.windowTitle().toStdString() + "\" (" +
           std::to_string(dialog.property("templateId").toInt()) + ")";
}

} // namespace

BatchConsole::BatchConsole(HostSession& host, ConsoleOutput& output)
    : m_host(host), m_output(output),
      m_commands(host, [this](const std::string& text) { m_output.line(text); }), m_abort([](int code) {
          std::fflush(stdout);
          std::fflush(stderr);
          std::_Exit(code);
      }) {
    UiAutomation::setPopupHandler([this](QMenu& menu) { drivePopup(menu); });
}

BatchConsole::~BatchConsole() {
    UiAutomation::setPopupHandler({});
}

bool BatchConsole::loadScript(const std::string& path, std::string& error) {
    return m_script.load(path, error);
}

void BatchConsole::setScript(const std::string& text) {
    m_script.setText(text);
}

bool BatchConsole::nextLine(Line& line) {
    if (!m_script.next(line))
        return false;
    m_lastLine = line.number;
    return true;
}

void BatchConsole::stop(int lineNumber, const std::string& why) {
    m_output.line("Script stopped at line " + std::to_string(lineNumber) + ": " + why);
}

void BatchConsole::abortRun(int lineNumber, const std::string& why) {
    stop(lineNumber, why);
    m_abort(BatchExit::Stopped);
    std::_Exit(BatchExit::Stopped); // a handler that returns still ends the run
}

void BatchConsole::printLine(const std::string& text) {
    m_output.line(text);
}

bool BatchConsole::runCommandLine(const Line& line) {
    std::vector<std::string> words;
    std::string error;
    if (!splitWords(line.text, words, error)) {
        stop(line.number, error);
        return false;
    }
    const CommandOutcome outcome = m_commands.execute(words);
    switch (outcome.status) {
    case CommandStatus::Done:
        return true;
    case CommandStatus::Refused:
        m_output.line(outcome.message);
        return true;
    case CommandStatus::NotACommand:
    case CommandStatus::BadArguments:
    case CommandStatus::Unreadable:
        stop(line.number, outcome.message);
        return false;
    }
    return false;
}

int BatchConsole::run() {
    Line line;
    while (nextLine(line)) {
        if (isWindowLine(line.text)) {
            m_output.line(line.text);
            stop(line.number, "no window is open");
            return BatchExit::Stopped;
        }
        m_output.line("Command: " + line.text);
        if (!runCommandLine(line))
            return BatchExit::Stopped;
    }
    return BatchExit::Completed;
}

std::string BatchConsole::takeAnswer(const std::string& verb) {
    Line line;
    if (!nextLine(line))
        abortRun(m_lastLine, "the script ended, but a " +
                                 std::string(verb == "file" ? "file dialog" : "message box") +
                                 " waits for \"> " + verb + "\"");
    m_output.line(line.text);
    std::vector<std::string> words;
    std::string error;
    if (!isWindowLine(line.text) || !splitWords(line.text.substr(1), words, error) || words.empty() ||
        !equalsIgnoringCase(words[0], verb))
        abortRun(line.number, "a " + std::string(verb == "file" ? "file dialog" : "message box") +
                                  " waits for \"> " + verb + " ...\"");
    if (words.size() != 2)
        abortRun(line.number,
                 verb == "file" ? "usage: > file PATH|cancel" : "usage: > answer yes|no|ok|cancel");
    if (verb == "answer") {
        const std::string a = upperCase(words[1]);
        if (a != "YES" && a != "NO" && a != "OK" && a != "CANCEL")
            abortRun(line.number, "usage: > answer yes|no|ok|cancel");
    }
    return words[1];
}

int BatchConsole::driveModal(QDialog& dialog) {
    QPointer<QDialog> guard(&dialog);
    dialog.setResult(0);
    dialog.show();
    QCoreApplication::processEvents();
    const std::string name = windowName(dialog);
    while (guard && dialog.isVisible()) {
        Line line;
        if (!nextLine(line))
            abortRun(m_lastLine, "the script ended while the window " + name + " is still open");
        m_output.line(line.text);
        if (!isWindowLine(line.text))
            abortRun(line.number, "the window " + name + " is open; a window line (>) must come");
        std::vector<std::string> words;
        std::string error;
        if (!splitWords(line.text.substr(1), words, error))
            abortRun(line.number, error);
        const UiAutomation::Outcome outcome =
            UiAutomation::apply(dialog, words, [this](const std::string& text) { m_output.line(text); });
        if (!outcome.ok)
            abortRun(line.number, outcome.message);
    }
    return guard ? dialog.result() : 0;
}

void BatchConsole::drivePopup(QMenu& menu) {
    QPointer<QMenu> guard(&menu);
    while (guard && menu.isVisible()) {
        Line line;
        if (!nextLine(line))
            abortRun(m_lastLine, "the script ended while a context menu is open");
        m_output.line(line.text);
        std::vector<std::string> words;
        std::string error;
        if (!isWindowLine(line.text) || !splitWords(line.text.substr(1), words, error) || words.empty())
            abortRun(line.number,
                     "a context menu is open: \"> cmd ID\" chooses an entry, \"> close\" closes it");
        const std::string verb = upperCase(words[0]);
        if (verb == "CLOSE" && words.size() == 1) {
            menu.close();
            continue;
        }
        bool isNumber = false;
        const int id = words.size() == 2 ? QString::fromStdString(words[1]).toInt(&isNumber) : 0;
        if (verb != "CMD" || !isNumber)
            abortRun(line.number,
                     "a context menu is open: \"> cmd ID\" chooses an entry, \"> close\" closes it");
        if (!UiAutomation::chooseMenuEntry(menu, id))
            abortRun(line.number, "the context menu has no entry " + words[1]);
    }
}

} // namespace cadhost
