// cDlgSlctSysVar: the selection dialog, through which variables enter the user list.
#pragma once
#include "DlgFind2.h"
#include "TemplateDialog.h"

#include <QIcon>
#include <QRect>

#include <cstdint>
#include <vector>

class QMenu;
class QPushButton;
class VarListModel;
class VarListView;
class DocumentState;

// Built from template 1007. Shows every variable of the context's list, grouped in the view
// order the main dialog uses, with its current value. OK sets inUserList of the variables of
// the selected rows and never clears it; any other end changes no flag but the search's
// isSelected. The rectangle and the two column widths are stored in the context at every end.
class cDlgSlctSysVar : public TemplateDialog, public FindOwner {
    Q_OBJECT
public:
    static constexpr int kTemplateId = 1007;
    static constexpr int kIdOk = 1;
    static constexpr int kIdCancel = 2;
    static constexpr int kIdHelp = 3;
    static constexpr int kIdFind = 4;
    static constexpr int kIdMarkAll = 1000;
    static constexpr int kIdInvert = 1001;
    static constexpr int kIdList = 1005;
    static constexpr int kCmdSelectAll = 8100; // context menu
    static constexpr int kCmdInverse = 8101;
    static constexpr int kIconMarkAll = 1084;
    static constexpr int kIconInvert = 1085;

    // Works on context's list and settings fields; context must outlive the dialog.
    explicit cDlgSlctSysVar(DocumentState& context, QWidget* parent = nullptr);
    ~cDlgSlctSysVar() override;

    // The list of variables (control 1005).
    VarListView& listView() const { return *m_list; }

    // Rebuilds the rows in the context's view order; rows of records with isSelected come up
    // selected and the flags are cleared.
    void FillList();
    // Selects every variable row and deselects the headers.
    void OnMarkAll();
    // Turns the selection of every variable row over and deselects the headers.
    void OnInvert();
    // Opens the search dialog over all variables, with this dialog as its owner.
    void OnFind();

    void onFindNotify(const FindNotification& notification) override;

public slots:
    void accept() override; // OK, and Enter

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void OnInitDialog() override;
    void SetupList();
    void LayoutControls() override;
    void saveOnEnd() override; // the column widths; the menu goes

    DocumentState& m_context;
    VarListView* m_list = nullptr; // 1005
    VarListModel* m_model = nullptr;
    std::vector<QIcon> m_rowImages; // by RowImage
    QMenu* m_contextMenu = nullptr; // owned; null when none
    QRect m_lastClientRect;         // client rectangle of the last layout
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_help = nullptr;
    QPushButton* m_find = nullptr;
    QPushButton* m_markAll = nullptr;
    QPushButton* m_invert = nullptr;
    int m_buttonWidth = 0; // Find, OK, Cancel and Help as the template has them
};
