// Tests of CEditEx: Enter and Escape go to the dialog as one notification, other keys as typed.
#include "dialogs/CEditEx.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QPushButton>
#include <QTest>

#include <vector>

namespace {

struct EditInDialog {
    QDialog dialog;
    QPushButton* defaultButton = new QPushButton("OK", &dialog);
    CEditEx* edit = new CEditEx(&dialog);
    std::vector<EditKeyNotification> received;
    int accepted = 0;
    int rejected = 0;

    EditInDialog() {
        edit->setObjectName("1006");
        defaultButton->setDefault(true);
        QObject::connect(defaultButton, &QPushButton::clicked, &dialog, &QDialog::accept);
        QObject::connect(&dialog, &QDialog::accepted, [this] { ++accepted; });
        QObject::connect(&dialog, &QDialog::rejected, [this] { ++rejected; });
        QObject::connect(edit, &CEditEx::keyNotify,
                         [this](const EditKeyNotification& n) { received.push_back(n); });
        dialog.show();
        edit->setFocus();
    }
};

} // namespace

TEST(CEditEx, EnterAndEscapeReachOnlyTheNotification) {
    const struct {
        Qt::Key key;
        std::uint16_t virtualKey;
    } cases[] = {{Qt::Key_Return, 13}, {Qt::Key_Enter, 13}, {Qt::Key_Escape, 27}};
    for (const auto& c : cases) {
        EditInDialog fixture;
        QTest::keyClick(fixture.edit, c.key);
        ASSERT_EQ(fixture.received.size(), 1u) << "key " << c.virtualKey;
        const EditKeyNotification& n = fixture.received[0];
        EXPECT_EQ(n.sender, fixture.edit);
        EXPECT_EQ(n.controlId, 1006);
        EXPECT_EQ(n.code, 256);
        EXPECT_EQ(n.key, c.virtualKey);
        EXPECT_EQ(n.flags, 0);
        EXPECT_EQ(fixture.accepted, 0) << "the default button never saw key " << c.virtualKey;
        EXPECT_EQ(fixture.rejected, 0) << "Escape did not close, key " << c.virtualKey;
        EXPECT_TRUE(fixture.dialog.isVisible()) << "key " << c.virtualKey;
    }
}

TEST(CEditEx, OtherKeysBehaveAsInAPlainEdit) {
    EditInDialog fixture;
    QTest::keyClicks(fixture.edit, "L*P");
    QTest::keyClick(fixture.edit, Qt::Key_Backspace);
    QTest::keyClick(fixture.edit, Qt::Key_Tab);
    EXPECT_EQ(fixture.edit->text(), "L*");
    EXPECT_TRUE(fixture.received.empty());
}

TEST(CEditEx, ControlWithoutNumericIdReportsZero) {
    EditInDialog fixture;
    fixture.edit->setObjectName("pattern");
    QTest::keyClick(fixture.edit, Qt::Key_Return);
    ASSERT_EQ(fixture.received.size(), 1u);
    EXPECT_EQ(fixture.received[0].controlId, 0);
}
