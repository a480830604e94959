// Tests of the boxes that follow a file's read or write.
#include "../vars/VarsTestKit.h"

#include "dialogs/FileBoxes.h"

namespace {

using Lines = std::vector<std::string>;

class FileBoxes : public filekit::VarsTest {};

TEST_F(FileBoxes, EachKindOfResultGetsItsBox) {
    showFileResult({});
    EXPECT_TRUE(boxes().empty()) << boxes().front();
    showFileResult(FileResult::warning("w"));
    showFileResult(FileResult::error("e"));
    EXPECT_EQ(boxes(), (Lines{"BOX warning: RT·VarDesk - Warnung: w", "BOX error: RT·VarDesk - Fehler: e"}));
}

// The box for two and more records left out: see the scenario dialogs_files.
TEST_F(FileBoxes, ResultOfAUserListReadBecomesItsBoxes) {
    cSysVarList list;
    list.userDirectory = "/listen/";
    list.userFileName = "a.var";
    showUserFileResult(1, {}, ReportList{}, list);
    EXPECT_TRUE(boxes().empty()) << boxes().front();
    // A failed read shows the reader's error alone, whatever the report holds.
    showUserFileResult(0, FileResult::error("/listen/a.var kann nicht geladen werden!"), ReportList{"x"},
                       list);
    showUserFileResult(2, {}, ReportList{"x"}, list);
    EXPECT_EQ(
        boxes(),
        (Lines{"BOX error: RT·VarDesk - Fehler: /listen/a.var kann nicht geladen werden!",
               "BOX error: RT·VarDesk - Fehler: Es sind Fehler beim Lesen von /listen/a.var aufgetreten.",
               "BOX warning: RT·VarDesk - Warnung: Eine Variablen konnte nicht in die aktuelle "
               "AutoCAD-Variablenliste eingesetzt werden."}));
}

} // namespace
