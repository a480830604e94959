// Tests of the main dialog's file commands: new, open, save, save as, the error log and a new AVL file.
#include "CommandsTestKit.h"

#include "dialogs/cDlgConfig.h"

#include <sys/stat.h>

namespace {

using namespace commandstest;
using namespace mainids;

class FileCommands : public CommandsTest {
protected:
    std::string filter() { return gMsg.FiUserVarList + " (*.var)|*.var|" + gMsg.FiAll + " (*.*)|*.*||"; }
    std::string saveDialog(const std::string& initial) {
        return "FILEDIALOG save: " + filter() + " | " + initial;
    }
    std::string openDialog() { return "FILEDIALOG open: " + filter() + " | "; }
    std::string dir() { return folder.string() + "/"; }
    // The dialog is still open and the run loop would not end it.
    void expectStillOpen() {
        EXPECT_TRUE(d->isVisible());
        EXPECT_NE(d->runCode, 0);
    }
};

// Save and Save as on a list with entries are run end to end by the scenario commands_saveopen.
TEST_F(FileCommands, SaveOfAnUnnamedListAsksForANameOnceAndThenWritesWithoutAsking) {
    open();
    setNew("LUPREC", "6");
    d->OnCommand(kShowList);
    user().answers = {"cancel"};
    d->OnCommand(kSave);
    EXPECT_EQ(printed("FILEDIALOG"), std::vector<std::string>{saveDialog(gMsg.TxNewVarFile)});
    EXPECT_EQ(context->varList.userFileName, gMsg.TxNewVarFile);
    EXPECT_FALSE(std::filesystem::exists(folder / (gMsg.TxNewVarFile + ".var")))
        << "cancelled: nothing written";

    user().lines.clear();
    user().answers = {path("liste")};
    d->OnCommand(kSave);
    EXPECT_EQ(printed("FILEDIALOG"), std::vector<std::string>{saveDialog(gMsg.TxNewVarFile)});
    EXPECT_EQ(context->varList.userFileName, "liste.var");
    EXPECT_EQ(context->varList.userDirectory, dir());
    EXPECT_EQ(title(), gMsg.TiVarDesk + " - Drawing1.dwg - [liste.var]");
    EXPECT_EQ(readFile(folder / "liste.var"), "LUPREC                   #6\n");

    user().lines.clear();
    std::filesystem::remove(folder / "liste.var");
    d->OnCommand(kSave);
    EXPECT_TRUE(user().lines.empty());
    EXPECT_EQ(readFile(folder / "liste.var"), "LUPREC                   #6\n");
}

TEST_F(FileCommands, SaveCommandsWithNothingToWriteSaySo) {
    open();
    struct Case {
        const char* label;
        int view;
        int command;
        std::string box;
    };
    const std::vector<Case> cases = {
        {"save as, full view, no selection", 0, kSaveAs, gMsg.TxNoSelection},
        {"save, full view, no selection", 0, kSave, gMsg.TxNoSelection},
        {"save as, user list empty", 1, kSaveAs, gMsg.TxNoUserList},
        {"save, user list empty", 1, kSave, gMsg.TxNoUserList},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        user().lines.clear();
        context->view = c.view;
        d->FillList();
        d->listCtrl->clearSelection();
        d->OnCommand(c.command);
        EXPECT_EQ(user().lines, std::vector<std::string>{infoBox(c.box)});
    }
}

TEST_F(FileCommands, NewAsksOnlyWhenThereAreEntriesAndShowsTheUserListEitherWay) {
    open();
    setNew("LUPREC", "6");
    user().answers = {"no"};
    EXPECT_FALSE(d->NewList());
    EXPECT_EQ(printed("BOX"), std::vector<std::string>{question(gMsg.TxVarLoaded)});
    EXPECT_EQ(context->view, 1);
    EXPECT_TRUE(d->menuAction(kShowList)->isChecked());
    EXPECT_EQ(title(), gMsg.TiVarDesk + " - Drawing1.dwg - [" + gMsg.TxNewVarFile + "]");
    EXPECT_EQ(userListNames(), std::vector<std::string>{"LUPREC"});

    user().answers = {"yes"};
    context->varList.userFileName = "alt.var";
    EXPECT_TRUE(d->NewList());
    EXPECT_FALSE(context->varList.hasUserEntries());
    EXPECT_EQ(at("LUPREC").newText, "");
    EXPECT_EQ(context->varList.userFileName, gMsg.TxNewVarFile);
    EXPECT_EQ(rows().rowCount(), 0);

    user().lines.clear();
    EXPECT_TRUE(d->NewList());
    EXPECT_TRUE(user().lines.empty()) << "no entries, no question";
}

TEST_F(FileCommands, OpenWithTheFileDialogCancelledLeavesAnEmptyList) {
    struct Case {
        const char* label;
        bool entries;
        std::vector<std::string> answers;
        bool dialogShown;
        bool entriesKept;
    };
    const std::vector<Case> cases = {
        {"entries, yes, cancel", true, {"yes", "cancel"}, true, false},
        {"entries, no", true, {"no"}, false, true},
        {"no entries, cancel", false, {"cancel"}, true, false},
    };
    open();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        context->view = 0;
        context->varList.clearAllNewValues();
        if (c.entries)
            setNew("LUPREC", "6");
        user().lines.clear();
        user().answers = {c.answers.begin(), c.answers.end()};
        d->OnCommand(kOpen);
        EXPECT_EQ(printed("BOX"), c.entries ? std::vector<std::string>{question(gMsg.TxVarLoaded)}
                                            : std::vector<std::string>{});
        EXPECT_EQ(printed("FILEDIALOG"),
                  c.dialogShown ? std::vector<std::string>{openDialog()} : std::vector<std::string>{});
        EXPECT_EQ(context->varList.hasUserEntries(), c.entriesKept);
        EXPECT_EQ(context->view, 1);
        EXPECT_EQ(title(), gMsg.TiVarDesk + " - Drawing1.dwg - [" + gMsg.TxNewVarFile + "]");
        EXPECT_TRUE(user().answers.empty());
        expectStillOpen();
    }
}

