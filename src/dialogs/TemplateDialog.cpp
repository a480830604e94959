// TemplateDialog: the start, first show, placing and end that the module's template dialogs share.
#include "TemplateDialog.h"

#include "DialogRoutines.h"

#include "hostui.h"
#include "UiServices.h"

#include <QGuiApplication>
#include <QResizeEvent>
#include <QScreen>

DialogResult runDialog(QDialog& dialog) {
    int code = QDialog::Rejected;
    if (kova::UiServices* ui = acHostUiServices())
        code = ui->runModal(dialog);
    else
        code = dialog.exec();
    return code == QDialog::Accepted ? DialogResult::Accepted : DialogResult::Rejected;
}

TemplateDialog::TemplateDialog(QWidget* parent) : QDialog(parent) {}

DialogBaseUnits TemplateDialog::startFromTemplate(int templateId, DialogTemplate& t, Sizing sizing) {
    setProperty("templateId", templateId);
    Qt::WindowFlags flags =
        Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if (sizing == Sizing::Fixed)
        flags |= Qt::MSWindowsFixedSizeDialogHint;
    if (sizing == Sizing::Maximizable)
        flags |= Qt::WindowMaximizeButtonHint;
    setWindowFlags(flags);
    setSizeGripEnabled(false);
    loadDialogTemplate(templateId, t);
    const QFont font = dialogFontOf(t);
    setFont(font);
    const DialogBaseUnits base = baseUnitsOf(font);
    const QSize size = dialogUnitsToPixels(t.size, base);
    if (sizing == Sizing::Fixed)
        setFixedSize(size);
    else
        resize(size);
    setWindowTitle(t.title);
    return base;
}

void TemplateDialog::keepRectIn(std::int32_t& left, std::int32_t& top, std::int32_t& width,
                                std::int32_t& height) {
    m_keptRect = KeptRect{&left, &top, &width, &height};
}

void TemplateDialog::placeAtKeptRect() {
    if (m_keptRect.left)
        PlaceWindow(*m_keptRect.left, *m_keptRect.top, *m_keptRect.width, *m_keptRect.height, this);
    SetDialogIcon(this);
}

void TemplateDialog::centreOnScreen() {
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect frame = frameGeometry();
        frame.moveCenter(screen->geometry().center());
        move(frame.topLeft());
    }
}

void TemplateDialog::setVisible(bool visible) {
    if (visible && !m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    QDialog::setVisible(visible);
}

void TemplateDialog::done(int result) {
    if (m_keptRect.left)
        storeWindowRect(*this, *m_keptRect.left, *m_keptRect.top, *m_keptRect.width, *m_keptRect.height);
    saveOnEnd();
    QDialog::done(result);
}

void TemplateDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_initialised)
        LayoutControls();
}
