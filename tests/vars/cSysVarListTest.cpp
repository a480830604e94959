// Tests of cSysVarList: insertion order, user-list state, bulk host reads and writes, load checks.
#include "HostFixture.h"

#include "settings/cMsgCatalog.h"
#include "vars/TextHelpers.h"
#include "vars/cSysVarList.h"

#include <algorithm>
#include <vector>

namespace {

std::vector<std::string> chainNames(const cSysVarList& list)
{
    std::vector<std::string> out;
    for (const cSysVar* v = list.first; v; v = v->next)
        out.push_back(v->name);
    return out;
}

cSysVar* find(cSysVarList& list, const std::string& name)
{
    cSysVar* v = list.findName(name);
    EXPECT_NE(v, nullptr) << name;
    return v;
}

TEST(SysVarList, AnyInputOrderGivesTheSameChain)
{
    std::vector<std::string> input = {"OSMODE", "ANGBASE", "\xC3\x84RGER", "CLAYER", "Z", "AUNITS"};
    std::vector<std::string> expected = input;
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

TEST(SysVarList, EqualNamesKeepTheOrderOfTheFile)
{
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
}

TEST(SysVarList, FailedAddLeavesTheChainAlone)
{
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "B", "+-", "", 1));
    EXPECT_FALSE(list.addVariable("0", "A", "+-", "", 2));
    EXPECT_FALSE(list.addVariable("1", "A", "?", "", 3));
    EXPECT_FALSE(list.addVariable("1", " ", "++", "", 4));
    EXPECT_EQ(chainNames(list), std::vector<std::string>{"B"});
    EXPECT_EQ(list.first->owner, &list);
}

TEST(SysVarList, ContainsNameIsExact)
{
    cSysVarList list;
    ASSERT_TRUE(list.addVariable("1", "OSMODE", "+-", "", 1));
    EXPECT_TRUE(list.containsName("OSMODE"));
    EXPECT_FALSE(list.containsName("osmode"));
    EXPECT_FALSE(list.containsName("OSMODE "));
    EXPECT_FALSE(list.containsName("OSMOD"));
    EXPECT_FALSE(cSysVarList().containsName(""));
}

TEST(SysVarList, ClearingNewValuesEndsUserListAndSelection)
{
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
    for (const cSysVar* v = list.first; v; v = v->next) {
        EXPECT_FALSE(v->isSelected()) << v->name;
        EXPECT_TRUE(v->inUserList()) << v->name;
    }
    list.clearAllNewValues();
    EXPECT_FALSE(list.hasUserEntries()) << "whatever isMarkedToSet says";
    for (const cSysVar* v = list.first; v; v = v->next) {
        EXPECT_TRUE(v->newText.empty()) << v->name;
        EXPECT_TRUE(v->isMarkedToSet()) << v->name;
    }
}

TEST(SysVarList, ClearAllKeepsTheFileNames)
{
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
    list.clearAll();
    EXPECT_EQ(list.first, nullptr);
}

class SysVarListHost : public HostFixture {
protected:
    cSysVarList list;

    void add(const std::string& name, const std::string& mode, int line)
    {
        ASSERT_TRUE(list.addVariable("1", name, mode, "", line)) << name;
    }
    static std::vector<std::string> hostNames()
    {
        std::vector<std::string> out;
        resbuf* names = nullptr;
        EXPECT_EQ(acedGetSysvarList("*", &names), RTNORM);
        for (const resbuf* rb = names; rb; rb = rb->rbnext)
            out.push_back(rb->resval.rstring);
        acutRelRb(names);
        return out;
    }
};

TEST_F(SysVarListHost, PurgeRemovesHeadAndMiddleAndReportsSourceLines)
{
    add("AAA_UNKNOWN", "+-", 12);
    add("CLAYER", "+-", 3);
    add("LTSCALE", "+-", 4);
    add("MMM_UNKNOWN", "--", 7);
    add("OSMODE", "+-", 5);
    list.firstReadFromHost();
    ReportList report = {"earlier line"};
    EXPECT_EQ(list.purgeUnreadable(report), 2);
    EXPECT_EQ(chainNames(list), (std::vector<std::string>{"CLAYER", "LTSCALE", "OSMODE"}));
    EXPECT_EQ(report, (ReportList{"earlier line", gMsg.TxSysLoadError6 + " 12  : AAA_UNKNOWN",
                                  gMsg.TxSysLoadError6 + " 7   : MMM_UNKNOWN"}));
    EXPECT_EQ(list.purgeUnreadable(report), 0);
    EXPECT_EQ(report.size(), 3u);
    cSysVarList empty;
    EXPECT_EQ(empty.purgeUnreadable(report), 0);
}

