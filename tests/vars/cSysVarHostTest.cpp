// Tests of cSysVar against the host in process: reading each value type, writing, refusals.
#include "VarsTestKit.h"

#include "vars/cSysVar.h"

#include <tuple>

namespace {

class SysVarHost : public filekit::HostFixture {
protected:
    cSysVarList list; // precision 4, blank separator
    cSysVar v{&list};

    // Names the record, reads it from the host and, with a text, marks that text to be set.
    void prepare(const char* name, const char* text = nullptr) {
        v.name = name;
        ASSERT_TRUE(v.readFromHost()) << name;
        if (text) {
            ASSERT_TRUE(v.applyEditText(text)) << name;
            v.setMarkedToSet();
        }
    }
    static resbuf value(short type, double x, double y = 0, double z = 0) {
        resbuf rb{};
        rb.restype = type;
        if (type == RTREAL)
            rb.resval.rreal = x;
        else if (type == RTSHORT)
            rb.resval.rint = static_cast<short>(x);
        else if (type == RTLONG)
            rb.resval.rlong = static_cast<Adesk::Int32>(x);
        else
            std::tie(rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]) = std::tie(x, y, z);
        return rb;
    }
};

TEST_F(SysVarHost, ReadsEveryValueTypeAsText) {
    const std::tuple<const char*, resbuf, std::string> cases[] = {
        {"LTSCALE", value(RTREAL, 2.5), "2.5000"},
        {"LIMMAX", value(RTPOINT, 420, 297), "420.0000 297.0000"},
        {"INSBASE", value(RT3DPOINT, 1, -2, 3.25), "1.0000 -2.0000 3.2500"},
        {"OSMODE", value(RTSHORT, 4133), "4133"},
        {"HPMAXLINES", value(RTLONG, 1000000), "1000000"},
    };
    for (const auto& [name, set, text] : cases) {
        ASSERT_EQ(acedSetVar(name, &set), RTNORM) << name;
        cSysVar fresh{&list};
        fresh.name = name;
        ASSERT_TRUE(fresh.readFromHost()) << name;
        EXPECT_EQ(fresh.valueType, set.restype) << name;
        EXPECT_EQ(fresh.currentText, text) << name;
        EXPECT_FALSE(fresh.isUnreadable()) << name;
    }
}

TEST_F(SysVarHost, StringValuesAreQuotedAndReplacedOnEachRead) {
    v.name = "CLAYER";
    ASSERT_TRUE(v.applyEditText("x")); // no type yet: nothing is parsed, no text is made
    EXPECT_TRUE(v.newText.empty());
    prepare("CLAYER", "Bema\xC3\x9Fung \xE2\x82\xAC \"neu\"");
    ASSERT_EQ(v.valueType, vartype::string);
    EXPECT_EQ(v.newText, "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"");
    ASSERT_TRUE(v.writeToHost());
    EXPECT_TRUE(v.setSucceeded());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"");
    EXPECT_EQ(v.compareColour, kColourEqual);
    ASSERT_TRUE(v.readFromHost()); // the held string is freed and replaced
    EXPECT_EQ(v.currentText, v.newText);
}

TEST_F(SysVarHost, UnknownVariableIsUnreadableAndKeepsItsText) {
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

    ASSERT_EQ(setShort("OSMODE", 37), RTNORM);
    cSysVar known{&list};
    known.name = "OSMODE";
    ASSERT_TRUE(known.readFromHost());
    known.name = "OSMODE_GONE"; // the host no longer knows it
    EXPECT_FALSE(known.readFromHost());
    EXPECT_EQ(known.currentText, "37") << "a failed read keeps the old text";
    known.name = "OSMODE";
    EXPECT_TRUE(known.readFromHost());
    EXPECT_TRUE(known.isUnreadable()) << "never cleared";
}

TEST_F(SysVarHost, WriteSetsOnlyMarkedRecordsWithANewText) {
    ASSERT_EQ(setShort("OSMODE", 1), RTNORM);
    prepare("OSMODE");
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

TEST_F(SysVarHost, RefusedValueSetsFailedAndLeavesTheHostAlone) {
    ASSERT_EQ(setShort("SAVETIME", 10), RTNORM);
    prepare("SAVETIME", "601");
    EXPECT_FALSE(v.writeToHost());
    EXPECT_TRUE(v.setFailed());
    EXPECT_FALSE(v.setSucceeded());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "10");
    EXPECT_EQ(v.compareColour, kColourDiffers);
}

TEST_F(SysVarHost, ValueTheHostRoundsComparesAsDifferent) {
    prepare("ANGBASE", "7");
    ASSERT_TRUE(v.writeToHost());
    ASSERT_TRUE(v.readFromHost());
    EXPECT_EQ(v.currentText, "0.7168");
    EXPECT_EQ(v.newText, "7.0000");
    EXPECT_EQ(v.compareColour, kColourDiffers);
}

TEST_F(SysVarHost, ReadOnlyRecordWithFileValueIsNeverSent) {
    prepare("VIEWCTR");
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
