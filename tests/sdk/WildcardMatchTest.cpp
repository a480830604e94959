// Tests of acutWcMatchEx: one row for each documented sign, alternatives, negation, case and UTF-8.
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
    {"XDIM", "DIM*", false, false},
    {"LUPREC", "LU??EC", false, true},
    {"LUPEC", "LU??EC", false, false},
    {"", "*", false, true},
    {"a", "", false, false},
    {"abcabc", "*b*c", false, true},
    {"abcabd", "*b*c", false, false},
    {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*a*a*c", false, false}, // no exponential backtracking
    {"A1", "@#", false, true},
    {"11", "@#", false, false},
    {"a b", "a.b", false, true},
    {"axb", "a.b", false, false},
    {"MAXSORT", "[K-N]*", false, true},
    {"DIMDSEP", "[ABC]*", false, false},
    {"ZOOM", "[~A-M]*", false, true},
    {"AREA", "[~A-M]*", false, false},
    {"]x", "[]]x", false, true},
    {"[x", "[x", false, true},
    {"-", "[a-]", false, true},
    {"a*b", "a`*b", false, true},
    {"axb", "a`*b", false, false},
    {"a,b", "a`,b", false, true},
    {"a`", "a`", false, true},
    {"LUNITS", "LU*,*MODE", false, true},
    {"ANGBASE", "LU*,*MODE", false, false},
    {"ANGBASE", "~*MODE", false, true},
    {"OSMODE", "[A-C]*,~*MODE", false, false},
    {"CLAYER", "[A-C]*,~*MODE", false, true},
    {"dimscale", "DIM*", false, false},
    {"dimscale", "DIM*", true, true},
    {"Luprec", "[k-m]UPREC", true, true},
    {"ÄRGER", "ärger", true, true},
    {"ÄRGER", "ärger", false, false},
    {"Maß", "Ma?", false, true},
    {"Maß", "Ma??", false, false},
    {"€1", "?#", false, true},
    {"über", "@ber", false, true},
    {"Grüße", "Gr[~ü]ße", false, false},
    {"\xff"
     "a",
     "?a", false, true}};

TEST(WildcardMatch, MatchesTheDocumentedSignsAndNeverANullTextOrPattern) {
    for (const WildcardCase& c : kCases)
        EXPECT_EQ(acutWcMatchEx(c.text, c.pattern, c.ignoreCase), c.matches)
            << "text \"" << c.text << "\" pattern \"" << c.pattern << "\" ignoreCase " << c.ignoreCase;
    EXPECT_FALSE(acutWcMatchEx(nullptr, "*", true));
    EXPECT_FALSE(acutWcMatchEx("a", nullptr, true));
}

} // namespace
