// Tests of the scripted UI services: the exact printed lines and how script answers are taken.
#include "ScriptedUiServices.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using namespace kova;
using Lines = std::vector<std::string>;

namespace {

class FakeScriptHost : public ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string& verb) override {
        verbs.push_back(verb);
        if (answers.empty()) {
            ADD_FAILURE() << "no answer left for verb " << verb;
            return {};
        }
        std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }
    int driveModal(QDialog&) override { return 0; }

    Lines lines, verbs;
    std::deque<std::string> answers;
};

class ScriptedUi : public ::testing::Test {
protected:
    FakeScriptHost host;
    ScriptedUiServices ui{host};
};

TEST_F(ScriptedUi, BoxesPrintOneLineAndTakeNoAnswer) {
    ui.messageBox(BoxKind::Warning, "W", "a\nb", BoxButtons::Ok);
    ui.messageBox(BoxKind::Error, "E", "Hilfedatei\n\r    /x/VarDesk.html\n\rnicht gefunden\n\r",
                  BoxButtons::Ok);
    ui.alert("2 message texts not found\n");
    ui.messageBox(BoxKind::Plain, "P", "no icon", BoxButtons::Ok);
    EXPECT_EQ(host.lines, (Lines{"BOX warning: W: a\\nb",
                                 "BOX error: E: Hilfedatei\\n    /x/VarDesk.html\\nnicht gefunden",
                                 "ALERT: 2 message texts not found", "BOX plain: P: no icon"}));
    EXPECT_TRUE(host.verbs.empty()) << "an OK-only box takes no answer line";
}

TEST_F(ScriptedUi, QuestionsTakeAnAnswerAndAnUnknownOneIsTheSafeButton) {
    const std::tuple<BoxButtons, const char*, BoxAnswer> rows[] = {
        {BoxButtons::YesNo, "No", BoxAnswer::No},
        {BoxButtons::YesNo, "ok", BoxAnswer::Yes},
        {BoxButtons::YesNo, "maybe", BoxAnswer::No},
        {BoxButtons::OkCancel, "yes", BoxAnswer::Ok},
        {BoxButtons::OkCancel, "CANCEL", BoxAnswer::Cancel},
        {BoxButtons::YesNoCancel, "", BoxAnswer::Cancel}};
    for (const auto& [buttons, answer, expected] : rows) {
        host.answers = {answer};
        EXPECT_EQ(ui.messageBox(BoxKind::Question, "Q", "?", buttons), expected)
            << "answer '" << answer << "'";
    }
    EXPECT_EQ(host.verbs, Lines(std::size(rows), "answer"));
}

TEST_F(ScriptedUi, FileDialogPrintsOneLineAndASaveAddsTheExtension) {
    const std::string filter = "Liste (*.var)|*.var|Alle Dateien (*.*)|*.*||";
    const std::tuple<FileDialogKind, const char*, std::optional<std::string>> rows[] = {
        {FileDialogKind::Open, "/tmp/noext", "/tmp/noext"},
        {FileDialogKind::Open, "", std::nullopt},
        {FileDialogKind::Save, "/tmp/list.txt", "/tmp/list.txt"},
        {FileDialogKind::Save, "/tmp/.hidden", "/tmp/.hidden.var"},
        {FileDialogKind::Save, "\"/tmp/with blank\"", "/tmp/with blank.var"},
        {FileDialogKind::Save, "Cancel", std::nullopt}};
    for (const auto& [kind, answer, expected] : rows) {
        host.lines.clear();
        host.answers = {answer};
        EXPECT_EQ(ui.fileDialog(kind, filter, "/home/u/unbenannt", "var"), expected)
            << "answer '" << answer << "'";
        EXPECT_EQ(host.lines,
                  Lines{std::string("FILEDIALOG ") + (kind == FileDialogKind::Open ? "open" : "save") + ": " +
                        filter + " | /home/u/unbenannt"});
    }
    EXPECT_EQ(host.verbs, Lines(std::size(rows), "file"));
}

TEST_F(ScriptedUi, ExecChecksAndPrintsTheCommandLineWithoutStarting) {
    const fs::path dir = fs::temp_directory_path() / "scripted_ui_test";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path marker = dir / "started";
    const fs::path script = dir / "editor.sh";
    std::ofstream(script) << "#!/bin/sh\ntouch '" << marker.string() << "'\n";
    fs::permissions(script, fs::perms::owner_all);
    const std::string line = script.string() + " \"" + (dir / "VarDesk.err").string() + "\"";
    EXPECT_EQ(ui.startProgram(line), ExecResult::Started);
    EXPECT_EQ(ui.startProgram((dir / "none").string() + " \"x\""), ExecResult::FileNotFound);
    EXPECT_FALSE(fs::exists(marker)) << "a checked program is not started";
    EXPECT_EQ(host.lines, (Lines{"EXEC: " + line, "EXEC: " + (dir / "none").string() + " \"x\""}));
    fs::remove_all(dir);
}

TEST_F(ScriptedUi, HelpPrintsOnlyAPageThatCanBeShown) {
    const std::string help = (fs::temp_directory_path() / "scripted_ui_test.html").string();
    std::ofstream(help) << "<html></html>";
    EXPECT_TRUE(ui.loadHelpEngine());
    EXPECT_NE(ui.showHelp(help, "main"), 0);
    EXPECT_NE(ui.showHelp(help, ""), 0);
    EXPECT_EQ(ui.showHelp(help + ".missing", "main"), 0);
    ui.setHelpEngineAvailable(false);
    EXPECT_FALSE(ui.loadHelpEngine());
    EXPECT_EQ(ui.showHelp(help, "main"), 0);
    EXPECT_EQ(host.lines, (Lines{"HELP: " + help + "#main", "HELP: " + help}));
    fs::remove(help);
}

} // namespace
