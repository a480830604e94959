// cDlgSlctSysVar: the selection dialog, through which variables enter the user list.
#include "cDlgSlctSysVar.h"
#include "DialogBuild.h"

#include "DialogRoutines.h"
#include "DialogTemplate.h"
#include "ModuleResources.h"
#include "settings/cMsgCatalog.h"
#include "settings/HelpService.h"
#include "VarListDelegate.h"
#include "VarListModel.h"
#include "VarListView.h"
#include "vars/DocumentState.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>

#include <new>

namespace {

constexpr int kIconButtonGap = 4;
constexpr int kIconSize = 16;

} // namespace

cDlgSlctSysVar::cDlgSlctSysVar(DocumentState& context, QWidget* parent)
    : TemplateDialog(parent), m_context(context) {
    DialogTemplate t;
    const DialogBaseUnits base = startFromTemplate(kTemplateId, t);
    keepRectIn(context.selectionPosX, context.selectionPosY, context.selectionSizeX, context.selectionSizeY);

    m_ok = makeControl<QPushButton>(this, t, kIdOk, base);
    m_ok->setDefault(true);
    m_cancel = makeControl<QPushButton>(this, t, kIdCancel, base);
    m_help = makeControl<QPushButton>(this, t, kIdHelp, base);
    m_find = makeControl<QPushButton>(this, t, kIdFind, base);
    m_buttonWidth = m_find->width();

    m_list = new VarListView(this);
    m_list->setObjectName(QString::number(kIdList));
    if (const DialogControl* c = t.control(kIdList))
        m_list->setGeometry(dialogUnitsToPixels(c->rect, base));
    // Columns narrow down to nothing, as the window system's do; a width of 0 is never stored.
    m_list->header()->setMinimumSectionSize(0);
    m_model = new VarListModel(2, this);
    m_list->setModel(m_model);

    m_markAll = makeControl<QPushButton>(this, t, kIdMarkAll, base);
    m_invert = makeControl<QPushButton>(this, t, kIdInvert, base);

    connect(m_ok, &QPushButton::clicked, this, &cDlgSlctSysVar::accept);
    connect(m_cancel, &QPushButton::clicked, this, &cDlgSlctSysVar::reject);
    connect(m_help, &QPushButton::clicked, this, [] { ShowHelp("VarDesk", "AddDialog"); });
    connect(m_find, &QPushButton::clicked, this, &cDlgSlctSysVar::OnFind);
    connect(m_markAll, &QPushButton::clicked, this, &cDlgSlctSysVar::OnMarkAll);
    connect(m_invert, &QPushButton::clicked, this, &cDlgSlctSysVar::OnInvert);
}

cDlgSlctSysVar::~cDlgSlctSysVar() {
    delete m_contextMenu;
}

// ---- start and end ----

void cDlgSlctSysVar::OnInitDialog() {
    m_lastClientRect = QRect(0, 0, 0, 0);
    placeAtKeptRect();

    m_help->setText(qs(gMsg.RsBtnHelp));
    m_find->setText(qs(gMsg.RsBtnSearch));
    m_cancel->setText(qs(gMsg.RsBtnCancel));
    m_ok->setText(qs(gMsg.RsBtnOk));

    // Plain icon buttons; a picture that can't be had leaves its button without one.
    for (auto [button, icon] : {std::pair{m_markAll, kIconMarkAll}, std::pair{m_invert, kIconInvert}}) {
        button->setText(QString());
        button->setIconSize(QSize(kIconSize, kIconSize));
        button->setIcon(moduleIcon(icon));
    }

    setWindowTitle(qs(gMsg.TiSlctSysVar));
    m_markAll->setToolTip(qs(gMsg.MnSelectAll));
    m_invert->setToolTip(qs(gMsg.MnInverse));

    m_contextMenu = new (std::nothrow) QMenu(this);
    if (m_contextMenu) {
        const std::pair<int, const std::string*> entries[] = {{kCmdSelectAll, &gMsg.MnSelectAll},
                                                              {kCmdInverse, &gMsg.MnInverse}};
        for (const auto& [id, text] : entries) {
            QAction* action = m_contextMenu->addAction(qs(*text));
            action->setObjectName(QString::number(id));
            connect(action, &QAction::triggered, this,
                    id == kCmdSelectAll ? &cDlgSlctSysVar::OnMarkAll : &cDlgSlctSysVar::OnInvert);
        }
    }

    SetupList();
    FillList();

    // A hidden window gets its size event only when shown: lay out for the present size now.
    LayoutControls();
    m_list->setFocus(Qt::OtherFocusReason);
}

void cDlgSlctSysVar::SetupList() {
    m_rowImages = makeRowImages();
    if (!qobject_cast<VarListDelegate*>(m_list->itemDelegate()))
        m_list->setItemDelegate(new VarListDelegate(*m_list, m_rowImages, m_context.viewOrder, m_list));

    m_context.listCtrl2FirstCol = VarListView::clampedStartWidth(0, m_context.listCtrl2FirstCol);
    m_context.listCtrl2SecCol = VarListView::clampedStartWidth(1, m_context.listCtrl2SecCol);
    m_model->clearRows();
    m_model->setHeaderTexts({qs(gMsg.ClVariable), qs(gMsg.ClAcadValue)});
    m_list->setColumnWidth(0, m_context.listCtrl2FirstCol);
    m_list->setColumnWidth(1, m_context.listCtrl2SecCol);
}

