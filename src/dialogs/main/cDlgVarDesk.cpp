// cDlgVarDesk: the frame of the main dialog: creation, menu, tool bar, status bar, layout and end.
#include "cDlgVarDesk.h"

#include "dialogs/DialogBuild.h"
#include "dialogs/DialogTemplate.h"
#include "dialogs/ListOrderTable.h"
#include "dialogs/MenuTemplate.h"
#include "dialogs/ModuleResources.h"
#include "LoadStep.h"
#include "settings/cMsgCatalog.h"
#include "ValueEditing.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include "hostui.h"

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
    int id;
    int icon;
    std::string cMsgCatalog::*tip;
    int command;
    bool separatorBefore;
};

// The buttons ahead of the orders' and behind them. The two Set buttons stand in the order Set
// all, Set selection.
const ToolButton kButtonsBeforeOrders[] = {
    {kButtonNew, 1068, &cMsgCatalog::MnNew, kNew, false},
    {kButtonOpen, 1079, &cMsgCatalog::MnOpen, kOpen, false},
    {kButtonSave, 1082, &cMsgCatalog::MnSave, kSave, false},
    {kButtonSaveAs, 1083, &cMsgCatalog::MnSaveAs, kSaveAs, false},
    {kButtonSelectAll, 1084, &cMsgCatalog::MnSelectAll, kSelectAll, true},
    {kButtonInverse, 1085, &cMsgCatalog::MnInverse, kInverse, false},
    {kButtonSelectList, 1105, &cMsgCatalog::MnSelectList, kSelectList, false},
    {kButtonFind, 1086, &cMsgCatalog::MnFind, kFind, false},
    {kButtonShowAll, 1087, &cMsgCatalog::MnShowAll, kShowAll, true},
    {kButtonShowList, 1088, &cMsgCatalog::MnShowList, kShowList, false},
};
const ToolButton kButtonsAfterOrders[] = {
    {kButtonAdd, 1070, &cMsgCatalog::MnAdd, kAdd, true},
    {kButtonDelete, 1090, &cMsgCatalog::MnDelete, kDelete, false},
    {kButtonSetAll, 1091, &cMsgCatalog::MnSetAll, kSetAll, true},
    {kButtonSetSelection, 1092, &cMsgCatalog::MnSetSelection, kSetSelection, false},
    {kButtonCompare, kIconCompareOff, &cMsgCatalog::MnCompare, kCompare, true},
    {kButtonHelp, 1095, &cMsgCatalog::MnHelp, kHelp, true},
};

// The tool bar in its order, the orders' buttons from the order table in the middle.
const std::vector<ToolButton>& toolButtons() {
    static const std::vector<ToolButton> buttons = [] {
        std::vector<ToolButton> all(std::begin(kButtonsBeforeOrders), std::end(kButtonsBeforeOrders));
        bool first = true;
        for (const ListOrderEntry& order : listOrderTable()) {
            all.push_back({order.button, order.icon, order.menuText, order.command, first});
            first = false;
        }
        all.insert(all.end(), std::begin(kButtonsAfterOrders), std::end(kButtonsAfterOrders));
        return all;
    }();
    return buttons;
}

// The position of a button in the tool bar, or -1 for an id of no button.
int positionOfButton(int buttonId) {
    const std::vector<ToolButton>& buttons = toolButtons();
    for (std::size_t i = 0; i < buttons.size(); ++i)
        if (buttons[i].id == buttonId)
            return static_cast<int>(i);
    return -1;
}

// The main dialog's menu, the orders' entries from the order table where the template marks them.
bool loadMainMenu(QVector<MenuPopup>& popups) {
    if (!loadMenuTemplate(kMenu, popups))
        return false;
    fillMenuPlace(popups, kListOrderMenuPlace, listOrderMenuEntries());
    return true;
}

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

