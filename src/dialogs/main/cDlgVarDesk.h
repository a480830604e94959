// cDlgVarDesk: the main dialog with menu, tool bar, list, description, value field and status bar.
#pragma once
#include "MainDialogIds.h"
#include "VarListView.h"
#include "vars/cSysVarList.h"

#include <QDialog>
#include <QIcon>
#include <QRect>

#include <array>
#include <cstdint>
#include <map>
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
// ends only through EndRun, which leaves runCode at 0; Enter and Escape never end it.
class cDlgVarDesk : public QDialog {
    Q_OBJECT
public:
    // Builds the frame (menu, tool bar, controls, status bar) from template 1000 for context,
    // which must outlive the dialog. The start sequence runs when the dialog is first shown.
    explicit cDlgVarDesk(DocumentState& context, QWidget* parent = nullptr);
    ~cDlgVarDesk() override;

    // Tool tips of the tool bar buttons, by button id; owned by the dialog while it has them.
    struct ToolTipTable {
        std::vector<std::pair<int, QString>> tips;
    };

    std::int32_t visibleLines = mainids::kMaxVisibleLines; // lines the description shows, 1 to 3
    std::int32_t runCode = 0;                              // read by the run loop; 0 once ended
    QToolBar* toolBar = nullptr;                           // 59392
    std::vector<QIcon> toolBarImages;                      // 20, image index = button id - 7000
    ToolTipTable* toolTips = nullptr;                      // owned; null when none
    QPlainTextEdit* descriptionEdit = nullptr;             // 9003
    QLineEdit* valueEdit = nullptr;                        // 9004
    VarListView* listCtrl = nullptr;                       // 9002
    std::vector<QIcon> rowImages;                          // the six row images
    QStatusBar* statusBar = nullptr;                       // 59393
    ReportList errorLines;                                 // log lines of the load step
    QMenu* contextMenu = nullptr;                          // owned; null when none
    cSysVar* currentVar = nullptr;                         // record in the two fields; not owned
    QRect lastClientRect;                                  // client rectangle of the last layout

    // ---- frame ----
    void CreateToolBar();
    void CreateStatusBar();
    void UpdateMenuTexts();
    void RefreshTitle();
    void SetStatusTexts(const std::string& pane0, const std::string& pane1, const std::string& pane2);
    void ShowStatus(const cSysVar* record);
    void LayoutControls();
    void SaveGeometry();
    void EndRun();

    // ---- list ----
    void SetupList();
    void FillList();
    void RememberSelection();
    // ---- value field ----
    void ShowVariable(cSysVar* record);
    void ApplyValueEdit();
    void BuildContextMenu();

    // ---- file and variable commands (FileCommands.cpp, VariableCommands.cpp) ----
    // Shows the user list and empties it, after asking when it has entries. False when the user
    // kept the entries.
    bool NewList();
    void OpenList();
    void SaveList();
    void SaveListAs();
    // The configuration dialog, then a load of the new AVL file when its path has changed.
    void AfterConfiguration();
    // Sends the records marked to set to the host, reads all back and reports in a box and in
    // the status bar how many arrived unchanged and how many did not.
    void WriteMarkedVariables();
    // The search dialog's notification with its value N (minus the hits after a search, the hit
    // index after a step, minus that index after all hits).
    void OnFindNotify(std::int32_t value);

    // Runs a menu command by id, as the menu or a posted tool bar click does.
    void OnCommand(int id);
    // The menu command a tool bar button posts; 0 for an id outside 7000 to 7019.
    static int commandOfButton(int buttonId);

    // ---- access for the layout's owners and tests ----
    QAction* menuAction(int id) const;
    QAction* toolAction(int buttonId) const;
    QLabel* statusPane(int index) const;
    QWidget* clientArea() const { return m_client; }
    DocumentState& context() const { return m_context; }

    void setVisible(bool visible) override;

public slots:
    // Enter and Escape: the first applies the value field, the second drops the current record.
    void accept() override;
    void reject() override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void OnInitDialog();
    void OnOK();
    void OnCancel();
    void buildMenu();
    void placeFrameParts();
    void setStatusParts();
    void updateDescriptionScrollBar();
    // List events: a click, Up or Down onto a row, and a context menu at a screen point.
    void OnListClick(cSysVar* record);
    void OnListStep(cSysVar* record, bool single);
    void OnContextMenu(const QPoint& screenPoint);
    void applyMenuMarks();
    void applyToolMarks();
    void onToolButton(int buttonId);

    // View and order commands.
    void OnShowView(ListView view);
    void OnSortOrder(ListOrder order);
    void OnInfo();
    // Commands of the file and variable command sets; see cDlgVarDeskCommands.cpp.
    void OnFileNew();
    void OnFileOpen();
    void OnFileSave();
    void OnFileSaveAs();
    void OnShowErrorLog();
    void OnConfig();
    void OnSelectAll();
    void OnInverse();
    void OnSelectList();
    void OnFind();
    void OnAdd();
    void OnDelete();
    void OnSetSelection();
    void OnSetAll();
    void OnCompare();
    void OnHelp();

    DocumentState& m_context;
    QMenuBar* m_menuBar = nullptr;
    QWidget* m_client = nullptr;
    VarListModel* m_model = nullptr;
    ValueEditing* m_editing = nullptr; // the two fields of the current record
    std::array<QLabel*, 3> m_panes{};
    std::map<int, QAction*> m_menuActions;
    std::vector<QMenu*> m_popups;
    std::array<QAction*, mainids::kButtonCount> m_toolActions{};
    bool m_initialised = false;
};

// The run of the main dialog for context: made with no parent, run modally through the host's UI
// services until its runCode is 0, then deleted. Nothing happens without UI services or without
// the application object that widgets need.
void runMainDialog(DocumentState& context);
