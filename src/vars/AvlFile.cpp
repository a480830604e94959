// Reading the AVL description file into the variable list, and the line reader of both text files.
#include "AvlFile.h"

#include "RegularFile.h"
#include "settings/cMsgCatalog.h"
#include "TextHelpers.h"

#include <cstdlib>

TextLineReader::Outcome TextLineReader::next(std::string& line) {
    line.clear();
    if (std::ferror(m_file))
        return Outcome::Failed;
    std::size_t length = 0;
    int c;
    while ((c = getc_unlocked(m_file)) != EOF) {
        if (c == '\n') {
            line.assign(m_buffer, length);
            return Outcome::Line;
        }
        if (length == kMaxLineBytes) {
            line.assign(m_buffer, length);
            while ((c = getc_unlocked(m_file)) != EOF && c != '\n') {
            }
            return Outcome::TooLong; // a stream error in the skipped tail shows at the next call
        }
        m_buffer[length++] = static_cast<char>(c);
    }
    if (std::ferror(m_file))
        return Outcome::Failed;
    if (length == 0)
        return Outcome::End;
    line.assign(m_buffer, length);
    return Outcome::Line;
}

namespace {

// Outcome of one prepared AVL line: 0 when it was taken or skipped, else its error number.
int handleAvlLine(cSysVarList& list, const std::string& line, int lineNumber) {
    std::string field1, field2, field3, field4;
    const int fields = splitFields(line, field1, field2, field3, field4);
    if (fields < 3)
        return 1;
    if (fields > 4)
        return 2;
    if (fields == 3) {
        if (std::atoi(field1.c_str()) != 0)
            return 3;
        switch (list.themes.addTheme(std::atoi(field3.c_str()), field2)) {
        case themeresult::inserted:
            return 0;
        case themeresult::badIndex:
            return 3;
        case themeresult::noName:
            return 7;
        case themeresult::indexInUse:
            return 8;
        default:
            return 9;
        }
    }
    // The duplicate test sees the name as the file has it, blanks and all; addVariable trims.
    upperCase(field2);
    if (list.containsName(field2))
        return 5;
    if (!list.addVariable(field1, field2, field3, field4, lineNumber))
        return 4;
    return 0;
}

const std::string& lineErrorText(int error) {
    switch (error) {
    case 1:
        return gMsg.TxSysLoadError1;
    case 2:
        return gMsg.TxSysLoadError2;
    case 3:
        return gMsg.TxSysLoadError3;
    case 4:
        return gMsg.TxSysLoadError4;
    case 5:
        return gMsg.TxSysLoadError5;
    case 7:
        return gMsg.TxSysLoadError7;
    case 8:
        return gMsg.TxSysLoadError8;
    default:
        return gMsg.TxSysLoadError9;
    }
}

} // namespace

TextLineReader::Outcome nextContentLine(TextLineReader& reader, std::string& line, int& lineNumber,
                                        ReportList& report) {
    for (;;) {
        const TextLineReader::Outcome outcome = reader.next(line);
        if (outcome == TextLineReader::Outcome::End || outcome == TextLineReader::Outcome::Failed)
            return outcome;
        ++lineNumber;
        if (outcome == TextLineReader::Outcome::TooLong)
            report.push_back(formatText("%s %d.", gMsg.TxFileReadError.c_str(), lineNumber));
        trimBoth(line);
        if (!line.empty() && line[0] != ';')
            return TextLineReader::Outcome::Line;
    }
}

bool readAvlStream(cSysVarList& list, std::FILE* file, const std::string& fileName, ReportList& report) {
    TextLineReader reader(file);
    std::string line;
    int lineNumber = 0;
    for (;;) {
        const TextLineReader::Outcome outcome = nextContentLine(reader, line, lineNumber, report);
        if (outcome == TextLineReader::Outcome::End)
            return true;
        if (outcome == TextLineReader::Outcome::Failed) {
            report.push_back(formatText("%s '%s'.", gMsg.TxFileReadFailure.c_str(), fileName.c_str()));
            return false;
        }
        const std::size_t remark = line.find(";;");
        if (remark != std::string::npos)
            line.resize(remark); // not trimmed again: blanks ahead of ";;" stay in the last field

        if (const int error = handleAvlLine(list, line, lineNumber))
            report.push_back(
                formatText("%s %-4d: %s", lineErrorText(error).c_str(), lineNumber, line.c_str()));
    }
}

FileResult cSysVarList::readAvlFile(ReportList& report) {
    const std::string path = avlDirectory + avlFileName;
    // A device or a FIFO would never end or never begin: only a regular file is read.
    std::FILE* file = kova::openRegularFile(path);
    if (!file)
        return FileResult::error(path + " " + gMsg.TxFileOpenFailure);
    const bool complete = readAvlStream(*this, file, avlFileName, report);
    std::fclose(file);
    if (!complete)
        return FileResult::error(report.back() + gMsg.TxAbort);
    if (!first) {
        const std::string text = formatText("%s %s", path.c_str(), gMsg.TxNoAcadVar.c_str());
        report.push_back(text);
        return FileResult::warning(text);
    }
    return {};
}
