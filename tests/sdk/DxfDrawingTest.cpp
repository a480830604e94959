// Tests of drawing files in DXF: the tag reader's refusals, text encodings, what an unchanged or a
// changed save keeps, the Named Objects Dictionary in the OBJECTS section, the host's own record,
// R12 files, former JSON drawings and a safe save. Files that other programs make are checked by
// the ezdxf and librecad tests in tests/dxf.
#include "SdkTestSupport.h"

#include "DxfDrawing.h"
#include "DxfTags.h"

#include <sys/stat.h>

#include <fstream>
#include <utility>

namespace {

using Lines = std::vector<std::string>;
using DxfFiles = HostTest;
using cadhost::dxf::CodePage;

// A DXF file from its records, each its groups as "code value" apart by '|'.
std::string dxf(std::initializer_list<std::string> records) {
    std::string text;
    for (const std::string& record : records)
        for (size_t start = 0; start <= record.size();) {
            const size_t end = std::min(record.find('|', start), record.size());
            const std::string group = record.substr(start, end - start);
            const size_t blank = group.find(' ');
            const std::string code = group.substr(0, blank);
            text += std::string(code.size() < 3 ? 3 - code.size() : 0, ' ') + code + "\n" +
                    group.substr(blank + 1) + "\n";
            start = end + 1;
        }
    return text;
}

// An R2000 drawing as another program might write it: a comment, a variable the host does not
// know, a layer name in Windows-1252, an entity with xdata, and objects of its own.
std::string otherProgramsDrawing(const std::string& lupRec = "3") {
    return dxf({"999 made by another program",
                "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1252|9 $HANDSEED|5 40",
                "9 $LUPREC|70 " + lupRec + "|9 $FOOVAR|40 1.25|9 $CLAYER|8 W\xE4nde \\U+0394",
                "9 $INSBASE|10 1.0|20 2.0|30 0.0|0 ENDSEC", "0 SECTION|2 ENTITIES",
                "0 LINE|5 20|8 0|10 0|20 0|30 0|11 10|21 5|31 0|1001 OTHERAPP|1000 kept",
                "0 ENDSEC|0 SECTION|2 OBJECTS",
                "0 DICTIONARY|5 C|330 0|100 AcDbDictionary|281 1|3 ACAD_LAYOUT|350 1A|3 OTHER_APP|350 30",
                "0 DICTIONARY|5 1A|330 C|100 AcDbDictionary|3 Model|350 1B",
                "0 LAYOUT|5 1B|330 1A|100 AcDbLayout|1 Model",
                "0 DICTIONARY|5 30|102 {ACAD_REACTORS|330 C|102 }|330 C|100 AcDbDictionary|3 DATA|360 31",
                "0 XRECORD|5 31|330 30|100 AcDbXrecord|280 1|1 Gel\xE4nde|40 2.5|10 1|20 2|30 3|70 7|330 1B",
                "0 ENDSEC|0 EOF"});
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

// The file's groups as "code value" with the values as written.
Lines groups(const std::string& text) {
    cadhost::dxf::TagFile file;
    std::string message;
    EXPECT_TRUE(file.parse(text, message)) << message;
    Lines out;
    for (const cadhost::dxf::Tag& t : file.tags())
        out.push_back(std::to_string(t.code) + " " + std::string(t.value));
    return out;
}

// The groups of b that a does not have at the same place, and the other way round.
std::pair<Lines, Lines> difference(const Lines& a, const Lines& b) {
    Lines onlyA, onlyB;
    size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            ++i, ++j;
        } else if (j < b.size() && (i >= a.size() || std::find(a.begin() + i, a.end(), b[j]) == a.end())) {
            onlyB.push_back(b[j++]);
        } else {
            onlyA.push_back(a[i++]);
        }
    }
    return {onlyA, onlyB};
}

using Refusals = std::vector<std::pair<std::string, const char*>>;

// Each input is refused by a new reader with a message that holds the text beside it.
template <typename Reader> void expectRefused(const Refusals& bads) {
    for (const auto& [bytes, said] : bads) {
        Reader reader;
        std::string message;
        EXPECT_FALSE(reader.parse(bytes, message)) << said;
        EXPECT_NE(message.find(said), std::string::npos) << said << " -- said: " << message;
    }
}

