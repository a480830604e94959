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

// What is wrong with an AVL line, each with its text of the catalog (TxSysLoadError1 to 9; 6 is
// the host's, for a record it cannot read).
enum class AvlLineError {
    None,            // the line was taken
    TooFewFields,    // 1
    TooManyFields,   // 2
    BadTheme,        // 3: a theme line with a type other than 0, or the index 0
    BadRecord,       // 4: a record line that addVariable refuses
    NameInUse,       // 5: the name stands in the list already
    NoThemeName,     // 7
    ThemeIndexInUse, // 8
    ThemeNameInUse,  // 9
};

AvlLineError handleAvlLine(cSysVarList& list, const std::string& line, int lineNumber) {
    std::string field1, field2, field3, field4;
    const int fields = splitFields(line, field1, field2, field3, field4);
    if (fields < 3)
        return AvlLineError::TooFewFields;
    if (fields > 4)
        return AvlLineError::TooManyFields;
    if (fields == 3) {
        if (std::atoi(field1.c_str()) != 0)
            return AvlLineError::BadTheme;
        switch (list.themes.addTheme(std::atoi(field3.c_str()), field2)) {
        case ThemeResult::Inserted:
            return AvlLineError::None;
        case ThemeResult::BadIndex:
            return AvlLineError::BadTheme;
        case ThemeResult::NoName:
            return AvlLineError::NoThemeName;
        case ThemeResult::IndexInUse:
            return AvlLineError::ThemeIndexInUse;
        case ThemeResult::NameInUse:
            return AvlLineError::ThemeNameInUse;
        }
        return AvlLineError::ThemeNameInUse;
    }
    // The duplicate test sees the name as the file has it, blanks and all; addVariable trims.
    upperCase(field2);
    if (list.containsName(field2))
        return AvlLineError::NameInUse;
    if (!list.addVariable(field1, field2, field3, field4, lineNumber))
        return AvlLineError::BadRecord;
    return AvlLineError::None;
}

const std::string& lineErrorText(AvlLineError error) {
    switch (error) {
    case AvlLineError::None:
    case AvlLineError::TooFewFields:
        return gMsg.TxSysLoadError1;
    case AvlLineError::TooManyFields:
        return gMsg.TxSysLoadError2;
    case AvlLineError::BadTheme:
        return gMsg.TxSysLoadError3;
    case AvlLineError::BadRecord:
        return gMsg.TxSysLoadError4;
    case AvlLineError::NameInUse:
        return gMsg.TxSysLoadError5;
    case AvlLineError::NoThemeName:
        return gMsg.TxSysLoadError7;
    case AvlLineError::ThemeIndexInUse:
        return gMsg.TxSysLoadError8;
    case AvlLineError::ThemeNameInUse:
        return gMsg.TxSysLoadError9;
    }
    return gMsg.TxSysLoadError9;
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

        if (const AvlLineError error = handleAvlLine(list, line, lineNumber); error != AvlLineError::None)
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
