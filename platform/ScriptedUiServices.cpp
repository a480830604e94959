// Scripted UI services: each box, dialog and program start becomes one printed line.
#include "ScriptedUiServices.h"

#include "ProgramStart.h"

#include <QFileInfo>
#include <QString>

#include <algorithm>
#include <cctype>

namespace kova {
namespace {

const char* kindWord(BoxKind kind) {
    switch (kind) {
    case BoxKind::Info:
        return "info";
    case BoxKind::Warning:
        return "warning";
    case BoxKind::Error:
        return "error";
    case BoxKind::Question:
        return "question";
    case BoxKind::Plain:
        return "plain";
    }
    return "info";
}

// One printed line for a text that may hold line breaks: line feeds inside become "\n",
// carriage returns go, and breaks at the end are dropped.
std::string oneLine(const std::string& text) {
    std::size_t end = text.size();
    while (end > 0 && (text[end - 1] == '\n' || text[end - 1] == '\r'))
        --end;
    std::string result;
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '\n')
            result += "\\n";
        else if (text[i] != '\r')
            result += text[i];
    }
    return result;
}

std::string lowerTrimmed(const std::string& text) {
    std::string result;
    for (char c : text) {
        if (!std::isspace(static_cast<unsigned char>(c)))
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return result;
}

BoxAnswer mapAnswer(const std::string& answer, BoxButtons buttons) {
    const std::string word = lowerTrimmed(answer);
    const bool positive = word == "yes" || word == "ok";
    const bool negative = word == "no";
    switch (buttons) {
    case BoxButtons::Ok:
        return BoxAnswer::Ok;
    case BoxButtons::OkCancel:
        return positive ? BoxAnswer::Ok : BoxAnswer::Cancel;
    case BoxButtons::YesNo:
        return positive ? BoxAnswer::Yes : BoxAnswer::No;
    case BoxButtons::YesNoCancel:
        if (positive)
            return BoxAnswer::Yes;
        return negative ? BoxAnswer::No : BoxAnswer::Cancel;
    }
    return BoxAnswer::Cancel;
}

bool hasExtension(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    const std::size_t dot = path.find_last_of('.');
    return dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
}

} // namespace

ScriptedUiServices::ScriptedUiServices(ScriptHost& host, bool execForReal)
    : m_host(host), m_execForReal(execForReal) {}

BoxAnswer ScriptedUiServices::messageBox(BoxKind kind, const std::string& title, const std::string& text,
                                         BoxButtons buttons) {
    m_host.printLine(std::string("BOX ") + kindWord(kind) + ": " + oneLine(title) + ": " + oneLine(text));
    if (buttons == BoxButtons::Ok)
        return BoxAnswer::Ok;
    return mapAnswer(m_host.takeAnswer("answer"), buttons);
}

void ScriptedUiServices::alert(const std::string& text) {
    m_host.printLine("ALERT: " + oneLine(text));
}

std::optional<std::string> ScriptedUiServices::fileDialog(FileDialogKind kind, const std::string& filter,
                                                          const std::string& initialFile,
                                                          const std::string& defaultExtension) {
    m_host.printLine(std::string("FILEDIALOG ") + (kind == FileDialogKind::Open ? "open" : "save") + ": " +
                     filter + " | " + initialFile);
    std::string answer = m_host.takeAnswer("file");
    const auto first = answer.find_first_not_of(" \t");
    const auto last = answer.find_last_not_of(" \t");
    answer = first == std::string::npos ? std::string() : answer.substr(first, last - first + 1);
    if (answer.size() >= 2 && answer.front() == '"' && answer.back() == '"')
        answer = answer.substr(1, answer.size() - 2);
    if (answer.empty() || lowerTrimmed(answer) == "cancel")
        return std::nullopt;
    std::string extension = defaultExtension;
    extension.erase(0, extension.find_first_not_of('.'));
    if (kind == FileDialogKind::Save && !extension.empty() && !hasExtension(answer))
        answer += "." + extension;
    return answer;
}

int ScriptedUiServices::startProgram(const std::string& commandLine) {
    m_host.printLine("EXEC: " + commandLine);
    if (m_execForReal)
        return startProgramDetached(commandLine);
    return checkProgram(parseCommandLine(commandLine));
}

bool ScriptedUiServices::loadHelpEngine() {
    return m_helpAvailable;
}

int ScriptedUiServices::showHelp(const std::string& file, const std::string& topic) {
    if (!m_helpAvailable || !QFileInfo(QString::fromStdString(file)).isFile())
        return 0;
    m_host.printLine("HELP: " + file + (topic.empty() ? std::string() : "#" + topic));
    return 1;
}

int ScriptedUiServices::runModal(QDialog& dialog) {
    return m_host.driveModal(dialog);
}

} // namespace kova
