// The window-system services that the module and the host use for boxes, file dialogs, starting
// programs, help and modal runs; one implementation for people (Qt) and one for scripts.
#pragma once
#include <optional>
#include <string>

class QDialog;

namespace kova {

enum class BoxKind { Info, Warning, Error, Question, Plain }; // Plain: a box without an icon
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Cancel, Yes, No };
enum class FileDialogKind { Open, Save };

// Result codes of startProgram below 32 are failures, as the Windows program starter gives them.
namespace ExecResult {
constexpr int OutOfMemory = 0;
constexpr int FileNotFound = 2;
constexpr int PathNotFound = 3;
constexpr int BadFormat = 11;
constexpr int Started = 33; // any value above 31 means started
} // namespace ExecResult

class UiServices {
public:
    virtual ~UiServices() = default;

    // A modal message box owned by the window that asks. Text may hold line breaks.
    virtual BoxAnswer messageBox(BoxKind kind, const std::string& title, const std::string& text,
                                 BoxButtons buttons) = 0;
    // The host's alert box: one OK button, the host's title.
    virtual void alert(const std::string& text) = 0;
    // A file dialog. filter is "Description|*.ext|Description|*.*|" as the module builds it;
    // initialFile may hold a folder. Empty optional when the user cancels.
    virtual std::optional<std::string> fileDialog(FileDialogKind kind, const std::string& filter,
                                                  const std::string& initialFile,
                                                  const std::string& defaultExtension) = 0;
    // Starts a program: commandLine is the program path, a blank and its quoted arguments, as
    // the module builds it. Returns an ExecResult code.
    virtual int startProgram(const std::string& commandLine) = 0;
    // True when a help engine can be had; a module asks once and keeps the answer.
    virtual bool loadHelpEngine() = 0;
    // Shows the help file at the anchor topic (empty: its start). 0 on failure.
    virtual int showHelp(const std::string& file, const std::string& topic) = 0;
    // Runs a dialog modally and returns its result code. In batch mode the script's window lines
    // drive it until it closes.
    virtual int runModal(QDialog& dialog) = 0;
    // True in batch mode (offscreen, no person at the screen).
    virtual bool isScripted() const = 0;
};

} // namespace kova
