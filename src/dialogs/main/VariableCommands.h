// VariableCommands: the main dialog's variable commands: selecting rows, add, delete, set, compare, search
// and help.
#pragma once
#include <cstdint>

class DocumentState;
class MainDialogPort;

// The commands of the Edit and Variable menus and help, on the rows of the dialog's list and the
// records of one document context. Both must outlive the commands.
class VariableCommands {
public:
    VariableCommands(MainDialogPort& dialog, DocumentState& context);

    // Selection of the record rows: all of them, the others, those of the user list.
    void OnSelectAll();
    void OnInverse();
    void OnSelectList();
    // The user list: the selection dialog adds to it; Delete takes the selected rows' records out.
    void OnAdd();
    void OnDelete();
    // Marks the selected rows' records, or those of all rows, to set, and sets them.
    void OnSetSelection();
    void OnSetAll();
    // Sends the records marked to set to the host, reads all back and reports in a box and in
    // the status bar how many arrived unchanged and how many did not.
    void WriteMarkedVariables();
    // Turns compare mode over.
    void OnCompare();
    // The search dialog, whose notifications come to OnFindNotify while it runs.
    void OnFind();
    // The search dialog's notification with its value N (minus the hits after a search, the hit
    // index after a step, minus that index after all hits).
    void OnFindNotify(std::int32_t value);
    void OnHelp();

private:
    MainDialogPort& m_dialog;
    DocumentState& m_context;
};
