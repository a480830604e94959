// cDlgConfig: the configuration dialog for the two paths of the system, the AVL file and the editor.
#include "cDlgConfig.h"
#include "DialogBuild.h"

#include "CEditEx.h"
#include "DialogRoutines.h"
#include "DialogTemplate.h"
#include "settings/cMsgCatalog.h"
#include "settings/HelpService.h"
#include "vars/DocumentState.h"
#include "vars/TextHelpers.h"

#include "hostui.h"
#include "UiServices.h"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <type_traits>

namespace {

// Whether the platform can give the file's status: the one test of a path here.
bool hasFileStatus(const std::string& path) {
    struct stat status {};
    return !path.empty() && ::stat(path.c_str(), &status) == 0;
}

} // namespace

cDlgConfig::cDlgConfig(DocumentState& context, QWidget* parent)
    : TemplateDialog(parent), m_avlPath(context.avlFilePath), m_editorPath(context.editorPath),
      m_context(context) {
    DialogTemplate t;
    const DialogBaseUnits base = startFromTemplate(kTemplateId, t);
    keepRectIn(context.configPosX, context.configPosY, context.configSizeX, context.configSizeY);

    m_ok = makeControl<QPushButton>(this, t, kIdOk, base);
    m_ok->setDefault(true);
    m_cancel = makeControl<QPushButton>(this, t, kIdCancel, base);
    m_help = makeControl<QPushButton>(this, t, kIdHelp, base);
    m_avlLabel = makeControl<QLabel>(this, t, kIdAvlLabel, base);
    m_avlField = makeControl<CEditEx>(this, t, kIdAvlPath, base);
    m_avlBrowse = makeControl<QPushButton>(this, t, kIdAvlBrowse, base);
    m_editorLabel = makeControl<QLabel>(this, t, kIdEditorLabel, base);
    m_editorField = makeControl<CEditEx>(this, t, kIdEditorPath, base);
    m_editorBrowse = makeControl<QPushButton>(this, t, kIdEditorBrowse, base);
    for (QLabel* label : {m_avlLabel, m_editorLabel})
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // The browse buttons take no part in Enter: only 1014 is the default.
    for (QPushButton* button : {m_ok, m_cancel, m_help, m_avlBrowse, m_editorBrowse})
        button->setAutoDefault(false);

    connect(m_ok, &QPushButton::clicked, this, &cDlgConfig::accept);
    connect(m_cancel, &QPushButton::clicked, this, &cDlgConfig::reject);
    connect(m_help, &QPushButton::clicked, this, [] { ShowHelp("VarDesk", "ConfigDialog"); });
    connect(m_avlBrowse, &QPushButton::clicked, this, &cDlgConfig::OnBrowseAvl);
    connect(m_editorBrowse, &QPushButton::clicked, this, &cDlgConfig::OnBrowseEditor);
    for (CEditEx* field : {m_avlField, m_editorField}) {
        connect(field, &CEditEx::keyNotify, this, &cDlgConfig::OnPathKey, Qt::DirectConnection);
        field->installEventFilter(this);
    }
}

// ---- start and end ----

void cDlgConfig::OnInitDialog() {
    placeAtKeptRect();

    setWindowTitle(qs(gMsg.TiConfig));
    m_ok->setText(qs(gMsg.RsBtnOk));
    m_cancel->setText(qs(gMsg.RsBtnCancel));
    m_help->setText(qs(gMsg.RsBtnHelp));
    m_avlField->setText(qs(m_avlPath));
    m_editorField->setText(qs(m_editorPath));

    // The fields of both rows begin where the wider of the two labels ends; a label's room is its
    // text behind the left margin.
    m_avlLabel->setText(qs(gMsg.RsStcAVL));
    m_editorLabel->setText(qs(gMsg.RsStcEditor));
    const QFontMetrics metrics(m_avlLabel->font());
    const int avlWidth = metrics.horizontalAdvance(m_avlLabel->text());
    const int editorWidth = metrics.horizontalAdvance(m_editorLabel->text());
    m_labelWidth = kMargin + std::max(avlWidth, editorWidth);

    const int h = m_avlLabel->height();
    m_avlLabel->setGeometry(kMargin, kMargin, m_labelWidth - kMargin, h);
    m_editorLabel->setGeometry(kMargin, h + 2 * kMargin, m_labelWidth - kMargin, h);

    LayoutControls();
}

