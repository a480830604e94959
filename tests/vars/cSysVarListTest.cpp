// Tests of cSysVarList: insertion orders, the index by name beside the chain, the themes' index,
// and the first read after a load. The themes' result codes: see
// the example description file (AvlFileTest); their walk by title: see MainDialogTest. The purge
// of unknown records and the proof against the host: see the error log's tests.
#include "VarsTestKit.h"

#include "vars/TextHelpers.h"

#include <algorithm>
#include <random>

namespace {

using Names = std::vector<std::string>;

Names chainNames(const cSysVarList& list) {
    Names out;
    for (const cSysVar* v = list.first; v; v = v->next)
        out.push_back(v->name);
    return out;
}

TEST(SysVarList, AnyInputOrderGivesTheSameChain) {
    Names input = {"OSMODE", "ANGBASE", "\xC3\x84RGER", "CLAYER", "Z", "AUNITS"};
    Names expected = input;
    std::sort(expected.begin(), expected.end(),
              [](const std::string& a, const std::string& b) { return compareText(a, b) < 0; });
    std::sort(input.begin(), input.end());
    do {
        cSysVarList list;
        for (const auto& name : input)
            ASSERT_TRUE(list.addVariable("1", name, "+-", "", 1)) << name;
        ASSERT_EQ(chainNames(list), expected) << "first added: " << input.front();
    } while (std::next_permutation(input.begin(), input.begin() + 3));
}

TEST(SysVarList, ThemeZeroABadModeOrABlankNameIsRefusedAndChangesNothing) {
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "B", "+-", "", 1));
    EXPECT_FALSE(list.addVariable("0", "A", "+-", "", 2));
    EXPECT_FALSE(list.addVariable("1", "A", "?", "", 3));
    EXPECT_FALSE(list.addVariable("1", " ", "++", "", 4));
    EXPECT_EQ(chainNames(list), Names{"B"});
    EXPECT_FALSE(list.containsName("A"));
}

TEST(SysVarList, EqualNamesKeepTheOrderOfTheFileAndFindNameGivesTheFirst) {
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "B", "+-", "", 1));
    ASSERT_TRUE(list.addVariable("1", " A ", "+-", "first", 2));
    ASSERT_TRUE(list.addVariable("1", "A", "+-", "second", 3));
    ASSERT_TRUE(list.addVariable("1", "A  ", "+-", "third", 4));
    std::vector<int> lines;
    for (const cSysVar* v = list.first; v; v = v->next)
        lines.push_back(v->sourceLine);
    EXPECT_EQ(lines, (std::vector<int>{2, 3, 4, 1}));
    EXPECT_EQ(list.findName("A")->description, "first");
    EXPECT_FALSE(list.containsName("b")) << "containsName is exact";
}

using SysVarListHost = filekit::VarsTest;

// Counts the host's announcements of a variable change.
struct ChangeCounter : AcEditorReactor {
    void sysVarWillChange(const char*) override { ++changes; }
    int changes = 0;
};

TEST_F(SysVarListHost, FirstReadTakesTheFileModesAndWritesNothingBack) {
    // DWGNAME: the file calls it changeable, the host refuses writes; the record stays as the
    // file says, and a Set of it is refused then. Writing a value back that was only read could
    // change the drawing: a text is cut at a NUL byte, and the host rounds what it takes.
    cSysVarList list;
    for (const char* name : {"DWGNAME", "OSMODE", "CLAYER", "ANGBASE", "NOSUCHVAR"})
        ASSERT_TRUE(list.addVariable("1", name, "+-", "", 1));
    ASSERT_EQ(setShort("OSMODE", 517), RTNORM);
    AcEditor* editor = AcEditor::cast(acrxSysRegistry()->at("AcEditor"));
    ASSERT_NE(editor, nullptr);
    ChangeCounter counter;
    editor->addReactor(&counter);
    list.firstReadFromHost();
    editor->removeReactor(&counter);
    EXPECT_EQ(counter.changes, 0) << "the load read sets no variable";
    EXPECT_FALSE(list.findName("DWGNAME")->isReadOnly());
    EXPECT_EQ(list.findName("OSMODE")->currentText, "517");
    EXPECT_TRUE(list.findName("NOSUCHVAR")->isUnreadable());
}

