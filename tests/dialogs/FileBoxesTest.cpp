// Tests of the boxes that follow a file's read or write.
#include "../vars/VarsTestKit.h"

#include "dialogs/FileBoxes.h"
#include "settings/cMsgCatalog.h"

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

class UserFileBoxes : public FileBoxes {
protected:
    void SetUp() override {
        FileBoxes::SetUp();
        list.userDirectory = "/listen/";
        list.userFileName = "a.var";
    }
    cSysVarList list;
    const std::string readErrors =
        "BOX error: RT·VarDesk - Fehler: Es sind Fehler beim Lesen von /listen/a.var aufgetreten.";
};

TEST_F(UserFileBoxes, ReadWithoutTroubleShowsNoBox) {
    showUserFileResult({}, ReportList{}, list);
    EXPECT_TRUE(boxes().empty()) << boxes().front();
}

// Whatever the report holds.
TEST_F(UserFileBoxes, FailedReadShowsTheReadersErrorAlone) {
    showUserFileResult({FileResult::error("/listen/a.var kann nicht geladen werden!"), 0}, ReportList{"x"},
                       list);
    EXPECT_EQ(boxes(), (Lines{"BOX error: RT·VarDesk - Fehler: /listen/a.var kann nicht geladen werden!"}));
}

TEST_F(UserFileBoxes, ReportLinesGiveAnErrorBoxBeforeTheLeftOutWarning) {
    showUserFileResult({{}, 1}, ReportList{"x"}, list);
    EXPECT_EQ(boxes(),
              (Lines{readErrors, "BOX warning: RT·VarDesk - Warnung: Eine Variablen konnte nicht in die "
                                 "aktuelle AutoCAD-Variablenliste eingesetzt werden."}));
}

TEST_F(UserFileBoxes, SeveralLeftOutNamesAreCounted) {
    showUserFileResult({{}, 3}, ReportList{}, list);
    EXPECT_EQ(boxes(), (Lines{"BOX warning: RT·VarDesk - Warnung: 3 " + gMsg.TxInsertError}));
}

} // namespace
