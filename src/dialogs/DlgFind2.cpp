// DlgFind2: the search dialog, which selects variables by a wildcard pattern in its owner's list.
#include "DlgFind2.h"
#include "DialogBuild.h"

#include "CEditEx.h"
#include "DialogRoutines.h"
#include "DialogTemplate.h"
#include "settings/cMsgCatalog.h"
#include "settings/HelpService.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include "acutads.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <algorithm>
#include <type_traits>

namespace {

constexpr int kButtonGap = 5;       // between the hit buttons, and between the check boxes
constexpr int kFirstCheckDrop = 15; // the first check box below the group box's top
constexpr int kCheckIndent = 20;

} // namespace

DlgFind2::DlgFind2(DocumentState& context, QWidget* parent) : TemplateDialog(parent), m_context(context) {
    DialogTemplate t;
    const DialogBaseUnits base = startFromTemplate(kTemplateId, t);
    keepRectIn(context.searchPosX, context.searchPosY, context.searchSizeX, context.searchSizeY);

    // The template's order, which is also the tab order. The group box comes before its check
    // boxes so that they lie above it.
    m_search = makeControl<QPushButton>(this, t, kIdSearch, base);
    m_search->setDefault(true);
    m_next = makeControl<QPushButton>(this, t, kIdNext, base);
    m_previous = makeControl<QPushButton>(this, t, kIdPrevious, base);
    m_all = makeControl<QPushButton>(this, t, kIdAll, base);
    m_pattern = makeControl<CEditEx>(this, t, kIdPattern, base);
    m_patternLabel = makeControl<QLabel>(this, t, kIdPatternLabel, base);
    m_options = makeControl<QGroupBox>(this, t, kIdOptions, base);
    m_checkVariable = makeControl<QCheckBox>(this, t, kIdCheckVariable, base);
    m_checkDescription = makeControl<QCheckBox>(this, t, kIdCheckDescription, base);
    m_checkValueOld = makeControl<QCheckBox>(this, t, kIdCheckValueOld, base);
    m_checkValueNew = makeControl<QCheckBox>(this, t, kIdCheckValueNew, base);
    m_cancel = makeControl<QPushButton>(this, t, kIdCancel, base);
    m_help = makeControl<QPushButton>(this, t, kIdHelp, base);
    m_buttonWidth = m_search->width();
    m_optionsWidth = m_options->width();

    connect(m_search, &QPushButton::clicked, this, &DlgFind2::OnSearch);
    connect(m_next, &QPushButton::clicked, this, &DlgFind2::OnNext);
    connect(m_previous, &QPushButton::clicked, this, &DlgFind2::OnPrevious);
    connect(m_all, &QPushButton::clicked, this, &DlgFind2::OnAll);
    connect(m_cancel, &QPushButton::clicked, this, &DlgFind2::reject);
    connect(m_help, &QPushButton::clicked, this, [] { ShowHelp("VarDesk", "SearchDialog"); });
    connect(m_pattern, &CEditEx::keyNotify, this, &DlgFind2::OnPatternKey, Qt::DirectConnection);
}

// ---- start and end ----

void DlgFind2::OnInitDialog() {
    m_header = FindNotification{this, 0, kFindNotifyCode};
    m_lastClientRect = QRect(0, 0, 0, 0);

    // The track limits are for the outer window; Qt limits the inside of the frame.
    const QSize frameExtra = windowFrameExtra(*this);
    setMinimumSize(kMinTrackWidth - frameExtra.width(), kTrackHeight - frameExtra.height());
    setMaximumHeight(kTrackHeight - frameExtra.height());

    placeAtKeptRect();

    setWindowTitle(qs(gMsg.TiSearch));
    m_search->setText(qs(gMsg.RsBtnSearch));
    m_next->setText(qs(gMsg.RsBtnNext));
    m_previous->setText(qs(gMsg.RsBtnPrevious));
    m_all->setText(qs(gMsg.RsBtnAll));
    m_patternLabel->setText(qs(gMsg.RsStcSearchPattern));
    m_options->setTitle(qs(gMsg.RsStcSearchOptions));
    m_checkVariable->setText(qs(gMsg.RsBtnCheckVariable));
    m_checkDescription->setText(qs(gMsg.RsBtnCheckDescription));
    m_checkValueOld->setText(qs(gMsg.RsBtnCheckValueOld));
    m_checkValueNew->setText(qs(gMsg.RsBtnCheckValueNew));
    m_cancel->setText(qs(gMsg.RsBtnCancel));
    m_help->setText(qs(gMsg.RsBtnHelp));

    m_next->setEnabled(false);
    m_previous->setEnabled(false);
    m_all->setEnabled(false);

    const std::int32_t mask = m_context.searchCheck;
    m_checkVariable->setChecked(mask & kMaskName);
    m_checkDescription->setChecked(mask & kMaskDescription);
    m_checkValueOld->setChecked(mask & kMaskCurrent);
    m_checkValueNew->setChecked(mask & kMaskNew);

    m_pattern->setText(qs(m_context.searchPattern));

    // A hidden window gets its size event only when shown: lay out for the present size now.
    LayoutControls();
}

void DlgFind2::saveOnEnd() {
    std::int32_t mask = 0;
    if (m_checkVariable->checkState() == Qt::Checked)
        mask |= kMaskName;
    if (m_checkDescription->checkState() == Qt::Checked)
        mask |= kMaskDescription;
    if (m_checkValueOld->checkState() == Qt::Checked)
        mask |= kMaskCurrent;
    if (m_checkValueNew->checkState() == Qt::Checked)
        mask |= kMaskNew;
    m_context.searchCheck = mask;
    m_context.searchPattern = stdText(m_pattern->text());
}

