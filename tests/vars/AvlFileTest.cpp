// Tests of reading the AVL description file: line preparation, the ten errors, whole-file failures.
#include "VarsTestKit.h"

#include "settings/cMsgCatalog.h"
#include "vars/AvlFile.h"

#include <utility>

namespace {

using filekit::FileTest;
using Themes = std::vector<std::pair<std::string, int>>;
using Lines = std::vector<std::string>;

// Each record as "NAME theme ro|rw drawing|global [description] line".
std::vector<std::string> recordsOf(const cSysVarList& list) {
    std::vector<std::string> out;
    for (const cSysVar* v = list.first; v; v = v->next)
        out.push_back(v->name + " " + std::to_string(v->themeIndex) + (v->isReadOnly() ? " ro" : " rw") +
                      (v->isDrawingSpecific() ? " drawing [" : " global [") + v->description + "] " +
                      std::to_string(v->sourceLine));
    return out;
}

Themes themesOf(const cSysVarList& list) {
    Themes out;
    for (const cTheme* t = list.themes.first; t; t = t->next)
        out.emplace_back(t->name, t->index);
    return out;
}

class AvlFile : public FileTest {
protected:
    // Empties list and report, writes content as the file name and reads it into list.
    bool load(const std::string& content, const std::string& name = "test.avl") {
        list.clearAll();
        report.clear();
        if (!content.empty() || name == "test.avl")
            writeFile(name, content);
        list.avlDirectory = folder();
        list.avlFileName = name;
        return list.readAvlFile(report);
    }
    std::string emptyListLine() const { return folder() + "test.avl " + gMsg.TxNoAcadVar; }

