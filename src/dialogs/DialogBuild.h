// Building a dialog from its template: the start every secondary dialog shares, and its controls.
#pragma once
#include "CEditEx.h"
#include "DialogTemplate.h"

#include <QGroupBox>
#include <QString>
#include <QWidget>

#include <string>
#include <type_traits>

class QDialog;

// Pixels between a dialog's edge and its controls, and between the main groups of controls.
inline constexpr int kMargin = 10;

// Starts a resizable dialog from template templateId: the id the automation reads, a title bar
// with a close box and no size grip, the template's font, size and title. Returns the base units
// the controls are placed with. A template that cannot be loaded leaves t empty: the controls then
// start at 0, and the dialog's layout places them.
DialogBaseUnits startFromTemplate(QDialog& dialog, int templateId, DialogTemplate& t);

// A control of the template, named by its id, at its place and with its text. An edit field
// starts empty and an icon button shows no text; a control the template lacks starts at 0.
template <typename Control>
Control* makeControl(QWidget* parent, const DialogTemplate& t, int id, const DialogBaseUnits& base) {
    auto* control = new Control(parent);
    control->setObjectName(QString::number(id));
    if (const DialogControl* c = t.control(id)) {
        control->setGeometry(dialogUnitsToPixels(c->rect, base));
        if constexpr (std::is_same_v<Control, QGroupBox>)
            control->setTitle(c->text);
        else if constexpr (!std::is_same_v<Control, CEditEx>)
            if (c->kind != QLatin1String("iconbutton"))
                control->setText(c->text);
    }
    return control;
}

// A catalog or file text, which the system keeps in UTF-8, as Qt's text.
inline QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

// Right and bottom as the window system counts them: one past the last pixel.
inline int rightOf(const QWidget* w) {
    return w->x() + w->width();
}
inline int bottomOf(const QWidget* w) {
    return w->y() + w->height();
}
