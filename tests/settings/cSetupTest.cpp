// cSetup: the ini file and the drawing as one store, typed values and their formats.
#include "../frame/TestHost.h"

#include "cSetup.h"
#include "platform/ProfileFile.h"

#include <cmath>

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

TEST_F(SetupStore, MissingKeyGivesTheDefaultAndEmptyValueGivesEmpty) {
    write("Empty", "");
    openFileOnly();
    std::string out = "before";
    setup.GetString("Missing", "fallback", out);
    EXPECT_EQ(out, "fallback");
    setup.GetString("Empty", "fallback", out);
    EXPECT_EQ(out, "");
}

TEST_F(SetupStore, NoFileAtAllGivesDefaultsAndNoFileIsReadOrMade) {
    ini = (folder / "absent" / "none.ini").string();
    openFileOnly();
    std::int32_t number = 0;
    setup.GetInt("MainPosX", "20", number);
    EXPECT_EQ(number, 20);
}

TEST_F(SetupStore, TypedGetsScanWithTheirFormats) {
    struct IntCase {
        const char* text;
        std::int32_t expected; // the value held before (-1) when the text does not scan
    };
    const IntCase decimal[] = {{"42", 42},  {"  -7", -7}, {"12abc", 12}, {"", -1},
                               {"abc", -1}, {"0x1F", 0},  {"010", 10}};
    const IntCase anyBase[] = {{"42", 42},     {"010", 8}, {"0x1F", 31}, {"0X10", 16},
                               {"-0x10", -16}, {"", -1},   {"zz", -1}};
    for (const IntCase& c : decimal) {
        write("Value", c.text);
        openFileOnly();
        std::int32_t out = -1;
        setup.GetInt("Value", "", out);
        EXPECT_EQ(out, c.expected) << "GetInt \"" << c.text << "\"";
        out = -1;
        setup.GetLong("Value", "", out);
        EXPECT_EQ(out, c.expected) << "GetLong \"" << c.text << "\"";
        out = -1;
        setup.GetFlagWord("Value", "", out);
        EXPECT_EQ(out, c.expected) << "GetFlagWord \"" << c.text << "\"";
    }
    for (const IntCase& c : anyBase) {
        write("Value", c.text);
        openFileOnly();
        std::int32_t out = -1;
        setup.GetAnyBaseInt("Value", "", out);
        EXPECT_EQ(out, c.expected) << "GetAnyBaseInt \"" << c.text << "\"";
    }

    const std::pair<const char*, std::uint32_t> unsignedCases[] = {
        {"4294967295", 4294967295u}, {"17", 17u}, {"", 5u}};
    for (const auto& [text, expected] : unsignedCases) {
        write("Value", text);
        openFileOnly();
        std::uint32_t out = 5;
        setup.GetUnsigned("Value", "", out);
        EXPECT_EQ(out, expected) << "GetUnsigned \"" << text << "\"";
    }

    const std::pair<const char*, bool> boolCases[] = {{"0", false}, {"1", true}, {"7", true}, {"-1", true}};
    for (const auto& [text, expected] : boolCases) {
        write("Value", text);
        openFileOnly();
        bool out = !expected;
        setup.GetBool("Value", "", out);
        EXPECT_EQ(out, expected) << "GetBool \"" << text << "\"";
    }
    write("Value", "yes");
    openFileOnly();
    bool kept = true;
    setup.GetBool("Value", "", kept);
    EXPECT_TRUE(kept) << "a text that is no number leaves the flag";

    write("Value", "2.5e1");
    openFileOnly();
    double real = 0;
    setup.GetDouble("Value", "", real);
    EXPECT_DOUBLE_EQ(real, 25.0);
    setup.GetDouble("Missing", "0.125", real);
    EXPECT_DOUBLE_EQ(real, 0.125) << "the default is a text too";
}

TEST_F(SetupStore, TypedPutsWriteTheirFormats) {
    openFileOnly();
    setup.PutDouble("Whole", 2.0, true);
    setup.PutDouble("Cut", 1.234567, true);
    setup.PutDouble("Negative", -0.000004, true);
    setup.PutInt("Int", -17, true);
    setup.PutLong("Long", 2147483647, true);
    setup.PutUnsigned("Unsigned", 4294967295u, true);
    setup.PutAnyBaseInt("AnyBase", 255, true);
    setup.PutFlagWord("Flags", 9, true);
    setup.PutBool("True", true, true);
    setup.PutBool("False", false, true);
    setup.PutString("NotToFile", "x", false);
    const std::pair<const char*, const char*> expected[] = {
        {"Whole", "2.00000"},
        {"Cut", "1.23457"},
        {"Negative", "-0.00000"},
        {"Int", "-17"},
        {"Long", "2147483647"},
        {"Unsigned", "4294967295"},
        {"AnyBase", "255"},
        {"Flags", "9"},
        {"True", "1"},
        {"False", "0"},
        {"NotToFile", "<missing>"},
    };
    for (const auto& [key, value] : expected)
        EXPECT_EQ(fileValue(key), value) << key;
}

TEST_F(SetupStore, ParseDoubleReadsOneNumberOrLeavesTheOutput) {
    double out = 9.0;
    EXPECT_TRUE(setup.ParseDouble(out, " -3.5 rest"));
    EXPECT_DOUBLE_EQ(out, -3.5);
    for (const char* text : {"", "abc", " "}) {
        out = 9.0;
        EXPECT_FALSE(setup.ParseDouble(out, text)) << '"' << text << '"';
        EXPECT_EQ(out, 9.0) << '"' << text << '"';
    }
}

TEST_F(SetupStore, DrawingWinsUnlessItsValueIsEmpty) {
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
    setup.Close();

    // Without the drawing store only the file speaks.
    openFileOnly();
    setup.GetString("Shared", "default", out);
    EXPECT_EQ(out, "file");
}

TEST_F(SetupStore, ThrownIntegerIsCaughtAndPrinted) {
    ASSERT_NE(host.newDocument(), nullptr);
    openWithDrawing();
    host.setWorkingDatabaseAvailable(false);
    setup.PutString("Key", "value", true); // the file is written before the store is asked
    testhost::capture().printed.clear();
    setup.Close(); // the write back finds no working database
    EXPECT_EQ(printed(), "DwgIni Ausnahmefehler 3705\n");
    EXPECT_EQ(fileValue("Key"), "value");

    // The next open goes on with the file alone.
    openWithDrawing();
    std::string out;
    setup.GetString("Key", "default", out);
    EXPECT_EQ(out, "value");
}

} // namespace
