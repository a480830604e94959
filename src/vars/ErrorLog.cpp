// Writing the error log file and opening it in the configured editor.
#include "ErrorLog.h"

#include "TextHelpers.h"
#include "frame/cContext.h"
#include "frame/cDocCntx.h"
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
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (!file) {
        const std::string text = path + gMsg.TxFileOpenFailure;
        ShowErrorBox(text);
        errorLines.push_back(text);
        return false;
    }
    for (const std::string& line : errorLines) {
        std::fwrite(line.data(), 1, line.size(), file);
        std::fputc('\n', file);
    }
    errorLines.clear();
    return std::fclose(file) == 0;
}

void ShowErrorLog(const cDocCntx& context)
{
    const std::string& editor = context.editorPath;
    std::string logPath;
    pathStem(gContext.userIniFile, logPath);
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
