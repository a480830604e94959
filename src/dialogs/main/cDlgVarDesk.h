// cDlgVarDesk: the main dialog with menu, tool bar, list, description, value field and status bar.
#pragma once
#include "dialogs/TemplateDialog.h"
#include "FileCommands.h"
#include "MainDialogIds.h"
#include "MainDialogPort.h"
#include "VariableCommands.h"
#include "VarListView.h"
#include "vars/cSysVarList.h"

#include <QIcon>
#include <QRect>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QMenuBar;
class QPlainTextEdit;
class QStatusBar;
class QToolBar;
class ValueEditing;
class DocumentState;

// The one window of the command. It holds no lasting state: view, compare mode, order, the
// variable list and the stored rectangle all live in the document context it is made for. It
// ends only through EndRun, which leaves the run code Idle; Enter and Escape never end it. The
// file and variable commands are classes of their own that reach the dialog through its port.
// Start, placing and the stored rectangle are those of every template dialog.
class cDlgVarDesk : public TemplateDialog, private MainDialogPort {
    Q_OBJECT
public:
    // Builds the frame (menu, tool bar, controls, status bar) from template 1000 for context,
    // which must outlive the dialog. The start sequence runs when the dialog is first shown.
    explicit cDlgVarDesk(DocumentState& context, QWidget* parent = nullptr);
    ~cDlgVarDesk() override;

    // Runs a menu command by id, as the menu or a posted tool bar click does.
    void OnCommand(int id);

    void FillList() override;
    void ShowVariable(cSysVar* record) override;
    void ShowStatus(const cSysVar* record) override;
    void SetStatusTexts(const std::string& pane0, const std::string& pane1,
                        const std::string& pane2) override;

    // ---- access for the run loop, the layout's owners and tests ----
    RunCode runCode() const { return m_runCode; }                // Idle once the run has ended
    std::int32_t visibleLines() const { return m_visibleLines; } // lines the description shows, 1 to 3
    cSysVar* currentVar() const { return m_currentVar; }         // the record in the two fields, or null
    VariableCommands& variableCommands() { return m_variableCommands; }
    QAction* menuAction(int id) const;
    QAction* toolAction(int buttonId) const;
    QLabel* statusPane(int index) const;
    QWidget* clientArea() const { return m_client; }

public slots:
    // Enter and Escape: the first applies the value field, the second drops the current record.
    void accept() override;
    void reject() override;

protected:
    // The start sequence of the first show: place, lay out, load, texts, list, focus.
    void OnInitDialog() override;
    // Menu bar and client area, then the controls for the client's size.
    void LayoutControls() override;
    // Column widths; tool tips and context menu are let go.
    void saveOnEnd() override;
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // ---- the port of the commands ----
    VarListView& listView() override { return *m_listCtrl; }
    QWidget* dialogParent() override { return this; }
    void RememberSelection() override;
    void RefreshTitle() override;
    void ShowView(ListView view) override;
    void ShowModeMarks() override;
    void RunLoadStep() override;
    void SetRunCode(RunCode code) override { m_runCode = code; }

    // ---- frame ----
    void CreateToolBar();
    void CreateStatusBar();
    void UpdateMenuTexts();
    void EndRun();
    void OnOK();
    void OnCancel();
    void buildMenu();
    void placeFrameParts();
    void setStatusParts();
    void applyMenuMarks();
    void applyToolMarks();
    void onToolButton(int buttonId);
    // The menu command a tool bar button posts; 0 for an id of no button.
    static int commandOfButton(int buttonId);

    // ---- list and value field ----
    void SetupList();
    void ApplyValueEdit();
    void BuildContextMenu();
    // List events: a click, Up or Down onto a row, and a context menu at a screen point.
    void OnListClick(cSysVar* record);
    void OnListStep(cSysVar* record, bool single);
    void OnContextMenu(const QPoint& screenPoint);

    // ---- commands of the dialog's own ----
    void OnSortOrder(ListOrder order);
    void OnInfo();

    DocumentState& m_context;
    FileCommands m_fileCommands;
    VariableCommands m_variableCommands;
    std::int32_t m_visibleLines = mainids::kMaxVisibleLines;
    RunCode m_runCode = RunCode::Idle; // read by the run loop; Idle once ended
    ReportList m_errorLines;           // log lines of the load step
    cSysVar* m_currentVar = nullptr;   // not owned
    QRect m_lastClientRect;            // client rectangle of the last layout
    QMenuBar* m_menuBar = nullptr;
    QWidget* m_client = nullptr;
    QToolBar* m_toolBar = nullptr;               // 59392
    QStatusBar* m_statusBar = nullptr;           // 59393
    VarListView* m_listCtrl = nullptr;           // 9002
    QPlainTextEdit* m_descriptionEdit = nullptr; // 9003
    QLineEdit* m_valueEdit = nullptr;            // 9004
    VarListModel* m_model = nullptr;
    ValueEditing* m_editing = nullptr;    // the two fields of the current record
    std::vector<QIcon> m_rowImages;       // by RowImage
    std::unique_ptr<QMenu> m_contextMenu; // null when none
    std::array<QLabel*, 3> m_panes{};
    std::map<int, QAction*> m_menuActions;
    std::vector<QMenu*> m_popups;
    std::vector<QAction*> m_toolActions; // in the tool bar's order
    std::vector<QIcon> m_toolBarImages;  // the image of each button, in the same order
};

// The run of the main dialog for context: made with no parent, run modally (runDialog) until its
// run code is Idle, then deleted. Nothing happens without UI services or without the application
// object that widgets need.
void runMainDialog(DocumentState& context);