// The index by name must place and find records as the walk of the chain did, through any mix of
// inserts and removals: a model list (stable by name, so equal names keep their order of insertion)
// is held beside the real one.
TEST(SysVarList, IndexByNameStaysInStepThroughInsertsAndRemovals) {
    struct Entry {
        std::string name;
        int line;
    };
    std::vector<Entry> model;
    cSysVarList list;
    std::mt19937 random(7); // fixed: the same run every time
    const Names pool = {"A", "AB", "B", "\xC3\x84", "ZZ", "_X", "AA"};
    for (int line = 1; line <= 400; ++line) {
        if (random() % 4 == 0 && list.first) {
            // Remove every record of one name from the chain and the model.
            const std::string& gone = pool[random() % pool.size()];
            for (cSysVar* v = list.first; v; v = v->next)
                if (v->name == gone)
                    v->flags |= varflag::isUnreadable;
            ReportList report;
            const int removed = list.purgeUnreadable(report);
            const auto before = model.size();
            std::erase_if(model, [&](const Entry& e) { return e.name == gone; });
            ASSERT_EQ(static_cast<std::size_t>(removed), before - model.size());
            continue;
        }
        // Blanks around a name make an equal one after trimming, as a file can hold.
        const std::string& name = pool[random() % pool.size()];
        ASSERT_TRUE(list.addVariable("1", random() % 2 ? name : " " + name + " ", "+-", "", line));
        const auto at =
            std::upper_bound(model.begin(), model.end(), name,
                             [](const std::string& n, const Entry& e) { return compareText(n, e.name) < 0; });
        model.insert(at, Entry{name, line});

        std::vector<std::pair<std::string, int>> chain, expected;
        for (const cSysVar* v = list.first; v; v = v->next)
            chain.emplace_back(v->name, v->sourceLine);
        for (const Entry& e : model)
            expected.emplace_back(e.name, e.line);
        ASSERT_EQ(chain, expected) << "after line " << line;
    }
    for (const std::string& name : pool) {
        const auto first =
            std::find_if(model.begin(), model.end(), [&](const Entry& e) { return e.name == name; });
        const cSysVar* found = list.findName(name);
        if (first == model.end()) {
            EXPECT_EQ(found, nullptr) << name;
        } else {
            ASSERT_NE(found, nullptr) << name;
            EXPECT_EQ(found->sourceLine, first->line) << "the first of the equal names: " << name;
        }
    }
    list.clearAll();
    EXPECT_FALSE(list.containsName("A")) << "clearAll empties the index too";
    ASSERT_TRUE(list.addVariable("1", "B", "+-", "", 1));
    ASSERT_TRUE(list.addVariable("1", "A", "+-", "", 2));
    EXPECT_EQ(chainNames(list), (Names{"A", "B"}));
}

const std::pair<int, const char*> kThemes[] = {{5, "Zeichnen"},  {2, "  Anzeige "}, {9, "bemaßung"},
                                               {-3, "Bemaßung"}, {7, "Ändern"},     {1, "Zoom"}};

TEST(ThemeList, AnIndexOrATrimmedTitleInUseIsRefusedAndTitlesAreFoundByCase) {
    cThemeList themes;
    for (const auto& [index, name] : kThemes)
        ASSERT_EQ(themes.addTheme(index, name), ThemeResult::Inserted) << name;
    EXPECT_EQ(themes.addTheme(2, "Neu"), ThemeResult::IndexInUse);
    EXPECT_EQ(themes.addTheme(4, "Anzeige"), ThemeResult::NameInUse);
    EXPECT_TRUE(themes.hasThemeName("bemaßung"));
    EXPECT_FALSE(themes.hasThemeName("BEMASSUNG"));
}

// Themes stand in title order whatever the order of their indices, and the walk goes by the
// index beside the chain; a second round after clear finds the index empty.
TEST(ThemeList, WalkGoesInTitleOrderAndClearEmptiesTheIndex) {
    cThemeList themes;
    for (int round = 0; round < 2; ++round) {
        for (const auto& [index, name] : kThemes)
            ASSERT_EQ(themes.addTheme(index, name), ThemeResult::Inserted) << name;
        Names titles;
        std::vector<int> indices;
        for (int index = themes.firstThemeIndex(); index != 0; index = themes.themeIndexAfter(index)) {
            std::string title;
            themes.themeNameOf(title, index);
            titles.push_back(title);
            indices.push_back(index);
        }
        // A negative index walks with the others but has no title.
        EXPECT_EQ(titles, (Names{"Anzeige", "", "Zeichnen", "Zoom", "bemaßung", "Ändern"}));
        EXPECT_EQ(indices, (std::vector<int>{2, -3, 5, 1, 9, 7}));
        EXPECT_EQ(themes.themeIndexAfter(7), 0);
        EXPECT_EQ(themes.themeIndexAfter(8), 0);
        themes.clear();
        EXPECT_EQ(themes.firstThemeIndex(), 0);
        EXPECT_FALSE(themes.hasThemeIndex(5));
        EXPECT_FALSE(themes.hasThemeName("Zoom"));
    }
}

} // namespace
