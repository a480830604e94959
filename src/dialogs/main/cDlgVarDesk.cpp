// cDlgVarDesk: the frame of the main dialog: creation, menu, tool bar, status bar, layout and end.
#include "cDlgVarDesk.h"

#include "dialogs/DialogBuild.h"
#include "dialogs/DialogRoutines.h"
#include "dialogs/DialogTemplate.h"
#include "dialogs/MenuTemplate.h"
#include "dialogs/ModuleResources.h"
#include "LoadStep.h"
#include "settings/cMsgCatalog.h"
#include "ValueEditing.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include "hostui.h"
#include "UiServices.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QToolBar>

#include <algorithm>
#include <new>

using namespace mainids;

namespace {

constexpr int kPaneIndent = 3; // room between a status pane's frame and its text

struct ToolButton {
    int icon;
    std::string cMsgCatalog::*tip;
    int command;
    bool separatorBefore;
};

// The tool bar in its order; the button id is kFirstButton + the index. The two Set buttons
// stand in the order Set all, Set selection.
const std::array<ToolButton, kButtonCount> kToolButtons = {{
    {1068, &cMsgCatalog::MnNew, kNew, false},
    {1079, &cMsgCatalog::MnOpen, kOpen, false},
    {1082, &cMsgCatalog::MnSave, kSave, false},
    {1083, &cMsgCatalog::MnSaveAs, kSaveAs, false},
    {1084, &cMsgCatalog::MnSelectAll, kSelectAll, true},
    {1085, &cMsgCatalog::MnInverse, kInverse, false},
    {1105, &cMsgCatalog::MnSelectList, kSelectList, false},
    {1086, &cMsgCatalog::MnFind, kFind, false},
    {1087, &cMsgCatalog::MnShowAll, kShowAll, true},
    {1088, &cMsgCatalog::MnShowList, kShowList, false},
    {1072, &cMsgCatalog::MnSortLetter, kSortLetter, true},
    {1073, &cMsgCatalog::MnSortTheme, kSortTheme, false},
    {1110, &cMsgCatalog::MnSortGlobeA, kSortGlobeA, false},
    {1111, &cMsgCatalog::MnSortGlobeT, kSortGlobeT, false},
    {1070, &cMsgCatalog::MnAdd, kAdd, true},
    {1090, &cMsgCatalog::MnDelete, kDelete, false},
    {1091, &cMsgCatalog::MnSetAll, kSetAll, true},
    {1092, &cMsgCatalog::MnSetSelection, kSetSelection, false},
    {kIconCompareOff, &cMsgCatalog::MnCompare, kCompare, true},
    {1095, &cMsgCatalog::MnHelp, kHelp, true},
}};

QString idName(int id) {
    return QString::number(id);
}

// A button that cannot be clicked, drawn grey, while it stays enabled for its state.
QIcon greyedIcon(const QIcon& icon) {
    // The sizes of the module's icons, so that a screen at twice the pixels gets a sharp one.
    QIcon grey;
    for (int size : {16, 32, 48})
        grey.addPixmap(icon.pixmap(QSize(size, size), 1.0, QIcon::Disabled));
    return grey;
}

} // namespace

cDlgVarDesk::cDlgVarDesk(DocumentState& context, QWidget* parent) : QDialog(parent), m_context(context) {
    setProperty("templateId", kTemplate);
    setObjectName(QStringLiteral("cDlgVarDesk"));
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    setSizeGripEnabled(false);

    DialogTemplate t;
    loadDialogTemplate(kTemplate, t); // without it the controls start empty; the layout places them
    const QFont font = dialogFontOf(t);
    setFont(font);
    const DialogBaseUnits base = baseUnitsOf(font);
    setWindowTitle(t.title);

    buildMenu();
    m_client = new QWidget(this);
    const QSize clientSize = dialogUnitsToPixels(t.size, base);
    resize(clientSize.width(), clientSize.height() + m_menuBar->sizeHint().height());
    placeFrameParts();

    // WM_CREATE: tool bar and status bar first, then the controls of the template.
    CreateToolBar();
    CreateStatusBar();

    auto placeControl = [&](QWidget* w, int id) {
        w->setObjectName(idName(id));
        if (const DialogControl* c = t.control(id))
            w->setGeometry(dialogUnitsToPixels(c->rect, base));
    };
    listCtrl = new VarListView(m_client);
    placeControl(listCtrl, kList);
    // Columns narrow down to nothing, as the window system's do; a width of 0 is never stored.
    listCtrl->header()->setMinimumSectionSize(0);
    m_model = new VarListModel(kListColumns, this);
    listCtrl->setModel(m_model);
    connect(listCtrl, &VarListView::rowClicked, this, &cDlgVarDesk::OnListClick);
    connect(listCtrl, &VarListView::rowStepping, this, &cDlgVarDesk::OnListStep);

    descriptionEdit = new QPlainTextEdit(m_client);
    placeControl(descriptionEdit, kDescription);
    descriptionEdit->setReadOnly(true);
    descriptionEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    valueEdit = new QLineEdit(m_client);
    placeControl(valueEdit, kValue);
    m_editing = new ValueEditing(*listCtrl, *descriptionEdit, *valueEdit, currentVar, visibleLines, this);

    // Tab order as the template's: list, description, value field.
    setTabOrder(listCtrl, descriptionEdit);
    setTabOrder(descriptionEdit, valueEdit);
}

