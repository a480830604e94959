// Tests of the profile-file functions: reading leniently, writing without losing other lines.
#include "ProfileFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <sys/stat.h>

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
    std::string readRaw() const { return readRaw(m_file); }
    static std::string readRaw(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
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
    writeRaw(
        "; a comment\noutside=before any section\n[Settings]\nPlain=abc\nEmpty=\n  Padded  =   a b c   \n"
        "Quoted=\"  inside quotes  \"\nHalfQuoted=\"open\nEquals=a=b\nMixedCase=m\nDup=first\nDup=second\n"
        "\n[Other]\nPlain=other section\n[  spaced section  ]\nk=v\n");
    const char* rows[][3] = {{"Settings", "Empty", ""},
                             {"Settings", "Padded", "a b c"},
                             {"Settings", "Quoted", "  inside quotes  "},
                             {"Settings", "HalfQuoted", "\"open"},
                             {"Settings", "Equals", "a=b"},
                             {"SETTINGS", "mixedcase", "m"},
                             {"Settings", "Dup", "first"},
                             {"Settings", "Missing", "DEFAULT"},
                             {"Settings", "outside", "DEFAULT"},
                             {"Other", "Plain", "other section"},
                             {"spaced section", "k", "v"}};
    for (const auto& [section, key, expected] : rows)
        EXPECT_EQ(get(section, key), expected) << section << "/" << key;
}

TEST_F(ProfileFile, MissingFileOrAFolderGivesTheDefault) {
    EXPECT_EQ(get("Settings", "Key", "20"), "20");
    std::string out;
    EXPECT_EQ(getString(m_dir.string(), "S", "K", "dir", out), 3u) << "a folder is no file";
    EXPECT_EQ(out, "dir");
}

TEST_F(ProfileFile, CrLfBomAndNoFinalLineEndAreRead) {
    writeRaw("\xEF\xBB\xBF[Sec]\r\nA=1\r\nB= 2 \r\nC=last");
    EXPECT_EQ(get("Sec", "A"), "1");
    EXPECT_EQ(get("Sec", "B"), "2");
    EXPECT_EQ(get("Sec", "C"), "last");
}

TEST_F(ProfileFile, CutsLongValuesAtTheBufferSize) {
    const std::string exact(511, 'x');
    writeRaw("[S]\nExact=" + exact + "\nLong=" + exact + "y\nUtf8=" + std::string(510, 'a') + "\xC3\xA4" +
             "\nBin=" + std::string(600, '\x80') + "\n");
    EXPECT_EQ(get("S", "Exact"), exact);
    EXPECT_EQ(get("S", "Long"), exact) << "the 512th byte is cut";
    EXPECT_EQ(get("S", "Utf8"), std::string(510, 'a')) << "no half character is returned";
    EXPECT_EQ(get("S", "Bin").size(), 511u) << "invalid UTF-8 is cut where it stands";
    EXPECT_EQ(get("S", "Missing", "abcdef", 4), "abc") << "the default is cut too";
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
    writeRaw("; keep\r\n[One]\r\na=1\r\njunk\r\n\r\n[Two]\r\nKEY = old \r\nb=2");
    ASSERT_TRUE(writeString(m_file, "two", "key", "new"));
    ASSERT_TRUE(writeString(m_file, "ONE", "c", "3"));
    ASSERT_TRUE(writeString(m_file, "Two", "d", "4"));
    EXPECT_EQ(readRaw(), "; keep\r\n[One]\r\na=1\r\njunk\r\nc=3\r\n\r\n[Two]\r\nkey=new\r\nb=2\r\nd=4\r\n");
}

