// MainDialogPort: what the file and variable commands need of the main dialog.
#pragma once
#include "LoadStep.h"
#include "vars/ListModes.h"

#include <string>

class QWidget;
class VarListView;
class cSysVar;

// The main dialog as its commands see it: the list, the fields, the status bar, the title and
// the marks of the modes. The document context the commands work on is handed to them apart.
class MainDialogPort {
public:
    // The list of rows the commands select in and read from.
    virtual VarListView& listView() = 0;
    // The parent of the dialogs the commands open.
    virtual QWidget* dialogParent() = 0;

    // Builds the rows anew for the context's view, compare mode and order; the fields empty.
    virtual void FillList() = 0;
    // Carries the rows' selection into the records, and gives the list the focus.
    virtual void RememberSelection() = 0;
    // Makes record (or none) the one in the description and value fields.
    virtual void ShowVariable(cSysVar* record) = 0;
    // The theme, mode and scope of record in the status panes; empty panes for none.
    virtual void ShowStatus(const cSysVar* record) = 0;
    virtual void SetStatusTexts(const std::string& pane0, const std::string& pane1,
                                const std::string& pane2) = 0;
    virtual void RefreshTitle() = 0;
    // Switches the context to view: title, marks and rows follow, and the list gets the focus.
    virtual void ShowView(ListView view) = 0;
    // The menu's and tool bar's marks after the context's view, order or compare mode changed.
    virtual void ShowModeMarks() = 0;
    // The load step anew on the context's list, its log lines added to the dialog's.
    virtual void RunLoadStep() = 0;
    virtual void SetRunCode(RunCode code) = 0;

protected:
    ~MainDialogPort() = default;
};