cDlgVarDesk::~cDlgVarDesk() {
    delete toolTips;
    delete contextMenu;
}

// ---- creation ----

void cDlgVarDesk::buildMenu() {
    m_menuBar = new QMenuBar(this);
    m_menuBar->setNativeMenuBar(false);
    QVector<MenuPopup> popups;
    if (!loadMenuTemplate(kMenu, popups))
        return; // no menu: UpdateMenuTexts finds none and writes nothing
    for (const MenuPopup& p : popups) {
        QMenu* popup = m_menuBar->addMenu(p.text);
        m_popups.push_back(popup);
        for (const MenuEntry& e : p.entries) {
            if (e.isSeparator()) {
                popup->addSeparator();
                continue;
            }
            auto* action = new QAction(e.text, popup);
            action->setObjectName(idName(e.id));
            action->setProperty("catalogKey", e.key);
            popup->addAction(action);
            m_menuActions[e.id] = action;
            const int id = e.id;
            connect(action, &QAction::triggered, this, [this, id] {
                applyMenuMarks(); // a menu entry keeps the mark of the state, not of the click
                OnCommand(id);
            });
        }
    }
    for (int id : {kShowAll, kShowList, kSortLetter, kSortTheme, kSortGlobeA, kSortGlobeT, kCompare})
        if (QAction* a = menuAction(id))
            a->setCheckable(true);
}

void cDlgVarDesk::CreateToolBar() {
    toolBarImages.clear();
    for (const ToolButton& b : kToolButtons)
        toolBarImages.push_back(moduleIcon(b.icon));

    toolBar = new QToolBar(m_client);
    toolBar->setObjectName(idName(kToolBar));
    toolBar->setIconSize(QSize(16, 16));
    toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    toolBar->setMovable(false);
    toolBar->setFloatable(false);
    toolBar->setGeometry(0, 0, m_client->width(), kToolBarHeight);

    if (toolBar->actions().isEmpty()) {
        for (int i = 0; i < kButtonCount; ++i) {
            if (kToolButtons[i].separatorBefore)
                toolBar->addSeparator();
            const int id = kFirstButton + i;
            auto* action = new QAction(toolBarImages[i], QString(), toolBar);
            action->setObjectName(idName(id));
            action->setData(i);
            action->setCheckable(true);
            toolBar->addAction(action);
            m_toolActions[i] = action;
            connect(action, &QAction::triggered, this, [this, id] { onToolButton(id); });
        }
        applyToolMarks();
    }
    toolBar->setContentsMargins(kToolBarIndent, 0, 0, 0);

    if (!toolTips) {
        toolTips = new (std::nothrow) ToolTipTable;
        if (toolTips)
            for (int i = 0; i < kButtonCount; ++i)
                toolTips->tips.emplace_back(kFirstButton + i, qs(gMsg.*kToolButtons[i].tip));
    }
    for (QAction* action : m_toolActions) {
        QString tip;
        if (toolTips)
            for (const auto& [id, text] : toolTips->tips)
                if (idName(id) == action->objectName())
                    tip = text;
        action->setToolTip(tip);
        action->setText(tip);
    }
}

void cDlgVarDesk::CreateStatusBar() {
    statusBar = new QStatusBar(m_client);
    statusBar->setObjectName(idName(kStatusBar));
    statusBar->setSizeGripEnabled(false);
    // The panes are placed by setStatusParts, as the window system's parts are.
    for (QLabel*& pane : m_panes) {
        pane = new QLabel(statusBar);
        pane->setFrameStyle(QFrame::Panel | QFrame::Raised);
        pane->setTextFormat(Qt::PlainText);
        pane->setIndent(kPaneIndent);
    }
    statusBar->setGeometry(0, m_client->height(), m_client->width(), 0);
    setStatusParts();
    SetStatusTexts({}, {}, {});
}

