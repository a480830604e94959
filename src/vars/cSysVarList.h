// cSysVarList: all variables of one document context in name order, with its themes and file names.
#pragma once
#include "cSysVar.h"
#include "cThemeList.h"
#include "FileResult.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

// Lines that file operations and checks append for the error log; the caller owns it.
using ReportList = std::vector<std::string>;

// How a read of the user list file ended. failure is the error when the file could not be read
// ("<path>TxFileOpenFailure", or the read failure and TxAbort), and then nothing counts; else it
// is empty, and unknownNames counts the file's names that the list does not hold.
struct UserListRead {
    FileResult failure;
    int unknownNames = 0;
    bool isRead() const { return static_cast<bool>(failure); }
};

class cSysVarList {
public:
    cSysVarList() = default;
    ~cSysVarList(); // deletes all records and themes
    cSysVarList(const cSysVarList&) = delete;
    cSysVarList& operator=(const cSysVarList&) = delete;

    // Number format of every real and point its records print or parse; the dialog loop takes
    // both from the drawing at each run. A blank and 4 places until then.
    char pointSeparator = ' ';
    int valuePrecision = 4;

    // Owned chain through cSysVar::next, ascending by compareText(name). Only the list links and
    // unlinks records: its index by name must stay in step with the chain.
    cSysVar* first = nullptr;
    cThemeList themes;
    std::string avlDirectory; // with its closing "/"
    std::string avlFileName;
    std::string userDirectory; // empty until a user list file was opened or saved
    std::string userFileName;  // the catalog's TxNewVarFile while there is no file

    // ---- records ----

    // Makes a record from the four fields of an AVL line (cSysVar::parseAvlFields) and inserts
    // it behind every record whose name is less than or equal to its own, so equal names keep
    // the order of the file. False, with the chain unchanged, when the fields are bad.
    bool addVariable(const std::string& themeField, const std::string& nameField,
                     const std::string& modeField, const std::string& descriptionField, int lineNumber);
    // True when a record has exactly that name.
    bool containsName(const std::string& name) const;
    // The record of that exact name, or null; the first of two equal names.
    cSysVar* findName(const std::string& name) const;
    // True when any record is in the user list.
    bool hasUserEntries() const;

    // readFromHost on every record; failures go on to the next.
    void readAllFromHost();
    // The read that follows an AVL load: readFromHost on every record. Writes nothing to the
    // host, so the modes stay those of the description file.
    void firstReadFromHost();
    // writeToHost on every record marked to set. Always true.
    bool writeMarkedToHost();
    void clearAllNewValues();
    void clearAllSelected();
    // Deletes all records and themes; the file name fields stay.
    void clearAll();

    // Unlinks and deletes every unreadable record, appending "<TxSysLoadError6> <line>: <name>"
    // ("%s %-4d: %s") for each, in chain order. Returns how many were removed.
    int purgeUnreadable(ReportList& report);
    // Appends "<TxProofError1>: <name>" for every host variable (in the host's order) that no
    // record holds. The list does not change. Always true.
    bool proofAgainstHost(ReportList& report);

    // ---- files (defined with the file readers and writers) ----

    // Reads avlDirectory + avlFileName into records and themes. An error when the file could not
    // be opened ("<path> TxFileOpenFailure") or read to its end (the report's last line and
    // TxAbort); a warning, also appended to the report, when it gave no record.
    FileResult readAvlFile(ReportList& report);
    // Reads userDirectory + userFileName into the new values; see UserListRead.
    UserListRead readUserFile(ReportList& report);
    // Writes the user list (or, with selectedOnly, the selected records) to directory + fileName.
    // An error when the file could not be opened or written whole.
    FileResult writeUserFile(const std::string& directory, const std::string& fileName, bool selectedOnly);

private:
    // Takes the record out of the index; the caller unlinks it from the chain.
    void unindex(const cSysVar* record);

    // Every record of the chain by name, in chain order: equal names stand in the order of the
    // chain too, since a new one goes behind its equals in both. Placing and finding a record
    // look here instead of walking the chain.
    std::multimap<std::string, cSysVar*, std::less<>> m_byName;
};
