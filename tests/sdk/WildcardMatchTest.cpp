// Tests of acutWcMatchEx: every documented sign, alternatives, negation, case and UTF-8.
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
    // runs and single characters
    {"DIMSCALE", "DIM*", false, true},
    {"DIM", "DIM*", false, true},
    {"XDIM", "DIM*", false, false},
    {"LUPREC", "LU??EC", false, true},
    {"LUPEC", "LU??EC", false, false},
    {"abc", "*", false, true},
    {"", "*", false, true},
    {"", "", false, true},
    {"a", "", false, false},
    {"abcabc", "*b*c", false, true},
    {"abcabd", "*b*c", false, false},
    {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*a*a*c", false, false},
    // digits, letters, others
    {"SURFTAB1", "SURFTAB#", false, true},
    {"SURFTABX", "SURFTAB#", false, false},
    {"A1", "@#", false, true},
    {"11", "@#", false, false},
    {"a-b", "a.b", false, true},
    {"axb", "a.b", false, false},
    {"a b", "a.b", false, true},
    // bracket sets, ranges, negated sets
    {"CLAYER", "[ABC]*", false, true},
    {"DIMDSEP", "[ABC]*", false, false},
    {"MAXSORT", "[K-N]*", false, true},
    {"ZOOM", "[~A-M]*", false, true},
    {"AREA", "[~A-M]*", false, false},
    {"]x", "[]]x", false, true},
    {"[x", "[x", false, true},
    {"-", "[a-]", false, true},
    // escape
    {"a*b", "a`*b", false, true},
    {"axb", "a`*b", false, false},
    {"a,b", "a`,b", false, true},
    {"a#", "a`#", false, true},
    {"a`", "a`", false, true},
    // alternatives and negation
    {"OSMODE", "LU*,*MODE", false, true},
    {"LUNITS", "LU*,*MODE", false, true},
    {"ANGBASE", "LU*,*MODE", false, false},
    {"ANGBASE", "~*MODE", false, true},
    {"OSMODE", "~*MODE", false, false},
    {"OSMODE", "[A-C]*,~*MODE", false, false},
    {"CLAYER", "[A-C]*,~*MODE", false, true},
    // case
    {"dimscale", "DIM*", false, false},
    {"dimscale", "DIM*", true, true},
    {"Luprec", "[k-m]UPREC", true, true},
    {"ÄRGER", "ärger", true, true},
    {"ÄRGER", "ärger", false, false},
    // UTF-8: one sign takes one whole character
    {"Maß", "Ma?", false, true},
    {"Maß", "Ma??", false, false},
    {"€1", "?#", false, true},
    {"über", "@ber", false, true},
    {"Grüße", "Gr[ü]ße", false, true},
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
