// Tests of cSysVar without a host: value texts, parsing of typed and file texts, flags, AVL fields.
#include "vars/cSysVar.h"
#include "vars/cSysVarList.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

// A record that owns the number format of its list, with the usual precision 4 and a blank.
class SysVarFixture : public ::testing::Test {
protected:
    cSysVarList list;
    cSysVar var{&list};

    void typed(int type) { var.valueType = type; }
    std::string listText(const ads_u_val& value) {
        std::string out = "<untouched>";
        var.formatListValue(value, out);
        return out;
    }
    static ads_u_val asReal(double v) {
        ads_u_val u{};
        u.rreal = v;
        return u;
    }
    static ads_u_val asPoint(double x, double y, double z) {
        ads_u_val u{};
        u.rpoint[0] = x;
        u.rpoint[1] = y;
        u.rpoint[2] = z;
        return u;
    }
    static ads_u_val asWhole(int type, Adesk::Int32 v) {
        ads_u_val u{};
        if (type == vartype::integer)
            u.rint = static_cast<short>(v);
        else
            u.rlong = v;
        return u;
    }
    static std::string label(int type, const std::string& text) {
        return "type " + std::to_string(type) + " text [" + text + "]";
    }
};

TEST_F(SysVarFixture, ListTextFollowsTypeSeparatorPrecisionAndThe1e10Limit) {
    using namespace vartype;
    struct Case {
        int type;
        ads_u_val value;
        std::string expected;
        char separator = ' ';
        int precision = 4;
    };
    const Case cases[] = {
        {real, asReal(1.5), "1.5000"},
        {real, asReal(-0.00004), "-0.0000"},
        {real, asReal(9999999999.99), "9999999999.9900"},
        {real, asReal(1e10), "1.000000E+10"},
        {real, asReal(-1e10), "-1.000000E+10"},
        {real, asReal(1.5e12), "1.500000E+12"},
        {real, asReal(3.14159), "3.14", ' ', 2},
        {real, asReal(7.0), "7", ' ', 0},
        {point2d, asPoint(1, 2.5, 99), "1.0000,2.5000", ','}, // z is not shown
        {point2d, asPoint(1, 2.5, 0), "1.0000 2.5000"},
        {point2d, asPoint(1, 1e12, 0), "1.000000E+00,1.000000E+12", ','},
        {point2d, asPoint(1, 2, 1e12), "1.0000,2.0000", ','},
        {point3d, asPoint(1, 2, 3), "1.0000 2.0000 3.0000"},
        {point3d, asPoint(1, 2, 1e12), "1.000000E+00;2.000000E+00;1.000000E+12", ';'},
        {point3d, asPoint(-1e10, 0, 0), "-1.000000E+10 0.000000E+00 0.000000E+00"},
        {integer, asWhole(integer, -5), "-5"},
        {longInt, asWhole(longInt, 2000000000), "2000000000"},
    };
    for (const Case& c : cases) {
        typed(c.type);
        list.pointSeparator = c.separator;
        list.valuePrecision = c.precision;
        EXPECT_EQ(listText(c.value), c.expected) << "type " << c.type;
    }
    typed(real);
    EXPECT_NE(listText(asReal(std::numeric_limits<double>::quiet_NaN())).find("NAN"), std::string::npos);
    cSysVar loose; // a record without a list uses a blank and four places
    loose.valueType = point3d;
    std::string out;
    loose.formatListValue(asPoint(1, 2, 3), out);
    EXPECT_EQ(out, "1.0000 2.0000 3.0000");

    typed(vartype::string);
    ads_u_val v{};
    char text[] = "Layer \"0\"";
    v.rstring = text;
    EXPECT_EQ(listText(v), "\"Layer \"0\"\"") << "no escaping inside the quotes";
    var.formatEditValue(out, v);
    EXPECT_EQ(out, "Layer \"0\"");
    v.rstring = nullptr;
    out = "kept";
    EXPECT_TRUE(var.formatListValue(v, out));
    EXPECT_EQ(out, "kept") << "a null string writes nothing";
    for (int other : {none, 5004, 5006, 5007, 5008}) {
        typed(other);
        EXPECT_FALSE(var.formatListValue(asReal(1), out)) << "type " << other;
        EXPECT_EQ(out, "kept") << "type " << other;
    }
}

