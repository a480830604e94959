// The error log of a load: its file.
#pragma once
#include "cSysVarList.h"

#include <string>

// Extension of the log file. Writer and editor command use this one form: a file system that
// tells case apart would otherwise find no log.
inline constexpr const char* kErrorLogExtension = ".err";

// directory + baseName + kErrorLogExtension.
std::string errorLogPath(const std::string& directory, const std::string& baseName);

// Writes every line of errorLines, each with a line end, to directory + baseName + ".err",
// replacing an old file unless it is write-protected, and empties errorLines. When the file cannot
// be opened or written the error names it (path followed by TxFileOpenFailure), the same text is
// appended to errorLines, and the lines stay in memory.
FileResult writeErrorLog(ReportList& errorLines, const std::string& directory, const std::string& baseName);
