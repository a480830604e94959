// Tests of cSysVar against the host in process: reading each value type, writing, refusals.
#include "VarsTestKit.h"

#include "vars/cSysVar.h"

#include <tuple>

namespace {

class SysVarHost : public filekit::HostFixture {
protected:
    cSysVarList list; // precision 4, blank separator
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

TEST_F(SysVarHost, WriteSendsOnlyMarkedNewTextsAndTheNextReadShowsTheHostsAnswer) {
    ASSERT_EQ(setShort("OSMODE", 1), RTNORM);
    ASSERT_EQ(setShort("SAVETIME", 10), RTNORM);
    struct Case {
        const char* name;
        const char* text; // empty: no new text
        bool marked, sent, refused;
        std::string after;
        std::uint32_t colour; // 0: not compared
    };
    const Case cases[] = {
        {"OSMODE", "33", false, false, false, "1", kColourDiffers},
        {"OSMODE", "33", true, true, false, "33", kColourEqual},
        {"SAVETIME", "601", true, false, true, "10", kColourDiffers},  // refused
        {"ANGBASE", "7", true, true, false, "0.7168", kColourDiffers}, // changed on the way
        // A string is quoted, and the held one is freed and replaced on each read.
        {"CLAYER", "Bema\xC3\x9Fung \xE2\x82\xAC \"neu\"", true, true, false,
         "\"Bema\xC3\x9Fung \xE2\x82\xAC neu\"", kColourEqual},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " [" + c.text + "]" + (c.marked ? " marked" : ""));
        cSysVar v{&list};
        v.name = c.name;
        ASSERT_TRUE(v.readFromHost());
        if (*c.text) {
            ASSERT_TRUE(v.applyEditText(c.text));
        }
        if (c.marked)
            v.setMarkedToSet();
        EXPECT_EQ(v.writeToHost(), c.sent);
        EXPECT_EQ(v.setSucceeded(), c.sent);
        EXPECT_EQ(v.setFailed(), c.refused);
        EXPECT_EQ(v.isMarkedToSet(), c.marked) << "left to the caller";
        ASSERT_TRUE(v.readFromHost());
        EXPECT_EQ(v.currentText, c.after);
        if (c.colour) {
            EXPECT_EQ(v.compareColour, c.colour);
        }
    }
}

TEST_F(SysVarHost, UnknownVariableIsUnreadableAndKeepsItsText) {
    cSysVar v{&list};
    v.name = "NOSUCHVAR";
    v.currentText = "7";
    v.valueType = vartype::integer;
    EXPECT_FALSE(v.readFromHost());
    EXPECT_TRUE(v.isUnreadable());
    EXPECT_EQ(v.currentText, "7");
    ASSERT_TRUE(v.applyEditText("5"));
    v.setMarkedToSet();
    EXPECT_FALSE(v.writeToHost());

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

} // namespace