TEST_F(SysVarFixture, SplitPointTextMakesSeparatorsBlanksAndThreeTokensAtMost) {
    using Tokens = std::vector<std::string>;
    const std::tuple<std::string, char, Tokens> cases[] = {
        // text, separator, {count, three tokens}
        {"", ' ', {"0", "", "", ""}},
        {"   ", ' ', {"0", "", "", ""}},
        {",;:#", ' ', {"0", "", "", ""}},
        {"  1   2  ", ' ', {"2", "1", "2", ""}},
        {"1#2:3 4 5", ' ', {"3", "1", "2", "3"}},
        {"1\t2", ' ', {"1", "1\t2", "", ""}}, // a tab does not split
        {"1.5", '.', {"2", "1", "5", ""}},    // the full stop splits only as the separator
        {"\xC3\xA4 \xE2\x82\xAC,\xF0\x9F\x98\x80",
         ' ',
         {"3", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}},
    };
    for (const auto& [text, separator, expected] : cases) {
        list.pointSeparator = separator;
        std::string t1 = "x", t2 = "x", t3 = "x";
        const int count = var.splitPointText(t1, t2, t3, text);
        EXPECT_EQ((Tokens{std::to_string(count), t1, t2, t3}), expected) << "text [" << text << "]";
    }
}

TEST_F(SysVarFixture, TypedTextByTypeGivesNewText) {
    using namespace vartype;
    const std::tuple<int, char, std::string, std::string> cases[] = {
        // type, separator, typed text, new text
        {real, ' ', "2.5", "2.5000"},
        {real, ' ', "  12abc", "12.0000"},
        {real, ' ', "1,5", "1.0000"},
        {real, ' ', "1e3", "1000.0000"},
        {real, ' ', "1e10", "1.000000E+10"},
        {integer, ' ', "70000", "4464"},
        {integer, ' ', "-3", "-3"},
        {integer, ' ', "65535", "-1"},
        {longInt, ' ', "123456789", "123456789"},
        {longInt, ' ', "-42x", "-42"},
        {point2d, ',', "1,2", "1.0000,2.0000"},
        {point2d, ' ', "1;2.5", "1.0000 2.5000"},
        {point2d, ' ', "1:2:3", "1.0000 2.0000"},
        {point2d, '/', "1/2", "1.0000/2.0000"},
        {point3d, ',', "1,2,3", "1.0000,2.0000,3.0000"},
        {point3d, ',', "1 2 3", "1.0000,2.0000,3.0000"},
        {point3d, ' ', "1#2#3#4", "1.0000 2.0000 3.0000"},
        {string, ' ', "say \"hi\"", "\"say hi\""},
        {string, ' ', "\xE2\x82\xAC \xF0\x9F\x98\x80", "\"\xE2\x82\xAC \xF0\x9F\x98\x80\""},
    };
    for (const auto& [type, separator, text, newText] : cases) {
        SCOPED_TRACE(label(type, text));
        cSysVar v{&list};
        v.valueType = type;
        list.pointSeparator = separator;
        EXPECT_TRUE(v.applyEditText(text));
        EXPECT_EQ(v.newText, newText);
        EXPECT_TRUE(v.inUserList());
        v.clearNewValue();
    }
    list.pointSeparator = ' ';
    typed(point2d);
    ASSERT_TRUE(var.applyEditText("4 5 6"));
    EXPECT_EQ(var.newValue.rpoint[2], 0.0) << "the third coordinate of a 2D point is zero";

    typed(real); // a text without a number keeps the old value and takes the record into the list
    ASSERT_TRUE(var.applyEditText("2.5"));
    var.clearInUserList();
    EXPECT_TRUE(var.applyEditText("abc"));
    EXPECT_EQ(var.newText, "2.5000");
    EXPECT_TRUE(var.inUserList());
}

TEST_F(SysVarFixture, PointsThatDoNotParseChangeNothing) {
    const std::pair<int, std::string> cases[] = {
        {vartype::point2d, "1"},   {vartype::point2d, "a 2"}, {vartype::point2d, "1 b"},
        {vartype::point3d, "1 2"}, {vartype::point3d, ""},    {vartype::point3d, "1 2 z"},
    };
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
    EXPECT_FALSE(var.setSucceeded());
}

