// The load step: reading the AVL file, the checks against the host, the error log's blocks, and
// showing the log.
#include "LoadStep.h"

#include "dialogs/FileBoxes.h"
#include "settings/cMsgCatalog.h"
#include "vars/DocumentState.h"
#include "vars/ErrorLog.h"

#include "hostui.h"
#include "UiServices.h"

namespace {

void addHeadBlock(ReportList& errorLines, const std::string& avlPath, DateTime moment) {
    std::string date, time;
    formatDateTime(moment, kDateOnly, date);
    formatDateTime(moment, kTimeOnly, time);
    errorLines.push_back(gMsg.TxErrorLogTitle);
    errorLines.push_back("");
    errorLines.push_back(formatText("%s: %s", gMsg.TxFile.c_str(), avlPath.c_str()));
    errorLines.push_back(formatText("%s: %s", gMsg.TxDate.c_str(), date.c_str()));
    errorLines.push_back(formatText("%s: %s", gMsg.TxTime.c_str(), time.c_str()));
    errorLines.push_back("");
}

// Moves the lines of a block behind its heading lines and counts them as errors.
void moveBlock(ReportList& errorLines, std::int32_t& errorCount, std::vector<std::string>& lines) {
    errorCount += static_cast<std::int32_t>(lines.size());
    errorLines.insert(errorLines.end(), std::make_move_iterator(lines.begin()),
                      std::make_move_iterator(lines.end()));
    lines.clear();
}

} // namespace

bool runLoadStep(DocumentState& context, ReportList& errorLines, RunCode& runCode, DateTime moment) {
    cSysVarList& list = context.varList;
    if (!list.first) {
        // A description file that the drawing brought is read only when the user says yes to it.
        context.AskForDrawingPath(DocumentState::DrawingPath::AvlFile);
        if (context.errorCount == 0) {
            errorLines.clear();
            addHeadBlock(errorLines, context.avlFilePath, moment);
        }
        pathDirectory(context.avlFilePath, list.avlDirectory);
        pathFileName(context.avlFilePath, list.avlFileName);
        list.userFileName = gMsg.TxNewVarFile;

        ReportList report;
        showFileResult(list.readAvlFile(report));
        if (!report.empty()) {
            errorLines.push_back(formatText("%s %s", gMsg.TxSysLoadError0.c_str(), list.avlFileName.c_str()));
            moveBlock(errorLines, context.errorCount, report);
        }
        if (list.first) {
            runCode = RunCode::ListRead;
            list.firstReadFromHost();
            list.proofAgainstHost(context.unaccountedVars);
        } else {
            runCode = RunCode::Done;
        }
    }

    if (runCode == RunCode::ListRead) {
        ReportList report;
        list.purgeUnreadable(report);
        if (!report.empty()) {
            errorLines.push_back("");
            errorLines.push_back(gMsg.TxReadError);
            moveBlock(errorLines, context.errorCount, report);
        }
        if (!context.unaccountedVars.empty()) {
            errorLines.push_back("");
            errorLines.push_back(gMsg.TxProofError);
            moveBlock(errorLines, context.errorCount, context.unaccountedVars);
        }
        if (context.errorCount != 0) {
            std::string directory;
            pathDirectory(context.userIniFile(), directory);
            showFileResult(writeErrorLog(errorLines, directory, context.moduleBaseName()));
            if (gMsg.AskYesNo(gMsg.TxShowErrorLog))
                ShowErrorLog(context);
        }
        runCode = RunCode::Done;
    }

    if (runCode != RunCode::Done) {
        runCode = RunCode::Reading;
        list.readAllFromHost();
        runCode = RunCode::Done;
    }
    return true;
}

void ShowErrorLog(DocumentState& context) {
    // A program that the drawing brought is started only when the user says yes to it.
    context.AskForDrawingPath(DocumentState::DrawingPath::Editor);
    const std::string& editor = context.editorPath;
    std::string logPath;
    pathStem(context.userIniFile(), logPath);
    logPath += kErrorLogExtension;

    kova::UiServices* ui = acHostUiServices();
    if (!ui)
        return;
    switch (ui->startProgram(editor + " \"" + logPath + "\"")) {
    case kova::ExecResult::OutOfMemory:
        ShowErrorBox(gMsg.TxSpawnNoMemory);
        break;
    case kova::ExecResult::FileNotFound:
    case kova::ExecResult::PathNotFound:
        ShowErrorBox(editor + " " + gMsg.TxSpawnNotFound);
        break;
    case kova::ExecResult::BadFormat:
        ShowErrorBox(editor + " " + gMsg.TxSpawnNoExe);
        break;
    default:
        break;
    }
}
