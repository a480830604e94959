// The --apply run: one user list file laid over many drawings through VarDesk's own dialog.
#include "ApplyRun.h"

#include "CommandWords.h"
#include "hostsession.h"
#include "UiAutomation.h"

#include <QCoreApplication>
#include <QDialog>
#include <QPointer>

#include <filesystem>
#include <fstream>
#include <functional>

namespace cadhost {

namespace {

namespace fs = std::filesystem;

// VarDesk as a user reaches it: its command, its main window and the ids the README names.
const char* const kCommand = "KOVA_VARDESK";
constexpr int kMainWindow = 1000;   // template id of the main dialog
constexpr int kShowUserList = 8037; // View > user list
constexpr int kOpenUserList = 8028; // File > Open
constexpr int kSetAll = 8045;       // Variable > Set all
constexpr int kVarList = 9002;      // the list of variables
constexpr size_t kNameColumn = 0;
constexpr size_t kCurrentColumn = 1;
constexpr size_t kNewColumn = 2;

// Scripted services that tell the run of each box before the base class prints and answers it.
class BoxWatchingServices : public kova::ScriptedUiServices {
public:
    using Watcher = std::function<void(kova::BoxKind, const std::string&, kova::BoxButtons)>;
    BoxWatchingServices(kova::ScriptHost& host, Watcher watcher)
        : ScriptedUiServices(host), m_watcher(std::move(watcher)) {}