// ---- texts and marks ----

void cDlgVarDesk::UpdateMenuTexts() {
    if (m_popups.empty())
        return;
    QVector<MenuPopup> popups;
    loadMenuTemplate(kMenu, popups);
    for (int i = 0; i < static_cast<int>(m_popups.size()) && i < popups.size(); ++i) {
        if (const std::string* text = catalogText(popups[i].key))
            m_popups[i]->setTitle(qs(*text));
        for (const MenuEntry& e : popups[i].entries)
            if (QAction* a = menuAction(e.id))
                if (const std::string* text = catalogText(e.key))
                    a->setText(qs(*text));
    }
    applyMenuMarks();
    m_menuBar->update();
}

void cDlgVarDesk::applyMenuMarks() {
    auto check = [this](int id, bool on) {
        if (QAction* a = menuAction(id))
            a->setChecked(on);
    };
    check(kShowAll, m_context.view == ListView::All);
    check(kShowList, m_context.view == ListView::UserList);
    for (int n = 0; n < kListOrderCount; ++n)
        check(kSortLetter + n, m_context.viewOrder == listOrderAt(n));
    check(kCompare, m_context.compareMode == CompareMode::On);
    for (int id : {kAdd, kDelete})
        if (QAction* a = menuAction(id))
            a->setEnabled(m_context.view == ListView::UserList);
}

void cDlgVarDesk::applyToolMarks() {
    auto mark = [this](int id, bool pressed, bool indeterminate) {
        QAction* a = toolAction(id);
        if (!a)
            return;
        a->setChecked(pressed);
        a->setProperty("indeterminate", indeterminate);
        const QIcon& icon = toolBarImages[id - kFirstButton];
        a->setIcon(indeterminate ? greyedIcon(icon) : icon);
    };
    // Every button not named below is plainly enabled.
    for (int i = 0; i < kButtonCount; ++i)
        if (m_toolActions[i])
            m_toolActions[i]->setChecked(false);
    const bool compare = m_context.compareMode == CompareMode::On;
    toolBarImages[kButtonCompare - kFirstButton] = moduleIcon(compare ? kIconCompareOn : kIconCompareOff);
    mark(kButtonShowAll, m_context.view == ListView::All, false);
    mark(kButtonShowList, m_context.view == ListView::UserList, false);
    mark(kButtonAdd, false, m_context.view == ListView::All);
    mark(kButtonDelete, false, m_context.view == ListView::All);
    for (int n = 0; n < kListOrderCount; ++n)
        mark(kButtonSortLetter + n, m_context.viewOrder == listOrderAt(n), false);
    mark(kButtonCompare, compare, false);
}

void cDlgVarDesk::RefreshTitle() {
    std::string title;
    if (m_context.view == ListView::UserList)
        title = formatText("%s - %s - [%s]", gMsg.TiVarDesk.c_str(), m_context.drawingFileName.c_str(),
                           m_context.varList.userFileName.c_str());
    else
        title = formatText("%s - %s", gMsg.TiVarDesk.c_str(), m_context.drawingFileName.c_str());
    setWindowTitle(qs(title));
}

void cDlgVarDesk::SetStatusTexts(const std::string& pane0, const std::string& pane1,
                                 const std::string& pane2) {
    const std::array<const std::string*, 3> texts = {&pane0, &pane1, &pane2};
    for (int i = 0; i < 3; ++i) {
        m_panes[i]->setText(qs(*texts[i]));
        m_panes[i]->setToolTip(qs(*texts[i]));
    }
}

void cDlgVarDesk::ShowStatus(const cSysVar* record) {
    if (!record) {
        SetStatusTexts({}, {}, {});
        return;
    }
    std::string theme;
    m_context.varList.themes.themeNameOf(theme, record->themeIndex);
    SetStatusTexts(theme, record->isReadOnly() ? gMsg.StProtected : gMsg.StChangeable,
                   record->isDrawingSpecific() ? gMsg.StDrawSpecific : gMsg.StGlobal);
}

// ---- layout ----

void cDlgVarDesk::placeFrameParts() {
    const int menuHeight = m_menuBar->sizeHint().height();
    m_menuBar->setGeometry(0, 0, width(), menuHeight);
    m_client->setGeometry(0, menuHeight, width(), std::max(0, height() - menuHeight));
}