TEST(DxfTagFile, RefusesWhatIsNoAsciiDxfAndNamesTheLine) {
    expectRefused<cadhost::dxf::TagFile>(
        {{std::string("AutoCAD Binary DXF\r\n\x1a\0", 22), "binary DXF"},
         {std::string("AC1032\0\0\0\0\x01", 11), "DWG file"},
         {"  0\nSECTION\n  2\nHEADER\n  9\n", "line 5: the file ends after a group code"},
         {"  0\nSECTION\nabc\nHEADER\n", "line 3: \"abc\" is no group code"},
         {"  0\nSECTION\n5000\nX\n", "line 3: group code 5000 is out of the range"},
         {"  0\nSECTION\n  2\nHEADER\n  0\nENDSEC\n", "no EOF: it is cut off after line 6"},
         {"", "empty"}});
}

TEST(DxfDrawing, RefusesAnOpenSectionAStrayEntityAndAMissingOrUnknownVersion) {
    expectRefused<cadhost::dxf::Drawing>(
        {{"  0\nSECTION\n  2\nHEADER\n  0\nEOF\n", "line 1: the section HEADER has no end"},
         {"  0\nLINE\n  0\nEOF\n", "line 1: a section should begin here"},
         {"  0\nSECTION\n  2\nHEADER\n  0\nENDSEC\n  0\nEOF\n", "names no DXF version"},
         {"  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1099\n  0\nENDSEC\n  0\nEOF\n",
          "line 7: DXF version"}});
}

TEST(DxfText, DecodesEachCodePageWithoutLosingAByte) {
    using cadhost::dxf::decodeText;
    struct Row {
        std::string raw;
        CodePage page;
        std::string text;
    };
    const Row rows[] = {{"W\xE4nde \x80", CodePage::Ansi1252, "Wände €"},
                        {"\\U+0394 \\U+00e4", CodePage::Ansi1252, "Δ ä"},
                        {"\\U+D83D\\U+DE00", CodePage::Utf8, "\xF0\x9F\x98\x80"},
                        {"a\x81z", CodePage::Ansi1252, "a\x81z"},     // undefined in 1252: the byte stays
                        {"a\xFF\xFEz", CodePage::Utf8, "a\xFF\xFEz"}, // no UTF-8: the bytes stay
                        {"line^Jnext ^ caret", CodePage::Utf8, "line\nnext ^caret"},
                        {"\\U+12", CodePage::Utf8, "\\U+12"}}; // no escape: as it stands
    for (const Row& r : rows)
        EXPECT_EQ(decodeText(r.raw, r.page), r.text) << r.raw;
}

TEST(DxfText, EncodesEachCodePageWithoutLosingAByte) {
    using cadhost::dxf::encodeText;
    EXPECT_EQ(encodeText("Wände €Δ", CodePage::Ansi1252), "W\xE4nde \x80\\U+0394");
    EXPECT_EQ(encodeText("Wände Δ", CodePage::Utf8), "Wände Δ");
    EXPECT_EQ(encodeText("a\xFFz\x81", CodePage::Ansi1252), "a\xFFz\x81");
    EXPECT_EQ(encodeText("two\nlines^", CodePage::Utf8), "two^Jlines^ ");
    EXPECT_EQ(encodeText("\xF0\x9F\x98\x80", CodePage::Ansi1252), "\\U+D83D\\U+DE00");
}

TEST_F(DxfFiles, AnUnchangedOpenAndSaveKeepsEveryGroup) {
    const std::string path = scratch + "/other.dxf";
    writeFile(path, otherProgramsDrawing());
    std::string message;
    ASSERT_NE(host().openDocument(path, &message), nullptr) << message;
    EXPECT_EQ(text("LUPREC"), "LUPREC = 3");
    EXPECT_EQ(text("CLAYER"), "CLAYER = Wände Δ");
    EXPECT_EQ(text("INSBASE"), "INSBASE = 1.000,2.000,0.000");
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    EXPECT_EQ(groups(readFile(path)), groups(otherProgramsDrawing()));
}

TEST_F(DxfFiles, AChangedVariableTouchesOnlyItsOwnGroups) {
    const std::string path = scratch + "/other.dxf";
    writeFile(path, otherProgramsDrawing());
    ASSERT_NE(host().openDocument(path), nullptr);
    ASSERT_TRUE(host().setVariableText("LUPREC", "2"));
    ASSERT_TRUE(host().setVariableText("CLAYER", "Wände €Ω"));
    ASSERT_TRUE(host().setVariableText("DIMDSEP", "."));
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    const auto [before, after] = difference(groups(otherProgramsDrawing()), groups(readFile(path)));
    EXPECT_EQ(before, (Lines{"70 3", "8 W\xE4nde \\U+0394"}));
    // $DIMDSEP was not in the file, and an R2000 header has it: it is added at the header's end.
    EXPECT_EQ(after, (Lines{"70 2", "8 W\xE4nde \x80\\U+03A9", "9 $DIMDSEP", "70 46"}));
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    ASSERT_NE(host().openDocument(path), nullptr);
    EXPECT_EQ(text("CLAYER"), "CLAYER = Wände €Ω");
    EXPECT_EQ(text("DIMDSEP"), "DIMDSEP = .");
}

