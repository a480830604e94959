// CEditEx: a one-line edit control that tells its dialog about the keys Enter and Escape.
#pragma once
#include <QLineEdit>

#include <cstdint>

// The key notification of CEditEx, fields in this order.
struct EditKeyNotification {
    QWidget* sender = nullptr;  // the edit control
    std::int32_t controlId = 0; // the control's numeric id (its objectName), 0 without one
    std::int32_t code = 0;      // kEditKeyCode
    std::uint16_t key = 0;      // virtual key code: kVirtualKeyReturn or kVirtualKeyEscape
    std::int32_t flags = 0;
};
Q_DECLARE_METATYPE(EditKeyNotification)

// Notification code of a key in a CEditEx.
inline constexpr std::int32_t kEditKeyCode = 256;
inline constexpr std::uint16_t kVirtualKeyReturn = 13;
inline constexpr std::uint16_t kVirtualKeyEscape = 27;

// Enter and Escape never reach the edit nor its dialog's own key handling (the default button,
// closing on Escape): they go out as one synchronous keyNotify, and the receiver's handler is all
// they do. Every other key behaves as in a plain QLineEdit.
class CEditEx : public QLineEdit {
    Q_OBJECT
public:
    explicit CEditEx(QWidget* parent = nullptr);

signals:
    // Emitted before the key press returns; connect with a direct connection.
    void keyNotify(const EditKeyNotification& notification);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // The virtual key code of a key this control reports, else 0.
    static std::uint16_t reportedKey(int qtKey);
};
