// Tests of the load step and the error log: blocks, counts, the file, the question, the editor.
#include "../vars/VarsTestKit.h"

#include "dialogs/main/LoadStep.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"
#include "vars/ErrorLog.h"
#include "vars/TextHelpers.h"

#include <algorithm>
#include <memory>
#include <set>

namespace {

using filekit::hostNames;
using testhost::readFile;
using Lines = std::vector<std::string>;

class LoadStep : public filekit::VarsTest {
protected:
    void SetUp() override {
        VarsTest::SetUp();
        gContext.moduleBaseName = "VarDesk";
        gContext.userIniFile = dir() + "VarDesk.ini";
        context = std::make_unique<cDocCntx>(host.currentDocument());
        context->avlFilePath = dir() + "test.avl";
        context->editorPath = "/bin/true";
    }
    void TearDown() override {
        context.reset();
        VarsTest::TearDown();
    }

    // A description line for every host variable but those left out.
    static std::string describeHost(const std::set<std::string>& leftOut = {}) {
        std::string text;
        for (const std::string& name : hostNames())
            if (!leftOut.count(name))
                text += "1#" + name + "#+-#Beschreibung\n";
        return text;
    }
    void run() {
        runCode = RunCode::Idle;
        runLoadStep(*context, errorLines, runCode, moment);
    }
    std::string logPath() const { return dir() + "VarDesk.err"; }
    // Loads a file with errors of every group and returns its number of lines.
    std::ptrdiff_t loadFileOfEveryGroup() {
        const std::string lines =
            "0#Allgemein#1\n1#!ALT#+-#x\n1#ALTEVAR#+-#gibt es nicht mehr\n3#BEISPIEL#x#Text\n" +
            describeHost({"OSMODE", "SAVETIME"}) + "0#Anderes#1\n";
        writeFile("test.avl", lines);
        run();
        return std::count(lines.begin(), lines.end(), '\n');
    }
    // The head block followed by more lines, each with its line end, as the log file holds them.
    std::string headBlockAnd(const Lines& more) const {
        std::string date, time;
        formatDateTime(moment, kDateOnly, date);
        formatDateTime(moment, kTimeOnly, time);
        std::string text = "Fehlerprotokoll\n\nDatei: " + context->avlFilePath + "\nDatum: " + date +
                           "\nUhrzeit: " + time + "\n\n";
        for (const std::string& line : more)
            text += line + "\n";
        return text;
    }

