// Writing the error log file.
#include "ErrorLog.h"

#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include <cstdio>

std::string errorLogPath(const std::string& directory, const std::string& baseName) {
    return directory + baseName + kErrorLogExtension;
}

FileResult writeErrorLog(ReportList& errorLines, const std::string& directory, const std::string& baseName) {
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
        errorLines.push_back(text);
        return FileResult::error(text);
    }
    errorLines.clear();
    return {};
}
