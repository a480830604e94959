// Writing the error log file and opening it in the configured editor.
#include "ErrorLog.h"

#include "TextHelpers.h"
#include "vars/DocumentState.h"
#include "settings/cMsgCatalog.h"

#include "UiServices.h"
#include "hostui.h"

#include <cstdio>

std::string errorLogPath(const std::string& directory, const std::string& baseName)
{
    return directory + baseName + kErrorLogExtension;
}

bool writeErrorLog(ReportList& errorLines, const std::string& directory,
                   const std::string& baseName)
{
    const std::string path = errorLogPath(directory, baseName);
    // Written beside the old log and renamed over it: a write that fails half way (a full disk)
    // leaves the old log whole, and counts as a log that cannot be opened.
    const std::string temp = path + ".new";
    std::FILE* file = std::fopen(temp.c_str(), "w");
    bool written = file != nullptr;
    if (file) {
        for (const std::string& line : errorLines) {
            std::fwrite(line.data(), 1, line.size(), file);
            std::fputc('\n', file);
        }
        written = !std::ferror(file);
        written = std::fclose(file) == 0 && written;
        written = written && std::rename(temp.c_str(), path.c_str()) == 0;
        if (!written)
            std::remove(temp.c_str());
    }
    if (!written) {
        const std::string text = path + gMsg.TxFileOpenFailure;
        ShowErrorBox(text);
        errorLines.push_back(text);
        return false;
    }
    errorLines.clear();
    return true;
}

void ShowErrorLog(DocumentState& context)
{
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
    case kova::ExecResult::OutOfMemory: ShowErrorBox(gMsg.TxSpawnNoMemory); break;
    case kova::ExecResult::FileNotFound:
    case kova::ExecResult::PathNotFound: ShowErrorBox(editor + " " + gMsg.TxSpawnNotFound); break;
    case kova::ExecResult::BadFormat: ShowErrorBox(editor + " " + gMsg.TxSpawnNoExe); break;
    default: break;
    }
}
