// Tests of reading the AVL description file: line preparation, the ten errors, whole-file failures.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/AvlFile.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Lines = std::vector<std::string>;

class AvlFile : public filekit::VarsTest {
protected:
    // Empties list and report, writes content as the file name and reads it into list; false
    // when the read failed.
    bool load(const std::string& content, const std::string& name = "test.avl") {
        list.clearAll();
        report.clear();
        if (name == "test.avl")
            writeFile(name, content);
        list.avlDirectory = dir();
        list.avlFileName = name;
        result = list.readAvlFile(report);
        return static_cast<bool>(result);
    }
    // Each record as "NAME=description", or "NAME theme ro|rw drawing|global [description] line".
    Lines records(bool full = false) const {
        Lines out;
        for (const cSysVar* v = list.first; v; v = v->next)
            out.push_back(!full ? v->name + "=" + v->description
                                : v->name + " " + std::to_string(v->themeIndex) +
                                      (v->isReadOnly() ? " ro" : " rw") +
                                      (v->isDrawingSpecific() ? " drawing [" : " global [") + v->description +
                                      "] " + std::to_string(v->sourceLine));
        return out;
    }
    std::string emptyListLine() const { return dir() + "test.avl " + gMsg.TxNoAcadVar; }

    cSysVarList list;
    ReportList report;
    FileResult result; // of the last load
};

// The example description file: each line in this order gives the outcome noted beside it.
TEST_F(AvlFile, ExampleFileGivesItsRecordsThemesAndReportLines) {
    const char* lines[] = {
        "; Beispiel einer Variablenliste",         // 1 comment
        "",                                        // 2 skipped
        "0#Bemaßung#3",                            // 3 theme
        "3#BEISPIEL#+-#Erste Variable ;; Vermerk", // 4
        "3 # zweite # -+ # Zweite Variable",       // 5
        "7#DRITTE#++#Ohne Thema",                  // 6
        "3#VIERTE",                                // 7 error 1
        "3#VIERTE#+-#Text#mehr",                   // 8 error 2
        "3#VIERTE#+-",                             // 9 error 3
        "0#Neu#0",                                 // 10 error 3
        "0#Neu#drei",                              // 11 error 3
        "3#VIERTE#+#Text",                         // 12 error 4
        "3#VIERTE#x-#Text",                        // 13 error 4
        "0#VIERTE#+-#Text",                        // 14 error 4
        "3#BEISPIEL#--#Noch einmal",               // 15 error 5
        "0##9",                                    // 16 error 7
        "0#Anderes#3",                             // 17 error 8
        "0#Bemaßung#9",                            // 18 error 9
    };
    std::string content;
    for (const char* line : lines)
        content += std::string(line) + "\n";
    EXPECT_TRUE(load(content));
    EXPECT_EQ(records(true),
              (Lines{"BEISPIEL 3 rw global [Erste Variable] 4", "DRITTE 7 rw drawing [Ohne Thema] 6",
                     "ZWEITE 3 ro drawing [Zweite Variable] 5"}));
    std::string title;
    EXPECT_EQ(list.themes.themeNameOf(title, 3), 3);
    EXPECT_EQ(title, "Bemaßung");
    EXPECT_EQ(list.themes.first->next, nullptr) << "one theme";
    EXPECT_EQ(report, (ReportList{
                          "Fehler 1: zu wenig Argumente in Zeile 7   : 3#VIERTE",
                          "Fehler 2: zu viele Argumente in Zeile 8   : 3#VIERTE#+-#Text#mehr",
                          "Fehler 3: Falsches Format für Thema in Zeile 9   : 3#VIERTE#+-",
                          "Fehler 3: Falsches Format für Thema in Zeile 10  : 0#Neu#0",
                          "Fehler 3: Falsches Format für Thema in Zeile 11  : 0#Neu#drei",
                          "Fehler 4: Falsches Format für Variable in Zeile 12  : 3#VIERTE#+#Text",
                          "Fehler 4: Falsches Format für Variable in Zeile 13  : 3#VIERTE#x-#Text",
                          "Fehler 4: Falsches Format für Variable in Zeile 14  : 0#VIERTE#+-#Text",
                          "Fehler 5: Variable bereits vorhanden in Zeile 15  : 3#BEISPIEL#--#Noch einmal",
                          "Fehler 7: Thema nicht benannt in Zeile 16  : 0##9",
                          "Fehler 8: Index bereits vorhanden in Zeile 17  : 0#Anderes#3",
                          "Fehler 9: Thema bereits vorhanden in Zeile 18  : 0#Bemaßung#9",
                      }));
    EXPECT_EQ(result.box, FileResult::Box::None) << result.text;
}

