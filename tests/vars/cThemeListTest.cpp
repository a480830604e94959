// Tests of cThemeList: result codes of addTheme, name order, and the walk by title.
#include "vars/cThemeList.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const std::string kTitle = "Bema\xC3\x9F"
                           "ung";

TEST(ThemeList, AddThemeResultCodesInTheOrderOfTheTests) {
    cThemeList themes;
    ASSERT_EQ(themes.addTheme(3, kTitle), themeresult::inserted);
    const std::tuple<int, std::string, int> cases[] = {
        {0, "", themeresult::badIndex},
        {0, "Neu", themeresult::badIndex},
        {5, "", themeresult::noName},
        {3, "", themeresult::noName},
        {3, "Anderes", themeresult::indexInUse},
        {3, kTitle, themeresult::indexInUse},
        {9, kTitle, themeresult::nameInUse},
        {9, "  " + kTitle + " ", themeresult::nameInUse},
        {9,
         "bema\xC3\x9F"
         "ung",
         themeresult::inserted}, // case makes it a new theme
        {-4, "Negativ", themeresult::inserted},
        {7, "   ", themeresult::inserted}, // blanks alone pass and are stored empty
        {8, " ", themeresult::nameInUse},
    };
    for (const auto& [index, name, code] : cases)
        EXPECT_EQ(themes.addTheme(index, name), code) << index << " [" << name << "]";
    std::vector<std::string> names;
    for (const cTheme* t = themes.first; t; t = t->next)
        names.push_back(t->name);
    EXPECT_EQ(names, (std::vector<std::string>{"", kTitle, "Negativ",
                                               "bema\xC3\x9F"
                                               "ung"}));
}

TEST(ThemeList, WalkGoesByTitleWhateverTheIndices) {
    cThemeList themes;
    EXPECT_EQ(themes.firstThemeIndex(), 0);
    ASSERT_EQ(themes.addTheme(1, "Zeichnen"), 0);
    ASSERT_EQ(themes.addTheme(20, "Anzeige"), 0);
    ASSERT_EQ(themes.addTheme(5, "\xC3\x84nderung"), 0); // Ä sorts after all ASCII
    ASSERT_EQ(themes.addTheme(7, "Ma\xC3\x9F"), 0);
    std::vector<int> walk;
    for (int i = themes.firstThemeIndex(); i != 0; i = themes.themeIndexAfter(i))
        walk.push_back(i);
    EXPECT_EQ(walk, (std::vector<int>{20, 7, 1, 5}));
    EXPECT_EQ(themes.themeIndexAfter(5), 0) << "after the last";
    EXPECT_EQ(themes.themeIndexAfter(99), 0) << "unknown index";
}

TEST(ThemeList, LookupsByIndexAndName) {
    cThemeList themes;
    ASSERT_EQ(themes.addTheme(3, " Drei "), 0);
    ASSERT_EQ(themes.addTheme(-2, "Minus"), 0);
    EXPECT_TRUE(themes.hasThemeIndex(3));
    EXPECT_TRUE(themes.hasThemeIndex(-2));
    EXPECT_FALSE(themes.hasThemeIndex(4));
    EXPECT_TRUE(themes.hasThemeName("Drei"));
    EXPECT_FALSE(themes.hasThemeName("drei"));
    EXPECT_FALSE(themes.hasThemeName(" Drei "));
    std::string out = "old";
    EXPECT_EQ(themes.themeNameOf(out, 3), 3);
    EXPECT_EQ(out, "Drei");
    for (int index : {0, -2, 4}) {
        out = "old";
        EXPECT_EQ(themes.themeNameOf(out, index), 0) << index;
        EXPECT_TRUE(out.empty()) << index;
    }
    themes.clear();
    EXPECT_FALSE(themes.hasThemeIndex(3));
}

} // namespace