TEST_F(DxfFiles, AValueTheHostRefusesIsNamedAndItsGroupsAreKept) {
    const std::string path = scratch + "/other.dxf";
    writeFile(path, otherProgramsDrawing("12"));
    ASSERT_NE(host().openDocument(path), nullptr);
    const Lines said = take();
    ASSERT_EQ(said.size(), 1u);
    EXPECT_EQ(said[0], "other.dxf: Header variable $LUPREC (line 21) is not taken: Value must be between 0 "
                       "and 8. The host uses 4 and keeps the file's value.");
    EXPECT_EQ(text("LUPREC"), "LUPREC = 4");
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    EXPECT_EQ(groups(readFile(path)), groups(otherProgramsDrawing("12")));
}

TEST_F(DxfFiles, TheDictionaryIsTheRootOfObjectsAndNewObjectsTakeHandlesFromTheSeed) {
    const std::string path = scratch + "/other.dxf";
    writeFile(path, otherProgramsDrawing());
    ASSERT_NE(host().openDocument(path), nullptr);
    Lines listing;
    ASSERT_TRUE(host().namedObjectsListing(listing));
    EXPECT_EQ(listing, (Lines{"XRECORD OTHER_APP/DATA", "  1 Gelände", "  40 2.5", "  10 1,2,3", "  70 7",
                              "  330 1B"}));

    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbDictionary* nod = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForWrite), Acad::eOk);
    auto* mine = new AcDbDictionary();
    AcDbObjectId id;
    ASSERT_EQ(nod->setAt("MY_APP", mine, id), Acad::eOk);
    EXPECT_EQ(id.handle(), 0x40u) << "the first new handle is the seed";
    auto* record = new AcDbXrecord();
    ASSERT_EQ(mine->setAt("REC", record, id), Acad::eOk);
    resbuf* chain = acutBuildList(1, "mine", 70, 5, RTNONE);
    ASSERT_EQ(record->setFromRbChain(*chain), Acad::eOk);
    acutRelRb(chain);
    record->close();
    mine->close();
    ASSERT_EQ(nod->remove("OTHER_APP"), Acad::eOk);
    nod->close();
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));

    cadhost::dxf::Drawing saved;
    std::string message;
    ASSERT_TRUE(saved.parse(readFile(path), message)) << message;
    EXPECT_EQ(std::string(saved.header("$HANDSEED").front().value), "42");
    Lines types;
    for (const cadhost::dxf::ObjectRecord& o : saved.objects())
        types.push_back(std::string(o.type) + " " + cadhost::dxf::handleText(o.handle) + " owner " +
                        cadhost::dxf::handleText(o.owner));
    EXPECT_EQ(types, (Lines{"DICTIONARY C owner 0", "DICTIONARY 1A owner C", "LAYOUT 1B owner 1A",
                            "DICTIONARY 40 owner C", "XRECORD 41 owner 40"}));
    Lines rootEntries;
    for (const cadhost::dxf::Tag& t : saved.tags(saved.objects()[0]))
        if (t.code == 3 || t.code == 350)
            rootEntries.push_back(std::string(t.value));
    EXPECT_EQ(rootEntries, (Lines{"ACAD_LAYOUT", "1A", "MY_APP", "40"}));
    const auto newRecord = saved.tags(saved.objects()[4]);
    Lines recordGroups;
    for (const cadhost::dxf::Tag& t : newRecord)
        recordGroups.push_back(std::to_string(t.code) + " " + std::string(t.value));
    EXPECT_EQ(recordGroups, (Lines{"0 XRECORD", "5 41", "102 {ACAD_REACTORS", "330 40", "102 }", "330 40",
                                   "100 AcDbXrecord", "280 1", "1 mine", "70 5"}));
}

TEST_F(DxfFiles, VariablesWithoutHeaderPlaceTravelInTheHostsOwnRecord) {
    const std::string path = scratch + "/grid.dxf";
    ASSERT_NE(host().newDocument(path), nullptr);
    ASSERT_TRUE(host().setVariableText("GRIDMODE", "1"));
    ASSERT_TRUE(host().setVariableText("SNAPUNIT", "5,5"));
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    ASSERT_NE(host().openDocument(path), nullptr);
    EXPECT_EQ(text("GRIDMODE"), "GRIDMODE = 1");
    EXPECT_EQ(text("SNAPUNIT"), "SNAPUNIT = 5.0000,5.0000");
    Lines listing;
    ASSERT_TRUE(host().namedObjectsListing(listing));
    EXPECT_EQ(listing, Lines{}) << "the host's record is no object of the drawing's";
    // Back at the defaults, the record goes.
    ASSERT_TRUE(host().setVariableText("GRIDMODE", "0"));
    ASSERT_TRUE(host().setVariableText("SNAPUNIT", "10,10"));
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    EXPECT_EQ(readFile(path).find("CADHOST_VARIABLES"), std::string::npos);
}

