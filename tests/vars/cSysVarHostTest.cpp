// Tests of cSysVar against the host in process: writing, refusals, unknown variables. Reading each
// value type: see the scenario main_dialog; values taken, refused and changed on the way: see
// the scenario commands_set.
#include "VarsTestKit.h"

#include "vars/cSysVar.h"

namespace {

class SysVarHost : public filekit::VarsTest {
protected:
    cSysVarList list; // precision 4, blank separator
};

TEST_F(SysVarHost, WriteSendsOnlyMarkedNewTextsAndTheNextReadShowsTheHostsAnswer) {
    ASSERT_EQ(setShort("OSMODE", 1), RTNORM);
    struct Case {
        const char* name;
        const char* text;
        bool marked;
        std::string after;
        std::uint32_t colour;
    };
    const Case cases[] = {
        {"OSMODE", "33", false, "1", kColourDiffers},
        {"OSMODE", "33", true, "33", kColourEqual},
        // A string is quoted, and the held one is freed and replaced on each read.
        {"CLAYER", "Bema\xC3\x9Fung \xE2\x82\xAC \"neu\"", true, "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"",
         kColourEqual},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " [" + c.text + "]" + (c.marked ? " marked" : ""));
        cSysVar v{&list};
        v.name = c.name;
        ASSERT_TRUE(v.readFromHost());
        ASSERT_TRUE(v.applyEditText(c.text));
        if (c.marked)
            v.setMarkedToSet();
        EXPECT_EQ(v.writeToHost(), c.marked);
        EXPECT_EQ(v.setSucceeded(), c.marked);
        EXPECT_FALSE(v.setFailed());
        EXPECT_EQ(v.isMarkedToSet(), c.marked) << "left to the caller";
        ASSERT_TRUE(v.readFromHost());
        EXPECT_EQ(v.currentText, c.after);
        EXPECT_EQ(v.compareColour, c.colour);
    }
}

TEST_F(SysVarHost, UnknownVariableIsUnreadableAndKeepsItsText) {
    ASSERT_EQ(setShort("OSMODE", 37), RTNORM);
    cSysVar v{&list};
    v.name = "OSMODE";
    ASSERT_TRUE(v.readFromHost());
    v.name = "OSMODE_GONE"; // the host no longer knows it
    EXPECT_FALSE(v.readFromHost());
    EXPECT_TRUE(v.isUnreadable());
    EXPECT_EQ(v.currentText, "37") << "a failed read keeps the old text";
    ASSERT_TRUE(v.applyEditText("5"));
    v.setMarkedToSet();
    EXPECT_FALSE(v.writeToHost());
    v.name = "OSMODE";
    EXPECT_TRUE(v.readFromHost());
    EXPECT_TRUE(v.isUnreadable()) << "never cleared";
}

} // namespace
