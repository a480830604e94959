// TemplateDialog: the start, first show, placing and end that the module's template dialogs share.
#pragma once
#include "DialogTemplate.h"

#include <QDialog>

#include <cstdint>

// How a modal run of a dialog ended: OK, or any other way out.
enum class DialogResult { Rejected, Accepted };

// Runs dialog modally through the host's UI services, or in its own loop where the host gives
// none. A result code other than QDialog::Accepted counts as Rejected.
DialogResult runDialog(QDialog& dialog);

// A dialog built from a template. The derived dialog builds its controls in its constructor after
// startFromTemplate, and sets their texts, fields and layout in OnInitDialog, which runs once,
// before the first show. A dialog that keeps its rectangle in the document context names the four
// fields with keepRectIn: the rectangle is then placed on the screen by placeAtKeptRect and
// stored again on every way out, before saveOnEnd.
class TemplateDialog : public QDialog {
    Q_OBJECT
public:
    void setVisible(bool visible) override;
    void done(int result) override;

protected:
    enum class Sizing {
        Resizable,
        Maximizable, // resizable, with a maximize box
        Fixed,
    };

    explicit TemplateDialog(QWidget* parent);

    // Starts from template templateId: the id the automation reads, a title bar with a close box
    // and no size grip, the template's font, size and title; a fixed dialog keeps that size.
    // Returns the base units the controls are placed with. A template that cannot be loaded
    // leaves t empty: the controls then start at 0, and the dialog's layout places them.
    DialogBaseUnits startFromTemplate(int templateId, DialogTemplate& t, Sizing sizing = Sizing::Resizable);

    // The four fields of the context that hold the outer rectangle; they must outlive the dialog.
    void keepRectIn(std::int32_t& left, std::int32_t& top, std::int32_t& width, std::int32_t& height);
    // Places the window at the kept rectangle, corrected for the screen, and gives it the
    // module's icon.
    void placeAtKeptRect();
    // Centres the window on the primary screen.
    void centreOnScreen();

    // The first show's start: texts from the catalog, fields from the context, the layout.
    virtual void OnInitDialog() = 0;
    // Lays the controls out for the present size; called on every resize after the start.
    virtual void LayoutControls() {}
    // What a dialog stores besides its rectangle on the way out.
    virtual void saveOnEnd() {}

    void resizeEvent(QResizeEvent* event) override;

private:
    struct KeptRect {
        std::int32_t* left = nullptr;
        std::int32_t* top = nullptr;
        std::int32_t* width = nullptr;
        std::int32_t* height = nullptr;
    };

    bool m_initialised = false;
    KeptRect m_keptRect;
};
