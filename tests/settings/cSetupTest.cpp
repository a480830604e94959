// cSetup: the ini file and the drawing as one store, typed values and their formats.
#include "../frame/TestHost.h"

#include "cSetup.h"
#include "ProfileFile.h"

namespace {

class SetupStore : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ini = (folder / "Store.ini").string();
    }

    void write(const std::string& key, const std::string& value) {
        ASSERT_TRUE(kova::profile::writeString(ini, "Settings", key, value));
    }
    std::string fileValue(const std::string& key) {
        std::string value;
        kova::profile::getString(ini, "Settings", key, "<missing>", value);
        return value;
    }
    void openFileOnly() { setup.Open(ini, "Kova_Test", "Store", "Settings", false, true); }
    void openWithDrawing() { setup.Open(ini, "Kova_Test", "Store", "Settings", true, true); }

    std::string ini;
    cSetup setup;
};

TEST_F(SetupStore, MissingFileGivesTheDefaultAndAGetMakesNoFile) {
    ini = (folder / "absent" / "none.ini").string();
    openFileOnly();
    std::int32_t number = 0;
    setup.GetInt("MainPosX", "20", number);
    EXPECT_EQ(number, 20);
    EXPECT_FALSE(std::filesystem::exists(folder / "absent"));
}

TEST_F(SetupStore, MissingKeyGivesTheDefaultAndAnEmptyValueGivesEmpty) {
    write("Empty", "");
    openFileOnly();
    std::string out = "before";
    setup.GetString("Missing", "fallback", out);
    EXPECT_EQ(out, "fallback");
    setup.GetString("Empty", "fallback", out);
    EXPECT_EQ(out, "");
}

TEST_F(SetupStore, IntegerGetsScanDecimalOrAnyBase) {
    // text, decimal scan, scan in any base; -1 is the value held before when the text does not scan
    const std::tuple<const char*, std::int32_t, std::int32_t> ints[] = {
        {"  -7", -7, -7}, {"12abc", 12, 12}, {"abc", -1, -1},
        {"0x1F", 0, 31},  {"010", 10, 8},    {"-0x10", 0, -16},
    };
    for (const auto& [text, decimal, anyBase] : ints) {
        write("Value", text);
        openFileOnly();
        std::int32_t i = -1, l = -1, f = -1, a = -1;
        setup.GetInt("Value", "", i);
        setup.GetLong("Value", "", l);
        setup.GetFlagWord("Value", "", f);
        setup.GetAnyBaseInt("Value", "", a);
        EXPECT_EQ((std::vector<std::int32_t>{i, l, f, a}),
                  (std::vector<std::int32_t>{decimal, decimal, decimal, anyBase}))
            << "int, long, flag word, any base of \"" << text << "\"";
    }
}

// A text that is no number leaves a flag as it was.
TEST_F(SetupStore, FlagReadsZeroAsOffAnyOtherNumberAsOnAndLeavesANonNumberAlone) {
    write("Value", "yes");
    openFileOnly();
    bool flag = true;
    setup.GetBool("Value", "", flag);
    EXPECT_TRUE(flag);
    for (const auto& [text, expected] : {std::pair{"0", false}, {"-1", true}}) {
        write("Value", text);
        openFileOnly();
        setup.GetBool("Value", "", flag);
        EXPECT_EQ(flag, expected) << text;
    }
}

TEST_F(SetupStore, UnsignedAndRealGetsScanTheWholeRangeAndExponents) {
    write("Value", "4294967295");
    openFileOnly();
    std::uint32_t big = 5;
    setup.GetUnsigned("Value", "", big);
    EXPECT_EQ(big, 4294967295u);
    write("Value", "2.5e1");
    openFileOnly();
    double real = 0;
    setup.GetDouble("Value", "", real);
    EXPECT_DOUBLE_EQ(real, 25.0);
    setup.GetDouble("Missing", "0.125", real);
    EXPECT_DOUBLE_EQ(real, 0.125) << "the default is a text too";
    EXPECT_FALSE(setup.ParseDouble(real, "abc"));
    EXPECT_EQ(real, 0.125);
}

TEST_F(SetupStore, TypedPutsWriteTheirFormats) {
    openFileOnly();
    setup.PutDouble("Whole", 2.0, true);
    setup.PutDouble("Cut", 1.234567, true);
    setup.PutInt("Int", -17, true);
    setup.PutUnsigned("Unsigned", 4294967295u, true);
    setup.PutAnyBaseInt("AnyBase", 255, true);
    setup.PutBool("True", true, true);
    setup.PutString("NotToFile", "x", false);
    const std::pair<const char*, const char*> expected[] = {
        {"Whole", "2.00000"},       {"Cut", "1.23457"}, {"Int", "-17"},
        {"Unsigned", "4294967295"}, {"AnyBase", "255"}, {"True", "1"},
        {"NotToFile", "<missing>"}};
    for (const auto& [key, value] : expected)
        EXPECT_EQ(fileValue(key), value) << key;
}

// The drawing winning over the ini file at the level of the settings: see cDocCntxSettingsTest.
TEST_F(SetupStore, EmptyDrawingValueFallsBackToTheFile) {
    ASSERT_NE(host.newDocument(), nullptr);
    openWithDrawing();
    setup.PutString("Shared", "drawing", false);
    setup.PutString("EmptyInDrawing", "", false);
    setup.Close();
    write("Shared", "file");
    write("EmptyInDrawing", "file");

    openWithDrawing();
    std::string out;
    setup.GetString("Shared", "default", out);
    EXPECT_EQ(out, "drawing");
    setup.GetString("EmptyInDrawing", "default", out);
    EXPECT_EQ(out, "file");
    setup.GetString("OnlyDefault", "default", out);
    EXPECT_EQ(out, "default");
}

} // namespace
