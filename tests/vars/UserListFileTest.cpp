// Tests of user list files: the written form, the free read grammar, round trips, failures.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/AvlFile.h"
#include "vars/TextHelpers.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <optional>

namespace {

using testhost::readFile;
using Lines = std::vector<std::string>;

std::string padded(const std::string& name, const std::string& value) {
    return formatText("%-25s#%s\n", name.c_str(), value.c_str());
}

// A list of host variables of every kind, read from the host, as the load step leaves it.
class UserListFile : public filekit::VarsTest {
protected:
    void SetUp() override {
        VarsTest::SetUp();
        const char* rows[][2] = {{"CLAYER", "+-"},  {"DWGNAME", "--"}, {"INSBASE", "++"}, {"LIMMAX", "++"},
                                 {"LTSCALE", "++"}, {"OSMODE", "+-"},  {"VIEWCTR", "-+"}};
        for (const auto& row : rows)
            ASSERT_TRUE(list.addVariable("1", row[0], row[1], "", 1)) << row[0];
        list.readAllFromHost();
    }

    cSysVar& var(const std::string& name) {
        cSysVar* v = list.findName(name);
        EXPECT_NE(v, nullptr) << name;
        return *v;
    }
    void edit(std::initializer_list<std::pair<const char*, const char*>> typed) {
        for (const auto& [name, text] : typed)
            ASSERT_TRUE(var(name).applyEditText(text)) << name;
    }
    // Writes content (unless empty) as the file name and reads it into the list: the count of
    // unknown names, or none when the file could not be read.
    std::optional<int> read(const std::string& content, const std::string& name = "liste.var") {
        if (!content.empty())
            writeFile(name, content);
        list.userDirectory = dir();
        list.userFileName = name;
        report.clear();
        const UserListRead result = list.readUserFile(report);
        outcome = result.failure;
        return result.isRead() ? std::optional<int>(result.unknownNames) : std::nullopt;
    }

    // Each record as "NAME=new text", the texts of the listed records made afresh.
    Lines newTexts() {
        Lines texts;
        for (cSysVar* v = list.first; v; v = v->next) {
            if (v->inUserList())
                v->refreshNewText();
            texts.push_back(v->name + "=" + v->newText);
        }
        return texts;
    }

