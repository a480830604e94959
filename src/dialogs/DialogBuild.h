// Building a dialog from its template: its controls, margins and edges.
#pragma once
#include "CEditEx.h"
#include "DialogTemplate.h"
#include "vars/QtText.h"

#include <QGroupBox>
#include <QString>
#include <QWidget>

#include <type_traits>

// Pixels between a dialog's edge and its controls, and between the main groups of controls.
inline constexpr int kMargin = 10;

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

// Right and bottom as the window system counts them: one past the last pixel.
inline int rightOf(const QWidget* w) {
    return w->x() + w->width();
}
inline int bottomOf(const QWidget* w) {
    return w->y() + w->height();
}
