// Tests of the profile-file functions: reading leniently, writing without losing other lines.
#include "ProfileFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace fs = std::filesystem;
using kova::profile::getString;
using kova::profile::writeString;

namespace {

class ProfileFile : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_dir = fs::temp_directory_path() / (std::string("profiletest_") + info->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
        m_file = (m_dir / "test.ini").string();
    }
    void TearDown() override { fs::remove_all(m_dir); }

    void writeRaw(const std::string& content) const { std::ofstream(m_file, std::ios::binary) << content; }
    std::string readRaw() const {
        std::ifstream in(m_file, std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
    std::string get(const std::string& section, const std::string& key, const std::string& def = "DEFAULT",
                    std::size_t bufferSize = 512) const {
        std::string out = "untouched";
        const std::size_t length = getString(m_file, section, key, def, out, bufferSize);
        EXPECT_EQ(length, out.size()) << "key " << key;
        return out;
    }

    fs::path m_dir;
    std::string m_file;
};

TEST_F(ProfileFile, ReadsValuesByTheWindowsRules) {
    writeRaw("; a comment\n"
             "outside=before any section\n"
             "[Settings]\n"
             "Plain=abc\n"
             "Empty=\n"
             "  Padded  =   a b c   \n"
             "Quoted=\"  inside quotes  \"\n"
             "HalfQuoted=\"open\n"
             "Equals=a=b\n"
             "MixedCase=m\n"
             "Dup=first\n"
             "Dup=second\n"
             "\n"
             "[Other]\n"
             "Plain=other section\n"
             "[  spaced section  ]\n"
             "k=v\n");
    struct Row {
        const char* section;
        const char* key;
        const char* expected;
    };
    const Row rows[] = {
        {"Settings", "Empty", ""},
        {"Settings", "Padded", "a b c"},
        {"Settings", "Quoted", "  inside quotes  "},
        {"Settings", "HalfQuoted", "\"open"},
        {"Settings", "Equals", "a=b"},
        {"SETTINGS", "mixedcase", "m"},
        {"Settings", "Dup", "first"},
        {"Settings", "Missing", "DEFAULT"},
        {"Settings", "outside", "DEFAULT"},
        {"Other", "Plain", "other section"},
        {"spaced section", "k", "v"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(get(row.section, row.key), row.expected) << row.section << "/" << row.key;
}

TEST_F(ProfileFile, MissingFileGivesTheDefaultAndCrLfBomAndNoFinalLineEndAreRead) {
    EXPECT_EQ(get("Settings", "Key", "20"), "20");
    std::string out;
    EXPECT_EQ(getString(m_dir.string(), "S", "K", "dir", out), 3u) << "a folder is no file";
    EXPECT_EQ(out, "dir");

    writeRaw("\xEF\xBB\xBF[Sec]\r\nA=1\r\nB= 2 \r\nC=last");
    EXPECT_EQ(get("Sec", "A"), "1");
    EXPECT_EQ(get("Sec", "B"), "2");
    EXPECT_EQ(get("Sec", "C"), "last");
}

TEST_F(ProfileFile, CutsLongValuesAtTheBufferSize) {
    const std::string exact(511, 'x');
    writeRaw("[S]\nExact=" + exact + "\nLong=" + exact + "y\nUtf8=" + std::string(510, 'a') + "\xC3\xA4" +
             "\n");
    EXPECT_EQ(get("S", "Exact"), exact);
    EXPECT_EQ(get("S", "Long"), exact) << "the 512th byte is cut";
    EXPECT_EQ(get("S", "Utf8"), std::string(510, 'a')) << "no half character is returned";
    EXPECT_EQ(get("S", "Missing", "abcdef", 4), "abc") << "the default is cut too";
}

TEST_F(ProfileFile, SurvivesGarbageBinaryAndVeryLongLines) {
    std::string garbage = "[S]\n";
    garbage += std::string("\x00\x01\xFF\xFE=\x80\x80\n", 8);
    garbage += "no equals sign here\n";
    garbage += std::string(2'000'000, 'q') + "\n";
    garbage += "=value without key\n";
    garbage += "Good=found\n";
    garbage += std::string("Bin=\x80\x80\x80\x80\x80", 9) + std::string(600, '\x80') + "\n";
    writeRaw(garbage);
    EXPECT_EQ(get("S", "Good"), "found");
    EXPECT_EQ(get("S", "Bin").size(), 511u) << "invalid UTF-8 is cut where it stands";
    EXPECT_EQ(get("S", "Missing"), "DEFAULT");
}

TEST_F(ProfileFile, WriteCreatesFileAndSectionAndRoundTripsValues) {
    ASSERT_TRUE(writeString(m_file, "Settings", "Editor", "/usr/bin/xdg-open"));
    EXPECT_EQ(readRaw(), "[Settings]\nEditor=/usr/bin/xdg-open\n");
    for (const std::string value : {"", "a=b", "  blanks inside  kept  ", "Ä ö ü ·", "#;["}) {
        ASSERT_TRUE(writeString(m_file, "S", "K", value)) << value;
        std::string trimmed = value;
        trimmed.erase(0, trimmed.find_first_not_of(' '));
        trimmed.erase(trimmed.find_last_not_of(' ') + 1);
        EXPECT_EQ(get("S", "K"), trimmed) << "value '" << value << "'";
    }
}

TEST_F(ProfileFile, WriteReplacesOrAddsAndKeepsEveryOtherLine) {
    writeRaw("; keep me\r\n"
             "[One]\r\n"
             "a=1\r\n"
             "garbage line\r\n"
             "\r\n"
             "[Two]\r\n"
             "KEY = old value \r\n"
             "b=2");
    ASSERT_TRUE(writeString(m_file, "two", "key", "new"));
    ASSERT_TRUE(writeString(m_file, "ONE", "c", "3"));
    ASSERT_TRUE(writeString(m_file, "Two", "d", ""));
    EXPECT_EQ(readRaw(), "; keep me\r\n"
                         "[One]\r\n"
                         "a=1\r\n"
                         "garbage line\r\n"
                         "c=3\r\n"
                         "\r\n"
                         "[Two]\r\n"
                         "key=new\r\n"
                         "b=2\r\n"
                         "d=\r\n");
    EXPECT_EQ(get("Two", "d"), "") << "an empty value is stored, not the default";

    writeRaw("\xEF\xBB\xBF[S]\nk=v\n");
    ASSERT_TRUE(writeString(m_file, "S", "Pattern", "two\nlines"));
    EXPECT_EQ(readRaw(), "\xEF\xBB\xBF[S]\nk=v\nPattern=two lines\n")
        << "the BOM is kept, a line break is a blank";
}

TEST_F(ProfileFile, WriteFailsWithoutLosingAnything) {
    EXPECT_FALSE(writeString((m_dir / "no such folder" / "x.ini").string(), "S", "K", "v"));
    EXPECT_FALSE(fs::exists(m_dir / "no such folder"));
    // A path that exists but cannot be read as a file is not replaced by a new one.
    const fs::path folder = m_dir / "folder.ini";
    fs::create_directories(folder / "inside");
    EXPECT_FALSE(writeString(folder.string(), "S", "K", "v"));
    EXPECT_TRUE(fs::is_directory(folder / "inside"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_dir), fs::directory_iterator()), 1)
        << "no temporary file is left behind";
}

} // namespace
