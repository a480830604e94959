// Tests of the load step and the error log: blocks, counts, the file, the question, the editor.
#include "VarsTestKit.h"

#include "frame/cContext.h"
#include "frame/cDocCntx.h"
#include "settings/cMsgCatalog.h"
#include "vars/ErrorLog.h"
#include "vars/LoadStep.h"
#include "vars/TextHelpers.h"

#include <memory>
#include <set>

namespace {

using filekit::capture;
using filekit::hostNames;
using filekit::linesOf;
using filekit::readFile;
using Lines = std::vector<std::string>;

class LoadStep : public filekit::FileTestOf<filekit::HostFixture> {
protected:
    void SetUp() override {
        FileTestOf::SetUp();
        gContext.moduleBaseName = "VarDesk";
        gContext.userIniFile = folder() + "VarDesk.ini";
        context = std::make_unique<cDocCntx>(cadhost::HostSession::instance().currentDocument());
        context->avlFilePath = folder() + "test.avl";
        context->editorPath = "/bin/true";
    }
    void TearDown() override {
        context.reset();
        FileTestOf::TearDown();
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
        runCode = runcode::idle;
        runLoadStep(*context, errorLines, runCode, moment);
    }
    std::string logPath() const { return folder() + "VarDesk.err"; }
    // The lines as the log file holds them, each with its line end.
    static std::string fileText(const Lines& lines) {
        std::string text;
        for (const std::string& line : lines)
            text += line + "\n";
        return text;
    }
    // The head block followed by more lines.
    Lines headBlockAnd(const Lines& more = {}) const {
        std::string date, time;
        formatDateTime(moment, kDateOnly, date);
        formatDateTime(moment, kTimeOnly, time);
        Lines lines = {"Fehlerprotokoll",  "", "Datei: " + context->avlFilePath, "Datum: " + date,
                       "Uhrzeit: " + time, ""};
        lines.insert(lines.end(), more.begin(), more.end());
        return lines;
    }

    std::unique_ptr<cDocCntx> context;
    ReportList errorLines;
    int runCode = runcode::idle;
    DateTime moment = currentDateTime();
    const std::string question = "BOX question: RT·VarDesk - Rückfrage: Beim Einlesen der Variablen "
                                 "sind Fehler aufgetaucht. Soll das Fehlerprotokoll angezeigt werden?";
};

TEST_F(LoadStep, LogOfEveryGroupFollowsTheLayoutLineForLine) {
    const std::string lines = "0#Allgemein#1\n1#ALTEVAR#+-#gibt es nicht mehr\n3#BEISPIEL#x#Text\n" +
                              describeHost({"OSMODE", "SAVETIME"}) + "0#Anderes#1\n";
    writeFile("test.avl", lines);
    const int lastLine = static_cast<int>(linesOf(lines).size());
    capture().script.answers.push_back("yes");
    run();
    EXPECT_EQ(readFile(logPath()),
              fileText(headBlockAnd({
                  "Fehler beim Laden von test.avl",
                  "Fehler 4: Falsches Format für Variable in Zeile 3   : 3#BEISPIEL#x#Text",
                  formatText("Fehler 8: Index bereits vorhanden in Zeile %-4d: 0#Anderes#1", lastLine),
                  "",
                  "Fehler beim Abfragen der AutoCAD-Variablen",
                  "Fehler 6: unbekannter Variablenname in Zeile 2   : ALTEVAR",
                  "",
                  "Nicht berücksichtigte Variablen der aktuellen AutoCAD-Version",
                  "Fehler 10: Fehlende Variable: OSMODE",
                  "Fehler 10: Fehlende Variable: SAVETIME",
              })));
    EXPECT_EQ(context->errorCount, 5);
    EXPECT_TRUE(errorLines.empty()) << "writing the log empties the lines";
    EXPECT_EQ(runCode, runcode::done);
    EXPECT_FALSE(context->varList.containsName("ALTEVAR"));
    ASSERT_TRUE(context->varList.containsName("LTSCALE"));
    EXPECT_FALSE(context->varList.findName("LTSCALE")->currentText.empty());
    EXPECT_EQ(boxes(), (Lines{question, "EXEC: /bin/true \"" + logPath() + "\""}));
}

TEST_F(LoadStep, MissingHostVariablesAloneGiveHeadAndLastBlock) {
    writeFile("test.avl", "0#Alles#1\n" + describeHost({"CLAYER"}));
    run();
    // The head block ends in an empty line and the last block begins with one.
    EXPECT_EQ(readFile(logPath()), fileText(headBlockAnd({"",
                                                          "Nicht berücksichtigte Variablen der aktuellen "
                                                          "AutoCAD-Version",
                                                          "Fehler 10: Fehlende Variable: CLAYER"})));
    EXPECT_EQ(context->errorCount, 1);
    EXPECT_EQ(boxes(), Lines{question}) << "answered no: no editor";
}

// The shipped description file describes every host variable, each with a text and a theme.
TEST_F(LoadStep, LoadWithoutErrorsWritesNoLogAndLeavesAnOldOne) {
    writeFile("VarDesk.err", "altes Protokoll\n");
    context->avlFilePath = VARDESK_SOURCE_DIR "/data/VarDesk.avl";
    run();
    EXPECT_EQ(readFile(logPath()), "altes Protokoll\n");
    EXPECT_EQ(context->errorCount, 0) << (errorLines.size() > 6 ? errorLines[7] : "");
    EXPECT_TRUE(boxes().empty()) << boxes().front();
    EXPECT_EQ(runCode, runcode::done);
    std::size_t records = 0;
    for (const cSysVar* v = context->varList.first; v; v = v->next, ++records) {
        EXPECT_FALSE(v->description.empty()) << v->name;
        std::string title;
        EXPECT_NE(context->varList.themes.themeNameOf(title, v->themeIndex), 0) << v->name;
    }
    EXPECT_EQ(records, hostNames().size());
}

TEST_F(LoadStep, FileOfBadLinesAloneWritesNoLogAndAsksNothing) {
    writeFile("test.avl", "3#X\n1#A\n0#Neu#0\n");
    run();
    EXPECT_FALSE(filekit::fs::exists(logPath()));
    EXPECT_EQ(context->errorCount, 4) << "three bad lines and the empty-list line";
    ASSERT_EQ(boxes().size(), 1u);
    EXPECT_EQ(boxes()[0].rfind("BOX warning:", 0), 0u) << boxes()[0];
    ASSERT_EQ(errorLines.size(), 11u) << "the lines stay in memory";
    EXPECT_EQ(Lines(errorLines.begin(), errorLines.begin() + 7),
              headBlockAnd({"Fehler beim Laden von test.avl"}));
}

// A log that cannot be written: see the faults tests.
using ShowErrorLogTest = filekit::FileTest;

// The other codes, started, missing program and no program: see the file commands' tests.
TEST_F(ShowErrorLogTest, ResultCodesOfTheStartBecomeBoxes) {
    gContext.userIniFile = "/home/anna/.kova/VarDesk.ini";
    cDocCntx context(nullptr);
    context.editorPath = "/opt/edit";
    const std::string exec = "EXEC: /opt/edit \"/home/anna/.kova/VarDesk.err\"";
    capture().ui.execResult = kova::ExecResult::OutOfMemory;
    ShowErrorLog(context);
    EXPECT_EQ(boxes(), (Lines{exec, "BOX error: RT·VarDesk - Fehler: Zu wenig Speicher verfügbar"}));
    boxes().clear();
    capture().ui.execResult = 5; // a code without a box of its own
    ShowErrorLog(context);
    EXPECT_EQ(boxes(), Lines{exec});
}

} // namespace