    std::unique_ptr<cDocCntx> context;
    ReportList errorLines;
    RunCode runCode = RunCode::Idle;
    DateTime moment = currentDateTime();
    const std::string question = "BOX question: RT·VarDesk - Rückfrage: Beim Einlesen der Variablen "
                                 "sind Fehler aufgetaucht. Soll das Fehlerprotokoll angezeigt werden?";
};

// !ALT heads the chain and ALTEVAR stands in its middle: the host knows neither.
TEST_F(LoadStep, LogOfEveryGroupFollowsTheLayoutLineForLine) {
    const auto lastLine = loadFileOfEveryGroup();
    EXPECT_EQ(readFile(logPath()),
              headBlockAnd({
                  "Fehler beim Laden von test.avl",
                  "Fehler 4: Falsches Format für Variable in Zeile 4   : 3#BEISPIEL#x#Text",
                  formatText("Fehler 8: Index bereits vorhanden in Zeile %-4d: 0#Anderes#1", int(lastLine)),
                  "",
                  "Fehler beim Abfragen der AutoCAD-Variablen",
                  "Fehler 6: unbekannter Variablenname in Zeile 2   : !ALT",
                  "Fehler 6: unbekannter Variablenname in Zeile 3   : ALTEVAR",
                  "",
                  "Nicht berücksichtigte Variablen der aktuellen AutoCAD-Version",
                  "Fehler 10: Fehlende Variable: OSMODE",
                  "Fehler 10: Fehlende Variable: SAVETIME",
              }));
    EXPECT_EQ(context->errorCount, 6);
}

// A later run in the same drawing starts Idle on the filled list: the file is not read again, the
// host's values are, and the step ends Done, which keeps the main dialog's run going.
TEST_F(LoadStep, LaterRunReadsOnlyTheValuesAgainAndEndsDone) {
    writeFile("test.avl", "0#Alles#1\n" + describeHost());
    run();
    ASSERT_EQ(runCode, RunCode::Done);
    writeFile("test.avl", "0#Alles#1\n1#NEUEVAR#+-#x\n");
    ASSERT_EQ(setShort("LUPREC", 7), RTNORM);
    run();
    EXPECT_EQ(runCode, RunCode::Done);
    EXPECT_FALSE(context->varList.containsName("NEUEVAR"));
    ASSERT_TRUE(context->varList.containsName("LUPREC"));
    EXPECT_EQ(context->varList.findName("LUPREC")->currentText, "7");
}

TEST_F(LoadStep, RecordsTheHostDoesNotKnowLeaveTheList) {
    loadFileOfEveryGroup();
    EXPECT_FALSE(context->varList.containsName("ALTEVAR"));
    EXPECT_FALSE(context->varList.containsName("!ALT"));
    EXPECT_TRUE(context->varList.containsName("CLAYER"));
}

// The lines go into the file and leave memory; the user is asked, and the editor shows the log.
TEST_F(LoadStep, WrittenLogIsOfferedToTheEditorAndLeavesMemory) {
    loadFileOfEveryGroup();
    EXPECT_TRUE(errorLines.empty());
    EXPECT_EQ(runCode, RunCode::Done);
    EXPECT_EQ(uiLines(), (Lines{question, "EXEC: /bin/true \"" + logPath() + "\""}));
}

TEST_F(LoadStep, MissingHostVariablesAloneGiveHeadAndLastBlock) {
    writeFile("test.avl", "0#Alles#1\n" + describeHost({"CLAYER"}));
    run();
    // The head block ends in an empty line and the last block begins with one.
    EXPECT_EQ(readFile(logPath()),
              headBlockAnd({"", "Nicht berücksichtigte Variablen der aktuellen AutoCAD-Version",
                            "Fehler 10: Fehlende Variable: CLAYER"}));
    EXPECT_EQ(context->errorCount, 1);
}

TEST_F(LoadStep, LoadWithoutErrorsWritesNoLogAndLeavesAnOldOne) {
    writeFile("VarDesk.err", "altes Protokoll\n");
    context->avlFilePath = VARDESK_SOURCE_DIR "/data/VarDesk.avl";
    run();
    EXPECT_EQ(readFile(logPath()), "altes Protokoll\n");
    EXPECT_EQ(context->errorCount, 0) << (errorLines.size() > 6 ? errorLines[7] : "");
    EXPECT_TRUE(uiLines().empty()) << uiLines().front();
    EXPECT_EQ(runCode, RunCode::Done);
}

TEST_F(LoadStep, FileOfBadLinesAloneWritesNoLogAndAsksNothing) {
    writeFile("test.avl", "3#X\n1#A\n0#Neu#0\n");
    run();
    EXPECT_FALSE(std::filesystem::exists(logPath()));
    EXPECT_EQ(context->errorCount, 4) << "three bad lines and the empty-list line";
    ASSERT_EQ(uiLines().size(), 1u);
    EXPECT_EQ(uiLines()[0].rfind("BOX warning:", 0), 0u) << uiLines()[0];
    ASSERT_EQ(errorLines.size(), 11u) << "the lines stay in memory";
    EXPECT_EQ(errorLines[0] + "\n" + errorLines[6], "Fehlerprotokoll\nFehler beim Laden von test.avl");
}

// Starts give a chosen result code.
class FailingStarts : public kova::ScriptedUiServices {
public:
    using ScriptedUiServices::ScriptedUiServices;
    int startProgram(const std::string& commandLine) override {
        ScriptedUiServices::startProgram(commandLine);
        return result;
    }
    int result = 0;
};

// A log that cannot be written: see the faults tests. A missing program and no program: see the
// scenario dialogs_files.
TEST_F(LoadStep, ResultCodesOfTheEditorsStartBecomeBoxes) {
    FailingStarts ui{testhost::capture().script};
    host.setUiServices(&ui);
    const std::string exec = "EXEC: /bin/true \"" + logPath() + "\"";
    ShowErrorLog(*context);
    ui.result = 5; // a code without a box of its own
    ShowErrorLog(*context);
    host.setUiServices(&testhost::capture().services);
    EXPECT_EQ(uiLines(), (Lines{exec, "BOX error: RT·VarDesk - Fehler: Zu wenig Speicher verfügbar", exec}));
}

} // namespace