void cDlgSlctSysVar::FillList() {
    m_list->setUpdatesEnabled(false);
    m_list->fillRows(buildListRows(m_context.varList, m_context.viewOrder, RowFilter{}));
    m_list->setUpdatesEnabled(true);
    m_list->viewport()->repaint();
}

void cDlgSlctSysVar::accept() {
    // Only adds: rows that are not selected leave their variables as they are.
    m_list->forEachRecordRow([](cSysVar& record, bool selected) {
        if (selected)
            record.setInUserList();
    });
    TemplateDialog::accept();
}

void cDlgSlctSysVar::saveOnEnd() {
    const int first = m_list->isColumnHidden(0) ? 0 : m_list->columnWidth(0);
    if (first != 0)
        m_context.listCtrl2FirstCol = VarListView::clampedStartWidth(0, first);
    const int second = m_list->isColumnHidden(1) ? 0 : m_list->columnWidth(1);
    if (second != 0)
        m_context.listCtrl2SecCol = VarListView::clampedStartWidth(1, second);
    // A second saving on the way out must find no menu.
    delete m_contextMenu;
    m_contextMenu = nullptr;
}

// ---- selection ----

void cDlgSlctSysVar::OnMarkAll() {
    m_list->selectRecordRows([](const cSysVar&, bool) { return true; });
    m_list->setFocus(Qt::OtherFocusReason);
}

void cDlgSlctSysVar::OnInvert() {
    m_list->selectRecordRows([](const cSysVar&, bool selected) { return !selected; });
    m_list->setFocus(Qt::OtherFocusReason);
}

// ---- search ----

void cDlgSlctSysVar::OnFind() {
    auto* find = new (std::nothrow) DlgFind2(m_context);
    if (!find)
        return;
    find->setOwner(this); // the search walks all variables: no limit to the user list
    runDialog(*find);
    delete find;
}

void cDlgSlctSysVar::onFindNotify(const FindNotification& notification) {
    // The refill drops the selection made by hand and selects the search's records.
    FillList();
    const FoundRow found = DlgFind2::rowToShow(m_list->selectedRowNumbers(), notification.value);
    if (found.row >= 0)
        m_list->scrollTo(m_model->index(found.row, 0));
}

// ---- layout and context menu ----

void cDlgSlctSysVar::LayoutControls() {
    if (rect() == m_lastClientRect)
        return;
    m_lastClientRect = rect();
    m_list->setUpdatesEnabled(false);

    const int bw = fittedButtonWidth(m_buttonWidth, {m_find, m_ok, m_cancel, m_help});
    const int bh = m_find->height();
    const int iw = m_markAll->width();
    const int cw = width();
    const int ch = height();

    int rowTop = 0;
    int listBottom = 0;
    if (ch > 3 * bh + 30) {
        rowTop = ch - kMargin - bh;
        listBottom = rowTop - kMargin;
    } else {
        // Too low: the list keeps two button heights, and the row stands below it, fitting or not.
        listBottom = kMargin + 2 * bh;
        rowTop = listBottom + kMargin;
    }

    const QRect list(kMargin, kMargin, cw - 2 * kMargin, listBottom - kMargin);
    const QRect find(kMargin, rowTop, bw, bh);
    const QRect markAll(find.x() + bw + kMargin, rowTop, bh, bh);
    const QRect invert(markAll.x() + bh + kIconButtonGap, rowTop, bh, bh);
    QRect ok, cancel, help;
    if (cw > 2 * (iw + 2 * bw) + 62) {
        help = QRect(cw - kMargin - bw, rowTop, bw, bh);
        cancel = QRect(help.x() - kMargin - bw, rowTop, bw, bh);
        ok = QRect(cancel.x() - kMargin - bw, rowTop, bw, bh);
    } else {
        ok = QRect(invert.x() + bh + kMargin, rowTop, bw, bh);
        cancel = QRect(ok.x() + bw + kMargin, rowTop, bw, bh);
        help = QRect(cancel.x() + bw + kMargin, rowTop, bw, bh);
    }

    m_list->setGeometry(list);
    m_ok->setGeometry(ok);
    m_cancel->setGeometry(cancel);
    m_find->setGeometry(find);
    m_help->setGeometry(help);
    m_markAll->setGeometry(markAll);
    m_invert->setGeometry(invert);

    m_list->setUpdatesEnabled(true);
    repaint();
}

void cDlgSlctSysVar::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (!m_contextMenu)
        return;
    // Strictly inside: a point on any edge of the list opens nothing.
    const QPoint p = event->globalPos();
    const QRect list(m_list->mapToGlobal(QPoint(0, 0)), m_list->size());
    if (p.x() > list.left() && p.x() < list.left() + list.width() && p.y() > list.top() &&
        p.y() < list.top() + list.height())
        m_contextMenu->exec(p);
}