// ---- the steps ----

void DlgFind2::OnPatternKey(const EditKeyNotification& notification) {
    if (notification.key == kVirtualKeyReturn)
        OnSearch();
    else if (notification.key == kVirtualKeyEscape)
        m_cancel->setFocus(Qt::OtherFocusReason); // a second Escape, on the button, ends the dialog
}

void DlgFind2::OnSearch() {
    m_hits.clear();
    const std::string typed = stdText(m_pattern->text());
    const std::string pattern = typed.empty() ? std::string() : formatText("*%s*", typed.c_str());

    // The boxes as they stand now, not the stored mask.
    const bool byName = m_checkVariable->isChecked();
    const bool byDescription = m_checkDescription->isChecked();
    const bool byCurrent = m_checkValueOld->isChecked();
    const bool byNew = m_checkValueNew->isChecked();

    for (cSysVar* record = m_context.varList.first; record; record = record->next) {
        if (m_limitToUserList && !record->inUserList())
            continue;
        // One text, so that a pattern may match across the border of two fields.
        std::string text;
        if (byDescription)
            text += record->description;
        if (byName)
            text += record->name;
        if (byCurrent)
            text += record->currentText;
        if (byNew)
            text += record->newText;
        if (acutWcMatchEx(text.c_str(), pattern.c_str(), true)) {
            record->setSelected();
            m_hits.push_back(record);
        }
    }

    const int count = static_cast<int>(m_hits.size());
    m_header.value = -count;
    sendNotification();
    m_header.value = 0;

    if (count == 0)
        ShowInfoBox(gMsg.TxVarNotFound);
    else if (count == 1)
        ShowInfoBox(gMsg.TxOneVarFound);
    else
        ShowInfoBox(formatText("%d %s", count, gMsg.TxVarFound.c_str()));

    m_all->setEnabled(false);
    m_next->setEnabled(count >= 2);
    m_previous->setEnabled(count >= 2);
}

void DlgFind2::selectHit(int index) {
    m_header.value = index;
    m_hits[index]->setSelected();
    sendNotification();
}

void DlgFind2::OnNext() {
    const int n = static_cast<int>(m_hits.size());
    if (n == 0)
        return;
    m_all->setEnabled(true);
    selectHit((m_header.value + n + 1) % n);
}

void DlgFind2::OnPrevious() {
    const int n = static_cast<int>(m_hits.size());
    if (n == 0)
        return;
    m_all->setEnabled(true);
    selectHit((m_header.value + n - 1) % n);
}

void DlgFind2::OnAll() {
    m_all->setEnabled(false);
    for (cSysVar* record : m_hits)
        record->setSelected();
    m_header.value = -m_header.value;
    sendNotification();
    m_header.value = -m_header.value;
}

void DlgFind2::sendNotification() {
    m_header.sender = this;
    m_header.code = kFindNotifyCode;
    if (m_owner)
        m_owner->onFindNotify(m_header);
}

FoundRow DlgFind2::rowToShow(const QList<int>& selectedRows, std::int32_t value) {
    if (selectedRows.isEmpty())
        return {};
    const std::int64_t k = -static_cast<std::int64_t>(value);
    if (k == selectedRows.size())
        return {selectedRows.first(), true};
    if (selectedRows.size() == 1)
        return {selectedRows.first(), false};
    if (k < 0 || k >= selectedRows.size())
        return {};
    return {selectedRows[static_cast<int>(k)], false};
}

// ---- layout ----

void DlgFind2::LayoutControls() {
    if (rect() == m_lastClientRect)
        return;
    m_lastClientRect = rect();
    setUpdatesEnabled(false);
    const int W = width();
    const int H = height();

    m_patternLabel->move(kMargin, kMargin);

    const int fieldLeft = rightOf(m_patternLabel) + kMargin;
    m_pattern->setGeometry(fieldLeft, kMargin, W - kMargin - fieldLeft, m_pattern->height());

    // The row of Search, Cancel and Help, centred, as wide as their captions need but within
    // the dialog.
    const int bw = std::min(fittedButtonWidth(m_buttonWidth, {m_search, m_cancel, m_help}),
                            std::max(0, (W - 4 * kMargin) / 3));
    const int bh = m_search->height();
    const int rowTop = H - kMargin - bh;
    int x = (W - 3 * bw - 40) / 2 + kMargin;
    for (QPushButton* button : {m_search, m_cancel, m_help}) {
        button->setGeometry(x, rowTop, bw, bh);
        x += bw + kMargin;
    }

    // The hit buttons at the right, below the field.
    const QSize hitSize = m_next->size();
    int top = bottomOf(m_pattern) + kMargin;
    for (QPushButton* button : {m_previous, m_next, m_all}) {
        button->setGeometry(W - kMargin - hitSize.width(), top, hitSize.width(), hitSize.height());
        top += hitSize.height() + kButtonGap;
    }

    // The group box ends before the hit buttons.
    const int groupTop = bottomOf(m_patternLabel) + kMargin;
    const int groupWidth = std::min(m_optionsWidth, W - 3 * kMargin - hitSize.width());
    m_options->setGeometry(kMargin, groupTop, std::max(0, groupWidth), rowTop - kMargin - groupTop);

    const int checkHeight = m_checkDescription->height();
    const int checkRight = rightOf(m_options) - kMargin;
    top = m_options->y() + kFirstCheckDrop;
    for (QCheckBox* box : {m_checkVariable, m_checkDescription, m_checkValueOld, m_checkValueNew}) {
        box->setGeometry(kCheckIndent, top, checkRight - kCheckIndent, checkHeight);
        top += checkHeight + kButtonGap;
    }

    setUpdatesEnabled(true);
    repaint();
}
