// Tests of cSysVar without a host: value texts, parsing of typed and file texts, flags.
#include "vars/cSysVar.h"
#include "vars/cSysVarList.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// A record that owns the number format of its list, with the usual precision 4 and a blank.
class SysVarFixture : public ::testing::Test {
protected:
    cSysVarList list;
    cSysVar var{&list};

    void typed(int type) { var.valueType = type; }
    static std::string label(int type, const std::string& text) {
        return "type " + std::to_string(type) + " text [" + text + "]";
    }
};

// The typed text is parsed by type and the new text made from the parsed value, so each row
// checks both the parsing and the text form.
TEST_F(SysVarFixture, TypedTextGivesNewTextBySeparatorPrecisionAndThe1e10Limit) {
    using namespace vartype;
    struct Case {
        int type;
        std::string text, newText;
        char separator = ' ';
        int precision = 4;
    };
    const Case cases[] = {
        {real, "1,5x", "1.0000"},
        {real, "9999999999.99", "9999999999.9900"},
        {real, "1e10", "1.000000E+10"},
        {real, "3.14159", "3.14", ' ', 2},
        {real, "7", "7", ' ', 0},
        {integer, "70000", "4464"}, // kept as a 16-bit integer
        {longInt, "-42x", "-42"},
        {point2d, "1,2", "1.0000,2.0000", ','},
        {point2d, "1:2:3", "1.0000 2.0000"},                   // the third coordinate is not shown
        {point2d, "1 1e12", "1.000000E+00,1.000000E+12", ','}, // one coordinate over: all in E form
        {string, "say \"hi\"", "\"say hi\""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(label(c.type, c.text));
        cSysVar v{&list};
        v.valueType = c.type;
        list.pointSeparator = c.separator;
        list.valuePrecision = c.precision;
        EXPECT_TRUE(v.applyEditText(c.text));
        EXPECT_EQ(v.newText, c.newText);
        EXPECT_TRUE(v.inUserList());
    }
    list.pointSeparator = ' ';
    list.valuePrecision = 4;
    typed(point2d);
    ASSERT_TRUE(var.applyEditText("4 5 6"));
    EXPECT_EQ(var.newValue.rpoint[2], 0.0) << "the third coordinate of a 2D point is zero";

    typed(real); // a text without a number keeps the old value and takes the record into the list
    ASSERT_TRUE(var.applyEditText("2.5"));
    var.clearInUserList();
    EXPECT_TRUE(var.applyEditText("abc"));
    EXPECT_EQ(var.newText, "2.5000");
    EXPECT_TRUE(var.inUserList());

    cSysVar loose; // a record without a list uses a blank and four places
    loose.valueType = point3d;
    ASSERT_TRUE(loose.applyEditText("1,2,3"));
    EXPECT_EQ(loose.newText, "1.0000 2.0000 3.0000");

    // A string is quoted without escaping; a null string and the kinds without a text write nothing.
    typed(string);
    ads_u_val v{};
    char text[] = "Layer \"0\"";
    v.rstring = text;
    std::string out;
    EXPECT_TRUE(var.formatListValue(v, out));
    EXPECT_EQ(out, "\"Layer \"0\"\"");
    v.rstring = nullptr;
    out = "kept";
    EXPECT_TRUE(var.formatListValue(v, out));
    for (int other : {none, 5004, 5006, 5007, 5008}) {
        typed(other);
        EXPECT_FALSE(var.formatListValue(v, out)) << "type " << other;
    }
    EXPECT_EQ(out, "kept");
}

TEST_F(SysVarFixture, PointsThatDoNotParseChangeNothing) {
    const std::pair<int, std::string> cases[] = {{vartype::point2d, "1"}, {vartype::point3d, "1 2 z"}};
    for (const auto& [type, text] : cases) {
        SCOPED_TRACE(label(type, text));
        cSysVar v{&list};
        v.valueType = type;
        ASSERT_TRUE(v.applyEditText("7 8 9"));
        v.clearInUserList();
        const ads_u_val before = v.newValue;
        EXPECT_FALSE(v.applyEditText(text));
        EXPECT_EQ(v.newText, type == vartype::point2d ? "7.0000 8.0000" : "7.0000 8.0000 9.0000");
        EXPECT_EQ(std::memcmp(&before, &v.newValue, sizeof before), 0);
        EXPECT_FALSE(v.inUserList());
    }
}

TEST_F(SysVarFixture, EmptyTypedTextEmptiesNewTextExceptFor3DPoints) {
    for (int type : {vartype::real, vartype::integer, vartype::longInt, vartype::point2d, vartype::string}) {
        SCOPED_TRACE(label(type, ""));
        cSysVar v{&list};
        v.valueType = type;
        ASSERT_TRUE(v.applyEditText("1 2"));
        EXPECT_TRUE(v.applyEditText(""));
        EXPECT_TRUE(v.newText.empty());
        EXPECT_TRUE(v.inUserList()) << "flags stay";
        if (type == vartype::string) {
            EXPECT_EQ(v.newValue.rstring, nullptr);
        }
    }
}

TEST_F(SysVarFixture, ReadOnlyRecordTakesFileTextButNoTypedTextAndIsNeverWritten) {
    typed(vartype::integer);
    var.setReadOnly();
    EXPECT_FALSE(var.applyEditText("5"));
    EXPECT_TRUE(var.newText.empty());
    EXPECT_FALSE(var.inUserList());
    EXPECT_TRUE(var.applyFileText("12"));
    EXPECT_EQ(var.newText, "12");
    EXPECT_TRUE(var.inUserList());
    var.setMarkedToSet();
    EXPECT_FALSE(var.writeToHost()) << "no host call for a read-only record";
    EXPECT_FALSE(var.setFailed());
}

// Empty and unparsable file texts of each kind: see the user list tests.
TEST_F(SysVarFixture, FileTextRulesAndCompareColours) {
    cSysVar r{&list};
    r.valueType = vartype::real;
    EXPECT_TRUE(r.applyFileText("1.23456"));
    EXPECT_EQ(r.newText, "1.2346");
    EXPECT_DOUBLE_EQ(r.newValue.rreal, 1.23456) << "the full number is kept";
    EXPECT_TRUE(r.applyFileText(""));
    EXPECT_EQ(r.newText, "1.2346") << "empty text: newText is remade from the kept value";

    // The colours compare the texts at display precision.
    const std::pair<std::string, std::uint32_t> cases[] = {{"1.00001", kColourEqual},
                                                           {"1.0002", kColourDiffers}};
    for (const auto& [text, colour] : cases) {
        cSysVar v{&list};
        v.valueType = vartype::real;
        v.currentText = "1.0000";
        ASSERT_TRUE(v.applyFileText(text));
        EXPECT_EQ(v.compareColour, colour) << "file text " << text;
        v.compareColour = 0;
        ASSERT_TRUE(v.applyEditText(text));
        EXPECT_EQ(v.compareColour, colour) << "typed text " << text;
    }
    cSysVar fresh{&list};
    fresh.valueType = vartype::real;
    fresh.currentText = "1.0000";
    EXPECT_TRUE(fresh.applyEditText(""));
    EXPECT_EQ(fresh.compareColour, 0u) << "no comparison without a new text";
}

} // namespace