cDlgVarDesk::cDlgVarDesk(DocumentState& context, QWidget* parent)
    : TemplateDialog(parent), m_context(context), m_fileCommands(*this, context),
      m_variableCommands(*this, context) {
    setObjectName(QStringLiteral("cDlgVarDesk"));
    DialogTemplate t;
    const DialogBaseUnits base = startFromTemplate(kTemplate, t, Sizing::Maximizable);
    keepRectIn(context.mainPosX, context.mainPosY, context.mainSizeX, context.mainSizeY);

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
    m_listCtrl = new VarListView(m_client);
    placeControl(m_listCtrl, kList);
    // Columns narrow down to nothing, as the window system's do; a width of 0 is never stored.
    m_listCtrl->header()->setMinimumSectionSize(0);
    m_model = new VarListModel(kListColumns, this);
    m_listCtrl->setModel(m_model);
    connect(m_listCtrl, &VarListView::rowClicked, this, &cDlgVarDesk::OnListClick);
    connect(m_listCtrl, &VarListView::rowStepping, this, &cDlgVarDesk::OnListStep);

    m_descriptionEdit = new QPlainTextEdit(m_client);
    placeControl(m_descriptionEdit, kDescription);
    m_descriptionEdit->setReadOnly(true);
    m_descriptionEdit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);

    m_valueEdit = new QLineEdit(m_client);
    placeControl(m_valueEdit, kValue);
    m_editing =
        new ValueEditing(*m_listCtrl, *m_descriptionEdit, *m_valueEdit, m_currentVar, m_visibleLines, this);

    // Tab order as the template's: list, description, value field.
    setTabOrder(m_listCtrl, m_descriptionEdit);
    setTabOrder(m_descriptionEdit, m_valueEdit);
}

cDlgVarDesk::~cDlgVarDesk() = default;

// ---- creation ----

