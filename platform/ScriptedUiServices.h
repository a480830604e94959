// UI services for the batch console and the tests: every box, dialog and program start is
// printed as one line, and answers come from the script.
#pragma once
#include "UiServices.h"

#include <string>

namespace kova {

// What the batch console gives the scripted services: where lines go, and the script's answers.
class ScriptHost {
public:
    virtual ~ScriptHost() = default;
    // Prints one line of the console's output (no line end in text).
    virtual void printLine(const std::string& text) = 0;
    // The argument of the next window line, which must be "> <verb> ARG" (verb "answer" for boxes,
    // "file" for file dialogs). A script that has no such line next stops the batch run with a
    // clear message and a non-zero exit; this function then does not return.
    virtual std::string takeAnswer(const std::string& verb) = 0;
    // Runs the script's window lines against the open dialog until it closes; returns its result.
    virtual int driveModal(QDialog& dialog) = 0;
};

// The printed lines:
//   BOX <info|warning|error|question|plain>: <title>: <text>
//   ALERT: <text>
//   FILEDIALOG <open|save>: <filter> | <initial file>
//   EXEC: <command line>
//   HELP: <file>[#<topic>]
// Line feeds inside a title or text are printed as "\n", carriage returns are dropped (catalog
// texts break lines with a line feed and a carriage return), and breaks at the end are dropped.
//
// Answers, case ignored:
// - A box with only an OK button takes no answer line: there is nothing to decide, so a script
//   need not name it.
// - Other boxes take "> answer WORD". "yes" and "ok" both mean the box's positive button (Yes or
//   OK); "no" means No, or Cancel on an OK/Cancel box; "cancel" means Cancel, or No on a Yes/No
//   box. Any other word is taken as the box's way out (Cancel where there is one, else No), as
//   pressing Escape would: a wrong answer never stops the script.
// - A file dialog takes "> file PATH" (surrounding quotes removed) or "> file cancel"; an empty
//   path counts as cancel. A save dialog adds the default extension to a name that has none.
// - Without execForReal a program is checked (ExecResult codes) but not started; Started means
//   it would start.
// - showHelp prints its line only when the engine is available and the file exists; otherwise
//   it prints nothing and gives 0, as a help window that cannot open shows nothing.
class ScriptedUiServices : public UiServices {
public:
    explicit ScriptedUiServices(ScriptHost& host, bool execForReal = false);

    BoxAnswer messageBox(BoxKind kind, const std::string& title, const std::string& text,
                         BoxButtons buttons) override;
    void alert(const std::string& text) override;
    std::optional<std::string> fileDialog(FileDialogKind kind, const std::string& filter,
                                          const std::string& initialFile,
                                          const std::string& defaultExtension) override;
    int startProgram(const std::string& commandLine) override;
    bool loadHelpEngine() override;
    int showHelp(const std::string& file, const std::string& topic) override;
    int runModal(QDialog& dialog) override;
    bool isScripted() const override { return true; }

    // For tests: pretend the help engine is missing.
    void setHelpEngineAvailable(bool available) { m_helpAvailable = available; }

private:
    ScriptHost& m_host;
    bool m_execForReal;
    bool m_helpAvailable = true;
};

} // namespace kova
