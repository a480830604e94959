// FileCommands: the main dialog's file commands: new, open, save and save as of the user list, the error log,
// configuration.
#pragma once

class DocumentState;
class MainDialogPort;

// The commands of the File menu and the configuration, on the user list of one document context,
// shown through the dialog's port. Both must outlive the commands.
class FileCommands {
public:
    FileCommands(MainDialogPort& dialog, DocumentState& context);

    // Shows the user list and empties it, after asking when it has entries. False when the user
    // kept the entries.
    bool NewList();
    // A new list, then the user list file the user chooses read into it.
    void OpenList();
    // Writes the user list to its file; a list that has none yet, and view 0, go to SaveListAs.
    void SaveList();
    // Asks for a file: in view 0 the selected rows go there, else the user list, which takes the
    // file's name.
    void SaveListAs();
    // The configuration dialog, then a load of the new AVL file when its path has changed.
    void AfterConfiguration();
    // Opens the error log in the editor of the settings.
    void ShowErrorLog();

private:
    MainDialogPort& m_dialog;
    DocumentState& m_context;
};
