// Tests of acutWcMatchEx: a row or two for each documented sign, alternatives, negation, case and UTF-8.
#include "acutads.h"

#include <gtest/gtest.h>

namespace {

struct WildcardCase {
    const char* text;
    const char* pattern;
    bool ignoreCase;
    bool matches;
};

const WildcardCase kCases[] = {
    {"DIM", "DIM*", false, true},
    {"LUPREC", "LU??EC", false, true},
    {"LUPEC", "LU??EC", false, false},
    {"", "*", false, true},
    {"a", "", false, false},
    {"abcabc", "*b*c", false, true},
    {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*a*a*c", false, false}, // no exponential backtracking
    {"A1", "@#", false, true},
    {"11", "@#", false, false},
    {"a b", "a.b", false, true},
    {"MAXSORT", "[K-N]*", false, true},
    {"ZOOM", "[~A-M]*", false, true},
    {"AREA", "[~A-M]*", false, false},
    {"]x", "[]]x", false, true},
    {"[x", "[x", false, true},
    {"-", "[a-]", false, true},
    {"a*b", "a`*b", false, true},
    {"axb", "a`*b", false, false},
    {"LUNITS", "LU*,*MODE", false, true},
    {"ANGBASE", "~*MODE", false, true},
    {"OSMODE", "[A-C]*,~*MODE", false, false},
    {"CLAYER", "[A-C]*,~*MODE", false, true},
    {"dimscale", "DIM*", false, false},
    {"dimscale", "DIM*", true, true},
    {"ÄRGER", "ärger", true, true},
    {"ÄRGER", "ärger", false, false},
    {"Maß", "Ma?", false, true},
    {"€1", "?#", false, true},
    {"Grüße", "Gr[~ü]ße", false, false},
    {"\xff"
     "a",
     "?a", false, true}};

TEST(WildcardMatch, MatchesTheDocumentedSigns) {
    for (const WildcardCase& c : kCases)
        EXPECT_EQ(acutWcMatchEx(c.text, c.pattern, c.ignoreCase), c.matches)
            << "text \"" << c.text << "\" pattern \"" << c.pattern << "\" ignoreCase " << c.ignoreCase;
}

TEST(WildcardMatch, NullTextOrPatternNeverMatches) {
    EXPECT_FALSE(acutWcMatchEx(nullptr, "*", true));
    EXPECT_FALSE(acutWcMatchEx("a", nullptr, true));
}

} // namespace
