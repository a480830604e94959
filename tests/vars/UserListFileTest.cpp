// Tests of user list files: the written form, the free read grammar, round trips, failures, boxes.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/AvlFile.h"
#include "vars/TextHelpers.h"
#include "vars/UserListFile.h"

namespace {

using filekit::linesOf;
using filekit::readFile;
using Lines = std::vector<std::string>;

std::string padded(const std::string& name, const std::string& value) {
    return formatText("%-25s#%s", name.c_str(), value.c_str());
}

// A list of host variables of every kind, read from the host, as the load step leaves it.
class UserListFile : public filekit::FileTestOf<filekit::HostFixture> {
protected:
    void SetUp() override {
        FileTestOf::SetUp();
        const char* rows[][2] = {{"CLAYER", "+-"},  {"DWGNAME", "--"}, {"INSBASE", "++"}, {"LIMMAX", "++"},
                                 {"LTSCALE", "++"}, {"OSMODE", "+-"},  {"VIEWCTR", "-+"}};
        int line = 1;
        for (const auto& row : rows)
            ASSERT_TRUE(list.addVariable("1", row[0], row[1], "", line++)) << row[0];
        list.readAllFromHost();
        for (const cSysVar* v = list.first; v; v = v->next)
            ASSERT_FALSE(v->isUnreadable()) << v->name << " is not in the host's table";
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
    // Writes content as "liste.var" and reads it into the list.
    int read(const std::string& content, const std::string& name = "liste.var") {
        if (!content.empty())
            writeFile(name, content);
        list.userDirectory = folder();
        list.userFileName = name;
        return list.readUserFile(report);
    }

    cSysVarList list;
    ReportList report;
};

TEST_F(UserListFile, WritesChosenRecordsPaddedInNameOrderAndReadsThemBack) {
    edit({{"OSMODE", "4133"}, {"INSBASE", "-1 2.5 1e3"}, {"LIMMAX", "10,20"}, {"CLAYER", "W\xC3\xA4nde"}});
    var("DWGNAME").setInUserList(); // no new value: the current one is written
    ASSERT_TRUE(list.writeUserFile(folder(), "out.var", false));
    EXPECT_EQ(
        linesOf(readFile(dir / "out.var")),
        (Lines{"CLAYER                   #\"W\xC3\xA4nde\"", padded("DWGNAME", var("DWGNAME").currentText),
               padded("INSBASE", "-1.0000 2.5000 1000.0000"), padded("LIMMAX", "10.0000 20.0000"),
               padded("OSMODE", "4133")}));
    EXPECT_TRUE(boxes().empty());
    var("OSMODE").setSelected();
    ASSERT_TRUE(list.writeUserFile(folder(), "sel.var", true));
    EXPECT_EQ(readFile(dir / "sel.var"), padded("OSMODE", "4133") + "\n") << "the selection alone";

    var("DWGNAME").clearInUserList();
    auto newTexts = [this] {
        std::vector<std::pair<std::string, std::string>> texts;
        for (cSysVar* v = list.first; v; v = v->next) {
            if (v->inUserList())
                v->refreshNewText();
            texts.emplace_back(v->name, v->newText);
        }
        return texts;
    };
    const auto before = newTexts();
    for (const char separator : {' ', ',', ';'}) {
        SCOPED_TRACE(std::string("separator '") + separator + "'");
        list.pointSeparator = separator;
        newTexts();
        ASSERT_TRUE(list.writeUserFile(folder(), "rund.var", false));
        list.clearAllNewValues();
        list.pointSeparator = ' ';
        EXPECT_EQ(read("", "rund.var"), 1);
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
    ASSERT_TRUE(own.writeUserFile(folder(), "lang.var", false));
    EXPECT_EQ(readFile(dir / "lang.var"), names[0] + "#\n" + names[1] + "#\n");
    own.clearAllNewValues();
    own.userDirectory = folder();
    own.userFileName = "lang.var";
    EXPECT_EQ(own.readUserFile(report), 1);
    EXPECT_TRUE(own.findName(names[1])->inUserList());
}

TEST_F(UserListFile, ReaderGrammarIsFree) {
    struct Case {
        const char* name;
        std::string content;
        const char* var;
        std::string newText;
    };
    const Case cases[] = {
        {"wide padding and tabs", "  \tOSMODE \t\t          #   12   \n", "OSMODE", "12"},
        {"lower case name", "osmode#12\n", "OSMODE", "12"},
        {"no final line end", "OSMODE#12", "OSMODE", "12"},
        {"comment lines and empty lines", "; Liste\n\n;OSMODE#99\nOSMODE#12\n", "OSMODE", "12"},
        {"further fields are ignored", "OSMODE#12#13#14#15\n", "OSMODE", "12"},
        {";; belongs to the value", "CLAYER#\"a;;b\"\n", "CLAYER", "\"a;;b\""},
        {"a # in a string cuts it", "CLAYER#\"Wand#alt\"\n", "CLAYER", "\"Wand\""},
        {"quotes anywhere are removed", "CLAYER#\"A\"B\"\n", "CLAYER", "\"AB\""},
        {"a name alone gives an empty string", "CLAYER\n", "CLAYER", "\"\""},
        {"a point under any of the separators", "INSBASE#1;2:3\n", "INSBASE", "1.0000 2.0000 3.0000"},
        {"a read-only variable takes a value", "VIEWCTR#5 6 7\n", "VIEWCTR", "5.0000 6.0000 7.0000"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        list.clearAllNewValues();
        report.clear();
        EXPECT_EQ(read(c.content), 1);
        EXPECT_TRUE(var(c.var).inUserList());
        EXPECT_EQ(var(c.var).newText, c.newText);
        EXPECT_TRUE(report.empty());
    }
}

TEST_F(UserListFile, ValuesThatDoNotParseKeepTheOldNewValueAndUnknownNamesAreCounted) {
    edit({{"LTSCALE", "2.5"}, {"INSBASE", "1 2 3"}, {"LIMMAX", "4 5"}});
    EXPECT_EQ(read("LTSCALE#abc\nINSBASE#1.0000#2.0000#3.0000\nLIMMAX\nOSMODE#\n"), 1);
    EXPECT_EQ(var("LTSCALE").newText, "2.5000");
    EXPECT_EQ(var("LTSCALE").newValue.rreal, 2.5);
    EXPECT_EQ(var("INSBASE").newText, "1.0000 2.0000 3.0000") << "a point saved under '#'";
    EXPECT_EQ(var("LIMMAX").newText, "4.0000 5.0000");
    EXPECT_EQ(var("OSMODE").newText, "0") << "an empty integer keeps its (zero) new value";
    for (const char* name : {"LTSCALE", "INSBASE", "LIMMAX", "OSMODE"})
        EXPECT_TRUE(var(name).inUserList()) << name;

    list.clearAllNewValues();
    EXPECT_EQ(read("ALT1#1\nALT2#2\nALT3#3\nOSMODE#4\n"), 4) << "one more than the unknown names";
    EXPECT_TRUE(report.empty());
    EXPECT_EQ(var("OSMODE").newText, "4");
    EXPECT_TRUE(var("LTSCALE").newText.empty()) << "a record the file does not name is left alone";
}

TEST_F(UserListFile, BadFilesAreReadWithoutHarm) {
    EXPECT_EQ(read("CLAYER#" + std::string(100000, '7') + "\nOSMODE#5\n"), 1);
    EXPECT_EQ(report, ReportList{"I/O-Fehler beim Lesen in Zeile 1."});
    EXPECT_EQ(var("CLAYER").newText.size(), kMaxLineBytes - 7 + 2);
    EXPECT_EQ(var("OSMODE").newText, "5");
    EXPECT_GE(read(filekit::randomBytes(99, 100000) + "\nOSMODE#7"), 1);
    EXPECT_EQ(var("OSMODE").newText, "7");
    report.clear();
    EXPECT_EQ(read("\xff\xfe#1\nCLAYER#\"\xc3(\xe2\x82\"\nOSMODE#\xf0\x9f\n"), 2) << "one unknown name";
    EXPECT_EQ(var("CLAYER").newText, "\"\xc3(\xe2\x82\"") << "bytes are taken as they stand";
    EXPECT_TRUE(report.empty());
    writeFile("leer.var", "");
    list.clearAllNewValues();
    EXPECT_EQ(read("", "leer.var"), 1);
    EXPECT_FALSE(list.hasUserEntries());
    EXPECT_TRUE(boxes().empty());
}

// A file that cannot be opened or made: see the file commands' tests.
TEST_F(UserListFile, FatalReadAndWriteErrorsShowTheirBox) {
    const std::string box = "BOX error: RT·VarDesk - Fehler: ";
    filekit::fs::create_directory(dir / "ordner.var");
    EXPECT_EQ(read("", "ordner.var"), 0);
    EXPECT_EQ(report, ReportList{"Fataler I/O-Fehler beim Lesen von 'ordner.var'."});
    EXPECT_EQ(boxes(), Lines{box + "Fataler I/O-Fehler beim Lesen von 'ordner.var'.Abbruch"});

    if (!filekit::fs::exists("/dev/full"))
        GTEST_SKIP() << "no /dev/full";
    boxes().clear();
    edit({{"OSMODE", "37"}});
    EXPECT_FALSE(list.writeUserFile("/dev/", "full", false));
    EXPECT_EQ(boxes(), Lines{box + "Fataler I/O-Fehler beim Schreiben von 'full'.Abbruch"});
}

TEST_F(UserListFile, ResultOfAReadBecomesItsBoxes) {
    list.userDirectory = "/listen/";
    list.userFileName = "a.var";
    const std::string errorBox =
        "BOX error: RT·VarDesk - Fehler: Es sind Fehler beim Lesen von /listen/a.var aufgetreten.";
    const std::string onceBox = "BOX warning: RT·VarDesk - Warnung: Eine Variablen konnte nicht "
                                "in die aktuelle AutoCAD-Variablenliste eingesetzt werden.";
    const std::string manyBox = "BOX warning: RT·VarDesk - Warnung: 4 Variablen konnten nicht in "
                                "die aktuelle AutoCAD-Variablenliste eingesetzt werden.";
    const std::tuple<int, bool, Lines> cases[] = {
        // result, with report lines, boxes
        {0, true, {}},
        {1, false, {}},
        {1, true, {errorBox}},
        {2, false, {onceBox}},
        {5, true, {errorBox, manyBox}},
    };
    for (const auto& [result, reported, expected] : cases) {
        boxes().clear();
        showUserFileResult(result, reported ? ReportList{"x"} : ReportList{}, list);
        EXPECT_EQ(boxes(), expected) << "result " << result << (reported ? " with" : " without")
                                     << " report lines";
    }
}

} // namespace
