// DlgFind2: the search dialog, which selects variables by a wildcard pattern in its owner's list.
#pragma once
#include "TemplateDialog.h"

#include <QList>
#include <QRect>

#include <cstdint>
#include <string>
#include <vector>

class CEditEx;
class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class DocumentState;
class cSysVar;
struct EditKeyNotification;

// The notification the search dialog sends its owner after each step.
struct FindNotification {
    QWidget* sender = nullptr; // the search dialog
    std::int32_t value = 0;    // N: see DlgFind2
    std::int32_t code = 0;     // kFindNotifyCode
};

inline constexpr std::int32_t kFindNotifyCode = 1024;

// The row an owner shows after a notification, and whether the selected rows it was chosen from
// are every hit of a search.
struct FoundRow {
    int row = -1; // -1: none
    bool isEveryHit = false;
};

// A dialog that opens DlgFind2 and shows its steps. The handler runs synchronously inside the
// step, before the step's message box, and must:
//   1. rebuild its list, so that the rows of the records with isSelected come up selected and
//      the flags are cleared;
//   2. with no selected row, stop;
//   3. scroll to the row that DlgFind2::rowToShow names, if any.
class FindOwner {
public:
    virtual void onFindNotify(const FindNotification& notification) = 0;

protected:
    ~FindOwner() = default;
};

// Built from template 1121. The hits are the records, in the order of the variable list, whose
// joined texts (description, name, current value, new value, each when its box is checked)
// match "*pattern*" through acutWcMatchEx with case ignored; an empty pattern is matched as an
// empty pattern. A search selects every hit; next and previous select one hit and wrap at both
// ends; all hits selects every hit again. The owner's list follows each step through one
// FindNotification whose value N is:
//   search:              minus the number of hits (0 for none)
//   next, previous hit:  the current hit index, 0 or greater
//   all hits:            minus the current hit index
// The rectangle, the field mask and the pattern are stored in the document context on every
// way out.
class DlgFind2 : public TemplateDialog {
    Q_OBJECT
public:
    static constexpr int kTemplateId = 1121;
    static constexpr int kIdSearch = 4;
    static constexpr int kIdCancel = 2;
    static constexpr int kIdHelp = 57670;
    static constexpr int kIdNext = 1020;
    static constexpr int kIdPrevious = 1021;
    static constexpr int kIdAll = 1024;
    static constexpr int kIdPattern = 1006;
    static constexpr int kIdPatternLabel = 1022;
    static constexpr int kIdOptions = 1023;
    static constexpr int kIdCheckVariable = 1015;
    static constexpr int kIdCheckDescription = 1016;
    static constexpr int kIdCheckValueOld = 1018;
    static constexpr int kIdCheckValueNew = 1017;

    // Bits of the field mask (SearchCheck).
    static constexpr std::int32_t kMaskName = 1;
    static constexpr std::int32_t kMaskDescription = 2;
    static constexpr std::int32_t kMaskCurrent = 4;
    static constexpr std::int32_t kMaskNew = 8;

    // The outer window's least size; its height is also its greatest.
    static constexpr int kMinTrackWidth = 275;
    static constexpr int kTrackHeight = 235;

    // Works on context's variable list and settings fields; context must outlive the dialog.
    explicit DlgFind2(DocumentState& context, QWidget* parent = nullptr);

    // Set by the opener before the modal run. Without an owner the steps select records all the
    // same, and nobody is told.
    void setOwner(FindOwner* owner) { m_owner = owner; }
    // On: only records of the user list are searched. Off at construction.
    void setLimitToUserList(bool limit) { m_limitToUserList = limit; }

    // The row an owner scrolls into view after a notification with value N, given the rows that
    // are selected after its rebuild, ascending: the first of them when their count equals -N
    // (then every hit of a search is selected) or is 1, else the one at position -N among them;
    // none when there is no such position. Hits without a row in the owner's view leave fewer
    // selected rows than hits, so a walk may find none.
    static FoundRow rowToShow(const QList<int>& selectedRows, std::int32_t value);

    // ---- the steps, as their buttons run them ----
    void OnSearch();
    void OnNext();
    void OnPrevious();
    void OnAll();

    const std::vector<cSysVar*>& hits() const { return m_hits; }
    std::int32_t currentHit() const { return m_header.value; }

private:
    void OnInitDialog() override;
    void OnPatternKey(const EditKeyNotification& notification);
    void LayoutControls() override;
    void saveOnEnd() override;
    void sendNotification();
    void selectHit(int index);

    DocumentState& m_context;
    FindOwner* m_owner = nullptr;
    bool m_limitToUserList = false;
    std::vector<cSysVar*> m_hits;
    FindNotification m_header; // value is the current hit index between the steps
    QRect m_lastClientRect;

    QPushButton* m_search = nullptr;
    QPushButton* m_next = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_all = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_help = nullptr;
    int m_buttonWidth = 0;  // Search, Cancel and Help as the template has them
    int m_optionsWidth = 0; // the group box as the template has it
    CEditEx* m_pattern = nullptr;
    QLabel* m_patternLabel = nullptr;
    QGroupBox* m_options = nullptr;
    QCheckBox* m_checkVariable = nullptr;
    QCheckBox* m_checkDescription = nullptr;
    QCheckBox* m_checkValueOld = nullptr;
    QCheckBox* m_checkValueNew = nullptr;
};
