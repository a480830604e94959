// Tests of cSysVarList: insertion order, user-list state, bulk host reads and writes, load checks.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/TextHelpers.h"

#include <algorithm>

namespace {

using filekit::chainNames;
using Names = std::vector<std::string>;

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
    EXPECT_EQ(list.first->owner, &list);
    ASSERT_TRUE(list.addVariable("1", " A ", "+-", "first", 2));
    ASSERT_TRUE(list.addVariable("1", "A", "+-", "second", 3));
    ASSERT_TRUE(list.addVariable("1", "A  ", "+-", "third", 4));
    std::vector<int> lines;
    for (const cSysVar* v = list.first; v; v = v->next)
        lines.push_back(v->sourceLine);
    EXPECT_EQ(lines, (std::vector<int>{2, 3, 4, 1}));
    EXPECT_EQ(list.findName("A")->description, "first");
}

TEST(SysVarList, ContainsNameIsExact) {
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "OSMODE", "+-", "", 1));
    EXPECT_TRUE(list.containsName("OSMODE"));
    for (const char* other : {"osmode", "OSMODE ", "OSMOD"})
        EXPECT_FALSE(list.containsName(other)) << other;
    EXPECT_FALSE(cSysVarList().containsName(""));
}

TEST(SysVarList, ClearingNewValuesEndsUserListAndSelection) {
    cSysVarList list;
    for (const char* name : {"A", "B", "C"})
        ASSERT_TRUE(list.addVariable("1", name, "+-", "", 1));
    EXPECT_FALSE(list.hasUserEntries());
    for (cSysVar* v = list.first; v; v = v->next) {
        v->valueType = vartype::integer;
        ASSERT_TRUE(v->applyEditText("5"));
        v->setSelected();
        v->setMarkedToSet();
    }
    EXPECT_TRUE(list.hasUserEntries());
    list.clearAllSelected();
    for (const cSysVar* v = list.first; v; v = v->next)
        EXPECT_TRUE(!v->isSelected() && v->inUserList()) << v->name;
    list.clearAllNewValues();
    EXPECT_FALSE(list.hasUserEntries()) << "whatever isMarkedToSet says";
    for (const cSysVar* v = list.first; v; v = v->next)
        EXPECT_TRUE(v->newText.empty() && v->isMarkedToSet()) << v->name;
}

TEST(SysVarList, ClearAllKeepsTheFileNames) {
    cSysVarList list;
    list.avlDirectory = "/d/";
    list.avlFileName = "VarDesk.avl";
    list.userDirectory = "/u/";
    list.userFileName = "x.var";
    ASSERT_TRUE(list.addVariable("1", "A", "+-", "", 1));
    ASSERT_EQ(list.themes.addTheme(1, "T"), 0);
    list.clearAll();
    EXPECT_EQ(list.first, nullptr);
    EXPECT_EQ(list.themes.first, nullptr);
    EXPECT_EQ(list.avlDirectory + list.avlFileName + list.userDirectory + list.userFileName,
              "/d/VarDesk.avl/u/x.var");
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
    EXPECT_EQ(cSysVarList().purgeUnreadable(report), 0);
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
    EXPECT_EQ(chainNames(partial).size(), all.size() - 2) << "the list does not change";
}

TEST_F(SysVarListHost, FirstReadProbesChangeableRecordsOnce) {
    // DWGNAME: the file calls it changeable; the host refuses writes.
    add({{"DWGNAME", "+-"}, {"OSMODE", "+-"}, {"VIEWCTR", "-+"}, {"NOSUCHVAR", "+-"}});
    ASSERT_EQ(setShort("OSMODE", 517), RTNORM);
    list.firstReadFromHost();
    cSysVar* dwgname = find("DWGNAME");
    EXPECT_TRUE(dwgname->isReadOnly());
    EXPECT_FALSE(dwgname->isUnprobed());
    EXPECT_FALSE(dwgname->applyEditText("x.dwg"));
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

TEST_F(SysVarListHost, WriteMarkedSendsOnlyMarkedRecordsAndReadAllShowsTheResult) {
    add({{"FILEDIA", "+-"}, {"ORTHOMODE", "+-"}, {"SAVETIME", "+-"}});
    ASSERT_EQ(setShort("ORTHOMODE", 0), RTNORM);
    ASSERT_EQ(setShort("SAVETIME", 10), RTNORM);
    ASSERT_EQ(setShort("FILEDIA", 1), RTNORM);
    list.readAllFromHost();
    for (const auto& [name, text] : {std::pair{"ORTHOMODE", "1"}, {"SAVETIME", "900"}, {"FILEDIA", "0"}})
        ASSERT_TRUE(find(name)->applyEditText(text)) << name;
    find("ORTHOMODE")->setMarkedToSet();
    find("SAVETIME")->setMarkedToSet();
    EXPECT_TRUE(list.writeMarkedToHost());
    list.readAllFromHost();
    const cSysVar* ortho = find("ORTHOMODE");
    const cSysVar* save = find("SAVETIME");
    const cSysVar* dia = find("FILEDIA");
    EXPECT_TRUE(ortho->setSucceeded());
    EXPECT_EQ(ortho->currentText, "1");
    EXPECT_TRUE(save->setFailed());
    EXPECT_EQ(save->currentText, "10");
    EXPECT_FALSE(dia->setSucceeded() || dia->setFailed());
    EXPECT_EQ(dia->currentText, "1");
    EXPECT_EQ(dia->compareColour, kColourDiffers);
}

} // namespace