TEST_F(FileCommands, UserListFilesThatCannotBeReadOrWrittenGiveTheirBox) {
    open();
    writeFile("fremd.var", "NIRGENDS#1\nLUPREC#5\nKEINE#2\n");
    std::filesystem::create_directory(folder / "ordner.var");

    // Names the list lacks: a warning with their number; the others are read.
    user().answers = {path("fremd.var")};
    d->OnCommand(kOpen);
    EXPECT_EQ(printed("BOX"),
              std::vector<std::string>{box("warning", gMsg.TiMsgBoxWarn, "2 " + gMsg.TxInsertError)});
    EXPECT_EQ(userListNames(), std::vector<std::string>{"LUPREC"});
    EXPECT_EQ(title(), gMsg.TiVarDesk + " - Drawing1.dwg - [fremd.var]");

    // A file that is not there: the reader's box; the name stays for the next Save.
    user().lines.clear();
    user().answers = {"yes", path("fehlt.var")};
    d->OnCommand(kOpen);
    EXPECT_EQ(printed("BOX").back(), errorBox(path("fehlt.var") + gMsg.TxFileOpenFailure));
    EXPECT_EQ(context->varList.userFileName, "fehlt.var");
    EXPECT_FALSE(context->varList.hasUserEntries());
    expectStillOpen();

    // A file that cannot be written: the writer's box, and the list keeps its entries.
    setNew("LUPREC", "6");
    d->OnCommand(kShowList);
    for (const std::string& target : {path("kein/ordner/liste.var"), path("ordner.var")}) {
        SCOPED_TRACE(target);
        user().lines.clear();
        user().answers = {target};
        d->OnCommand(kSaveAs);
        EXPECT_EQ(printed("BOX"), std::vector<std::string>{errorBox(target + gMsg.TxFileOpenFailure)});
        EXPECT_EQ(userListNames(), std::vector<std::string>{"LUPREC"});
        EXPECT_EQ(at("LUPREC").newText, "6");
        expectStillOpen();
    }
}

