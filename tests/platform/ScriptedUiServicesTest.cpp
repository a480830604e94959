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

    std::vector<std::string> lines;
    std::vector<std::string> verbs;
    std::deque<std::string> answers;
};

class ScriptedUi : public ::testing::Test {
protected:
    FakeScriptHost host;
    ScriptedUiServices ui{host};
};

TEST_F(ScriptedUi, BoxAndAlertLinesNameKindTitleAndTextOnOneLine) {
    struct Row {
        BoxKind kind;
        const char* title;
        const char* text;
        const char* line;
    };
    const Row rows[] = {
        {BoxKind::Warning, "W", "a\nb", "BOX warning: W: a\\nb"},
        {BoxKind::Error, "E", "Hilfedatei\n\r    /x/VarDesk.html\n\rnicht gefunden",
         "BOX error: E: Hilfedatei\\n    /x/VarDesk.html\\nnicht gefunden"},
        {BoxKind::Error, "E", "trailing break\n\r", "BOX error: E: trailing break"},
    };
    for (const Row& row : rows) {
        host.lines.clear();
        EXPECT_EQ(ui.messageBox(row.kind, row.title, row.text, BoxButtons::Ok), BoxAnswer::Ok);
        ASSERT_EQ(host.lines.size(), 1u) << row.text;
        EXPECT_EQ(host.lines[0], row.line);
    }
    EXPECT_TRUE(host.verbs.empty()) << "an OK-only box takes no answer line";
    host.lines.clear();
    ui.alert("2 message texts not found\n");
    EXPECT_EQ(host.lines, std::vector<std::string>{"ALERT: 2 message texts not found"});
}

TEST_F(ScriptedUi, QuestionBoxTakesAndMapsTheAnswer) {
    struct Row {
        BoxButtons buttons;
        const char* answer;
        BoxAnswer expected;
    };
    const Row rows[] = {{BoxButtons::YesNo, "No", BoxAnswer::No},
                        {BoxButtons::YesNo, "ok", BoxAnswer::Yes},
                        {BoxButtons::YesNo, "maybe", BoxAnswer::No},
                        {BoxButtons::OkCancel, "yes", BoxAnswer::Ok},
                        {BoxButtons::OkCancel, "CANCEL", BoxAnswer::Cancel},
                        {BoxButtons::YesNoCancel, "no", BoxAnswer::No},
                        {BoxButtons::YesNoCancel, "", BoxAnswer::Cancel}};
    for (const Row& row : rows) {
        host.answers = {row.answer};
        host.verbs.clear();
        EXPECT_EQ(ui.messageBox(BoxKind::Question, "Q", "?", row.buttons), row.expected)
            << "answer '" << row.answer << "'";
        EXPECT_EQ(host.verbs, std::vector<std::string>{"answer"});
    }
}

TEST_F(ScriptedUi, FileDialogLineAndAnswers) {
    const std::string filter = "Liste (*.var)|*.var|Alle Dateien (*.*)|*.*||";
    struct Row {
        FileDialogKind kind;
        const char* answer;
        std::optional<std::string> expected;
    };
    const Row rows[] = {{FileDialogKind::Open, "/tmp/noext", "/tmp/noext"},
                        {FileDialogKind::Open, "", std::nullopt},
                        {FileDialogKind::Save, "/tmp/list.txt", "/tmp/list.txt"},
                        {FileDialogKind::Save, "/tmp/.hidden", "/tmp/.hidden.var"},
                        {FileDialogKind::Save, "\"/tmp/with blank\"", "/tmp/with blank.var"},
                        {FileDialogKind::Save, "Cancel", std::nullopt}};
    for (const Row& row : rows) {
        host.lines.clear();
        host.verbs.clear();
        host.answers = {row.answer};
        EXPECT_EQ(ui.fileDialog(row.kind, filter, "/home/u/unbenannt", "var"), row.expected)
            << "answer '" << row.answer << "'";
        EXPECT_EQ(host.verbs, std::vector<std::string>{"file"});
        ASSERT_EQ(host.lines.size(), 1u);
        EXPECT_EQ(host.lines[0], std::string("FILEDIALOG ") +
                                     (row.kind == FileDialogKind::Open ? "open" : "save") + ": " + filter +
                                     " | /home/u/unbenannt");
    }
}

TEST_F(ScriptedUi, ExecChecksWithoutStarting) {
    const fs::path dir = fs::temp_directory_path() / "scripted_exec_test";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path marker = dir / "started";
    const fs::path script = dir / "editor.sh";
    std::ofstream(script) << "#!/bin/sh\ntouch '" << marker.string() << "'\n";
    fs::permissions(script, fs::perms::owner_all);

    const std::string line = script.string() + " \"" + (dir / "VarDesk.err").string() + "\"";
    EXPECT_EQ(ui.startProgram(line), ExecResult::Started);
    EXPECT_EQ(ui.startProgram((dir / "none").string() + " \"x\""), ExecResult::FileNotFound);
    EXPECT_EQ(host.lines,
              (std::vector<std::string>{"EXEC: " + line, "EXEC: " + (dir / "none").string() + " \"x\""}));
    EXPECT_FALSE(fs::exists(marker)) << "a checked program is not started";
    fs::remove_all(dir);
}

TEST_F(ScriptedUi, HelpLineOnlyWhenItCanBeShown) {
    const fs::path file = fs::temp_directory_path() / "scripted_help_test.html";
    std::ofstream(file) << "<html></html>";
    EXPECT_TRUE(ui.loadHelpEngine());
    EXPECT_NE(ui.showHelp(file.string(), "main"), 0);
    EXPECT_NE(ui.showHelp(file.string(), ""), 0);
    EXPECT_EQ(ui.showHelp(file.string() + ".missing", "main"), 0);
    ui.setHelpEngineAvailable(false);
    EXPECT_FALSE(ui.loadHelpEngine());
    EXPECT_EQ(ui.showHelp(file.string(), "main"), 0);
    EXPECT_EQ(host.lines,
              (std::vector<std::string>{"HELP: " + file.string() + "#main", "HELP: " + file.string()}));
    fs::remove(file);
}

} // namespace
