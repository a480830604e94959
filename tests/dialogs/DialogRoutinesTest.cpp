// Tests of the routines all dialogs share: window placement, the icon and filter entries.
#include "dialogs/DialogRoutines.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

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
}

TEST(PlaceWindow, PlacesTheOuterRectangleOnThePrimaryScreen) {
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
    QWidget window;
    ASSERT_TRUE(PlaceWindow(-5, 30, 300, 200, &window));
    EXPECT_EQ(window.frameGeometry(), QRect(0, 30, 300, 200));

    PlaceWindow(screen.width() + 100, 0, 400, 200, &window);
    EXPECT_EQ(window.frameGeometry().x(), screen.width() - 100);

    std::int32_t left = 0, top = 0, width = 0, height = 0;
    storeWindowRect(window, left, top, width, height);
    EXPECT_EQ(QRect(left, top, width, height), window.frameGeometry());
}

TEST(SetDialogIcon, GivesTheWindowTheModuleIcon) {
    QWidget window;
    EXPECT_TRUE(SetDialogIcon(&window));
    EXPECT_FALSE(window.windowIcon().isNull());
}

TEST(MakeFilterEntry, FormatsNameAndExtension) {
    EXPECT_EQ(MakeFilterEntry("Variablenliste", "var", false), "Variablenliste (*.var)|*.var|");
    EXPECT_EQ(MakeFilterEntry("Alle Dateien", "*", true), "Alle Dateien (*.*)|*.*||");
    EXPECT_EQ(MakeFilterEntry("Variablenliste", "var", false) + MakeFilterEntry("Alle Dateien", "*", true),
              "Variablenliste (*.var)|*.var|Alle Dateien (*.*)|*.*||");
}
