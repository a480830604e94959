// Tests of the main dialog's variable commands: set and its report, the search in the main dialog.
#include "CommandsTestKit.h"

#include "dialogs/DlgFind2.h"
#include "dialogs/main/VarListView.h"

#include <QAction>
#include <QLineEdit>

namespace {

using namespace commandstest;
using namespace mainids;

class VariableCommands : public CommandsTest {};

// The report of a Set, from the counts the host's answers give; three at once are in the
// scenario commands_set.
TEST_F(VariableCommands, SetSelectionReportsWhatArrivedInTheBoxAndTheStatusBar) {
    struct Case {
        const char* label;
        std::vector<std::pair<const char*, std::string>> values; // selected, with their new texts
        std::string report;
    };
    const std::vector<Case> cases = {
        {"one taken, one refused",
         {{"LUPREC", "6"}, {"OSMODE", "20000"}},
         gMsg.TxWriteSuccessOnce + " " + gMsg.TxWriteFailureOnce},
        {"taken but changed", {{"ANGBASE", "7"}}, " " + gMsg.TxWriteFailureOnce},
        {"read-only alone", {{"VIEWCTR", "1 2 3"}}, gMsg.TxWriteNone},
        {"an empty new text", {{"LUPREC", ""}}, gMsg.TxWriteNone},
    };
    open();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        user().lines.clear();
        for (auto& [name, text] : c.values)
            setNew(name, text);
        d->FillList();
        d->listCtrl->clearSelection();
        for (auto& value : c.values)
            selectRow(rowOf(value.first));
        d->OnCommand(kSetSelection);
        EXPECT_EQ(printed("BOX"), std::vector<std::string>{infoBox(c.report)});
        EXPECT_EQ(pane(0), c.report);
        EXPECT_TRUE(pane(1).empty() && pane(2).empty());
        EXPECT_EQ(d->runCode, 16);
        EXPECT_TRUE(d->listCtrl->selectionModel()->selectedRows().isEmpty());
        for (const cSysVar* v = context->varList.first; v; v = v->next)
            EXPECT_FALSE(v->isMarkedToSet() || v->setSucceeded() || v->setFailed()) << v->name;
        // Back to the host's defaults, with no new values, for the next case.
        for (const char* name : {"LUPREC", "AUNITS", "ANGBASE"})
            host.setVariableText(name, name == std::string("LUPREC") ? "4" : "0");
        context->varList.clearAllNewValues();
        context->varList.readAllFromHost();
    }
}

// What the host refused or changed stays for another try; a record without a row is not
// written; compare mode turned off shows the rest again.
TEST_F(VariableCommands, SetAllInCompareModeWritesTheShownRowsAndEmptiesTheList) {
    open();
    setNew("LUPREC", "6");
    setNew("AUNITS", "2");
    setNew("OSMODE", "0");
    at("OSMODE").clearInUserList(); // deleted from the user list, its new text stays
    d->OnCommand(kCompare);
    EXPECT_EQ(shownNames(), (std::vector<std::string>{"AUNITS", "LUPREC"}));
    d->OnCommand(kSetAll);
    EXPECT_EQ(pane(0), "2 " + gMsg.TxWriteSuccess + " ");
    EXPECT_EQ(rows().rowCount(), 0);
    EXPECT_EQ(hostValue("OSMODE"), "4133") << "a record without a row is not written";
    EXPECT_EQ(hostValue("LUPREC"), "6");

    d->OnCommand(kCompare);
    EXPECT_EQ(context->compareMode, 0);
    EXPECT_FALSE(d->menuAction(kCompare)->isChecked());
    EXPECT_FALSE(d->toolAction(kButtonCompare)->isChecked());
    EXPECT_TRUE(d->listCtrl->hasFocus());
    EXPECT_EQ(rows().cellText(rowOf("LUPREC"), 1).toStdString(), "6") << "column 1 shows what the host holds";
}

// The search's notification, with the rows that the search marked.
TEST_F(VariableCommands, FindNotificationShowsTheHitsInTheStatusAndFields) {
    open();
    struct Case {
        const char* label;
        std::vector<const char*> marked;
        std::int32_t value;  // N
        std::string status;  // pane 0 afterwards: a result text or the shown record's theme
        const char* current; // the record in the fields, or null
    };
    const std::vector<Case> cases = {
        {"no hit", {}, 0, gMsg.TxVarNotFound, nullptr},
        {"two hits of two", {"AUNITS", "LUPREC"}, -2, "2 " + gMsg.TxVarFound, "AUNITS"},
        {"a step onto one hit", {"OSMODE"}, 1, "Anzeige", "OSMODE"},
        {"all hits from index 1", {"AUNITS", "LUPREC"}, -1, "Einheiten", "LUPREC"},
        {"more hits than rows", {"AUNITS", "LUPREC"}, -3, "", nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        d->SetStatusTexts({}, {}, {});
        for (const char* name : c.marked)
            at(name).setSelected();
        d->OnFindNotify(c.value);
        EXPECT_EQ(std::string(d->currentVar ? d->currentVar->name : "(none)"),
                  std::string(c.current ? c.current : "(none)"));
        EXPECT_EQ(pane(0), c.status);
        EXPECT_EQ(static_cast<int>(selectedNames().size()), static_cast<int>(c.marked.size()));
        for (const char* name : c.marked)
            EXPECT_FALSE(at(name).isSelected()) << name << " keeps its search mark";
    }
}

// The search dialog itself, run from the main dialog, limited to the user list in view 1.
TEST_F(VariableCommands, FindInTheUserListSelectsItsHitsInTheMainList) {
    open();
    setNew("LUPREC", "6");
    setNew("AUNITS", "2");
    d->OnCommand(kShowList);
    context->searchCheck = DlgFind2::kMaskName;
    user().modal = [](QDialog& dialog) {
        auto* find = qobject_cast<DlgFind2*>(&dialog);
        if (!find)
            return dialog.result();
        find->show();
        control<QLineEdit>(*find, DlgFind2::kIdPattern)->setText("A");
        find->OnSearch();
        find->reject();
        return find->result();
    };
    d->OnCommand(kFind);
    // ANGBASE, FILEDIA and INSBASE match too, but they are not in the user list.
    EXPECT_EQ(selectedNames(), std::vector<std::string>{"AUNITS"});
    EXPECT_EQ(pane(0), gMsg.TxOneVarFound);
    ASSERT_NE(d->currentVar, nullptr);
    EXPECT_EQ(d->currentVar->name, "AUNITS");
}

} // namespace