TEST_F(FileCommands, ShowErrorLogStartsTheEditorOnTheLogOrSaysWhyNot) {
    open();
    writeFile("kein-programm", "just text\n");
    chmod(path("kein-programm").c_str(), 0755);
    const std::string log = dir() + "VarDesk.err";
    struct Case {
        std::string editor;
        std::string box; // empty: the editor starts
    };
    const std::vector<Case> cases = {
        {"/bin/true", ""},
        {path("fehlt"), path("fehlt") + " " + gMsg.TxSpawnNotFound},
        {path("kein/ordner/editor"), path("kein/ordner/editor") + " " + gMsg.TxSpawnNotFound},
        {path("kein-programm"), path("kein-programm") + " " + gMsg.TxSpawnNoExe},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.editor);
        user().lines.clear();
        context->editorPath = c.editor;
        d->OnCommand(kShowErrorLog);
        std::vector<std::string> expected = {"EXEC: " + c.editor + " \"" + log + "\""};
        if (!c.box.empty())
            expected.push_back(errorBox(c.box));
        EXPECT_EQ(user().lines, expected);
        expectStillOpen();
    }
}

// The configuration dialog ends with OK, having taken avlPath.
std::function<int(QDialog&)> configureAvl(const std::string& avlPath) {
    return [avlPath](QDialog& dialog) {
        auto* config = qobject_cast<cDlgConfig*>(&dialog);
        if (!config)
            return dialog.result();
        config->avlPath = avlPath;
        config->accept();
        return config->result();
    };
}

TEST_F(FileCommands, ANewAvlFileIsLoadedWithoutClosingTheDialog) {
    open();
    writeFile("neu.avl", "0#Allgemein#1\n1#CLAYER#++#Aktueller Layer\n1#LTSCALE#++#Linientypfaktor\n");
    setNew("LUPREC", "6");
    d->OnCommand(kShowList);

    // Asked to save the user list first: No, and the new file is read all the same.
    user().modal = configureAvl(path("neu.avl"));
    user().answers = {"no"};
    d->OnCommand(kConfig);
    // The load step's own question about its log (the host has many variables the file lacks)
    // follows, and is answered No.
    const std::vector<std::string> boxes = printed("BOX");
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0], question(gMsg.TxNewAcadListSelected + " " + gMsg.TxSaveUserList));
    EXPECT_EQ(boxes[1], question(gMsg.TxShowErrorLog));
    EXPECT_EQ(shownNames(), (std::vector<std::string>{"CLAYER", "LTSCALE"}));
    EXPECT_EQ(context->view, 0);
    EXPECT_EQ(context->varList.avlFileName, "neu.avl");
    EXPECT_EQ(d->currentVar, nullptr);
    expectStillOpen();

    // The same path again, with nothing to ask: the list stays as it is.
    user().lines.clear();
    setNew("CLAYER", "Mauer");
    d->OnCommand(kConfig);
    EXPECT_TRUE(printed("BOX").empty());
    EXPECT_EQ(at("CLAYER").newText, "\"Mauer\"");

    // Cancelled: nothing happens.
    user().modal = nullptr;
    d->OnCommand(kConfig);
    EXPECT_EQ(context->varList.avlFileName, "neu.avl");
}

TEST_F(FileCommands, AnAvlFileThatCannotBeOpenedLeavesTheDialogOpenAndEmpty) {
    open();
    setNew("LUPREC", "6");
    const std::string missing = path("fehlt.avl");
    // The configuration asks whether to take the missing path, then the user list is saved.
    user().modal = configureAvl(missing);
    user().answers = {"yes", "yes", path("gerettet")};
    d->OnCommand(kConfig);
    EXPECT_EQ(readFile(folder / "gerettet.var"), "LUPREC                   #6\n");
    const std::vector<std::string> boxes = printed("BOX");
    ASSERT_FALSE(boxes.empty());
    EXPECT_EQ(boxes.back().rfind("BOX error: ", 0), 0u) << boxes.back();
    EXPECT_NE(boxes.back().find("fehlt.avl"), std::string::npos) << boxes.back();
    EXPECT_EQ(context->varList.first, nullptr);
    EXPECT_EQ(rows().rowCount(), 0);
    EXPECT_EQ(context->view, 0);
    expectStillOpen();
    // The commands still answer on an empty list.
    user().lines.clear();
    d->OnCommand(kSetAll);
    EXPECT_EQ(pane(0), gMsg.TxWriteNone);
}

} // namespace
