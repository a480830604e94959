// Tests of cSysVarList and cThemeList: insertion orders, user-list state, bulk host reads and
// writes, the load checks, and the result codes and walk of the themes.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/TextHelpers.h"

#include <algorithm>

namespace {

using filekit::chainNames;
using Names = std::vector<std::string>;
const std::string kTitle = "Bema\xC3\x9Fung";

TEST(SysVarList, AnyInputOrderGivesTheSameChain) {
    Names input = {"OSMODE", "ANGBASE", "\xC3\x84RGER", "CLAYER", "Z", "AUNITS"};
    Names expected = input;
    std::sort(expected.begin(), expected.end(),
              [](const std::string& a, const std::string& b) { return compareText(a, b) < 0; });
    std::sort(input.begin(), input.end());
    do {
        cSysVarList list;
        int line = 1;
        for (const auto& name : input)
            ASSERT_TRUE(list.addVariable("1", name, "+-", "", line++)) << name;
        ASSERT_EQ(chainNames(list), expected) << "first added: " << input.front();
    } while (std::next_permutation(input.begin(), input.begin() + 3));
}

TEST(SysVarList, EqualNamesKeepTheOrderOfTheFileAndFailedAddsChangeNothing) {
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "B", "+-", "", 1));
    EXPECT_FALSE(list.addVariable("0", "A", "+-", "", 2));
    EXPECT_FALSE(list.addVariable("1", "A", "?", "", 3));
    EXPECT_FALSE(list.addVariable("1", " ", "++", "", 4));
    EXPECT_EQ(chainNames(list), Names{"B"});
    ASSERT_TRUE(list.addVariable("1", " A ", "+-", "first", 2));
    ASSERT_TRUE(list.addVariable("1", "A", "+-", "second", 3));
    ASSERT_TRUE(list.addVariable("1", "A  ", "+-", "third", 4));
    std::vector<int> lines;
    for (const cSysVar* v = list.first; v; v = v->next)
        lines.push_back(v->sourceLine);
    EXPECT_EQ(lines, (std::vector<int>{2, 3, 4, 1}));
    EXPECT_EQ(list.findName("A")->description, "first");
    EXPECT_TRUE(list.containsName("B"));
    EXPECT_FALSE(list.containsName("b")) << "containsName is exact";
}

TEST(ThemeList, AddThemeResultCodesInTheOrderOfTheTests) {
    cThemeList themes;
    ASSERT_EQ(themes.addTheme(3, kTitle), themeresult::inserted);
    const std::tuple<int, std::string, int> cases[] = {
        {0, "", themeresult::badIndex},
        {3, "", themeresult::noName},
        {3, kTitle, themeresult::indexInUse},
        {9, "  " + kTitle + " ", themeresult::nameInUse},
        {9, "bema\xC3\x9Fung", themeresult::inserted}, // case makes it a new theme
        {7, "   ", themeresult::inserted},             // blanks alone pass and are stored empty
        {8, " ", themeresult::nameInUse},
    };
    for (const auto& [index, name, code] : cases)
        EXPECT_EQ(themes.addTheme(index, name), code) << index << " [" << name << "]";
    Names names;
    for (const cTheme* t = themes.first; t; t = t->next)
        names.push_back(t->name);
    EXPECT_EQ(names, (Names{"", kTitle, "bema\xC3\x9Fung"}));
}

TEST(ThemeList, WalkGoesByTitleAndLookupsAreExact) {
    cThemeList themes;
    EXPECT_EQ(themes.firstThemeIndex(), 0);
    ASSERT_EQ(themes.addTheme(1, "Zeichnen"), 0);
    ASSERT_EQ(themes.addTheme(20, "Anzeige"), 0);
    ASSERT_EQ(themes.addTheme(5, "\xC3\x84nderung"), 0); // Ä sorts after all ASCII
    ASSERT_EQ(themes.addTheme(7, " Ma\xC3\x9F "), 0);
    ASSERT_EQ(themes.addTheme(-2, "Minus"), 0);
    std::vector<int> walk;
    for (int i = themes.firstThemeIndex(); i != 0; i = themes.themeIndexAfter(i))
        walk.push_back(i);
    EXPECT_EQ(walk, (std::vector<int>{20, 7, -2, 1, 5}));
    EXPECT_EQ(themes.themeIndexAfter(99), 0) << "unknown index";

    EXPECT_TRUE(themes.hasThemeName("Ma\xC3\x9F"));
    EXPECT_FALSE(themes.hasThemeName("ma\xC3\x9F"));
    std::string out = "old";
    EXPECT_EQ(themes.themeNameOf(out, 7), 7);
    EXPECT_EQ(out, "Ma\xC3\x9F");
    for (int index : {0, -2, 4}) {
        out = "old";
        EXPECT_EQ(themes.themeNameOf(out, index), 0) << index;
        EXPECT_TRUE(out.empty()) << index;
    }
}

