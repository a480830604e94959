// Tests of cSysVarList: insertion orders and the first read after a load. The themes' result codes: see
// the example description file (AvlFileTest); their walk by title: see MainDialogTest. The purge
// of unknown records and the proof against the host: see the error log's tests.
#include "VarsTestKit.h"

#include "vars/TextHelpers.h"

#include <algorithm>

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

} // namespace
