// Reading and writing user list files: one "NAME#value" line for each chosen variable.
#include "AvlFile.h"
#include "RegularFile.h"
#include "ReplacementFile.h"
#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include <cstdio>

namespace {

bool isChosen(const cSysVar& v, bool selectedOnly) {
    return selectedOnly ? v.isSelected() : v.inUserList();
}

} // namespace

FileResult cSysVarList::writeUserFile(const std::string& directory, const std::string& fileName,
                                      bool selectedOnly) {
    const std::string path = directory + fileName;
    // The list is written beside the old one and renamed over it: a write that fails half way
    // leaves the old list whole. A write-protected list is not replaced.
    kova::ReplacementFile output(path);
    if (!output.open())
        return FileResult::error(path + gMsg.TxFileOpenFailure);
    std::FILE* file = output.stream();
    bool failed = false;
    for (const cSysVar* v = first; v && !failed; v = v->next) {
        if (isChosen(*v, selectedOnly)) {
            const std::string& value = v->newText.empty() ? v->currentText : v->newText;
            std::fprintf(file, "%-25s#%s\n", v->name.c_str(), value.c_str());
        }
        failed = std::ferror(file) != 0;
    }
    // A full disk may show only when the buffer is flushed, so the commit is looked at as well.
    if (failed || !output.commit())
        return FileResult::error(formatText("%s '%s'.", gMsg.TxFileWriteFailure.c_str(), fileName.c_str()) +
                                 gMsg.TxAbort);
    return {};
}

UserListRead cSysVarList::readUserFile(ReportList& report) {
    UserListRead result;
    const std::string path = userDirectory + userFileName;
    std::FILE* file = kova::openRegularFile(path);
    if (!file) {
        result.failure = FileResult::error(path + gMsg.TxFileOpenFailure);
        return result;
    }
    TextLineReader reader(file);
    std::string line, name, value, field3, field4;
    int lineNumber = 0;
    for (;;) {
        const TextLineReader::Outcome outcome = nextContentLine(reader, line, lineNumber, report);
        if (outcome == TextLineReader::Outcome::End)
            break;
        if (outcome == TextLineReader::Outcome::Failed) {
            const std::string text =
                formatText("%s '%s'.", gMsg.TxFileReadFailure.c_str(), userFileName.c_str());
            report.push_back(text);
            std::fclose(file);
            return {FileResult::error(text + gMsg.TxAbort), 0};
        }
        splitFields(line, name, value, field3, field4); // a line without "#" has an empty value
        upperCase(trimBoth(name));
        trimBoth(value);
        if (cSysVar* v = findName(name)) {
            v->applyFileText(value); // a value that does not parse leaves the old one, silently
            v->setInUserList();
        } else {
            ++result.unknownNames;
        }
    }
    std::fclose(file);
    return result;
}