void cDlgVarDesk::setStatusParts() {
    const QFontMetrics metrics(statusBar->font());
    auto widthOf = [&metrics](const std::string& text) { return metrics.horizontalAdvance(qs(text)); };
    // A pane holds its text, its frame on both sides and the indent of the text on both sides.
    const int frame = 2 * (m_panes[1]->frameWidth() + kPaneIndent);
    const int scopeW = std::max(widthOf(gMsg.StDrawSpecific), widthOf(gMsg.StGlobal)) + frame;
    const int modeW = std::max(widthOf(gMsg.StProtected), widthOf(gMsg.StChangeable)) + frame;
    const int right = statusBar->width();
    const std::array<int, 3> edges = {right - modeW - scopeW, right - scopeW, right};
    int left = 0;
    for (int i = 0; i < 3; ++i) {
        m_panes[i]->setGeometry(left, 0, std::max(0, edges[i] - left), statusBar->height());
        left = edges[i];
    }
}

void cDlgVarDesk::updateDescriptionScrollBar() {
    m_editing->updateScrollBar();
}

void cDlgVarDesk::LayoutControls() {
    // 1. Status bar and tool bar fit themselves to the client area.
    const QRect client = m_client->rect();
    const int statusHeight = statusBar->sizeHint().height();
    statusBar->setGeometry(0, client.height() - statusHeight, client.width(), statusHeight);
    toolBar->setGeometry(0, 0, client.width(), std::max(kToolBarHeight, toolBar->sizeHint().height()));

    // 2. Nothing to do for a client area laid out already.
    if (client == lastClientRect)
        return;
    lastClientRect = client;

    // 3. to 7. Rectangles with exclusive right and bottom edges, as the window system has them.
    const int H = valueEdit->height();
    const int statusTop = statusBar->y();
    const int toolBarBottom = toolBar->y() + toolBar->height();
    const int valueBottom = statusTop - kMargin;
    const int valueTop = valueBottom - H;
    const int descriptionBottom = valueTop - kMargin;
    const int listTop = toolBarBottom + kMargin;

    visibleLines = kMaxVisibleLines;
    int descriptionTop = descriptionBottom - visibleLines * H;
    int listBottom = descriptionTop - kMargin;
    int L = listBottom - listTop;
    while (L < kListLinesWanted * H && visibleLines > 1) {
        --visibleLines;
        descriptionTop = descriptionBottom - visibleLines * H;
        listBottom = descriptionTop - kMargin;
        L = listBottom - listTop;
    }
    const int right = client.width() - kMargin;

    // 8. Below two value heights of list nothing moves; the panes are still done.
    if (L >= kListLinesLeast * H) {
        auto place = [right](QWidget* w, int top, int bottom) {
            w->setGeometry(w->x(), top, right - w->x(), bottom - top);
        };
        place(listCtrl, listTop, listBottom);
        place(descriptionEdit, descriptionTop, descriptionBottom);
        place(valueEdit, valueTop, valueBottom);
    }
    // 9. to 11.
    setStatusParts();
    updateDescriptionScrollBar();
    update();
}

void cDlgVarDesk::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    placeFrameParts();
    LayoutControls();
}

// ---- start and end ----

void cDlgVarDesk::setVisible(bool visible) {
    if (visible && !m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    QDialog::setVisible(visible);
}

void cDlgVarDesk::OnInitDialog() {
    const std::int32_t left = m_context.mainPosX;
    const std::int32_t top = m_context.mainPosY;
    const std::int32_t width = m_context.mainSizeX;
    const std::int32_t height = m_context.mainSizeY;
    lastClientRect = QRect(0, 0, 0, 0);
    PlaceWindow(left, top, width, height, this);
    // A hidden window gets its size event only when shown: lay out for the new size now.
    placeFrameParts();
    LayoutControls();
    runLoadStep(m_context, errorLines, runCode);
    SetDialogIcon(this);
    RefreshTitle();
    UpdateMenuTexts();
    SetupList();
    FillList();
    ShowVariable(nullptr);
    BuildContextMenu();
    listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::SaveGeometry() {
    storeWindowRect(*this, m_context.mainPosX, m_context.mainPosY, m_context.mainSizeX, m_context.mainSizeY);
    const std::array<std::int32_t*, kListColumns> stored = {
        &m_context.listCtrlFirstCol, &m_context.listCtrlSecCol, &m_context.listCtrlThirdCol};
    for (int column = 0; column < kListColumns; ++column) {
        const int width = listCtrl->isColumnHidden(column) ? 0 : listCtrl->columnWidth(column);
        VarListView::storedWidth(width, *stored[column]);
    }
    if (toolTips) {
        delete toolTips;
        toolTips = nullptr;
        for (QAction* action : m_toolActions)
            action->setToolTip(QString());
    }
    if (contextMenu) {
        delete contextMenu;
        contextMenu = nullptr;
    }
}

void cDlgVarDesk::EndRun() {
    m_context.varList.clearAllSelected();
    runCode = 0;
    SaveGeometry();
    QDialog::done(QDialog::Accepted);
}

void cDlgVarDesk::closeEvent(QCloseEvent* event) {
    EndRun();
    event->accept();
}

void cDlgVarDesk::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier) {
            accept();
            return;
        }
        break;
    case Qt::Key_Escape:
        reject();
        return;
    default:
        break;
    }
    QDialog::keyPressEvent(event);
}

