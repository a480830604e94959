// The --apply run: one user list file laid over many drawings through VarDesk's own dialog.
#pragma once
#include "ConsoleOutput.h"
#include "ScriptedUiServices.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

class QDialog;

namespace cadhost {

class HostSession;

// Exit codes of an --apply run.
namespace ApplyExit {
constexpr int AllDone = 0;        // every drawing was opened, set and saved
constexpr int SomeSkipped = 1;    // at least one drawing could not be opened, set or saved
constexpr int Stopped = 2;        // the run could not start: a bad command line, no VarDesk command
constexpr int ListUnreadable = 3; // the user list file cannot be read
} // namespace ApplyExit

// For each drawing: open it, run KOVA_VARDESK and work its window as a batch script would
// (show the user list, open the list file, set all, close), save, close. The module is reached
// only through its command, the scripted UI services and the window automation.
//
// Printed, one line a drawing:
//   <drawing>: <the text of VarDesk's report box>[ ; refused: NAME, NAME ...]
//   <drawing>: skipped: <why>
// The refused names are the rows of the user list, after the set, whose new value differs from
// the drawing's. Then, indented by two blanks, what else the drawing gave to know (the host's
// refusals, a box other than the report), each text only the first time in the run. At the end:
//   Summary: N drawings done, M skipped; S values set, R refused.
//
// Boxes are answered without a person: the question whether to discard the user list (asked
// while the list file is opened) with Yes, every other question with No (so the error log of
// the load is not shown), a file dialog other than the one for the list with Cancel. A window
// other than VarDesk's main window is closed unseen. A drawing whose list cannot be read or
// whose set gives no report is closed without saving.
class ApplyRun : public kova::ScriptHost {
public:
    // Installs its UI services and output sink in host; the destructor takes them out.
    ApplyRun(HostSession& host, ConsoleOutput& output);
    ~ApplyRun() override;
    ApplyRun(const ApplyRun&) = delete;
    ApplyRun& operator=(const ApplyRun&) = delete;

    // The user list file; false with a message when it is no file that can be read.
    bool setList(const std::string& path, std::string& error);

    // Runs over the drawings (the host started, the list set); returns an ApplyExit code.
    int run(const std::vector<std::string>& drawings);

    struct Totals {
        int done = 0;
        int skipped = 0;
        int set = 0;     // rows of the user list that the drawing holds after the set
        int refused = 0; // rows whose value the drawing does not hold
    };
    const Totals& totals() const { return m_totals; }

    // kova::ScriptHost
    void printLine(const std::string& text) override;
    std::string takeAnswer(const std::string& verb) override;
    int driveModal(QDialog& dialog) override;

private:
    // Where the run is in one drawing: decides how boxes and file dialogs are answered.
    enum class Phase { Outside, Starting, ShowingList, OpeningList, Setting, Ending };

    // What happened to one drawing.
    struct DrawingRun {
        bool windowShown = false;
        bool fileAsked = false;
        bool reported = false;
        std::string report;
        std::string failure; // non-empty: the drawing is not saved
        std::vector<std::string> refused;
        int set = 0;
        std::vector<std::string> notes;
    };

    // False when the run must stop (the module's command is missing).
    bool applyTo(const std::string& drawing);
    void finishDrawing(const std::string& drawing, const std::string& skippedWhy);
    void noteBox(kova::BoxKind kind, const std::string& text, kova::BoxButtons buttons);
    void hostOutput(const std::string& text);
    void note(const std::string& text);
    // Runs one command of the window; false (with the failure set) when it cannot be done.
    bool runStep(QDialog& dialog, Phase phase, int command);
    void readRows(QDialog& dialog);

    HostSession& m_host;
    ConsoleOutput& m_output;
    std::unique_ptr<kova::ScriptedUiServices> m_services;
    std::string m_list;
    Phase m_phase = Phase::Outside;
    std::string m_answer;
    std::string m_hostLine; // host output of this drawing not yet ended by a line end
    DrawingRun m_drawing;
    std::set<std::string> m_shownNotes;
    Totals m_totals;
};

} // namespace cadhost