TEST_F(DxfFiles, ALaterDrawingWithoutObjectsIsNotCalledR12) {
    writeFile(scratch + "/flat.dxf", dxf({"0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC",
                                          "0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF"}));
    ASSERT_NE(host().openDocument(scratch + "/flat.dxf"), nullptr);
    EXPECT_EQ(take(),
              (Lines{"flat.dxf: It has no OBJECTS section, so no named objects dictionary: records that "
                     "programs keep in a drawing cannot be stored in it."}));
}

TEST_F(DxfFiles, AnR12DrawingHasNoDictionaryAndSaysWhatItCannotKeep) {
    const std::string r12 = dxf({"0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|9 $LUPREC|70 4|0 ENDSEC",
                                 "0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF"});
    const std::string path = scratch + "/old.dxf";
    writeFile(path, r12);
    ASSERT_NE(host().openDocument(path), nullptr);
    EXPECT_EQ(take(), (Lines{"old.dxf: It is an R12 drawing (AC1009), which has no named objects dictionary: "
                             "records that programs keep in a drawing cannot be stored in it."}));
    AcDbDictionary* nod = nullptr;
    EXPECT_EQ(
        acdbHostApplicationServices()->workingDatabase()->getNamedObjectsDictionary(nod, AcDb::kForRead),
        Acad::eNotApplicable);
    EXPECT_EQ(nod, nullptr);
    ASSERT_TRUE(host().setVariableText("LUPREC", "1"));
    ASSERT_TRUE(host().setVariableText("INSUNITS", "6")); // in the header from R2000 on
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    EXPECT_EQ(take(), (Lines{"old.dxf: The drawing has no place for INSUNITS: they keep their values only "
                             "while the drawing is open."}));
    const auto [before, after] = difference(groups(r12), groups(readFile(path)));
    EXPECT_EQ(after, (Lines{"70 1"}));
}

TEST_F(DxfFiles, AFormerJsonDrawingOpensAndIsSavedAsDxf) {
    const std::string path = scratch + "/former.dwg";
    writeFile(path, R"({"cadhostDrawing": 1, "variables": {"LUPREC": 2, "GRIDMODE": 1},
        "namedObjects": {"ACAD_GROUP": {"dictionary": {}},
                         "KOVA": {"dictionary": {"KOPF": {"xrecord": [[1, "Halle"], [70, 3]]}}}}})");
    ASSERT_NE(host().openDocument(path), nullptr);
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    const std::string saved = readFile(path);
    EXPECT_EQ(saved.rfind("  0\nSECTION\n", 0), 0u) << saved.substr(0, 40);
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    std::string message;
    ASSERT_NE(host().openDocument(path, &message), nullptr) << message;
    EXPECT_EQ(text("LUPREC"), "LUPREC = 2");
    EXPECT_EQ(text("GRIDMODE"), "GRIDMODE = 1");
    Lines listing;
    ASSERT_TRUE(host().namedObjectsListing(listing));
    EXPECT_EQ(listing, (Lines{"XRECORD KOVA/KOPF", "  1 Halle", "  70 3"}));
}

TEST_F(DxfFiles, SavingKeepsTheFilesMode) {
    const std::string path = scratch + "/kept.dxf";
    ASSERT_NE(host().newDocument(path), nullptr);
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    ASSERT_TRUE(host().setVariableText("LUPREC", "1"));
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST_F(DxfFiles, AWriteProtectedDrawingIsNotSavedAndNothingIsLeftBeside) {
    const std::string path = scratch + "/kept.dxf";
    ASSERT_NE(host().newDocument(path), nullptr);
    ASSERT_TRUE(host().saveDocument(host().currentDocument()));
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    const std::string before = readFile(path);
    ASSERT_TRUE(host().setVariableText("LUPREC", "2"));
    const cadhost::HostResult refused = host().saveDocument(host().currentDocument());
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.message, "Cannot save drawing to " + path + ": the file is write-protected.");
    EXPECT_EQ(readFile(path), before);
    for (const auto& entry : std::filesystem::directory_iterator(scratch))
        EXPECT_FALSE(entry.path().filename().string().starts_with("kept.dxf."))
            << "left beside: " << entry.path();
}

} // namespace