TEST_F(SysVarListHost, ProofReportsHostVariablesTheListLacksInHostOrder)
{
    const auto all = hostNames();
    ASSERT_GT(all.size(), 3u);
    int line = 1;
    for (const auto& name : all)
        add(name, "+-", line++);
    ReportList report;
    EXPECT_TRUE(list.proofAgainstHost(report));
    EXPECT_TRUE(report.empty()) << report.front();

    cSysVarList partial;
    for (std::size_t i = 0; i < all.size(); ++i)
        if (i != 0 && i != all.size() - 1) {
            ASSERT_TRUE(partial.addVariable("1", all[i], "+-", "", 1));
        }
    EXPECT_TRUE(partial.proofAgainstHost(report));
    EXPECT_EQ(report, (ReportList{gMsg.TxProofError1 + ": " + all.front(),
                                  gMsg.TxProofError1 + ": " + all.back()}));
    EXPECT_EQ(chainNames(partial).size(), all.size() - 2) << "the list does not change";
}

TEST_F(SysVarListHost, FirstReadProbesChangeableRecordsOnce)
{
    add("DWGNAME", "+-", 1); // the file calls it changeable; the host refuses writes
    add("OSMODE", "+-", 2);
    add("VIEWCTR", "-+", 3);
    add("NOSUCHVAR", "+-", 4);
    ASSERT_EQ(setShort("OSMODE", 517), RTNORM);
    list.firstReadFromHost();

    cSysVar* dwgname = find(list, "DWGNAME");
    EXPECT_TRUE(dwgname->isReadOnly());
    EXPECT_FALSE(dwgname->isUnprobed());
    EXPECT_FALSE(dwgname->applyEditText("x.dwg"));

    cSysVar* osmode = find(list, "OSMODE");
    EXPECT_FALSE(osmode->isReadOnly());
    EXPECT_FALSE(osmode->isUnprobed());
    EXPECT_EQ(osmode->currentText, "517");

    EXPECT_TRUE(find(list, "VIEWCTR")->isUnprobed()) << "read-only records are not probed";
    cSysVar* unknown = find(list, "NOSUCHVAR");
    EXPECT_TRUE(unknown->isUnreadable());
    EXPECT_TRUE(unknown->isUnprobed()) << "unreadable records are not probed";

    // A second load read does not probe again: a record made changeable stays so.
    osmode->flags &= ~varflag::isReadOnly;
    list.firstReadFromHost();
    EXPECT_FALSE(osmode->isReadOnly());
}

TEST_F(SysVarListHost, WriteMarkedSendsOnlyMarkedRecordsAndReadAllShowsTheResult)
{
    add("FILEDIA", "+-", 1);
    add("ORTHOMODE", "+-", 2);
    add("SAVETIME", "+-", 3);
    ASSERT_EQ(setShort("ORTHOMODE", 0), RTNORM);
    ASSERT_EQ(setShort("SAVETIME", 10), RTNORM);
    ASSERT_EQ(setShort("FILEDIA", 1), RTNORM);
    list.readAllFromHost();
    ASSERT_TRUE(find(list, "ORTHOMODE")->applyEditText("1"));
    ASSERT_TRUE(find(list, "SAVETIME")->applyEditText("900"));
    ASSERT_TRUE(find(list, "FILEDIA")->applyEditText("0"));
    find(list, "ORTHOMODE")->setMarkedToSet();
    find(list, "SAVETIME")->setMarkedToSet();

    EXPECT_TRUE(list.writeMarkedToHost());
    list.readAllFromHost();
    const cSysVar* ortho = find(list, "ORTHOMODE");
    const cSysVar* save = find(list, "SAVETIME");
    const cSysVar* dia = find(list, "FILEDIA");
    EXPECT_TRUE(ortho->setSucceeded());
    EXPECT_EQ(ortho->currentText, "1");
    EXPECT_TRUE(save->setFailed());
    EXPECT_EQ(save->currentText, "10");
    EXPECT_FALSE(dia->setSucceeded() || dia->setFailed());
    EXPECT_EQ(dia->currentText, "1");
    EXPECT_EQ(dia->compareColour, kColourDiffers);
}

} // namespace
