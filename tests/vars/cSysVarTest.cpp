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

    void typed(ValueType type) { var.valueType = type; }
    static std::string label(ValueType type, const std::string& text) {
        return "type " + std::to_string(static_cast<int>(type)) + " text [" + text + "]";
    }
};

// The typed text is parsed by type and the new text made from the parsed value, so each row
// checks both the parsing and the text form.
TEST_F(SysVarFixture, TypedTextBecomesNewTextBySeparatorPrecisionAndTheExponentLimit) {
    struct Case {
        ValueType type;
        std::string text, newText;
        char separator = ' ';
        int precision = 4;
    };
    const Case cases[] = {
        {ValueType::Real, "1,5x", "1.0000"},
        {ValueType::Real, "9999999999.99", "9999999999.9900"},
        {ValueType::Real, "1e10", "1.000000E+10"},
        {ValueType::Real, "3.14159", "3.14", ' ', 2},
        {ValueType::Real, "7", "7", ' ', 0},
        {ValueType::Integer, "70000", "4464"}, // kept as a 16-bit integer
        {ValueType::LongInt, "-42x", "-42"},
        {ValueType::Point2d, "1,2", "1.0000,2.0000", ','},
        {ValueType::Point2d, "1:2:3", "1.0000 2.0000"}, // the third coordinate is not shown
        {ValueType::Point2d, "1 1e12", "1.000000E+00,1.000000E+12",
         ','}, // one coordinate over: all in E form
        {ValueType::String, "say \"hi\"", "\"say hi\""},
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
}

TEST_F(SysVarFixture, TypedTwoDimensionalPointHasZeroAsThirdCoordinate) {
    typed(ValueType::Point2d);
    ASSERT_TRUE(var.applyEditText("4 5 6"));
    EXPECT_EQ(var.newValue.rpoint[2], 0.0);
}

TEST_F(SysVarFixture, TypedTextWithoutANumberKeepsTheOldValueAndJoinsTheUserList) {
    typed(ValueType::Real);
    ASSERT_TRUE(var.applyEditText("2.5"));
    var.clearInUserList();
    EXPECT_TRUE(var.applyEditText("abc"));
    EXPECT_EQ(var.newText, "2.5000");
    EXPECT_TRUE(var.inUserList());
}

TEST(SysVar, RecordInNoListFormatsWithABlankAndFourPlaces) {
    cSysVar loose;
    loose.valueType = ValueType::Point3d;
    ASSERT_TRUE(loose.applyEditText("1,2,3"));
    EXPECT_EQ(loose.newText, "1.0000 2.0000 3.0000");
}

TEST_F(SysVarFixture, ListValueQuotesAStringWithoutEscapingAndANullStringWritesNothing) {
    typed(ValueType::String);
    ads_u_val v{};
    char text[] = "Layer \"0\"";
    v.rstring = text;
    std::string out;
    EXPECT_TRUE(var.formatListValue(v, out));
    EXPECT_EQ(out, "\"Layer \"0\"\"");
    v.rstring = nullptr;
    out = "kept";
    EXPECT_TRUE(var.formatListValue(v, out));
    EXPECT_EQ(out, "kept");
}

// A kind the host names but the system does not show keeps its code and has no text.
TEST_F(SysVarFixture, KindsWithoutATextGiveNoListValue) {
    const ads_u_val v{};
    for (int code : {5000, 5004, 5006, 5007, 5008}) {
        typed(static_cast<ValueType>(code));
        std::string out = "kept";
        EXPECT_FALSE(var.formatListValue(v, out)) << "type " << code;
        EXPECT_EQ(out, "kept") << "type " << code;
    }
}

TEST_F(SysVarFixture, PointsThatDoNotParseChangeNothing) {
    const std::pair<ValueType, std::string> cases[] = {{ValueType::Point2d, "1"},
                                                       {ValueType::Point3d, "1 2 z"}};
    for (const auto& [type, text] : cases) {
        SCOPED_TRACE(label(type, text));
        cSysVar v{&list};
        v.valueType = type;
        ASSERT_TRUE(v.applyEditText("7 8 9"));
        v.clearInUserList();
        const ads_u_val before = v.newValue;
        EXPECT_FALSE(v.applyEditText(text));
        EXPECT_EQ(v.newText, type == ValueType::Point2d ? "7.0000 8.0000" : "7.0000 8.0000 9.0000");
        EXPECT_EQ(std::memcmp(&before, &v.newValue, sizeof before), 0);
        EXPECT_FALSE(v.inUserList());
    }
}

TEST_F(SysVarFixture, EmptyTypedTextEmptiesNewTextExceptFor3DPoints) {
    for (ValueType type :
         {ValueType::Real, ValueType::Integer, ValueType::LongInt, ValueType::Point2d, ValueType::String}) {
        SCOPED_TRACE(label(type, ""));
        cSysVar v{&list};
        v.valueType = type;
        ASSERT_TRUE(v.applyEditText("1 2"));
        EXPECT_TRUE(v.applyEditText(""));
        EXPECT_TRUE(v.newText.empty());
        EXPECT_TRUE(v.inUserList()) << "flags stay";
        if (type == ValueType::String) {
            EXPECT_EQ(v.newValue.rstring, nullptr);
        }
    }
    // An empty text is no 3D point: it is refused like any other that does not parse.
    typed(ValueType::Point3d);
    ASSERT_TRUE(var.applyEditText("1 2 3"));
    EXPECT_FALSE(var.applyEditText(""));
    EXPECT_EQ(var.newText, "1.0000 2.0000 3.0000");
}

TEST_F(SysVarFixture, ReadOnlyRecordRefusesTypedTextButTakesFileText) {
    typed(ValueType::Integer);
    var.setReadOnly();
    EXPECT_FALSE(var.applyEditText("5"));
    EXPECT_TRUE(var.newText.empty());
    EXPECT_FALSE(var.inUserList());
    EXPECT_TRUE(var.applyFileText("12"));
    EXPECT_EQ(var.newText, "12");
    EXPECT_TRUE(var.inUserList());
}

TEST_F(SysVarFixture, ReadOnlyRecordIsNeverWritten) {
    typed(ValueType::Integer);
    var.setReadOnly();
    ASSERT_TRUE(var.applyFileText("12"));
    var.setMarkedToSet();
    EXPECT_FALSE(var.writeToHost()) << "no host call for a read-only record";
    EXPECT_FALSE(var.setFailed());
    EXPECT_FALSE(var.setSucceeded());
}

// Empty and unparsable file texts of each kind: see the user list tests.
TEST_F(SysVarFixture, FileTextKeepsTheFullNumberAndAnEmptyOneRemakesNewText) {
    typed(ValueType::Real);
    EXPECT_TRUE(var.applyFileText("1.23456"));
    EXPECT_EQ(var.newText, "1.2346");
    EXPECT_DOUBLE_EQ(var.newValue.rreal, 1.23456);
    EXPECT_TRUE(var.applyFileText(""));
    EXPECT_EQ(var.newText, "1.2346") << "newText is remade from the kept value";
}

TEST_F(SysVarFixture, CompareColourComparesTheTextsAtDisplayPrecision) {
    const std::pair<std::string, std::uint32_t> cases[] = {{"1.00001", kColourEqual},
                                                           {"1.0002", kColourDiffers}};
    for (const auto& [text, colour] : cases) {
        cSysVar v{&list};
        v.valueType = ValueType::Real;
        v.currentText = "1.0000";
        ASSERT_TRUE(v.applyFileText(text));
        EXPECT_EQ(v.compareColour, colour) << "file text " << text;
        v.compareColour = 0;
        ASSERT_TRUE(v.applyEditText(text));
        EXPECT_EQ(v.compareColour, colour) << "typed text " << text;
    }
}

TEST_F(SysVarFixture, EmptyTypedTextIsNotCompared) {
    typed(ValueType::Real);
    var.currentText = "1.0000";
    EXPECT_TRUE(var.applyEditText(""));
    EXPECT_EQ(var.compareColour, 0u);
}

} // namespace
