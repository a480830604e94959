// Tests of what every dialog stands on: template units and data, window placement,
// CEditEx's notification, and the info dialog's widening rule.
#include "dialogs/cDlgInfo.h"
#include "dialogs/CEditEx.h"
#include "dialogs/DialogRoutines.h"
#include "dialogs/DialogTemplate.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <vector>

TEST(DialogTemplate, UnitsBecomePixelsRoundedToTheNearest) {
    struct Case {
        QRect units;
        DialogBaseUnits base;
        QRect pixels;
    };
    const Case cases[] = {
        {{7, 21, 174, 62}, {6, 13}, {11, 34, 261, 101}}, // 10.5 and 33.375 round to the nearest
        {{0, 0, 4, 8}, {7, 15}, {0, 0, 7, 15}},          // 4 units across, 8 down: one base unit
    };
    for (const Case& c : cases)
        EXPECT_EQ(dialogUnitsToPixels(c.units, c.base), c.pixels)
            << "units " << c.units.x() << "," << c.units.y() << " " << c.units.width() << "x"
            << c.units.height() << " with base " << c.base.x << "/" << c.base.y;
}

TEST(DialogTemplate, BaseUnitsAreTheAverageLetterWidthAndTheLineHeight) {
    QFont font;
    font.setPointSize(8);
    const DialogBaseUnits base = baseUnitsOf(font);
    const QFontMetrics metrics(font);
    EXPECT_NEAR(base.x,
                metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") / 52.0,
                1.0);
    EXPECT_EQ(base.y, metrics.height());
}

TEST(DialogTemplate, BadDataIsRefusedWithItsReason) {
    const struct {
        const char* name;
        const char* json;
        const char* reason;
    } cases[] = {
        {"not json", "{templates: [", "templates:"},
        {"missing id", R"({"templates": [{"id": 5, "size": [1, 2], "font": ["x", 8]}]})",
         "no dialog template 7"},
        {"size no pair", R"({"templates": [{"id": 7, "size": [1], "font": ["x", 8]}]})", "size or font"},
        {"control without rect",
         R"({"templates": [{"id": 7, "size": [1, 2], "font": ["x", 8], "controls": [{"id": 1, "kind": "edit"}]}]})",
         "lacks its id"},
    };
    for (const auto& c : cases) {
        DialogTemplate t;
        t.id = 99;
        QString error;
        EXPECT_FALSE(parseDialogTemplate(c.json, 7, t, &error)) << c.name;
        EXPECT_TRUE(error.contains(QString::fromLatin1(c.reason))) << c.name << ": " << error.toStdString();
        EXPECT_EQ(t.id, 99) << c.name << ": the template is left alone";
    }
}

TEST(PlaceWindow, StoredRectangleIsCorrectedForTheScreen) {
    const QSize screen(1024, 768);
    const struct {
        const char* name;
        QRect stored;
        QRect placed;
    } cases[] = {
        {"inside", {20, 20, 450, 320}, {20, 20, 450, 320}},
        {"negative left", {-5, 10, 400, 300}, {0, 10, 400, 300}},
        {"far right", {5000, 10, 400, 300}, {924, 10, 400, 300}},
        {"too wide", {900, 10, 3000, 300}, {768, 10, 1024, 300}},
        {"quarter with a remainder", {2000, 0, 403, 300}, {924, 0, 403, 300}},
        {"exactly at the limit", {924, 0, 400, 300}, {924, 0, 400, 300}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(correctWindowRect(c.stored, screen), c.placed) << c.name;
}

TEST(PlaceWindow, OuterRectangleGoesOntoThePrimaryScreenAndIsStoredAsItStands) {
    const QSize primary = QGuiApplication::primaryScreen()->geometry().size();
    QWidget window;
    ASSERT_TRUE(PlaceWindow(-5, 30, 300, 200, &window));
    EXPECT_EQ(window.frameGeometry(), QRect(0, 30, 300, 200));
    PlaceWindow(primary.width() + 100, 0, 400, 200, &window);
    EXPECT_EQ(window.frameGeometry().x(), primary.width() - 100) << "a quarter stays on the screen";
    std::int32_t left = 0, top = 0, width = 0, height = 0;
    storeWindowRect(window, left, top, width, height);
    EXPECT_EQ(QRect(left, top, width, height), window.frameGeometry());
}

// ---- CEditEx: Enter and Escape go to the dialog as one notification, other keys as typed ----

namespace {

struct EditInDialog {
    QDialog dialog;
    QPushButton* defaultButton = new QPushButton("OK", &dialog);
    CEditEx* edit = new CEditEx(&dialog);
    std::vector<EditKeyNotification> received;
    int accepted = 0;
    int rejected = 0;

    explicit EditInDialog(const char* id = "1006") {
        edit->setObjectName(id);
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
        const char* id;
        int controlId;
    } cases[] = {{Qt::Key_Enter, 13, "1006", 1006},
                 {Qt::Key_Escape, 27, "1006", 1006},
                 {Qt::Key_Return, 13, "pattern", 0}}; // a control without a numeric id
    for (const auto& c : cases) {
        SCOPED_TRACE("key " + std::to_string(c.virtualKey) + " on " + c.id);
        EditInDialog fixture(c.id);
        QTest::keyClick(fixture.edit, c.key);
        ASSERT_EQ(fixture.received.size(), 1u);
        const EditKeyNotification& n = fixture.received[0];
        EXPECT_EQ(n.sender, fixture.edit);
        EXPECT_EQ(n.controlId, c.controlId);
        EXPECT_EQ(n.code, 256);
        EXPECT_EQ(n.key, c.virtualKey);
        EXPECT_EQ(fixture.accepted, 0) << "the default button never saw the key";
        EXPECT_EQ(fixture.rejected, 0) << "Escape did not close";
        EXPECT_TRUE(fixture.dialog.isVisible());
    }
}

// ---- the info dialog; what it shows with short texts is in the scenario commands_edit ----

TEST(cDlgInfo, LongCopyrightWidensTheDialogAndCentresOk) {
    const std::string copyright = "Copyright (C) a rather long line of holders, years and places";
    cDlgInfo dialog("VarDesk", "Version: 1.1", "KOVA_VARDESK", copyright);
    const int heightBefore = dialog.height();
    const QRect okBefore = dialog.findChild<QPushButton*>("1")->geometry();
    dialog.show();
    const int L =
        dialog.findChild<QLabel*>("1201")->fontMetrics().horizontalAdvance(QString::fromStdString(copyright));
    ASSERT_GT(L, 80) << "wide enough to widen the dialog";
    EXPECT_EQ(dialog.frameGeometry().width(), L + 88);
    EXPECT_EQ(dialog.height(), heightBefore);
    const QRect ok = dialog.findChild<QPushButton*>("1")->geometry();
    EXPECT_EQ(ok.x(), (L - ok.width() + 88) / 2);
    EXPECT_EQ(ok.size(), okBefore.size());
    for (const char* id : {"1201", "1200"})
        EXPECT_EQ(dialog.findChild<QLabel*>(id)->x(), 78) << "static " << id;
    EXPECT_EQ(dialog.findChild<QLabel*>("1200")->width(), L);
}