TEST_F(AvlFile, LinesAreTrimmedCutAtADoubleSemicolonAndCountedAsInTheFile) {
    const std::string e1 = "Fehler 1: zu wenig Argumente in Zeile ";
    struct Case {
        const char* name;
        std::string content;
        const char* record; // "NAME=description" of the one record read
        std::string report; // the report line of a bad line, if any
    };
    const Case cases[] = {
        {"no line end behind the last line", "0#T#1\n1#A#+-#a", "A=a", ""},
        {"carriage returns are trimmed", "0#T#1\r\n1#A#+-#a\r\n", "A=a", ""},
        {"comments, blank and empty lines are counted", ";a\n  ; b\n\n \t \n3#X\n1#A#+-#a\n", "A=a",
         e1 + "5   : 3#X"},
        {";; cuts the description, ; alone does not", "1#A#+-#x ; y ;; Vermerk # mehr\n", "A=x ; y", ""},
        {"the report line is cut but not trimmed again", "1#A ;; x\n1#B#+-#b\n", "B=b", e1 + "1   : 1#A "},
        {"a name in lower case, then in upper case", "1#abc#+-#x\n1#ABC#--#y\n", "ABC=x",
         "Fehler 5: Variable bereits vorhanden in Zeile 2   : 1#ABC#--#y"},
        {"the line number takes four columns and more", std::string(12345, '\n') + "x\n1#A#+-#a\n", "A=a",
         e1 + "12346: x"},
        {"names come out upper case with umlauts", "1#größe#+-#g\n", "GRÖßE=g", ""},
        {"invalid UTF-8 is kept as it stands", "1#\xff\xfe\x61\x62#+-#\xc3(\n", "\xff\xfe\x41\x42=\xc3(", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(load(c.content));
        EXPECT_EQ(records(), Lines{c.record});
        EXPECT_EQ(report, c.report.empty() ? ReportList{} : ReportList{c.report});
    }
}

TEST_F(AvlFile, FileWithoutVariablesWarnsAndKeepsItsThemes) {
    for (const std::string content : {"", "0#Thema#1\n"}) {
        SCOPED_TRACE("content: " + content);
        EXPECT_TRUE(load(content));
        EXPECT_EQ(list.first, nullptr);
        EXPECT_EQ(report, ReportList{emptyListLine()});
        EXPECT_EQ(result.box, FileResult::Box::Warning);
        EXPECT_EQ(result.text, emptyListLine());
    }
    EXPECT_TRUE(list.themes.hasThemeName("Thema"));
}

// Only a regular file is read: a folder, a device that never ends (/dev/zero) or one that never
// begins (a FIFO without a writer) is a file that cannot be opened. The alarm ends a reader that
// would hang, so that the test fails instead.
TEST_F(AvlFile, AnythingButARegularFileCannotBeOpened) {
    std::filesystem::create_directory(folder / "ordner.avl");
    ASSERT_EQ(mkfifo((folder / "fifo.avl").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder / "zero.avl");
    for (const char* name : {"ordner.avl", "fifo.avl", "zero.avl"}) {
        alarm(10);
        EXPECT_FALSE(load("", name)) << name;
        alarm(0);
        EXPECT_TRUE(report.empty()) << name;
        EXPECT_EQ(result.box, FileResult::Box::Error) << name;
        EXPECT_EQ(result.text, dir() + name + "  kann nicht geladen werden!") << name;
    }
}

TEST_F(AvlFile, OverlongLinesAreCutReportedAndReadingGoesOn) {
    const std::string head = "1#A#+-#";
    for (const std::size_t length : {kMaxLineBytes, kMaxLineBytes + 1}) {
        SCOPED_TRACE(testing::Message() << "line of " << length << " bytes");
        EXPECT_TRUE(load("0#T#1\n" + head + std::string(length - head.size(), 'x') + "\n1#B#+-#b\n"));
        ASSERT_NE(list.findName("A"), nullptr);
        EXPECT_EQ(list.findName("A")->description.size(), kMaxLineBytes - head.size());
        ASSERT_NE(list.findName("B"), nullptr) << "the line behind the long one is lost";
        EXPECT_EQ(list.findName("B")->sourceLine, 3);
        EXPECT_EQ(report,
                  length > kMaxLineBytes ? ReportList{"I/O-Fehler beim Lesen in Zeile 2."} : ReportList{});
    }
}

} // namespace
