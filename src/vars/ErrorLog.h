// The error log of a load: its file, and showing it in the configured editor.
#pragma once
#include "cSysVarList.h"

#include <string>

class DocumentState;

// Extension of the log file. Writer and editor command use this one form: a file system that
// tells case apart would otherwise find no log.
inline constexpr const char* kErrorLogExtension = ".err";

// directory + baseName + kErrorLogExtension.
std::string errorLogPath(const std::string& directory, const std::string& baseName);

// Writes every line of errorLines, each with a line end, to directory + baseName + ".err",
// replacing an old file, and empties errorLines. When the file cannot be opened an error box
// names it (path followed by TxFileOpenFailure), the same text is appended to errorLines, and
// the lines stay in memory. True when the file was written.
bool writeErrorLog(ReportList& errorLines, const std::string& directory,
                   const std::string& baseName);

// Opens the log in the editor of context's Editor setting: the command line is the editor path,
// a blank and the quoted path of the user ini file with its extension replaced by ".err". Does
// not wait for the editor nor look whether the log exists. A start that fails shows an error box
// (TxSpawnNoMemory; or the editor path and TxSpawnNotFound or TxSpawnNoExe). An editor that the
// drawing brought is asked about first (DocumentState::AskForDrawingPath).
void ShowErrorLog(DocumentState& context);
