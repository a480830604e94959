// Writing the error log file.
#include "ErrorLog.h"

#include "ReplacementFile.h"
#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include <cstdio>

std::string errorLogPath(const std::string& directory, const std::string& baseName) {
    return directory + baseName + kErrorLogExtension;
}

FileResult writeErrorLog(ReportList& errorLines, const std::string& directory, const std::string& baseName) {
    const std::string path = errorLogPath(directory, baseName);
    // Written beside the old log and renamed over it, as the user list is: a write that fails half
    // way (a full disk) leaves the old log whole, and a log the user write-protected stays as it
    // is. Either counts as a log that cannot be opened.
    kova::ReplacementFile output(path);
    bool written = output.open();
    if (written) {
        for (const std::string& line : errorLines) {
            std::fwrite(line.data(), 1, line.size(), output.stream());
            std::fputc('\n', output.stream());
        }
        written = !std::ferror(output.stream()) && output.commit();
    }
    if (!written) {
        const std::string text = path + gMsg.TxFileOpenFailure;
        errorLines.push_back(text);
        return FileResult::error(text);
    }
    errorLines.clear();
    return {};
}