    cSysVarList list;
    ReportList report;
    FileResult outcome; // of the last read
};

// The written form, the selection alone and a round trip under ',': see the scenario
// commands_saveopen.
TEST_F(UserListFile, ARecordWithoutANewValueWritesItsCurrentOne) {
    var("DWGNAME").setInUserList();
    ASSERT_TRUE(list.writeUserFile(dir(), "out.var", false));
    EXPECT_NE(readFile(folder / "out.var").find(padded("DWGNAME", var("DWGNAME").currentText)),
              std::string::npos);
}

TEST_F(UserListFile, RoundTripsUnderEachSeparator) {
    edit({{"OSMODE", "4133"}, {"INSBASE", "-1 2.5 1e3"}, {"LIMMAX", "10,20"}, {"CLAYER", "W\xC3\xA4nde"}});
    const Lines before = newTexts();
    for (const char separator : {' ', ';'}) {
        SCOPED_TRACE(std::string("separator '") + separator + "'");
        list.pointSeparator = separator;
        newTexts();
        ASSERT_TRUE(list.writeUserFile(dir(), "rund.var", false));
        list.clearAllNewValues();
        list.pointSeparator = ' ';
        EXPECT_EQ(read("", "rund.var"), 0);
        EXPECT_TRUE(report.empty());
        EXPECT_EQ(newTexts(), before);
    }
}

TEST_F(UserListFile, LongNamesAreNotCut) {
    const std::string names[] = {"ABCDEFGHIJKLMNOPQRSTUVWXY", "ABCDEFGHIJKLMNOPQRSTUVWXYZ1234"};
    cSysVarList own;
    for (const std::string& name : names) {
        ASSERT_TRUE(own.addVariable("1", name, "+-", "", 1));
        own.findName(name)->setInUserList();
    }
    ASSERT_TRUE(own.writeUserFile(dir(), "lang.var", false));
    EXPECT_EQ(readFile(folder / "lang.var"), names[0] + "#\n" + names[1] + "#\n");
    own.clearAllNewValues();
    own.userDirectory = dir();
    own.userFileName = "lang.var";
    EXPECT_TRUE(own.readUserFile(report).isRead());
    EXPECT_TRUE(own.findName(names[1])->inUserList());
}

TEST_F(UserListFile, ReaderGrammarIsFree) {
    const std::tuple<const char*, std::string, const char*, std::string> cases[] = {
        // what, content, variable, its new text
        {"wide padding and tabs", "  \tOSMODE \t\t          #   12   \n", "OSMODE", "12"},
        {"lower case name, no final line end", "osmode#12", "OSMODE", "12"},
        {"comment lines and empty lines", "; Liste\n\n;OSMODE#99\nOSMODE#12\n", "OSMODE", "12"},
        {"further fields are ignored", "OSMODE#12#13#14#15\n", "OSMODE", "12"},
        {";; belongs to the value", "CLAYER#\"a;;b\"\n", "CLAYER", "\"a;;b\""},
        {"a # in a string cuts it", "CLAYER#\"Wand#alt\"\n", "CLAYER", "\"Wand\""},
        {"quotes anywhere are removed", "CLAYER#\"A\"B\"\n", "CLAYER", "\"AB\""},
        {"a name alone gives an empty string", "CLAYER\n", "CLAYER", "\"\""},
        {"bytes are taken as they stand", "CLAYER#\"\xc3(\xe2\x82\"\n", "CLAYER", "\"\xc3(\xe2\x82\""},
        {"a point under any of the separators", "INSBASE#1;2:3\n", "INSBASE", "1.0000 2.0000 3.0000"},
        {"a read-only variable takes a value", "VIEWCTR#5 6 7\n", "VIEWCTR", "5.0000 6.0000 7.0000"},
    };
    for (const auto& [what, content, name, newText] : cases) {
        SCOPED_TRACE(what);
        list.clearAllNewValues();
        EXPECT_EQ(read(content), 0);
        EXPECT_TRUE(var(name).inUserList());
        EXPECT_EQ(var(name).newText, newText);
        EXPECT_TRUE(report.empty());
    }
}

TEST_F(UserListFile, ValuesThatDoNotParseKeepTheOldNewValue) {
    edit({{"LTSCALE", "2.5"}, {"INSBASE", "1 2 3"}, {"LIMMAX", "4 5"}});
    EXPECT_EQ(read("LTSCALE#abc\nINSBASE#1.0000#2.0000#3.0000\nLIMMAX\nOSMODE#\n"), 0);
    EXPECT_EQ(var("LTSCALE").newText, "2.5000") << "a record the file does not name keeps its new value";
    EXPECT_EQ(var("LTSCALE").newValue.rreal, 2.5);
    EXPECT_EQ(var("INSBASE").newText, "1.0000 2.0000 3.0000") << "a point saved under '#'";
    EXPECT_EQ(var("LIMMAX").newText, "4.0000 5.0000");
    EXPECT_EQ(var("OSMODE").newText, "0") << "an empty integer keeps its (zero) new value";
    for (const char* name : {"LTSCALE", "INSBASE", "LIMMAX", "OSMODE"})
        EXPECT_TRUE(var(name).inUserList()) << name;
}

TEST_F(UserListFile, UnknownNamesAreCountedAndARecordTheFileDoesNotNameIsLeftAlone) {
    edit({{"LTSCALE", "2.5"}});
    EXPECT_EQ(read("ALT1#1\nALT2#2\n\xff\xfe#3\nOSMODE#4\n"), 3);
    EXPECT_TRUE(report.empty());
    EXPECT_EQ(var("OSMODE").newText, "4");
    EXPECT_EQ(var("LTSCALE").newText, "2.5000") << "a record the file does not name keeps its new value";
}

// Broken files at large are the fuzz target's; a file that cannot be opened: see the scenario
// dialogs_files.
TEST_F(UserListFile, OverlongLineIsCutReportedAndReadingGoesOn) {
    EXPECT_EQ(read("CLAYER#" + std::string(100000, '7') + "\nOSMODE#5\n"), 0);
    EXPECT_EQ(report, ReportList{"I/O-Fehler beim Lesen in Zeile 1."});
    EXPECT_EQ(var("CLAYER").newText.size(), kMaxLineBytes - 7 + 2);
    EXPECT_EQ(var("OSMODE").newText, "5");
}

TEST_F(UserListFile, EmptyFileNamesNothingAndShowsNoBox) {
    writeFile("leer.var", "");
    EXPECT_EQ(read("", "leer.var"), 0);
    EXPECT_FALSE(list.hasUserEntries());
    EXPECT_EQ(outcome.box, FileResult::Box::None) << outcome.text;
}

// The alarm ends a reader that would hang.
TEST_F(UserListFile, AnythingButARegularFileCannotBeOpened) {
    std::filesystem::create_directory(folder / "ordner.var");
    ASSERT_EQ(mkfifo((folder / "fifo.var").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/urandom", folder / "zufall.var");
    for (const char* name : {"ordner.var", "fifo.var", "zufall.var"}) {
        alarm(10);
        EXPECT_EQ(read("", name), std::nullopt) << name;
        alarm(0);
        EXPECT_TRUE(report.empty()) << name;
        EXPECT_EQ(outcome.box, FileResult::Box::Error) << name;
        EXPECT_EQ(outcome.text, dir() + name + " kann nicht geladen werden!") << name;
    }
}

// A save that fails half way (a full disk, here the file size limit) leaves the old list whole
// and no stray file beside it.
TEST_F(UserListFile, FailedSaveKeepsTheOldList) {
    for (cSysVar* v = list.first; v; v = v->next)
        v->setInUserList();
    ASSERT_TRUE(list.writeUserFile(dir(), "alt.var", false));
    const std::string old = readFile(folder / "alt.var");
    ASSERT_GT(old.size(), 100u);
    edit({{"OSMODE", "37"}});

    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    rlimit small = saved;
    small.rlim_cur = 100;
    auto* const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const FileResult written = list.writeUserFile(dir(), "alt.var", false);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(written);
    EXPECT_EQ(written.text, "Fataler I/O-Fehler beim Schreiben von 'alt.var'.Abbruch");
    EXPECT_EQ(readFile(folder / "alt.var"), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "no file beside it";
}

TEST_F(UserListFile, WriteProtectedListIsNotReplaced) {
    var("OSMODE").setInUserList();
    ASSERT_TRUE(list.writeUserFile(dir(), "alt.var", false));
    const std::string old = readFile(folder / "alt.var");
    edit({{"OSMODE", "37"}});
    std::filesystem::permissions(folder / "alt.var", std::filesystem::perms::owner_read);
    const FileResult refused = list.writeUserFile(dir(), "alt.var", false);
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.text, dir() + "alt.var kann nicht geladen werden!");
    EXPECT_EQ(readFile(folder / "alt.var"), old);
}

} // namespace
