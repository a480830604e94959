// Tests of the text, path and date helpers, with multi-byte and broken UTF-8 text.
#include "vars/TextHelpers.h"

#include <gtest/gtest.h>
#include <QDateTime>

namespace {

const std::string kUmlaut = "\xC3\xA4";        // ä
const std::string kEuro = "\xE2\x82\xAC";      // €
const std::string kGrin = "\xF0\x9F\x98\x80";  // 😀
const std::string kWideSpace = "\xE3\x80\x80"; // U+3000
using Words = std::vector<std::string>;

TEST(TextHelpers, TrimStepsOverWholeCharacters) {
    const Words trims[] = {
        // input, trimLeft, trimRight, trimBoth
        {"   ", "", "", ""},
        {"\t\r\n" + kUmlaut + " \r\n", kUmlaut + " \r\n", "\t\r\n" + kUmlaut, kUmlaut},
        {kWideSpace + kEuro + kWideSpace, kEuro + kWideSpace, kWideSpace + kEuro, kEuro},
        {"\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0", "\xA0 a \xA0"}, // stray bytes are no blanks
    };
    for (const Words& c : trims) {
        std::string l = c[0], r = c[0], b = c[0];
        EXPECT_EQ((Words{c[0], trimLeft(l), trimRight(r), trimBoth(b)}), c) << "input [" << c[0] << "]";
    }
}

TEST(TextHelpers, UpperCaseChangesWholeCharactersAndKeepsInvalidBytes) {
    // äöü -> ÄÖÜ; ß has no one-to-one upper form; invalid bytes stay.
    std::string text = "\xC3\xA4\xC3\xB6\xC3\xBC stra\xC3\x9F"
                       "e " +
                       kEuro + kGrin +
                       "q a\xFF"
                       "b\xC3";
    EXPECT_EQ(upperCase(text), "\xC3\x84\xC3\x96\xC3\x9C STRA\xC3\x9F"
                               "E " +
                                   kEuro + kGrin +
                                   "Q A\xFF"
                                   "B\xC3");
}

TEST(TextHelpers, RemoveReplaceFindAndCutNeverSplitACharacter) {
    // ä is C3 A4, € is E2 82 AC: their inner bytes must survive removal of the same byte value.
    std::string text = "a" + kUmlaut + kEuro + "\xA4" + "b";
    removeChar(text, '\xA4');
    removeChar(text, '\xAC');
    EXPECT_EQ(text, "a" + kUmlaut + kEuro + "b");
    std::string commas = "1,2," + kEuro + ",3", inner = kEuro;
    EXPECT_EQ(replaceChar(commas, ',', ' '), 3);
    EXPECT_EQ(commas, "1 2 " + kEuro + " 3");
    EXPECT_EQ(replaceChar(inner, '\x82', 'x'), 0);

    const std::string hashes = "a#" + kUmlaut + "#"; // '#' at bytes 1 and 4
    EXPECT_EQ(findChar(hashes, '#', 2), 4);
    EXPECT_EQ(findChar(hashes, '#', 5), -1) << "start at the end";
    EXPECT_EQ(findChar(hashes, '\xA4'), -1) << "trail byte of a character";

    EXPECT_EQ(left(kUmlaut + kEuro, 1), "") << "a cut inside ä moves back";
    EXPECT_EQ(left(kUmlaut + kEuro, 4), kUmlaut) << "a cut inside € moves back";
    EXPECT_EQ(mid("abc", 1, 10), "bc");
    EXPECT_EQ(mid(kUmlaut + kEuro + kGrin, 2, 3), kEuro);
    EXPECT_EQ(mid(kGrin + "x", 4, 1), "x");
}

TEST(TextHelpers, CompareSortsByByteValue) {
    EXPECT_LT(compareText("B", "a"), 0) << "upper case sorts before lower case";
    EXPECT_LT(compareText("Z", kUmlaut), 0) << "multi-byte characters sort after ASCII";
    EXPECT_LT(compareText("AB", "ABC"), 0);
}

// Splitting into fields: see the example description file (AvlFileTest).
TEST(TextHelpers, PathPartsSplitAtTheLastSlashAndTheLastDot) {
    const Words paths[] = {
        // path, directory, file name, stem
        {"c.avl", "", "c.avl", "c"},
        {"/a/b/", "/a/b/", "", "/a/b/"},
        {"/a/c.tar.gz", "/a/", "c.tar.gz", "/a/c.tar"},
        {"/" + kUmlaut + "/" + kEuro + ".var", "/" + kUmlaut + "/", kEuro + ".var",
         "/" + kUmlaut + "/" + kEuro},
    };
    for (const Words& c : paths) {
        std::string d = "old", f = "old", s = "old";
        EXPECT_EQ((Words{c[0], pathDirectory(c[0], d), pathFileName(c[0], f), pathStem(c[0], s)}), c);
    }
}

TEST(TextHelpers, FormatDateTimeGivesDateOrTimeOfTheMoment) {
    const QDateTime local(QDate(2024, 3, 5), QTime(13, 47, 39));
    const DateTime moment{std::chrono::milliseconds(local.toMSecsSinceEpoch())};
    std::string date, time, both, bad;
    formatDateTime(moment, kDateOnly, date);
    formatDateTime(moment, kTimeOnly, time);
    EXPECT_NE(date.find("5"), std::string::npos) << date;
    EXPECT_EQ(date.find("47"), std::string::npos) << "date only: " << date;
    EXPECT_NE(time.find("39"), std::string::npos) << "with seconds: " << time;
    EXPECT_EQ(formatDateTime(moment, kDateTimeBoth, both), date + " " + time);
    EXPECT_EQ(formatDateTime(moment, 7, bad), "Invalid DateTime");
}

} // namespace
