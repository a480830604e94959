// Tests of what every dialog stands on: templates and units, module images, window placement,
// CEditEx's notification, and the info dialog's widening rule.
#include "dialogs/cDlgInfo.h"
#include "dialogs/CEditEx.h"
#include "dialogs/DialogRoutines.h"
#include "dialogs/DialogTemplate.h"
#include "dialogs/MenuTemplate.h"
#include "dialogs/ModuleResources.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <vector>

TEST(DialogTemplate, ConvertsUnitsWithTheBaseUnitsOfTheFont) {
    struct Case {
        QRect units;
        DialogBaseUnits base;
        QRect pixels;
    };
    const Case cases[] = {
        {{7, 21, 174, 62}, {6, 13}, {11, 34, 261, 101}}, // 10.5 and 33.375 round to the nearest
        {{7, 21, 174, 62}, {8, 16}, {14, 42, 348, 124}},
        {{0, 0, 4, 8}, {7, 15}, {0, 0, 7, 15}}, // 4 units across, 8 down: one base unit
        {{55, 66, 50, 16}, {5, 11}, {69, 91, 63, 22}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(dialogUnitsToPixels(c.units, c.base), c.pixels)
            << "units " << c.units.x() << "," << c.units.y() << " " << c.units.width() << "x"
            << c.units.height() << " with base " << c.base.x << "/" << c.base.y;
    EXPECT_EQ(dialogUnitsToPixels(QSize(188, 150), {6, 13}), QSize(282, 244));

    QFont font;
    font.setPointSize(8);
    const DialogBaseUnits base = baseUnitsOf(font);
    const QFontMetrics metrics(font);
    EXPECT_NEAR(base.x,
                metrics.horizontalAdvance("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") / 52.0,
                1.0);
    EXPECT_EQ(base.y, metrics.height());
    EXPECT_GT(base.x, 0);
}

TEST(DialogTemplate, TheModuleHasEveryTemplateWithItsSize) {
    const struct {
        int id;
        QSize size;
        int controls;
    } expected[] = {{1000, {188, 150}, 3}, {1007, {344, 151}, 7}, {1097, {161, 92}, 6},
                    {1101, {117, 28}, 2},  {1118, {198, 62}, 9},  {1121, {176, 110}, 13}};
    for (const auto& e : expected) {
        DialogTemplate t;
        QString error;
        ASSERT_TRUE(loadDialogTemplate(e.id, t, &error)) << e.id << ": " << error.toStdString();
        EXPECT_EQ(t.size, e.size) << "template " << e.id;
        EXPECT_EQ(t.controls.size(), e.controls) << "template " << e.id;
    }
    DialogTemplate main;
    ASSERT_TRUE(loadDialogTemplate(1000, main));
    EXPECT_EQ(main.menuId, 1026);
    ASSERT_NE(main.control(9004), nullptr);
    EXPECT_EQ(main.control(9004)->rect, QRect(7, 120, 174, 12));
    EXPECT_TRUE(main.control(9003)->hasStyle("readonly"));
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

TEST(MenuTemplate, MainMenuHasSixPopupsWithTheirEntries) {
    QVector<MenuPopup> popups;
    ASSERT_TRUE(loadMenuTemplate(1026, popups));
    ASSERT_EQ(popups.size(), 6);
    const int counts[] = {7, 5, 9, 7, 1, 3}; // separators included
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(popups[i].entries.size(), counts[i]) << "popup " << i;
        EXPECT_NE(catalogText(popups[i].key), nullptr) << popups[i].key.toStdString();
        for (const MenuEntry& e : popups[i].entries)
            EXPECT_TRUE(e.isSeparator() || catalogText(e.key)) << e.id << " " << e.key.toStdString();
    }
    EXPECT_EQ(catalogText("NoSuchKey"), nullptr);
}

TEST(ModuleResources, EveryNamedIconAndTheBitmapDraw) {
    for (int id : {1068, 1070, 1072, 1073, 1074, 1075, 1079, 1082, 1083, 1084, 1085, 1086,
                   1087, 1088, 1090, 1091, 1092, 1095, 1102, 1105, 1109, 1110, 1111, 1113}) {
        const QImage image = moduleIconPixmap(id).toImage();
        ASSERT_EQ(image.size(), QSize(16, 16)) << "icon " << id;
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "icon " << id << " has a transparent corner";
        EXPECT_GT(image.pixelColor(8, 8).alpha() + image.pixelColor(7, 7).alpha(), 0)
            << "icon " << id << " draws";
    }
    EXPECT_TRUE(moduleIconPixmap(1).isNull());
    EXPECT_FALSE(moduleBitmap(1098, QSize(59, 77)).isNull());
}

TEST(PlaceWindow, CorrectsTheStoredRectangleForTheScreen) {
    const QSize screen(1024, 768);
    const struct {
        const char* name;
        QRect stored;
        QRect placed;
    } cases[] = {
        {"inside", {20, 20, 450, 320}, {20, 20, 450, 320}},
        {"negative left", {-5, 10, 400, 300}, {0, 10, 400, 300}},
        {"negative top", {10, -40, 400, 300}, {10, 0, 400, 300}},
        {"far right", {5000, 10, 400, 300}, {924, 10, 400, 300}},
        {"far down", {10, 5000, 400, 300}, {10, 693, 400, 300}},
        {"too wide", {900, 10, 3000, 300}, {768, 10, 1024, 300}},
        {"too high", {10, 10, 400, 2000}, {10, 10, 400, 768}},
        {"quarter with a remainder", {2000, 0, 403, 300}, {924, 0, 403, 300}},
        {"exactly at the limit", {924, 0, 400, 300}, {924, 0, 400, 300}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(correctWindowRect(c.stored, screen), c.placed) << c.name;

    // The outer rectangle goes onto the primary screen and is stored back as it stands.
    const QSize primary = QGuiApplication::primaryScreen()->geometry().size();
    QWidget window;
    ASSERT_TRUE(PlaceWindow(-5, 30, 300, 200, &window));
    EXPECT_EQ(window.frameGeometry(), QRect(0, 30, 300, 200));
    PlaceWindow(primary.width() + 100, 0, 400, 200, &window);
    EXPECT_EQ(window.frameGeometry().x(), primary.width() - 100);
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
    } cases[] = {{Qt::Key_Return, 13, "1006", 1006},
                 {Qt::Key_Enter, 13, "1006", 1006},
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
        EXPECT_EQ(n.flags, 0);
        EXPECT_EQ(fixture.accepted, 0) << "the default button never saw the key";
        EXPECT_EQ(fixture.rejected, 0) << "Escape did not close";
        EXPECT_TRUE(fixture.dialog.isVisible());
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

// ---- the info dialog; what it shows in a run is in the scenario commands_edit ----

TEST(cDlgInfo, ShortTextsKeepTheTemplateLayout) {
    cDlgInfo dialog("A", "B", "C", "D");
    const QSize before = dialog.size();
    const QRect okBefore = dialog.findChild<QPushButton*>("1")->geometry();
    const QRect titleBefore = dialog.findChild<QLabel*>("1201")->geometry();
    dialog.show();
    EXPECT_EQ(dialog.size(), before);
    EXPECT_EQ(dialog.findChild<QPushButton*>("1")->geometry(), okBefore);
    EXPECT_EQ(dialog.findChild<QLabel*>("1201")->geometry(), titleBefore);
    EXPECT_EQ(dialog.findChild<QLabel*>("1201")->text(), "A");
    EXPECT_EQ(dialog.findChild<QLabel*>("1200")->text(), "D");
    EXPECT_FALSE(dialog.findChild<QLabel*>("1204")->pixmap().isNull());
    dialog.findChild<QPushButton*>("1")->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST(cDlgInfo, LongCopyrightWidensTheDialogAndCentresOk) {
    const std::string copyright = "Copyright (C) a rather long line of holders, years and places";
    cDlgInfo dialog("VarDesk", "Version: 1.1", "KOVA_VARDESK", copyright);
    const int heightBefore = dialog.height();
    const QRect okBefore = dialog.findChild<QPushButton*>("1")->geometry();
    dialog.show();
    const int L =
        dialog.findChild<QLabel*>("1201")->fontMetrics().horizontalAdvance(QString::fromStdString(copyright));
    ASSERT_GT(L, 80);
    EXPECT_EQ(dialog.frameGeometry().width(), L + 88);
    EXPECT_EQ(dialog.height(), heightBefore);
    const QRect ok = dialog.findChild<QPushButton*>("1")->geometry();
    EXPECT_EQ(ok.x(), (L - ok.width() + 88) / 2);
    EXPECT_EQ(ok.y(), okBefore.y());
    EXPECT_EQ(ok.size(), okBefore.size());
    for (const char* id : {"1201", "1202", "1203", "1200"}) {
        EXPECT_EQ(dialog.findChild<QLabel*>(id)->x(), 78) << "static " << id;
        EXPECT_EQ(dialog.findChild<QLabel*>(id)->width(), L) << "static " << id;
    }
}
