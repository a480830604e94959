// FileCommands: the main dialog's file commands: new, open, save and save as of the user list, the error log,
// configuration.
#include "FileCommands.h"

#include "dialogs/cDlgConfig.h"
#include "dialogs/DialogRoutines.h"
#include "dialogs/FileBoxes.h"
#include "dialogs/VarListView.h"
#include "LoadStep.h"
#include "MainDialogPort.h"
#include "settings/cMsgCatalog.h"
#include "vars/DocumentState.h"
#include "vars/ErrorLog.h"
#include "vars/TextHelpers.h"

#include "hostui.h"
#include "UiServices.h"

#include <new>
#include <optional>

namespace {

constexpr const char* kUserListExtension = "var";

// "Benutzerdefinierte Variablenliste (*.var)|*.var|Alle Dateien (*.*)|*.*||"
std::string userListFilter() {
    return MakeFilterEntry(gMsg.FiUserVarList, kUserListExtension, false) +
           MakeFilterEntry(gMsg.FiAll, "*", true);
}

// The chosen path of a user list file dialog; none when it was cancelled or no services exist.
std::optional<std::string> chooseUserListFile(kova::FileDialogKind kind, const std::string& initialFile) {
    kova::UiServices* ui = acHostUiServices();
    if (!ui)
        return std::nullopt;
    return ui->fileDialog(kind, userListFilter(), initialFile, kUserListExtension);
}

// Writes the user list and shows how it went; true when it was written. The file holds the value
// texts as they stand, so the list's point separator plays no part.
bool writeUserList(cSysVarList& list, const std::string& directory, const std::string& fileName,
                   bool selectedOnly) {
    const FileResult written = list.writeUserFile(directory, fileName, selectedOnly);
    showFileResult(written);
    return static_cast<bool>(written);
}

} // namespace

FileCommands::FileCommands(MainDialogPort& dialog, DocumentState& context)
    : m_dialog(dialog), m_context(context) {}

bool FileCommands::NewList() {
    cSysVarList& list = m_context.varList;
    // The user sees the entries the question is about.
    m_dialog.ShowView(ListView::UserList);
    if (list.hasUserEntries() && !gMsg.AskYesNo(gMsg.TxVarLoaded))
        return false;
    list.userFileName = gMsg.TxNewVarFile;
    list.clearAllNewValues();
    m_dialog.ShowView(ListView::UserList);
    return true;
}

void FileCommands::OpenList() {
    if (!NewList())
        return;
    const std::optional<std::string> chosen = chooseUserListFile(kova::FileDialogKind::Open, {});
    if (!chosen)
        return; // the entries went with NewList: the list stays empty
    cSysVarList& list = m_context.varList;
    pathFileName(*chosen, list.userFileName);
    pathDirectory(*chosen, list.userDirectory);

    ReportList report;
    const UserListRead read = list.readUserFile(report);
    showUserFileResult(read, report, list);
    // After a failed read the title keeps its last name, though the next Save writes to the new one.
    if (read.isRead())
        m_dialog.RefreshTitle();
    m_context.view = ListView::UserList;
    m_dialog.ShowModeMarks();
    m_dialog.FillList();
}

void FileCommands::SaveList() {
    cSysVarList& list = m_context.varList;
    if (m_context.view == ListView::All) {
        SaveListAs();
        return;
    }
    if (!list.hasUserEntries()) {
        ShowInfoBox(gMsg.TxNoUserList);
        return;
    }
    if (list.userFileName == gMsg.TxNewVarFile) {
        SaveListAs();
        return;
    }
    // A failure has shown its own box; the list stays as it is.
    writeUserList(list, list.userDirectory, list.userFileName, false);
}

void FileCommands::SaveListAs() {
    cSysVarList& list = m_context.varList;
    const std::string initialFile = list.userDirectory + list.userFileName;

    if (m_context.view == ListView::All) {
        // The selected rows, headers included, decide; the file holds a list for later use and
        // changes neither the user list nor its file name.
        if (m_dialog.listView().selectedCount() == 0) {
            ShowInfoBox(gMsg.TxNoSelection);
            return;
        }
        const std::optional<std::string> chosen = chooseUserListFile(kova::FileDialogKind::Save, initialFile);
        if (!chosen)
            return;
        std::string directory, fileName;
        pathDirectory(*chosen, directory);
        pathFileName(*chosen, fileName);
        m_dialog.RememberSelection();
        writeUserList(list, directory, fileName, true);
        m_dialog.FillList();
        return;
    }

    if (!list.hasUserEntries()) {
        ShowInfoBox(gMsg.TxNoUserList);
        return;
    }
    const std::optional<std::string> chosen = chooseUserListFile(kova::FileDialogKind::Save, initialFile);
    if (!chosen)
        return;
    pathFileName(*chosen, list.userFileName);
    pathDirectory(*chosen, list.userDirectory);
    m_dialog.RefreshTitle();
    // A chosen name has its extension, so it never equals TxNewVarFile and SaveList writes.
    SaveList();
}

void FileCommands::AfterConfiguration() {
    auto* config = new (std::nothrow) cDlgConfig(m_context, m_dialog.dialogParent());
    if (!config)
        return;
    const DialogResult result = runDialog(*config);
    delete config;
    if (result != DialogResult::Accepted)
        return;

    cSysVarList& list = m_context.varList;
    // A changed editor path alone needs nothing more.
    if (m_context.avlFilePath == list.avlDirectory + list.avlFileName)
        return;
    if (list.hasUserEntries() &&
        gMsg.AskYesNo(gMsg.TxNewAcadListSelected + " " + gMsg.TxSaveUserList, kova::BoxKind::Plain)) {
        m_context.view = ListView::UserList;
        SaveListAs();
    }
    // The rows and the record in the fields point at the records that clearAll deletes.
    m_dialog.ShowVariable(nullptr);
    m_dialog.listView().fillRows({});
    list.clearAll();
    m_context.errorCount = 0;
    m_dialog.RunLoadStep();
    m_dialog.ShowView(ListView::All);
}

void FileCommands::ShowErrorLog() {
    ::ShowErrorLog(m_context);
}
