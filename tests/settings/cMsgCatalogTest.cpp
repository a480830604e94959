// Tests of the message catalog: loading, the alerts for missing keys, escapes, and the boxes.
#include "settings/cMsgCatalog.h"

#include "frame/cContext.h"

#include "ScriptedUiServices.h"

#include <hostsession.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

class RecordingScriptHost : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string& verb) override {
        ADD_FAILURE() << "unexpected question to the script: " << verb;
        return "cancel";
    }
    int driveModal(QDialog&) override { return 0; }
    std::vector<std::string> lines;
};

class MsgCatalog : public ::testing::Test {
protected:
    void SetUp() override {
        gContext.moduleBaseName = "VarDesk";
        auto& host = cadhost::HostSession::instance();
        host.setUiServices(&m_ui);
        host.setOutput([this](const std::string& text) { m_printed.push_back(text); });
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_dir = fs::temp_directory_path() / (std::string("msgcatalog_") + info->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
        m_file = (m_dir / "VarDesk.msg").string();
    }
    void TearDown() override {
        auto& host = cadhost::HostSession::instance();
        host.setOutput(nullptr);
        fs::remove_all(m_dir);
    }

    // Every key with the value "value of <key>", except those in skip; extra lines go first.
    // The tail is written behind the keys.
    void writeCatalog(const std::set<std::string>& skip = {}, const std::string& extra = {},
                      const std::string& section = "VarDesk", const std::string& tail = {}) const {
        std::ofstream out(m_file, std::ios::binary);
        out << extra << "[" << section << "]\n";
        for (const auto& entry : cMsgCatalog::Entries()) {
            if (!skip.count(entry.key))
                out << entry.key << "=value of " << entry.key << "\n";
        }
        out << tail;
    }

    // The alert texts, from the host's output and from the scripted services alike.
    std::vector<std::string> alerts() const {
        std::vector<std::string> result;
        auto collect = [&result](std::string line) {
            while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
                line.pop_back();
            const std::size_t at = line.find("ALERT: ");
            if (at != std::string::npos)
                result.push_back(line.substr(at + 7));
        };
        for (const auto& line : m_script.lines)
            collect(line);
        for (const auto& line : m_printed)
            collect(line);
        return result;
    }

    RecordingScriptHost m_script;
    kova::ScriptedUiServices m_ui{m_script};
    std::vector<std::string> m_printed;
    fs::path m_dir;
    std::string m_file;
};

TEST_F(MsgCatalog, FullFileGivesNoAlertAndEveryText) {
    writeCatalog();
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(m_file));
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(catalog.missingCount, 0);
    EXPECT_EQ(catalog.filePath, m_file);
    for (const auto& entry : cMsgCatalog::Entries())
        EXPECT_EQ(catalog.*entry.text, std::string("value of ") + entry.key) << entry.key;
}

TEST_F(MsgCatalog, KeysAreUniqueAndInTheirOrder) {
    const auto entries = cMsgCatalog::Entries();
    ASSERT_EQ(entries.size(), 142u);
    EXPECT_STREQ(entries.front().key, "RsVersionTitle");
    EXPECT_STREQ(entries.back().key, "TxSpawnNoMemory");
    const cMsgCatalog catalog;
    std::set<std::string> keys;
    std::set<const std::string*> fields;
    for (const auto& entry : entries) {
        EXPECT_TRUE(keys.insert(entry.key).second) << "key twice: " << entry.key;
        EXPECT_TRUE(fields.insert(&(catalog.*entry.text)).second) << "field twice: " << entry.key;
    }
}

TEST_F(MsgCatalog, OneMissingKeyGivesOneAlertNamingIt) {
    const cMsgCatalog defaults;
    for (const char* missing : {"RsVersionTitle", "TxHelpKeyNotFound1", "TxSpawnNoMemory"}) {
        m_script.lines.clear();
        m_printed.clear();
        writeCatalog({missing});
        cMsgCatalog catalog;
        EXPECT_TRUE(catalog.Load(m_file)) << missing;
        EXPECT_EQ(alerts(),
                  std::vector<std::string>{std::string("message text not found: key '") + missing + "'"});
        for (const auto& entry : cMsgCatalog::Entries()) {
            if (std::string(entry.key) == missing) {
                EXPECT_EQ(catalog.*entry.text, defaults.*entry.text) << "keeps its default";
            }
        }
    }
}

TEST_F(MsgCatalog, TwoMissingKeysNameTheFirstAndGiveTheCount) {
    // An empty value counts as missing, so a text cannot be emptied from the file.
    writeCatalog({"TxAbort", "MnFile"}, {}, "VarDesk", "TxAbort=\n");
    cMsgCatalog catalog;
    EXPECT_FALSE(catalog.Load(m_file));
    EXPECT_EQ(catalog.missingCount, 2);
    EXPECT_EQ(alerts(), (std::vector<std::string>{"message text not found: key 'MnFile'",
                                                  "2 message texts not found"}));
    EXPECT_EQ(catalog.TxAbort, "Abbruch");
    EXPECT_EQ(catalog.MnFile, "Datei");
}