    kova::BoxAnswer messageBox(kova::BoxKind kind, const std::string& title, const std::string& text,
                               kova::BoxButtons buttons) override {
        m_watcher(kind, text, buttons);
        return ScriptedUiServices::messageBox(kind, title, text, buttons);
    }

private:
    Watcher m_watcher;
};

// A box text on one line: line breaks become blanks, blanks at the ends go.
std::string flatText(const std::string& text) {
    std::string out;
    for (char c : text)
        out += (c == '\n' || c == '\r') ? ' ' : c;
    return trimmed(out);
}

std::string counted(int n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

} // namespace

ApplyRun::ApplyRun(HostSession& host, ConsoleOutput& output)
    : m_host(host), m_output(output),
      m_services(std::make_unique<BoxWatchingServices>(
          *this, [this](kova::BoxKind kind, const std::string& text, kova::BoxButtons buttons) {
              noteBox(kind, text, buttons);
          })) {
    m_host.setUiServices(m_services.get());
    m_host.setOutput([this](const std::string& text) { hostOutput(text); });
}

ApplyRun::~ApplyRun() {
    m_host.setOutput({});
    m_host.setUiServices(nullptr);
}

bool ApplyRun::setList(const std::string& path, std::string& error) {
    std::error_code ec;
    std::ifstream in(path, std::ios::binary);
    if (!fs::is_regular_file(path, ec) || !in) {
        error = "Cannot read the user list \"" + path + "\".";
        return false;
    }
    // The module gets the list through its file dialog, and the host's folder may differ from
    // the one the name was given in.
    m_list = fs::absolute(path, ec).lexically_normal().string();
    if (ec)
        m_list = path;
    return true;
}

int ApplyRun::run(const std::vector<std::string>& drawings) {
    for (const auto& drawing : drawings)
        if (!applyTo(drawing))
            return ApplyExit::Stopped;
    m_output.line("Summary: " + counted(m_totals.done, "drawing", "drawings") + " done, " +
                  std::to_string(m_totals.skipped) + " skipped; " + counted(m_totals.set, "value", "values") +
                  " set, " + std::to_string(m_totals.refused) + " refused.");
    return m_totals.skipped == 0 ? ApplyExit::AllDone : ApplyExit::SomeSkipped;
}

bool ApplyRun::applyTo(const std::string& drawing) {
    m_drawing = DrawingRun();
    m_hostLine.clear();
    m_phase = Phase::Starting;
    std::string message;
    AcApDocument* doc = m_host.openDocument(drawing, &message);
    if (!doc) {
        finishDrawing(drawing, message.empty() ? "Cannot open \"" + drawing + "\"." : message);
        return true;
    }
    if (!m_host.isCommand(kCommand)) {
        m_host.closeDocument(doc);
        m_phase = Phase::Outside;
        m_output.line("Stopped at " + drawing + ": the command " + kCommand +
                      " is not defined; is the VarDesk module loaded?");
        return false;
    }
    const HostResult ran = m_host.runCommand(kCommand);
    m_phase = Phase::Ending;
    std::string failure = m_drawing.failure;
    if (!ran)
        failure = ran.message;
    else if (failure.empty() && !m_drawing.windowShown)
        failure = "VarDesk did not show its window.";
    std::string skippedWhy;
    if (!failure.empty()) {
        skippedWhy = failure + " Not saved.";
    } else if (HostResult saved = m_host.saveDocument(doc); !saved) {
        skippedWhy = saved.message;
    }
    // Closing drops what a failed drawing got in memory; its file stays as it was.
    if (HostResult closed = m_host.closeDocument(doc); !closed)
        note(closed.message);
    finishDrawing(drawing, skippedWhy);
    return true;
}

void ApplyRun::finishDrawing(const std::string& drawing, const std::string& skippedWhy) {
    m_phase = Phase::Outside;
    if (!m_hostLine.empty())
        note(m_hostLine);
    m_hostLine.clear();
    if (!skippedWhy.empty()) {
        ++m_totals.skipped;
        m_output.line(drawing + ": skipped: " + skippedWhy);
    } else {
        ++m_totals.done;
        m_totals.set += m_drawing.set;
        m_totals.refused += int(m_drawing.refused.size());
        std::string line = drawing + ": " + m_drawing.report;
        for (size_t i = 0; i < m_drawing.refused.size(); ++i)
            line += (i == 0 ? " ; refused: " : ", ") + m_drawing.refused[i];
        m_output.line(line);
    }
    for (const auto& text : m_drawing.notes)
        if (m_shownNotes.insert(text).second)
            m_output.line("  " + text);
}

void ApplyRun::note(const std::string& text) {
    if (!text.empty())
        m_drawing.notes.push_back(text);
}

void ApplyRun::hostOutput(const std::string& text) {
    if (m_phase == Phase::Outside) {
        m_output.write(text);
        return;
    }
    m_hostLine += text;
    for (size_t end = m_hostLine.find('\n'); end != std::string::npos; end = m_hostLine.find('\n')) {
        note(trimmed(m_hostLine.substr(0, end)));
        m_hostLine.erase(0, end + 1);
    }
}

void ApplyRun::noteBox(kova::BoxKind kind, const std::string& text, kova::BoxButtons buttons) {
    const std::string flat = flatText(text);
    const bool question = buttons != kova::BoxButtons::Ok;
    m_answer = "no";
    if (m_phase == Phase::OpeningList && question) {
        m_answer = "yes"; // discard the user list the drawing has: the file's list replaces it
        return;
    }
    if (m_phase == Phase::OpeningList && kind == kova::BoxKind::Error) {
        if (m_drawing.failure.empty())
            m_drawing.failure = flat;
        return;
    }
    if (m_phase == Phase::Setting && kind == kova::BoxKind::Info && !question && !m_drawing.reported) {
        m_drawing.reported = true;
        m_drawing.report = flat;
        return;
    }
    note(question ? flat + " (answered No)" : flat);
}

void ApplyRun::printLine(const std::string& text) {
    // Boxes reach noteBox, and the list's file dialog is the run's own; the rest is worth a note.
    if (text.starts_with("BOX ") || text.starts_with("FILEDIALOG "))
        return;
    note(text);
}

std::string ApplyRun::takeAnswer(const std::string& verb) {
    if (verb != "file")
        return m_answer;
    if (m_phase == Phase::OpeningList && !m_drawing.fileAsked) {
        m_drawing.fileAsked = true;
        return m_list;
    }
    note("A file dialog was cancelled.");
    return "cancel";
}

bool ApplyRun::runStep(QDialog& dialog, Phase phase, int command) {
    QPointer<QDialog> guard(&dialog);
    m_phase = phase;
    const UiAutomation::Outcome outcome = UiAutomation::apply(
        dialog, {"cmd", std::to_string(command)}, [this](const std::string& text) { note(text); });
    if (!outcome.ok)
        m_drawing.failure = "VarDesk's window: " + outcome.message + ".";
    else if (!guard || !dialog.isVisible())
        m_drawing.failure = "VarDesk's window closed before its Set all.";
    return m_drawing.failure.empty();
}

void ApplyRun::readRows(QDialog& dialog) {
    std::set<std::string> seen;
    for (const auto& row : UiAutomation::listTexts(dialog, kVarList)) {
        if (row.size() <= kNewColumn || row[kNewColumn].empty())
            continue; // a header row, or a record without a new value
        const std::string name = trimmed(row[kNameColumn]);
        if (!seen.insert(name).second)
            continue; // an order may show a record under more than one heading
        if (row[kNewColumn] == row[kCurrentColumn])
            ++m_drawing.set;
        else
            m_drawing.refused.push_back(name);
    }
}

int ApplyRun::driveModal(QDialog& dialog) {
    QPointer<QDialog> guard(&dialog);
    dialog.setResult(0);
    if (m_phase != Phase::Starting || dialog.property("templateId").toInt() != kMainWindow) {
        note("The window \"" + dialog.windowTitle().toStdString() + "\" was closed unseen.");
        dialog.close();
        return guard ? dialog.result() : 0;
    }
    m_drawing.windowShown = true;
    // Nobody looks: the window is shown and laid out, but nothing is painted; what the run reads
    // of it comes from its model and its delegate, not from pixels.
    dialog.setUpdatesEnabled(false);
    dialog.show();
    QCoreApplication::processEvents();
    if (runStep(dialog, Phase::ShowingList, kShowUserList) &&
        runStep(dialog, Phase::OpeningList, kOpenUserList)) {
        if (!m_drawing.fileAsked && m_drawing.failure.empty())
            m_drawing.failure = "VarDesk did not ask for the user list file.";
        if (m_drawing.failure.empty() && runStep(dialog, Phase::Setting, kSetAll)) {
            if (!m_drawing.reported)
                m_drawing.failure = "VarDesk gave no report of its Set all.";
            else
                readRows(dialog);
        }
    }
    m_phase = Phase::Ending;
    if (guard && dialog.isVisible())
        UiAutomation::apply(dialog, {"close"}, [this](const std::string& text) { note(text); });
    return guard ? dialog.result() : 0;
}

} // namespace cadhost