void cDlgVarDesk::accept() {
    OnOK();
}

void cDlgVarDesk::reject() {
    OnCancel();
}

void cDlgVarDesk::OnOK() {
    ApplyValueEdit();
}

void cDlgVarDesk::OnCancel() {
    m_editing->cancel();
}

// ---- commands ----

int cDlgVarDesk::commandOfButton(int buttonId) {
    if (buttonId < kFirstButton || buttonId >= kFirstButton + kButtonCount)
        return 0;
    return kToolButtons[buttonId - kFirstButton].command;
}

void cDlgVarDesk::onToolButton(int buttonId) {
    // The click toggled the button; its state belongs to the document context.
    const bool indeterminate =
        toolAction(buttonId) && toolAction(buttonId)->property("indeterminate").toBool();
    applyToolMarks();
    if (indeterminate)
        return; // an indeterminate button takes no click
    const int command = commandOfButton(buttonId);
    if (!command)
        return;
    // Posted, so that the click's own processing has ended before the command runs.
    QMetaObject::invokeMethod(
        this, [this, command] { OnCommand(command); }, Qt::QueuedConnection);
}

void cDlgVarDesk::OnCommand(int id) {
    switch (id) {
    case kNew:
        OnFileNew();
        break;
    case kOpen:
        OnFileOpen();
        break;
    case kSave:
        OnFileSave();
        break;
    case kSaveAs:
        OnFileSaveAs();
        break;
    case kEnd:
        EndRun();
        break;
    case kSelectAll:
        OnSelectAll();
        break;
    case kInverse:
        OnInverse();
        break;
    case kSelectList:
        OnSelectList();
        break;
    case kFind:
        OnFind();
        break;
    case kShowAll:
        OnShowView(ListView::All);
        break;
    case kShowList:
        OnShowView(ListView::UserList);
        break;
    case kSortLetter:
    case kSortTheme:
    case kSortGlobeA:
    case kSortGlobeT:
        OnSortOrder(listOrderAt(id - kSortLetter));
        break;
    case kShowErrorLog:
        OnShowErrorLog();
        break;
    case kAdd:
        OnAdd();
        break;
    case kDelete:
        OnDelete();
        break;
    case kSetSelection:
        OnSetSelection();
        break;
    case kSetAll:
        OnSetAll();
        break;
    case kCompare:
        OnCompare();
        break;
    case kConfig:
        OnConfig();
        break;
    case kHelp:
        OnHelp();
        break;
    case kInfo:
        OnInfo();
        break;
    default:
        break;
    }
}

QAction* cDlgVarDesk::menuAction(int id) const {
    const auto it = m_menuActions.find(id);
    return it == m_menuActions.end() ? nullptr : it->second;
}

QAction* cDlgVarDesk::toolAction(int buttonId) const {
    if (buttonId < kFirstButton || buttonId >= kFirstButton + kButtonCount)
        return nullptr;
    return m_toolActions[buttonId - kFirstButton];
}

QLabel* cDlgVarDesk::statusPane(int index) const {
    return index >= 0 && index < 3 ? m_panes[index] : nullptr;
}

// ---- the run loop ----

void runMainDialog(DocumentState& context) {
    kova::UiServices* ui = acHostUiServices();
    if (!ui || !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    auto* dialog = new (std::nothrow) cDlgVarDesk(context);
    if (!dialog)
        return;
    do {
        ui->runModal(*dialog);
    } while (dialog->runCode != 0);
    delete dialog;
}