class SysVarListHost : public filekit::HostFixture {
protected:
    void add(std::initializer_list<std::pair<const char*, const char*>> rows) {
        int line = 1;
        for (const auto& [name, mode] : rows)
            ASSERT_TRUE(list.addVariable("1", name, mode, "", line++)) << name;
    }
    cSysVar* find(const std::string& name) {
        cSysVar* v = list.findName(name);
        EXPECT_NE(v, nullptr) << name;
        return v;
    }
    cSysVarList list;
};

TEST_F(SysVarListHost, PurgeRemovesHeadAndMiddleAndReportsSourceLines) {
    ASSERT_TRUE(list.addVariable("1", "AAA_UNKNOWN", "+-", "", 12));
    ASSERT_TRUE(list.addVariable("1", "MMM_UNKNOWN", "--", "", 7));
    add({{"CLAYER", "+-"}, {"LTSCALE", "+-"}, {"OSMODE", "+-"}});
    list.firstReadFromHost();
    ReportList report = {"earlier line"};
    EXPECT_EQ(list.purgeUnreadable(report), 2);
    EXPECT_EQ(chainNames(list), (Names{"CLAYER", "LTSCALE", "OSMODE"}));
    EXPECT_EQ(report, (ReportList{"earlier line", gMsg.TxSysLoadError6 + " 12  : AAA_UNKNOWN",
                                  gMsg.TxSysLoadError6 + " 7   : MMM_UNKNOWN"}));
    EXPECT_EQ(list.purgeUnreadable(report), 0);
    EXPECT_EQ(report.size(), 3u);
}

TEST_F(SysVarListHost, ProofReportsHostVariablesTheListLacksInHostOrder) {
    const auto all = filekit::hostNames();
    ASSERT_GT(all.size(), 3u);
    cSysVarList partial;
    for (std::size_t i = 0; i < all.size(); ++i) {
        ASSERT_TRUE(list.addVariable("1", all[i], "+-", "", 1));
        if (i != 0 && i != all.size() - 1) {
            ASSERT_TRUE(partial.addVariable("1", all[i], "+-", "", 1));
        }
    }
    ReportList report;
    EXPECT_TRUE(list.proofAgainstHost(report));
    EXPECT_TRUE(report.empty()) << report.front();
    EXPECT_TRUE(partial.proofAgainstHost(report));
    EXPECT_EQ(report,
              (ReportList{gMsg.TxProofError1 + ": " + all.front(), gMsg.TxProofError1 + ": " + all.back()}));
}

TEST_F(SysVarListHost, FirstReadProbesChangeableRecordsOnce) {
    // DWGNAME: the file calls it changeable; the host refuses writes.
    add({{"DWGNAME", "+-"}, {"OSMODE", "+-"}, {"VIEWCTR", "-+"}, {"NOSUCHVAR", "+-"}});
    ASSERT_EQ(setShort("OSMODE", 517), RTNORM);
    list.firstReadFromHost();
    cSysVar* dwgname = find("DWGNAME");
    EXPECT_TRUE(dwgname->isReadOnly());
    cSysVar* osmode = find("OSMODE");
    EXPECT_FALSE(osmode->isReadOnly());
    EXPECT_FALSE(osmode->isUnprobed());
    EXPECT_EQ(osmode->currentText, "517");
    EXPECT_TRUE(find("VIEWCTR")->isUnprobed()) << "read-only records are not probed";
    EXPECT_TRUE(find("NOSUCHVAR")->isUnreadable());
    EXPECT_TRUE(find("NOSUCHVAR")->isUnprobed()) << "unreadable records are not probed";

    // A second load read does not probe again: a record made changeable stays so.
    osmode->flags &= ~varflag::isReadOnly;
    list.firstReadFromHost();
    EXPECT_FALSE(osmode->isReadOnly());
}

} // namespace
