// CEditEx: a one-line edit control that tells its dialog about the keys Enter and Escape.
#include "CEditEx.h"

#include <QKeyEvent>

CEditEx::CEditEx(QWidget* parent) : QLineEdit(parent) {}

std::uint16_t CEditEx::reportedKey(int qtKey) {
    switch (qtKey) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return kVirtualKeyReturn;
    case Qt::Key_Escape:
        return kVirtualKeyEscape;
    default:
        return 0;
    }
}

bool CEditEx::event(QEvent* event) {
    // Claim the two keys before any shortcut of the window can take them.
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() == Qt::NoModifier && reportedKey(key->key())) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void CEditEx::keyPressEvent(QKeyEvent* event) {
    const std::uint16_t key = reportedKey(event->key());
    if (!key) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    EditKeyNotification notification;
    notification.sender = this;
    bool numeric = false;
    const int id = objectName().toInt(&numeric);
    notification.controlId = numeric ? id : 0;
    notification.code = kEditKeyCode;
    notification.key = key;
    notification.flags = 0;
    emit keyNotify(notification);
    event->accept(); // handled: the dialog's own key handling never sees it
}