TEST_F(ProfileFile, WriteKeepsTheBomAndWritesALineBreakAsABlank) {
    writeRaw("\xEF\xBB\xBF[S]\nk=v\n");
    ASSERT_TRUE(writeString(m_file, "S", "Pattern", "two\nlines"));
    EXPECT_EQ(readRaw(), "\xEF\xBB\xBF[S]\nk=v\nPattern=two lines\n");
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

// One ProfileFile held through many writes moves what it remembers of the text; a fresh read
// after every step (the one-shot functions) is the yardstick for both the file and the reads.
TEST_F(ProfileFile, HeldFileWritesAsTheOneShotFunctionsAndReadsWhatItWrote) {
    const std::string start =
        "; head\r\n[A]\r\nk1=1\r\n\r\n[b]\r\nK1=b1\r\nk2 = 2\r\n[a]\r\nk3=dup section\r\nk1=late\r\nlast";
    const std::string twin = (m_dir / "twin.ini").string();
    writeRaw(start);
    std::ofstream(twin, std::ios::binary) << start;
    kova::profile::ProfileFile held(m_file);
    const char* keys[] = {"k1", "K2", "k3", "new", "other"};
    const char* sections[] = {"a", "B", "c"};
    const auto sameAsTwin = [&](const std::string& step) {
        ASSERT_EQ(readRaw(), readRaw(twin)) << step;
        for (const char* section : sections)
            for (const char* key : keys) {
                std::string fromHeld, fromFresh;
                held.getString(section, key, "-", fromHeld);
                getString(twin, section, key, "-", fromFresh);
                ASSERT_EQ(fromHeld, fromFresh) << step << ": " << section << "/" << key;
            }
    };
    sameAsTwin("start");
    // Longer, shorter, new keys in the first and in a later section, a new section, a key that
    // also stands in a later section of the same name, and the last line without line end.
    const char* writes[][3] = {{"A", "k1", "a much longer value than before"},
                               {"b", "k2", ""},
                               {"a", "k3", "now in the first section"},
                               {"B", "new", "x"},
                               {"c", "k1", "section c"},
                               {"a", "k1", "short"},
                               {"C", "other", "o"},
                               {"a", "new", "tail"}};
    for (const auto& [section, key, value] : writes) {
        const std::string step = std::string(section) + "/" + key + "=" + value;
        ASSERT_TRUE(held.writeString(section, key, value)) << step;
        ASSERT_TRUE(writeString(twin, section, key, value)) << step;
        sameAsTwin(step);
    }
    EXPECT_EQ(readRaw(),
              "; head\r\n[A]\r\nk1=short\r\nk3=now in the first section\r\nnew=tail\r\n\r\n[b]\r\n"
              "K1=b1\r\nk2=\r\nnew=x\r\n[a]\r\nk3=dup section\r\nk1=late\r\nlast\r\n[c]\r\nk1=section c\r\n"
              "other=o\r\n");
}

TEST_F(ProfileFile, HeldFileSeesChangesMadeByOthers) {
    writeRaw("[S]\nK=one\n");
    kova::profile::ProfileFile held(m_file);
    std::string out;
    held.getString("S", "K", "", out);
    EXPECT_EQ(out, "one");
    writeRaw("[S]\nK=three\n"); // in place, another size
    held.getString("S", "K", "", out);
    EXPECT_EQ(out, "three");
    ASSERT_TRUE(writeString(m_file, "S", "K", "other")); // a new file renamed over it, same size
    held.getString("S", "K", "", out);
    EXPECT_EQ(out, "other");
    fs::remove(m_file);
    held.getString("S", "K", "gone", out);
    EXPECT_EQ(out, "gone");
    ASSERT_TRUE(held.writeString("S", "K", "back"));
    EXPECT_EQ(readRaw(), "[S]\nK=back\n");
}

// Writing the line that stands already rewrites nothing: the file keeps its inode.
TEST_F(ProfileFile, HeldFileRewritesNothingForALineThatStandsAlready) {
    writeRaw("[S]\nK=back\n");
    kova::profile::ProfileFile held(m_file);
    struct stat before {
    }, after{};
    ASSERT_EQ(::stat(m_file.c_str(), &before), 0);
    ASSERT_TRUE(held.writeString("s", "k", "back")); // "k=back" is another line than "K=back"
    ASSERT_EQ(::stat(m_file.c_str(), &after), 0);
    EXPECT_NE(before.st_ino, after.st_ino) << "a line spelt otherwise is rewritten";
    EXPECT_EQ(readRaw(), "[S]\nk=back\n");
    ASSERT_EQ(::stat(m_file.c_str(), &before), 0);
    ASSERT_TRUE(held.writeString("S", "k", "back"));
    ASSERT_EQ(::stat(m_file.c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

} // namespace