    cSysVarList list;
    ReportList report;
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
    EXPECT_EQ(recordsOf(list),
              (Lines{"BEISPIEL 3 rw global [Erste Variable] 4", "DRITTE 7 rw drawing [Ohne Thema] 6",
                     "ZWEITE 3 ro drawing [Zweite Variable] 5"}));
    EXPECT_EQ(themesOf(list), (Themes{{"Bemaßung", 3}}));
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
    EXPECT_TRUE(boxes().empty()) << boxes().front();
}

TEST_F(AvlFile, LinePreparationAndSingleLineErrors) {
    const std::string e1 = "Fehler 1: zu wenig Argumente in Zeile ";
    const std::string e4 = "Fehler 4: Falsches Format für Variable in Zeile ";
    struct Case {
        const char* name;
        std::string content;
        std::string records; // "NAME=description" in chain order, joined by "|"
        std::string report;  // the report lines of single bad lines, joined by "|"
    };
    const Case cases[] = {
        {"no line end behind the last line", "0#T#1\n1#A#+-#a", "A=a", ""},
        {"carriage returns are trimmed", "0#T#1\r\n1#A#+-#a\r\n", "A=a", ""},
        {"comments and empty lines are counted", ";a\n;b\n\n; c\n3#X\n1#A#+-#a\n", "A=a", e1 + "5   : 3#X"},
        {"a line of blanks is skipped", "  \t  \n1#A#+-#a\n", "A=a", ""},
        {"a comment line may be indented", "   ; 1#B\n1#A#+-#a\n", "A=a", ""},
        {"semicolons apart mean nothing", "1#A#+-#x ; ; y\n", "A=x ; ; y", ""},
        {";; cuts the description", "1#A#+-#Text ;; Vermerk # mehr\n", "A=Text", ""},
        {"the report line is cut but not trimmed again", "1#A ;; x\n", "", e1 + "1   : 1#A "},
        {"a name in lower case, then in upper case", "1#abc#+-#x\n1#ABC#--#y\n", "ABC=x",
         "Fehler 5: Variable bereits vorhanden in Zeile 2   : 1#ABC#--#y"},
        {"the duplicate test does not see through blanks", "1# A #+-#x\n1# A #--#y\n", "A=x|A=y", ""},
        {"a name of blanks is an error 4", "1#   #+-#x\n", "", e4 + "1   : 1#   #+-#x"},
        {"a variable of no theme is no error", "42#A#+-#a\n", "A=a", ""},
        {"a theme index that is no number", "drei#A#+-#a\n", "", e4 + "1   : drei#A#+-#a"},
        {"the line number takes four columns and more", std::string(12345, '\n') + "x\n1#A#+-#a\n", "A=a",
         e1 + "12346: x"},
        {"names come out upper case with umlauts", "1#größe#+-#g\n", "GRÖßE=g", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(load(c.content));
        std::string records, lines;
        for (const cSysVar* v = list.first; v; v = v->next)
            records += (records.empty() ? "" : "|") + v->name + "=" + v->description;
        EXPECT_EQ(records, c.records);
        for (const std::string& line : report)
            lines += (lines.empty() ? "" : "|") + line;
        EXPECT_EQ(lines,
                  c.report + (c.records.empty() ? (c.report.empty() ? "" : "|") + emptyListLine() : ""));
    }
}

TEST_F(AvlFile, FileWithoutVariablesWarnsAndKeepsItsThemes) {
    for (const std::string content : {"", "0#Thema#1\n"}) {
        SCOPED_TRACE("content: " + content);
        boxes().clear();
        EXPECT_TRUE(load(content));
        EXPECT_EQ(list.first, nullptr);
        EXPECT_EQ(report, ReportList{emptyListLine()});
        EXPECT_EQ(boxes(), std::vector<std::string>{"BOX warning: RT·VarDesk - Warnung: " + emptyListLine()});
    }
    EXPECT_EQ(themesOf(list), (Themes{{"Thema", 1}}));
}

TEST_F(AvlFile, FolderInPlaceOfTheFileIsAFatalReadError) {
    filekit::fs::create_directory(dir / "ordner.avl");
    EXPECT_FALSE(load("", "ordner.avl"));
    EXPECT_EQ(report, ReportList{"Fataler I/O-Fehler beim Lesen von 'ordner.avl'."});
    EXPECT_EQ(boxes(), std::vector<std::string>{"BOX error: RT·VarDesk - Fehler: Fataler I/O-Fehler beim "
                                                "Lesen von 'ordner.avl'.Abbruch"});
}

TEST_F(AvlFile, OverlongLinesAreCutReportedAndReadingGoesOn) {
    const std::string head = "1#A#+-#";
    const std::pair<std::size_t, bool> cases[] = {{kMaxLineBytes, false},
                                                  {kMaxLineBytes + 1, true}}; // length, reported
    for (const auto& [length, reported] : cases) {
        SCOPED_TRACE(testing::Message() << "line of " << length << " bytes");
        EXPECT_TRUE(load("0#T#1\n" + head + std::string(length - head.size(), 'x') + "\n1#B#+-#b\n"));
        ASSERT_NE(list.findName("A"), nullptr);
        EXPECT_EQ(list.findName("A")->description.size(), kMaxLineBytes - head.size());
        ASSERT_NE(list.findName("B"), nullptr) << "the line behind the long one is lost";
        EXPECT_EQ(list.findName("B")->sourceLine, 3);
        EXPECT_EQ(report, reported ? ReportList{"I/O-Fehler beim Lesen in Zeile 2."} : ReportList{});
    }
    // A long line of no fields is reported twice: as too long, and as its cut first part.
    EXPECT_TRUE(load("1#A#+-#a\n" + std::string(100000, 'y') + "\n1#B#+-#b"));
    EXPECT_EQ(report,
              (ReportList{"I/O-Fehler beim Lesen in Zeile 2.",
                          "Fehler 1: zu wenig Argumente in Zeile 2   : " + std::string(kMaxLineBytes, 'y')}));
    EXPECT_NE(list.findName("B"), nullptr);
}

TEST_F(AvlFile, BinaryAndInvalidTextReadWithoutHarm) {
    static const char kWithNul[] = "1#A\0B#+-#x\n\0\0\0\n0#\0#3\n";
    const std::pair<const char*, std::string> files[] = {
        {"random bytes", filekit::randomBytes(12345, 200000)},
        {"NUL bytes", std::string(kWithNul, sizeof kWithNul - 1)},
        {"invalid UTF-8", "1#\xff\xfe"
                          "ab#+-#\xc3(\n0#\x80\x80#4\n1#\xe2\x82#-+#\xf0\x9f\x98\n"},
    };
    for (const auto& [what, content] : files) {
        SCOPED_TRACE(what);
        EXPECT_TRUE(load(content));
        for (const std::string& line : report)
            EXPECT_TRUE(line.rfind("Fehler ", 0) == 0 || line.rfind("I/O-Fehler", 0) == 0 ||
                        line == emptyListLine())
                << line.substr(0, 80);
    }
    EXPECT_NE(list.findName("\xff\xfe" + std::string("AB")), nullptr);
    EXPECT_NE(list.findName("\xe2\x82"), nullptr);
    EXPECT_TRUE(list.themes.hasThemeName("\x80\x80"));
}

} // namespace