void cDlgConfig::accept() {
    // A click on OK takes the focus from a path field first, and that takes the field's text over.
    if (QWidget* focused = focusWidget(); focused == m_avlField || focused == m_editorField) {
        auto* field = static_cast<CEditEx*>(focused);
        m_ok->setFocus(Qt::MouseFocusReason);
        workingPathOf(field) = stdText(field->text());
    }

    // The paths the user confirms here are the user's own: an offer of the drawing's ends.
    m_context.drawingAvlFilePath.clear();
    m_context.drawingEditorPath.clear();
    const bool avlMissing = !hasFileStatus(m_avlPath);
    if (!avlMissing)
        m_context.avlFilePath = m_avlPath;
    const bool editorMissing = !hasFileStatus(m_editorPath);
    if (!editorMissing)
        m_context.editorPath = m_editorPath;

    if (avlMissing || editorMissing) {
        std::string question;
        if (avlMissing && editorMissing)
            question = formatText("%s %s %s %s %s", m_avlPath.c_str(), gMsg.Tx_and.c_str(),
                                  m_editorPath.c_str(), gMsg.TxDoNotExist.c_str(), gMsg.TxAssume.c_str());
        else
            question = formatText("%s %s %s", (avlMissing ? m_avlPath : m_editorPath).c_str(),
                                  gMsg.TxDoesNotExist.c_str(), gMsg.TxAssume.c_str());
        if (gMsg.AskYesNo(question)) {
            m_context.avlFilePath = m_avlPath;
            m_context.editorPath = m_editorPath;
        }
    }

    // There is no way back into the dialog from the question.
    TemplateDialog::accept();
}

// ---- the path fields ----

std::string& cDlgConfig::workingPathOf(const CEditEx* field) {
    return field == m_avlField ? m_avlPath : m_editorPath;
}

bool cDlgConfig::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_avlField || watched == m_editorField) {
        auto* field = static_cast<CEditEx*>(watched);
        if (event->type() == QEvent::FocusIn) {
            // Posted, so that the click that brought the focus does not undo the selection.
            QMetaObject::invokeMethod(field, &QLineEdit::selectAll, Qt::QueuedConnection);
        } else if (event->type() == QEvent::FocusOut) {
            workingPathOf(field) = stdText(field->text());
        }
    }
    return TemplateDialog::eventFilter(watched, event);
}

void cDlgConfig::OnPathKey(const EditKeyNotification& notification) {
    auto* field = static_cast<CEditEx*>(notification.sender);
    if (field != m_avlField && field != m_editorField)
        return;
    if (notification.key == kVirtualKeyReturn) {
        m_ok->setFocus(Qt::OtherFocusReason);
        workingPathOf(field) = stdText(field->text());
    } else if (notification.key == kVirtualKeyEscape) {
        // The field's loss of focus comes first and takes its text over, so Escape keeps what was
        // typed; it only leaves the field.
        m_cancel->setFocus(Qt::OtherFocusReason);
        field->setText(qs(workingPathOf(field)));
    }
}

void cDlgConfig::browse(CEditEx* field, const std::string& filterName, const std::string& extension) {
    kova::UiServices* ui = acHostUiServices();
    if (!ui)
        return;
    const std::string filter =
        MakeFilterEntry(filterName, extension, false) + MakeFilterEntry(gMsg.FiAll, "*", true);
    std::string& path = workingPathOf(field);
    const std::optional<std::string> chosen =
        ui->fileDialog(kova::FileDialogKind::Open, filter, path, extension);
    if (!chosen)
        return;
    path = *chosen;
    field->setText(qs(path));
}

void cDlgConfig::OnBrowseAvl() {
    browse(m_avlField, gMsg.FiAcadVarList, "avl");
}

void cDlgConfig::OnBrowseEditor() {
    browse(m_editorField, gMsg.FiExecutables, "exe");
}

// ---- layout ----

void cDlgConfig::LayoutControls() {
    const int bw = m_ok->width();
    const int bh = m_ok->height();
    const int clientRight = width();

    const int rowTop = bottomOf(m_editorLabel) + kMargin;
    const QRect ok(kMargin, rowTop, bw, bh);
    const QRect cancel(bw + 2 * kMargin, rowTop, bw, bh);
    // A narrow dialog lets Help follow Cancel, past the right edge if need be.
    const bool wide = clientRight > 3 * bw + 40;
    const QRect help(wide ? clientRight - kMargin - bw : cancel.x() + bw + kMargin, rowTop, bw, bh);

    // The browse buttons keep their widths and end where Help ends, each in its label's row.
    auto besideLabel = [&help](const QWidget* button, const QWidget* label) {
        return QRect(help.x() + help.width() - button->width(), label->y(), button->width(), label->height());
    };
    const QRect avlBrowse = besideLabel(m_avlBrowse, m_avlLabel);
    const QRect editorBrowse = besideLabel(m_editorBrowse, m_editorLabel);
    const QRect avlField(m_labelWidth, m_avlLabel->y(), avlBrowse.x() - kMargin - m_labelWidth,
                         m_avlLabel->height());
    const QRect editorField(m_labelWidth, m_editorLabel->y(), editorBrowse.x() - kMargin - m_labelWidth,
                            m_editorLabel->height());

    m_ok->setGeometry(ok);
    m_cancel->setGeometry(cancel);
    m_help->setGeometry(help);
    m_avlBrowse->setGeometry(avlBrowse);
    m_editorBrowse->setGeometry(editorBrowse);
    m_avlField->setGeometry(avlField);
    m_editorField->setGeometry(editorField);
}
