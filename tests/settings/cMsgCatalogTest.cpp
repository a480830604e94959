// Tests of the message catalog: loading, the alerts for missing keys, escapes. Its boxes with their
// titles: see the scenarios.
#include "../frame/TestHost.h"

#include "settings/cMsgCatalog.h"

#include <set>

namespace {

using Texts = std::vector<std::string>;

class MsgCatalog : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        file = (folder / "VarDesk.msg").string();
    }

    // Every key with the value "value of <key>", except those in skip; extra lines go first,
    // the tail behind the keys.
    void writeCatalog(const std::set<std::string>& skip = {}, const std::string& tail = {},
                      const std::string& extra = {}, const std::string& section = "VarDesk") const {
        std::ofstream out(file, std::ios::binary);
        out << extra << "[" << section << "]\n";
        for (const auto& entry : cMsgCatalog::Entries())
            if (!skip.count(entry.key))
                out << entry.key << "=value of " << entry.key << "\n";
        out << tail;
    }

    // The alert texts shown since the last call.
    Texts alerts() {
        Texts result;
        for (const std::string& line : uiLines())
            if (line.rfind("ALERT: ", 0) == 0)
                result.push_back(line.substr(7));
        testhost::capture().script.lines.clear();
        return result;
    }

    std::string file;
};

TEST_F(MsgCatalog, FullFileGivesNoAlertAndEveryTextUnderItsOwnKey) {
    writeCatalog();
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(file));
    EXPECT_TRUE(alerts().empty());
    // A field that two keys fill would hold the later key's text.
    for (const auto& entry : cMsgCatalog::Entries())
        EXPECT_EQ(catalog.*entry.text, std::string("value of ") + entry.key) << entry.key;
}

TEST_F(MsgCatalog, MissingKeyKeepsItsDefaultAndIsNamedInAnAlert) {
    writeCatalog({"TxSpawnNoMemory"});
    cMsgCatalog one;
    EXPECT_TRUE(one.Load(file));
    EXPECT_EQ(alerts(), Texts{"message text not found: key 'TxSpawnNoMemory'"});
    EXPECT_EQ(one.TxSpawnNoMemory, cMsgCatalog().TxSpawnNoMemory);
}

// So a text cannot be emptied from the file. From two missing keys on, the first is named and the
// count follows.
TEST_F(MsgCatalog, EmptyValueCountsAsMissing) {
    writeCatalog({"TxAbort", "MnFile"}, "TxAbort=\n");
    cMsgCatalog two;
    EXPECT_FALSE(two.Load(file));
    EXPECT_EQ(two.missingCount, 2);
    EXPECT_EQ(alerts(), (Texts{"message text not found: key 'MnFile'", "2 message texts not found"}));
    EXPECT_EQ(two.TxAbort, cMsgCatalog().TxAbort);
    EXPECT_EQ(two.MnFile, cMsgCatalog().MnFile);
}

TEST_F(MsgCatalog, MissingFileOrSectionKeepsEveryDefault) {
    const cMsgCatalog defaults;
    cMsgCatalog none;
    EXPECT_FALSE(none.Load((folder / "none.msg").string()));
    EXPECT_EQ(alerts(), (Texts{"message text not found: key 'RsVersionTitle'",
                               std::to_string(cMsgCatalog::Entries().size()) + " message texts not found"}));
    EXPECT_EQ(none.TiMsgBoxQuestion, defaults.TiMsgBoxQuestion);

    writeCatalog();
    cMsgCatalog other;
    other.section = "Other"; // the section follows the module base name
    EXPECT_FALSE(other.Load(file));
    EXPECT_EQ(other.missingCount, static_cast<int>(cMsgCatalog::Entries().size()));
    EXPECT_EQ(other.TxAbort, defaults.TxAbort);
}

TEST_F(MsgCatalog, ReplacesEscapesInTheirOrder) {
    const std::pair<const char*, const char*> rows[] = {
        {"a\\nb", "a\n\rb"},
        {"a\\tb", "a\tb"},
        {"\\\\n", "\\\n\r"},
        {"\\~n", "\\n"}, // the tildes go last
        {"~  padded  ~", "  padded  "},
    };
    for (const auto& [inFile, expected] : rows) {
        writeCatalog({"TxAbort"}, "TxAbort=" + std::string(inFile) + "\n");
        cMsgCatalog catalog;
        EXPECT_TRUE(catalog.Load(file));
        EXPECT_EQ(catalog.TxAbort, expected) << "value in file: " << inFile;
    }
    EXPECT_TRUE(alerts().empty());
}

// Binary and huge files: see the fuzz target.
TEST_F(MsgCatalog, GarbageLinesAreIgnoredAndValuesCutAt511Bytes) {
    std::string garbage = "garbage before any section\n[VarDesk\n";
    garbage += "[VarDesk]\nUnknownKey=whatever\n;TxAbort=commented out\n";
    const std::string exact(511, 'e');
    writeCatalog({"TxAbort", "MnFile"}, "TxAbort=" + exact + "\nMnFile=" + exact + "X\n", garbage);
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(file));
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(catalog.TxAbort, exact);
    EXPECT_EQ(catalog.MnFile, exact) << "the 512th byte is cut";
}

// The German catalog: every scenario loads it, and a missing key would print its alert there.
TEST_F(MsgCatalog, ShippedEnglishCatalogIsCompleteAndTranslated) {
    const cMsgCatalog defaults;
    cMsgCatalog english;
    EXPECT_TRUE(english.Load(VARDESK_SOURCE_DIR "/data/VarDesk.en.msg"));
    EXPECT_TRUE(alerts().empty());
    int translated = 0;
    for (const auto& entry : cMsgCatalog::Entries())
        translated += english.*entry.text != defaults.*entry.text;
    EXPECT_GT(translated, 120) << "most English texts differ from the German ones";
}

} // namespace