TEST_F(SysVarFixture, EditTextShowsNewValueElseCurrentAndClearForgetsTheNewValue) {
    typed(vartype::string);
    var.currentText = "\"old\"";
    char current[] = "old";
    var.currentValue.rstring = current;
    std::string out;
    var.editText(out);
    EXPECT_EQ(out, "old");
    ASSERT_TRUE(var.applyEditText("new \"one\""));
    var.editText(out);
    EXPECT_EQ(out, "new one");
    EXPECT_EQ(var.newText, "\"new one\"");

    var.setSelected();
    var.setMarkedToSet();
    ASSERT_TRUE(var.refreshNewText());
    const auto colour = var.compareColour;
    EXPECT_TRUE(var.clearNewValue());
    EXPECT_FALSE(var.inUserList());
    EXPECT_FALSE(var.isSelected());
    EXPECT_TRUE(var.isMarkedToSet());
    EXPECT_TRUE(var.newText.empty());
    EXPECT_EQ(var.newValue.rstring, nullptr);
    EXPECT_EQ(var.compareColour, colour);
    var.editText(out);
    EXPECT_EQ(out, "old");
    var.currentValue.rstring = nullptr; // not the record's to free

    cSysVar other{&list};
    other.valueType = 5004;
    other.currentText = "shown as stored";
    other.editText(out);
    EXPECT_EQ(out, "shown as stored");
}

TEST_F(SysVarFixture, FileTextRulesDifferFromTypedText) {
    typed(vartype::string);
    EXPECT_TRUE(var.applyFileText(""));
    EXPECT_EQ(var.newText, "\"\"");
    ASSERT_NE(var.newValue.rstring, nullptr);
    EXPECT_STREQ(var.newValue.rstring, "");

    cSysVar p2{&list};
    p2.valueType = vartype::point2d;
    EXPECT_FALSE(p2.applyFileText(""));
    EXPECT_TRUE(p2.inUserList()) << "set before parsing, stays after a failed point";
    EXPECT_TRUE(p2.newText.empty());

    cSysVar r{&list};
    r.valueType = vartype::real;
    EXPECT_TRUE(r.applyFileText("1.23456"));
    EXPECT_EQ(r.newText, "1.2346");
    EXPECT_DOUBLE_EQ(r.newValue.rreal, 1.23456) << "the full number is kept";
    EXPECT_TRUE(r.applyFileText(""));
    EXPECT_EQ(r.newText, "1.2346") << "empty text: newText is remade from the kept value";
}

TEST_F(SysVarFixture, CompareColoursFollowTheTextsAtDisplayPrecision) {
    const std::pair<std::string, std::uint32_t> cases[] = {{"1.00001", kColourEqual},
                                                           {"1.0000", kColourEqual},
                                                           {"1.0002", kColourDiffers},
                                                           {"-1", kColourDiffers}};
    for (const auto& [text, colour] : cases) {
        cSysVar v{&list};
        v.valueType = vartype::real;
        v.currentText = "1.0000";
        EXPECT_EQ(v.compareColour, 0u);
        ASSERT_TRUE(v.applyFileText(text));
        EXPECT_EQ(v.compareColour, colour) << "file text " << text;
        v.compareColour = 0;
        ASSERT_TRUE(v.applyEditText(text));
        EXPECT_EQ(v.compareColour, colour) << "typed text " << text;
    }
    typed(vartype::real);
    var.currentText = "1.0000";
    EXPECT_TRUE(var.applyEditText(""));
    EXPECT_EQ(var.compareColour, 0u) << "no comparison without a new text";
}

// Beside the cases of the description file tests.
TEST(SysVarFields, AvlFieldsSetNameModeScopeAndTheme) {
    struct Case {
        std::string theme, name, mode, description;
        bool good;
        bool readOnly = false, drawing = false;
        int themeIndex = 0;
        std::string storedName = {}, storedDescription = {};
    };
    const Case cases[] = {
        {"3 ", " ZWEITE ", " -+ ", " Zweite ", true, true, true, 3, "ZWEITE", "Zweite"},
        {" -7", "X", "++extra", "", true, false, true, -7, "X", ""},
        {"7", "\xC3\x84RGER", "--", "\xE2\x82\xAC", true, true, false, 7, "\xC3\x84RGER", "\xE2\x82\xAC"},
        {"drei", "X", "+-", "d", false},
        {"3", "X", "   +", "d", false},
        {"3", "X", "+x", "d", false},
        {"3", "X", "\xC3\xA4-", "d", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.theme + "#" + c.name + "#" + c.mode + "#" + c.description);
        cSysVar v;
        ASSERT_EQ(v.parseAvlFields(c.theme, c.name, c.mode, c.description), c.good);
        if (!c.good)
            continue;
        EXPECT_EQ(v.isReadOnly(), c.readOnly);
        EXPECT_EQ(v.isDrawingSpecific(), c.drawing);
        EXPECT_EQ(v.themeIndex, c.themeIndex);
        EXPECT_EQ(v.name, c.storedName);
        EXPECT_EQ(v.description, c.storedDescription);
        EXPECT_TRUE(v.isUnprobed());
    }
}

} // namespace
