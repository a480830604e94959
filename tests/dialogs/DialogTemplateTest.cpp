// Tests of the dialog templates: the module's data and the conversion of dialog units to pixels.
#include "dialogs/DialogTemplate.h"
#include "dialogs/MenuTemplate.h"
#include "dialogs/ModuleResources.h"

#include <gtest/gtest.h>

#include <QFontMetrics>

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
    for (const Case& c : cases) {
        const QRect got = dialogUnitsToPixels(c.units, c.base);
        EXPECT_EQ(got, c.pixels) << "units " << c.units.x() << "," << c.units.y() << " " << c.units.width()
                                 << "x" << c.units.height() << " with base " << c.base.x << "/" << c.base.y;
    }
    EXPECT_EQ(dialogUnitsToPixels(QSize(188, 150), {6, 13}), QSize(282, 244));
}

TEST(DialogTemplate, BaseUnitsComeFromTheLettersAndTheLineHeight) {
    QFont font;
    font.setPointSize(8);
    const DialogBaseUnits base = baseUnitsOf(font);
    const QFontMetrics metrics(font);
    const int letters =
        metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
    EXPECT_NEAR(base.x, letters / 52.0, 1.0);
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
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(popups[i].entries.size(), counts[i]) << "popup " << i;
    for (const MenuPopup& p : popups) {
        EXPECT_NE(catalogText(p.key), nullptr) << p.key.toStdString();
        for (const MenuEntry& e : p.entries) {
            if (!e.isSeparator()) {
                EXPECT_NE(catalogText(e.key), nullptr) << e.id << " " << e.key.toStdString();
            }
        }
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