void cDlgVarDesk::buildMenu() {
    m_menuBar = new QMenuBar(this);
    m_menuBar->setNativeMenuBar(false);
    QVector<MenuPopup> popups;
    if (!loadMainMenu(popups))
        return; // no menu: UpdateMenuTexts finds none and writes nothing
    for (const MenuPopup& p : popups) {
        QMenu* popup = m_menuBar->addMenu(p.text);
        m_popups.push_back(popup);
        for (const MenuEntry& e : p.entries) {
            if (e.isPlace())
                continue; // a place the module fills from no table
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
    std::vector<int> checkable = {kShowAll, kShowList, kCompare};
    for (const ListOrderEntry& order : listOrderTable())
        checkable.push_back(order.command);
    for (int id : checkable)
        if (QAction* a = menuAction(id))
            a->setCheckable(true);
}

void cDlgVarDesk::CreateToolBar() {
    m_toolBar = new QToolBar(m_client);
    m_toolBar->setObjectName(idName(kToolBar));
    m_toolBar->setIconSize(QSize(16, 16));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_toolBar->setMovable(false);
    m_toolBar->setFloatable(false);
    m_toolBar->setGeometry(0, 0, m_client->width(), kToolBarHeight);

    const std::vector<ToolButton>& buttons = toolButtons();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (buttons[i].separatorBefore)
            m_toolBar->addSeparator();
        const int id = buttons[i].id;
        // The button's menu text is its tool tip; the end of the run takes the tool tips away.
        const QString tip = qs(gMsg.*buttons[i].tip);
        m_toolBarImages.push_back(moduleIcon(buttons[i].icon));
        auto* action = new QAction(m_toolBarImages.back(), tip, m_toolBar);
        action->setToolTip(tip);
        action->setObjectName(idName(id));
        action->setData(static_cast<int>(i));
        action->setCheckable(true);
        m_toolBar->addAction(action);
        m_toolActions.push_back(action);
        connect(action, &QAction::triggered, this, [this, id] { onToolButton(id); });
    }
    applyToolMarks();
    m_toolBar->setContentsMargins(kToolBarIndent, 0, 0, 0);
}

void cDlgVarDesk::CreateStatusBar() {
    m_statusBar = new QStatusBar(m_client);
    m_statusBar->setObjectName(idName(kStatusBar));
    m_statusBar->setSizeGripEnabled(false);
    // The panes are placed by setStatusParts, as the window system's parts are.
    for (QLabel*& pane : m_panes) {
        pane = new QLabel(m_statusBar);
        pane->setFrameStyle(QFrame::Panel | QFrame::Raised);
        pane->setTextFormat(Qt::PlainText);
        pane->setIndent(kPaneIndent);
    }
    m_statusBar->setGeometry(0, m_client->height(), m_client->width(), 0);
    setStatusParts();
    SetStatusTexts({}, {}, {});
}

// ---- texts and marks ----

void cDlgVarDesk::UpdateMenuTexts() {
    if (m_popups.empty())
        return;
    QVector<MenuPopup> popups;
    loadMainMenu(popups);
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
    for (const ListOrderEntry& order : listOrderTable())
        check(order.command, m_context.viewOrder == order.order);
    check(kCompare, m_context.compareMode == CompareMode::On);
    for (int id : {kAdd, kDelete})
        if (QAction* a = menuAction(id))
            a->setEnabled(m_context.view == ListView::UserList);
}

void cDlgVarDesk::applyToolMarks() {
    auto mark = [this](int id, bool pressed, bool indeterminate) {
        const int position = positionOfButton(id);
        if (position < 0 || position >= static_cast<int>(m_toolActions.size()))
            return;
        QAction* a = m_toolActions[position];
        a->setChecked(pressed);
        a->setProperty("indeterminate", indeterminate);
        const QIcon& icon = m_toolBarImages[position];
        a->setIcon(indeterminate ? greyedIcon(icon) : icon);
    };
    // Every button not named below is plainly enabled.
    for (QAction* action : m_toolActions)
        action->setChecked(false);
    const bool compare = m_context.compareMode == CompareMode::On;
    if (const int position = positionOfButton(kButtonCompare); position >= 0)
        m_toolBarImages[position] = moduleIcon(compare ? kIconCompareOn : kIconCompareOff);
    mark(kButtonShowAll, m_context.view == ListView::All, false);
    mark(kButtonShowList, m_context.view == ListView::UserList, false);
    mark(kButtonAdd, false, m_context.view == ListView::All);
    mark(kButtonDelete, false, m_context.view == ListView::All);
    for (const ListOrderEntry& order : listOrderTable())
        mark(order.button, m_context.viewOrder == order.order, false);
    mark(kButtonCompare, compare, false);
}

void cDlgVarDesk::ShowModeMarks() {
    applyMenuMarks();
    m_menuBar->update();
    applyToolMarks();
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
    const QFontMetrics metrics(m_statusBar->font());
    auto widthOf = [&metrics](const std::string& text) { return metrics.horizontalAdvance(qs(text)); };
    // A pane holds its text, its frame on both sides and the indent of the text on both sides.
    const int frame = 2 * (m_panes[1]->frameWidth() + kPaneIndent);
    const int scopeW = std::max(widthOf(gMsg.StDrawSpecific), widthOf(gMsg.StGlobal)) + frame;
    const int modeW = std::max(widthOf(gMsg.StProtected), widthOf(gMsg.StChangeable)) + frame;
    const int right = m_statusBar->width();
    const std::array<int, 3> edges = {right - modeW - scopeW, right - scopeW, right};
    int left = 0;
    for (int i = 0; i < 3; ++i) {
        m_panes[i]->setGeometry(left, 0, std::max(0, edges[i] - left), m_statusBar->height());
        left = edges[i];
    }
}

void cDlgVarDesk::LayoutControls() {
    placeFrameParts();
    // 1. Status bar and tool bar fit themselves to the client area.
    const QRect client = m_client->rect();
    const int statusHeight = m_statusBar->sizeHint().height();
    m_statusBar->setGeometry(0, client.height() - statusHeight, client.width(), statusHeight);
    m_toolBar->setGeometry(0, 0, client.width(), std::max(kToolBarHeight, m_toolBar->sizeHint().height()));

    // 2. Nothing to do for a client area laid out already.
    if (client == m_lastClientRect)
        return;
    m_lastClientRect = client;

    // 3. to 7. Rectangles with exclusive right and bottom edges, as the window system has them.
    const int H = m_valueEdit->height();
    const int statusTop = m_statusBar->y();
    const int toolBarBottom = m_toolBar->y() + m_toolBar->height();
    const int valueBottom = statusTop - kMargin;
    const int valueTop = valueBottom - H;
    const int descriptionBottom = valueTop - kMargin;
    const int listTop = toolBarBottom + kMargin;

    m_visibleLines = kMaxVisibleLines;
    int descriptionTop = descriptionBottom - m_visibleLines * H;
    int listBottom = descriptionTop - kMargin;
    int L = listBottom - listTop;
    while (L < kListLinesWanted * H && m_visibleLines > 1) {
        --m_visibleLines;
        descriptionTop = descriptionBottom - m_visibleLines * H;
        listBottom = descriptionTop - kMargin;
        L = listBottom - listTop;
    }
    const int right = client.width() - kMargin;

    // 8. Below two value heights of list nothing moves; the panes are still done.
    if (L >= kListLinesLeast * H) {
        auto place = [right](QWidget* w, int top, int bottom) {
            w->setGeometry(w->x(), top, right - w->x(), bottom - top);
        };
        place(m_listCtrl, listTop, listBottom);
        place(m_descriptionEdit, descriptionTop, descriptionBottom);
        place(m_valueEdit, valueTop, valueBottom);
    }
    // 9. to 11.
    setStatusParts();
    m_editing->updateScrollBar();
    update();
}

// ---- start and end ----

void cDlgVarDesk::OnInitDialog() {
    m_lastClientRect = QRect(0, 0, 0, 0);
    placeAtKeptRect();
    // A hidden window gets its size event only when shown: lay out for the new size now.
    LayoutControls();
    RunLoadStep();
    RefreshTitle();
    UpdateMenuTexts();
    SetupList();
    FillList();
    ShowVariable(nullptr);
    BuildContextMenu();
    m_listCtrl->setFocus(Qt::OtherFocusReason);
}

void cDlgVarDesk::RunLoadStep() {
    runLoadStep(m_context, m_errorLines, m_runCode);
}

void cDlgVarDesk::saveOnEnd() {
    const std::array<std::int32_t*, kListColumns> stored = {
        &m_context.listCtrlFirstCol, &m_context.listCtrlSecCol, &m_context.listCtrlThirdCol};
    for (int column = 0; column < kListColumns; ++column) {
        const int width = m_listCtrl->isColumnHidden(column) ? 0 : m_listCtrl->columnWidth(column);
        VarListView::storedWidth(width, *stored[column]);
    }
    for (QAction* action : m_toolActions)
        action->setToolTip(QString());
    m_contextMenu.reset();
}

void cDlgVarDesk::EndRun() {
    m_context.varList.clearAllSelected();
    m_runCode = RunCode::Idle;
    done(QDialog::Accepted); // stores the rectangle, then saveOnEnd
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
    TemplateDialog::keyPressEvent(event);
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
    const int position = positionOfButton(buttonId);
    return position < 0 ? 0 : toolButtons()[position].command;
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
    if (const ListOrderEntry* order = listOrderOfCommand(id)) {
        OnSortOrder(order->order);
        return;
    }
    switch (id) {
    case kNew:
        m_fileCommands.NewList();
        break;
    case kOpen:
        m_fileCommands.OpenList();
        break;
    case kSave:
        m_fileCommands.SaveList();
        break;
    case kSaveAs:
        m_fileCommands.SaveListAs();
        break;
    case kEnd:
        EndRun();
        break;
    case kSelectAll:
        m_variableCommands.OnSelectAll();
        break;
    case kInverse:
        m_variableCommands.OnInverse();
        break;
    case kSelectList:
        m_variableCommands.OnSelectList();
        break;
    case kFind:
        m_variableCommands.OnFind();
        break;
    case kShowAll:
        ShowView(ListView::All);
        break;
    case kShowList:
        ShowView(ListView::UserList);
        break;
    case kShowErrorLog:
        m_fileCommands.ShowErrorLog();
        break;
    case kAdd:
        m_variableCommands.OnAdd();
        break;
    case kDelete:
        m_variableCommands.OnDelete();
        break;
    case kSetSelection:
        m_variableCommands.OnSetSelection();
        break;
    case kSetAll:
        m_variableCommands.OnSetAll();
        break;
    case kCompare:
        m_variableCommands.OnCompare();
        break;
    case kConfig:
        m_fileCommands.AfterConfiguration();
        break;
    case kHelp:
        m_variableCommands.OnHelp();
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
    const int position = positionOfButton(buttonId);
    return position < 0 || position >= static_cast<int>(m_toolActions.size()) ? nullptr
                                                                              : m_toolActions[position];
}

QLabel* cDlgVarDesk::statusPane(int index) const {
    return index >= 0 && index < 3 ? m_panes[index] : nullptr;
}

// ---- the run loop ----

void runMainDialog(DocumentState& context) {
    if (!acHostUiServices() || !qobject_cast<QApplication*>(QCoreApplication::instance()))
        return;
    auto* dialog = new (std::nothrow) cDlgVarDesk(context);
    if (!dialog)
        return;
    do {
        runDialog(*dialog);
    } while (dialog->runCode() != RunCode::Idle);
    delete dialog;
}
