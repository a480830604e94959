// Tests of the text, path and date helpers, with multi-byte and broken UTF-8 text.
#include "vars/TextHelpers.h"

#include <gtest/gtest.h>
#include <QDateTime>

#include <filesystem>

namespace {

const std::string kUmlaut = "\xC3\xA4";        // ä
const std::string kSharpS = "\xC3\x9F";        // ß
const std::string kEuro = "\xE2\x82\xAC";      // €
const std::string kGrin = "\xF0\x9F\x98\x80";  // 😀
const std::string kWideSpace = "\xE3\x80\x80"; // U+3000
using Words = std::vector<std::string>;

TEST(TextHelpers, TrimAndUpperCaseStepOverWholeCharacters) {
    const Words trims[] = {
        // input, trimLeft, trimRight, trimBoth
        {"", "", "", ""},
        {"   ", "", "", ""},
        {"  a b  ", "a b  ", "  a b", "a b"},
        {"\t\r\n" + kUmlaut + " \r\n", kUmlaut + " \r\n", "\t\r\n" + kUmlaut, kUmlaut},
        {kWideSpace + kEuro + kWideSpace, kEuro + kWideSpace, kWideSpace + kEuro, kEuro},
        {kGrin + "  ", kGrin + "  ", kGrin, kGrin},
        {"\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0"}, // stray bytes are no blanks
    };
    for (const Words& c : trims) {
        std::string l = c[0], r = c[0], b = c[0];
        EXPECT_EQ((Words{c[0], trimLeft(l), trimRight(r), trimBoth(b)}), c) << "input [" << c[0] << "]";
    }
    const std::pair<std::string, std::string> uppers[] = {
        {"abc xyz", "ABC XYZ"},
        {"\xC3\xA4\xC3\xB6\xC3\xBC", "\xC3\x84\xC3\x96\xC3\x9C"}, // äöü -> ÄÖÜ
        {"stra" + kSharpS + "e", "STRA" + kSharpS + "E"},         // ß has no one-to-one upper form
        {kEuro + kGrin + "q", kEuro + kGrin + "Q"},
        {"a\xFF" + std::string("b\xC3"), "A\xFF" + std::string("B\xC3")}, // invalid bytes stay
        {"", ""},
    };
    for (const auto& [input, expected] : uppers) {
        std::string text = input;
        EXPECT_EQ(upperCase(text), expected) << "input [" << input << "]";
    }
}

TEST(TextHelpers, RemoveReplaceAndFindNeverTouchBytesInsideACharacter) {
    // ä is C3 A4, € is E2 82 AC: their inner bytes must survive removal of the same byte value.
    std::string text = "a" + kUmlaut + kEuro + "\xA4" + "b";
    removeChar(text, '\xA4');
    removeChar(text, '\xAC');
    EXPECT_EQ(text, "a" + kUmlaut + kEuro + "b");
    std::string quoted = "\"say \"" + kGrin + "\"\"";
    removeChar(quoted, '"');
    EXPECT_EQ(quoted, "say " + kGrin);

    std::string commas = "1,2," + kEuro + ",3";
    EXPECT_EQ(replaceChar(commas, ',', ' '), 3);
    EXPECT_EQ(commas, "1 2 " + kEuro + " 3");
    std::string same = "a,b", empty, inner = kEuro;
    EXPECT_EQ(replaceChar(same, ',', ','), 0);
    EXPECT_EQ(replaceChar(empty, ',', ' '), 0);
    EXPECT_EQ(replaceChar(inner, '\x82', 'x'), 0);
    EXPECT_EQ(inner, kEuro);

    const std::string hashes = "a#" + kUmlaut + "#"; // '#' at bytes 1 and 4
    EXPECT_EQ(findChar(hashes, '#'), 1);
    EXPECT_EQ(findChar(hashes, '#', 2), 4);
    EXPECT_EQ(findChar(hashes, '#', 5), -1) << "start at the end";
    EXPECT_EQ(findChar(hashes, '#', -1), -1);
    EXPECT_EQ(findChar(hashes, '\xA4'), -1) << "trail byte of a character";
    EXPECT_EQ(findChar("", '#'), -1);
}

TEST(TextHelpers, LeftAndMidCutAtCharacterBoundariesAndCompareIsByteOrder) {
    EXPECT_EQ(left("abc", 2), "ab");
    EXPECT_EQ(left("abc", 10), "abc");
    EXPECT_EQ(left("abc", 0), "");
    EXPECT_EQ(left(kUmlaut + kEuro, 2), kUmlaut);
    EXPECT_EQ(left(kUmlaut + kEuro, 1), "") << "a cut inside ä moves back";
    EXPECT_EQ(left(kUmlaut + kEuro, 4), kUmlaut) << "a cut inside € moves back";
    EXPECT_EQ(mid("abc", 5), "");
    EXPECT_EQ(mid("abc", 3), "");
    EXPECT_EQ(mid("abc", 1, 10), "bc");
    EXPECT_EQ(mid("abc", 1, 1), "b");
    EXPECT_EQ(mid("abc", 1), "bc");
    EXPECT_EQ(mid(kUmlaut + kEuro + kGrin, 2, 3), kEuro);
    EXPECT_EQ(mid(kUmlaut + kEuro + kGrin, 2), kEuro + kGrin);
    EXPECT_EQ(mid(kGrin + "x", 4, 1), "x");

    EXPECT_LT(compareText("A", "B"), 0);
    EXPECT_LT(compareText("B", "a"), 0) << "upper case sorts before lower case";
    EXPECT_LT(compareText("Z", kUmlaut), 0) << "multi-byte characters sort after ASCII";
    EXPECT_LT(compareText("AB", "ABC"), 0);
    EXPECT_GT(compareText(kGrin, kEuro), 0);
    EXPECT_EQ(compareText("X" + kEuro, "X" + kEuro), 0);
}

TEST(TextHelpers, SplitFieldsCountsHashesPlusOne) {
    const std::pair<std::string, Words> cases[] = {
        // line, {count, the first four fields}
        {"abc", {"1", "abc", "", "", ""}},
        {"", {"1", "", "", "", ""}},
        {"a#", {"2", "a", "", "", ""}},
        {"0#Bema" + kSharpS + "ung#3", {"3", "0", "Bema" + kSharpS + "ung", "3", ""}},
        {" 3 # zweite # -+ # Text ", {"4", " 3 ", " zweite ", " -+ ", " Text "}},
        {"a#b#c#d#e#f", {"6", "a", "b", "c", "d"}},
        {"##", {"3", "", "", "", ""}},
        {kEuro + "#" + kGrin, {"2", kEuro, kGrin, "", ""}},
    };
    for (const auto& [line, expected] : cases) {
        std::string f1 = "x", f2 = "x", f3 = "x", f4 = "x";
        const int count = splitFields(line, f1, f2, f3, f4);
        EXPECT_EQ((Words{std::to_string(count), f1, f2, f3, f4}), expected) << "line [" << line << "]";
    }
}

TEST(TextHelpers, PathPartsSplitAtTheLastSlashAndDot) {
    const Words cases[] = {
        // path, directory, file name, stem
        {"/a/b/c.avl", "/a/b/", "c.avl", "/a/b/c"},
        {"c.avl", "", "c.avl", "c"},
        {"/a/b/", "/a/b/", "", "/a/b/"},
        {"/a/c.tar.gz", "/a/", "c.tar.gz", "/a/c.tar"},
        {"/a.d/c", "/a.d/", "c", "/a.d/c"},
        {"", "", "", ""},
        {"/" + kUmlaut + "/" + kEuro + ".var", "/" + kUmlaut + "/", kEuro + ".var",
         "/" + kUmlaut + "/" + kEuro},
    };
    for (const Words& c : cases) {
        std::string d = "old", f = "old", s = "old";
        EXPECT_EQ((Words{c[0], pathDirectory(c[0], d), pathFileName(c[0], f), pathStem(c[0], s)}), c)
            << "path [" << c[0] << "]";
    }
    std::string out;
    pathInWorkingDirectory("Drawing1.dwg", out);
    std::string expected = std::filesystem::current_path().string();
    if (expected.back() != '/')
        expected += '/';
    EXPECT_EQ(out, expected + "Drawing1.dwg");
}

TEST(TextHelpers, FormatDateTimeGivesDateOrTimeOfTheMoment) {
    const QDateTime local(QDate(2024, 3, 5), QTime(13, 47, 39));
    const DateTime moment{std::chrono::milliseconds(local.toMSecsSinceEpoch())};
    std::string date, time, both, bad, now;
    formatDateTime(moment, kDateOnly, date);
    formatDateTime(moment, kTimeOnly, time);
    formatDateTime(moment, kDateTimeBoth, both);
    EXPECT_NE(date.find("5"), std::string::npos) << date;
    EXPECT_EQ(date.find("47"), std::string::npos) << "date only: " << date;
    EXPECT_NE(time.find("47"), std::string::npos) << time;
    EXPECT_NE(time.find("39"), std::string::npos) << "with seconds: " << time;
    EXPECT_EQ(both, date + " " + time);
    EXPECT_EQ(formatDateTime(moment, 7, bad), "Invalid DateTime");
    EXPECT_NE(formatDateTime(currentDateTime(), kDateOnly, now), "Invalid DateTime");
}

} // namespace
