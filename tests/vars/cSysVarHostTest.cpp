// Tests of cSysVar against the host in process: reading each value type, writing, refusals.
#include "HostFixture.h"

#include "vars/cSysVar.h"
#include "vars/cSysVarList.h"

#include <cstring>

namespace {

class SysVarHost : public HostFixture {
protected:
    cSysVarList list; // precision 4, blank separator

    static resbuf value(short type, double x, double y = 0, double z = 0)
    {
        resbuf rb{};
        rb.restype = type;
        if (type == RTREAL) {
            rb.resval.rreal = x;
        } else if (type == RTSHORT) {
            rb.resval.rint = static_cast<short>(x);
        } else if (type == RTLONG) {
            rb.resval.rlong = static_cast<Adesk::Int32>(x);
        } else {
            rb.resval.rpoint[0] = x;
            rb.resval.rpoint[1] = y;
            rb.resval.rpoint[2] = z;
        }
        return rb;
    }
};

TEST_F(SysVarHost, ReadsEveryValueTypeAsText)
{
    struct Case {
        const char* name;
        resbuf set;
        std::string text;
    };
    const Case cases[] = {
        {"LTSCALE", value(RTREAL, 2.5), "2.5000"},
        {"LIMMAX", value(RTPOINT, 420, 297), "420.0000 297.0000"},
        {"INSBASE", value(RT3DPOINT, 1, -2, 3.25), "1.0000 -2.0000 3.2500"},
        {"OSMODE", value(RTSHORT, 4133), "4133"},
        {"HPMAXLINES", value(RTLONG, 1000000), "1000000"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(acedSetVar(c.name, &c.set), RTNORM) << c.name;
        cSysVar v{&list};
        v.name = c.name;
        ASSERT_TRUE(v.readFromHost()) << c.name;
        EXPECT_EQ(v.valueType, c.set.restype) << c.name;
        EXPECT_EQ(v.currentText, c.text) << c.name;
        EXPECT_FALSE(v.isUnreadable()) << c.name;
    }
}

TEST_F(SysVarHost, StringValuesAreQuotedAndReplacedOnEachRead)
{
    cSysVar v{&list};
    v.name = "CLAYER";
    ASSERT_TRUE(v.applyEditText("x")); // no type yet: nothing is parsed, no text is made
    EXPECT_TRUE(v.newText.empty());
    ASSERT_TRUE(v.readFromHost());
    ASSERT_EQ(v.valueType, vartype::string);

    ASSERT_TRUE(v.applyEditText("Bema\xC3\x9Fung \xE2\x82\xAC \"neu\""));
    EXPECT_EQ(v.newText, "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"");
    v.setMarkedToSet();
    ASSERT_TRUE(v.writeToHost());
    EXPECT_TRUE(v.setSucceeded());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"");
    EXPECT_EQ(v.compareColour, kColourEqual);
    ASSERT_TRUE(v.readFromHost()); // the held string is freed and replaced
    EXPECT_EQ(v.currentText, v.newText);
}

TEST_F(SysVarHost, UnknownVariableIsUnreadableAndKeepsItsText)
{
    cSysVar v{&list};
    v.name = "NOSUCHVAR";
    v.currentText = "7";
    v.valueType = vartype::integer;
    EXPECT_FALSE(v.readFromHost());
    EXPECT_TRUE(v.isUnreadable());
    EXPECT_EQ(v.currentText, "7");
    EXPECT_EQ(v.valueType, vartype::integer);

    ASSERT_TRUE(v.applyEditText("5"));
    v.setMarkedToSet();
    EXPECT_FALSE(v.writeToHost());
    EXPECT_FALSE(v.setFailed()) << "the host is not asked";
}

TEST_F(SysVarHost, FailedReadAfterAGoodOneKeepsTheOldText)
{
    cSysVar v{&list};
    v.name = "OSMODE";
    ASSERT_EQ(setShort("OSMODE", 37), RTNORM);
    ASSERT_TRUE(v.readFromHost());
    v.name = "OSMODE_GONE"; // the host no longer knows it
    EXPECT_FALSE(v.readFromHost());
    EXPECT_EQ(v.currentText, "37");
    EXPECT_TRUE(v.isUnreadable());
    v.name = "OSMODE";
    EXPECT_TRUE(v.readFromHost());
    EXPECT_TRUE(v.isUnreadable()) << "never cleared";
}

TEST_F(SysVarHost, WriteSetsOnlyMarkedRecordsWithANewText)
{
    cSysVar v{&list};
    v.name = "OSMODE";
    ASSERT_EQ(setShort("OSMODE", 1), RTNORM);
    ASSERT_TRUE(v.readFromHost());
    EXPECT_FALSE(v.writeToHost()) << "no new text";
    ASSERT_TRUE(v.applyEditText("33"));
    EXPECT_FALSE(v.writeToHost()) << "not marked";
    EXPECT_FALSE(v.setSucceeded());

    v.setMarkedToSet();
    EXPECT_TRUE(v.writeToHost());
    EXPECT_TRUE(v.setSucceeded());
    EXPECT_TRUE(v.isMarkedToSet()) << "left to the caller";
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "33");
    EXPECT_EQ(v.compareColour, kColourEqual);
}

TEST_F(SysVarHost, RefusedValueSetsFailedAndLeavesTheHostAlone)
{
    ASSERT_EQ(setShort("SAVETIME", 10), RTNORM);
    cSysVar v{&list};
    v.name = "SAVETIME";
    ASSERT_TRUE(v.readFromHost());
    ASSERT_TRUE(v.applyEditText("601"));
    v.setMarkedToSet();
    EXPECT_FALSE(v.writeToHost());
    EXPECT_TRUE(v.setFailed());
    EXPECT_FALSE(v.setSucceeded());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "10");
    EXPECT_EQ(v.compareColour, kColourDiffers);
}

TEST_F(SysVarHost, ValueTheHostRoundsComparesAsDifferent)
{
    cSysVar v{&list};
    v.name = "ANGBASE";
    ASSERT_TRUE(v.readFromHost());
    ASSERT_TRUE(v.applyEditText("7"));
    v.setMarkedToSet();
    ASSERT_TRUE(v.writeToHost());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "0.7168");
    EXPECT_EQ(v.newText, "7.0000");
    EXPECT_EQ(v.compareColour, kColourDiffers);
}

TEST_F(SysVarHost, ReadOnlyRecordWithFileValueIsNeverSent)
{
    cSysVar v{&list};
    v.name = "VIEWCTR";
    ASSERT_TRUE(v.readFromHost());
    const std::string before = v.currentText;
    v.setReadOnly();
    ASSERT_TRUE(v.applyFileText("1 2 3"));
    v.setMarkedToSet();
    EXPECT_FALSE(v.writeToHost());
    EXPECT_FALSE(v.setFailed());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, before);
}

} // namespace
