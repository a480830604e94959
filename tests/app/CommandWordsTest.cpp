// Splitting command lines into words, quoting, and the command line of cadhost.
#include "CommandWords.h"
#include "ConsoleOutput.h"
#include "HostStartup.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace cadhost;

namespace {

bool split(const std::string& line, std::vector<std::string>& words) {
    std::string error;
    const bool ok = splitWords(line, words, error);
    EXPECT_EQ(error.empty(), ok) << line << ": " << error;
    return ok;
}

TEST(SplitWords, SplitsAtBlanksAndTakesQuotesAndTheirEscapes) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"   \t ", {}},
        {"  OPEN\t\"mein plan.dwg\"  ", {"OPEN", "mein plan.dwg"}},
        {"text 1001 \"\"", {"text", "1001", ""}},
        {"text 1001 \"a \\\"b\\\" \\\\c\"", {"text", "1001", "a \"b\" \\c"}},
        {"OPEN C:\\plan.dwg", {"OPEN", "C:\\plan.dwg"}},
        {"text 1 \"a\\nb\"", {"text", "1", "a\\nb"}}};
    for (const auto& [line, expected] : cases) {
        std::vector<std::string> words;
        EXPECT_TRUE(split(line, words));
        EXPECT_EQ(words, expected) << line;
    }
}

TEST(SplitWords, RefusesAnOpenQuoteAndTextStuckToAClosingOne) {
    for (const char* line : {"OPEN \"plan.dwg", "text 1 \"a\\\"", "OPEN \"a\"b"}) {
        std::vector<std::string> words;
        EXPECT_FALSE(split(line, words)) << line;
    }
}

TEST(SplitWords, AQuotedTextSplitsBackWhole) {
    for (const std::string text : {"", "a \"b\"", "back\\slash\\", "\\\"", "Größe 1,5"}) {
        std::vector<std::string> words;
        EXPECT_TRUE(split("x " + quoted(text), words)) << text;
        EXPECT_EQ(words, (std::vector<std::string>{"x", text}));
    }
}

TEST(ConsoleOutput, LineAfterUnfinishedTextStartsAfresh) {
    std::string out;
    ConsoleOutput console([&](const std::string& t) { out += t; });
    console.line("Command: X");
    console.write("Modul geladen");
    console.line("Command: Y");
    console.write("eins\n");
    console.line("Command: Z");
    EXPECT_EQ(out, "Command: X\nModul geladen\nCommand: Y\neins\nCommand: Z\n");
}

TEST(ParseOptions, TakesEachOptionAndTheDrawings) {
    Options o;
    std::string error;
    ASSERT_TRUE(parseOptions(
        {"--batch", "a.scr", "--profile", "/p", "--exec", "--no-module", "x.dwg", "y.dwg"}, o, error));
    EXPECT_EQ(o.batchScript, "a.scr");
    EXPECT_EQ(o.profileDir, "/p");
    EXPECT_TRUE(o.execForReal);
    EXPECT_TRUE(o.noModule);
    EXPECT_EQ(o.drawings, (std::vector<std::string>{"x.dwg", "y.dwg"}));
}

TEST(ParseOptions, DoubleDashEndsTheOptions) {
    Options o;
    std::string error;
    ASSERT_TRUE(parseOptions({"--", "--batch"}, o, error));
    EXPECT_EQ(o.drawings, (std::vector<std::string>{"--batch"}));
    EXPECT_EQ(usageExit({"--", "--apply"}), kUsageExit);
}

TEST(ParseOptions, ApplyTakesAListAndDrawingsAndHasItsOwnUsageExit) {
    Options o;
    std::string error;
    ASSERT_TRUE(parseOptions({"--apply", "b.var", "x.dwg"}, o, error));
    EXPECT_EQ(o.applyList, "b.var");
    EXPECT_EQ(o.drawings, (std::vector<std::string>{"x.dwg"}));
    EXPECT_EQ(usageExit({"--apply"}), kApplyUsageExit);
}

TEST(ParseOptions, BadCommandLinesSayWhy) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"--profile"}, "--profile needs a value"},
        {{"--frob"}, "Unknown option --frob"},
        {{"--apply", "b.var"}, "--apply needs at least one drawing"},
        {{"--apply", "b.var", "--batch", "s.scr", "x.dwg"}, "cannot go together"}};
    for (const auto& [args, why] : cases) {
        Options o;
        std::string error;
        EXPECT_FALSE(parseOptions(args, o, error)) << args[0];
        EXPECT_NE(error.find(why), std::string::npos) << args[0] << ": " << error;
    }
}

TEST(Folders, ProfileFollowsXdgThenHome) {
    const char* oldXdg = std::getenv("XDG_CONFIG_HOME");
    const std::string savedXdg = oldXdg ? oldXdg : "";
    const std::string savedHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("XDG_CONFIG_HOME", "/xdg", 1);
    EXPECT_EQ(defaultProfileDir(), "/xdg/cadhost");
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", "/home/anna", 1);
    EXPECT_EQ(defaultProfileDir(), "/home/anna/.config/cadhost");
    setenv("HOME", savedHome.c_str(), 1);
    if (oldXdg)
        setenv("XDG_CONFIG_HOME", savedXdg.c_str(), 1);
}

} // namespace