TEST_F(MsgCatalog, MissingFileGivesBothAlertsAndTheGermanTexts) {
    cMsgCatalog catalog;
    EXPECT_FALSE(catalog.Load((m_dir / "none.msg").string()));
    EXPECT_EQ(alerts(), (std::vector<std::string>{"message text not found: key 'RsVersionTitle'",
                                                  "142 message texts not found"}));
    EXPECT_EQ(catalog.TiMsgBoxQuestion, "RT·VarDesk - Rückfrage");
    EXPECT_EQ(catalog.TxFileOpenFailure, " kann nicht geladen werden!");
    EXPECT_EQ(catalog.TxSpawnNoExe, "ist keine ausführbare Datei");
}

TEST_F(MsgCatalog, ReadsOnlyTheModulesSection) {
    writeCatalog({}, {}, "Other");
    cMsgCatalog catalog;
    EXPECT_FALSE(catalog.Load(m_file));
    EXPECT_EQ(catalog.RsVersionText1, "Version:");
    gContext.moduleBaseName = "Other";
    m_script.lines.clear();
    m_printed.clear();
    EXPECT_TRUE(catalog.Load(m_file)) << "the section follows the module base name";
    EXPECT_TRUE(alerts().empty());
    gContext.moduleBaseName = "VarDesk";
}

TEST_F(MsgCatalog, ReplacesEscapesInTheirOrder) {
    struct Row {
        const char* inFile;
        const char* expected;
    };
    const Row rows[] = {
        {"~ abc~", " abc"},
        {"a\\nb", "a\n\rb"},
        {"a\\tb", "a\tb"},
        {"\\\\n", "\\\n\r"},
        {"x~y~~z", "xyz"},
        {"\\~n", "\\n"},
        {"~  padded  ~", "  padded  "},
        {"~", ""},
    };
    for (const Row& row : rows) {
        writeCatalog({"TxAbort"}, {}, "VarDesk", "TxAbort=" + std::string(row.inFile) + "\n");
        cMsgCatalog catalog;
        EXPECT_TRUE(catalog.Load(m_file));
        EXPECT_EQ(catalog.TxAbort, row.expected) << "value in file: " << row.inFile;
    }
    EXPECT_TRUE(alerts().empty());
}

TEST_F(MsgCatalog, CutsValuesAt511Bytes) {
    const std::string exact(511, 'e');
    writeCatalog({"TxAbort", "MnFile"}, {}, "VarDesk", "TxAbort=" + exact + "\nMnFile=" + exact + "X\n");
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(m_file));
    EXPECT_EQ(catalog.TxAbort, exact);
    EXPECT_EQ(catalog.MnFile, exact) << "the 512th byte is cut";
}

TEST_F(MsgCatalog, GarbageLinesAreIgnored) {
    std::string garbage = "garbage before any section\n[VarDesk\n";
    garbage += std::string("\x00\xFF\xFE binary=\x01\x02\n", 14);
    garbage += std::string(100000, '=') + "\n";
    garbage += "[VarDesk]\nUnknownKey=whatever\n;TxAbort=commented out\n";
    writeCatalog({}, garbage);
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(m_file));
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(catalog.TxAbort, "value of TxAbort");
}

TEST_F(MsgCatalog, ShippedGermanCatalogHoldsTheDefaults) {
    const cMsgCatalog defaults;
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(VARDESK_SOURCE_DIR "/data/VarDesk.msg"));
    EXPECT_TRUE(alerts().empty()) << "every key stands in the file";
    for (const auto& entry : cMsgCatalog::Entries())
        EXPECT_EQ(catalog.*entry.text, defaults.*entry.text) << entry.key;
}

TEST_F(MsgCatalog, ShippedEnglishCatalogIsComplete) {
    const cMsgCatalog defaults;
    cMsgCatalog catalog;
    EXPECT_TRUE(catalog.Load(VARDESK_SOURCE_DIR "/data/VarDesk.en.msg"));
    EXPECT_TRUE(alerts().empty()) << "every key stands in the file";
    EXPECT_EQ(catalog.TiVarDesk, "System Variables");
    EXPECT_EQ(catalog.TxFileOpenFailure, " cannot be loaded!") << "keeps its leading blank";
    int translated = 0;
    for (const auto& entry : cMsgCatalog::Entries())
        translated += catalog.*entry.text != defaults.*entry.text;
    EXPECT_GT(translated, 120) << "most texts differ from the German ones";
}

TEST_F(MsgCatalog, BoxesCarryTitleKindAndText) {
    cMsgCatalog catalog;
    catalog.ShowInfoBox("Info text");
    catalog.ShowWarningBox("Warn\n\rtext");
    catalog.ShowErrorBox("Error text");
    EXPECT_EQ(m_script.lines, (std::vector<std::string>{"BOX info: RT·VarDesk - Hinweis: Info text",
                                                        "BOX warning: RT·VarDesk - Warnung: Warn\\ntext",
                                                        "BOX error: RT·VarDesk - Fehler: Error text"}));
}

} // namespace
