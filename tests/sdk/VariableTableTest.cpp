// Tests of the host's system variables through the module's resbuf path, the table file and the
// globals file. The value rules of the text path (ranges, rounding, clamping, points, read-only,
// unknown names, scopes) run end to end in host_values.scr and bad_setvar.scr; both paths share them.
#include "VariableTable.h"
#include "SdkTestSupport.h"

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

namespace {

// A value of the given type: a number, up to three coordinates of a point, or a text.
resbuf rb(short type, double x, double y = 0, double z = 0) {
    resbuf rb{};
    rb.restype = type;
    if (type == RTREAL)
        rb.resval.rreal = x;
    else if (type == RTSHORT)
        rb.resval.rint = static_cast<short>(x);
    else if (type == RTLONG)
        rb.resval.rlong = static_cast<int>(x);
    else
        std::tie(rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]) = std::tie(x, y, z);
    return rb;
}

resbuf textRb(const char* v) {
    resbuf rb{};
    rb.restype = RTSTR;
    rb.resval.rstring = const_cast<char*>(v);
    return rb;
}

class SysVars : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_NE(host().newDocument(), nullptr);
        printed.clear();
    }
};

TEST_F(SysVars, ResbufOfTheVariablesTypeIsTakenAndReadsBackInThatType) {
    const std::pair<const char*, resbuf> taken[] = {
        {"LUPREC", rb(RTSHORT, 3)},  {"HPMAXLINES", rb(RTLONG, 5000)}, {"TEXTSIZE", rb(RTREAL, 3.5)},
        {"CLAYER", textRb("Wände")}, {"LIMMAX", rb(RTPOINT, 100, 50)}, {"INSBASE", rb(RT3DPOINT, 1, 2, 3)}};
    const char* readBack[] = {"LUPREC = 3",     "HPMAXLINES = 5000",       "TEXTSIZE = 3.500",
                              "CLAYER = Wände", "LIMMAX = 100.000,50.000", "INSBASE = 1.000,2.000,3.000"};
    for (size_t i = 0; i < std::size(taken); ++i) {
        const auto& [name, value] = taken[i];
        ASSERT_EQ(acedSetVar(name, &value), RTNORM) << name << ": " << printed;
        EXPECT_EQ(text(name), readBack[i]);
        resbuf got{};
        got.rbnext = &got; // the host must clear it
        ASSERT_EQ(acedGetVar(name, &got), RTNORM) << name;
        EXPECT_EQ(got.restype, value.restype) << name;
        EXPECT_EQ(got.rbnext, nullptr) << name;
        if (got.restype == RTSTR)
            std::free(got.resval.rstring);
    }
}

TEST_F(SysVars, ResbufOfAnotherTypeOrARefusedValueSaysWhyAndKeepsTheOldValue) {
    const std::pair<const char*, resbuf> refused[] = {
        {"LUPREC", rb(RTREAL, 3)},           {"LUPREC", rb(RTLONG, 3)},    {"TEXTSIZE", textRb("3.5")},
        {"TEXTSIZE", rb(RTREAL, NAN)},       {"INSBASE", rb(RTREAL, 1)},   {"HPMAXLINES", textRb("100")},
        {"VIEWCTR", rb(RT3DPOINT, 1, 1, 0)}, {"NOSUCHVAR", rb(RTSHORT, 1)}};
    const char* said[] = {"LUPREC requires an integer.",      "LUPREC requires an integer.",
                          "TEXTSIZE requires a real number.", "Value must be a finite number.",
                          "INSBASE requires a 3D point.",     "HPMAXLINES requires a long integer.",
                          "Variable VIEWCTR is read-only.",   "Unknown variable name: NOSUCHVAR"};
    for (size_t i = 0; i < std::size(refused); ++i) {
        const auto& [name, value] = refused[i];
        std::string before, after;
        host().variableText(name, before);
        printed.clear();
        EXPECT_EQ(acedSetVar(name, &value), RTERROR) << name;
        EXPECT_EQ(printed, std::string(said[i]) + "\n");
        host().variableText(name, after);
        EXPECT_EQ(after, before) << name << ": a refused value leaves the old one";
    }
    resbuf none{};
    EXPECT_EQ(acedGetVar("NOSUCHVAR", &none), RTERROR);
}

TEST_F(SysVars, CdateIsNowInLocalTime) {
    resbuf rb{};
    ASSERT_EQ(acedGetVar("CDATE", &rb), RTNORM);
    ASSERT_EQ(rb.restype, RTREAL);
    time_t now = time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    double today = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100 + t.tm_mday;
    EXPECT_GE(rb.resval.rreal, today);
    EXPECT_LT(rb.resval.rreal, today + 0.24); // YYYYMMDD.HHMMSS
}

TEST_F(SysVars, DatabaseAnswersItsNumberFormatFromItsVariables) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    ASSERT_TRUE(host().setVariableText("DIMDSEP", ";"));
    EXPECT_EQ(db->dimdsep(), ';');
    EXPECT_EQ(db->luprec(), 4);
}

TEST_F(SysVars, OnlyATakenDrawingVariableIsToldToDatabaseReactors) {
    struct Recorder : AcDbDatabaseReactor {
        std::vector<std::string> calls;
        void headerSysVarWillChange(const AcDbDatabase*, const char* name) override {
            calls.push_back(std::string("will ") + name);
        }
        void headerSysVarChanged(const AcDbDatabase*, const char* name, bool ok) override {
            calls.push_back(std::string("changed ") + name + (ok ? " ok" : " failed"));
        }
    } recorder;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    db->addReactor(&recorder);
    resbuf v = rb(RTSHORT, 3), bad = rb(RTSHORT, 30), global = rb(RTSHORT, 0);
    acedSetVar("LUPREC", &v);
    acedSetVar("LUPREC", &bad);
    acedSetVar("FILEDIA", &global);
    db->removeReactor(&recorder);
    acedSetVar("LUPREC", &v);
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"will LUPREC", "changed LUPREC ok"}));
}

// Globals surviving a restart are in host_basics.2.scr. A damaged globals file: every value that
// can be read is kept, and the file is moved aside, where the message says, before any write.
TEST_F(SysVars, DamagedGlobalsFileKeepsWhatCanBeReadAndIsMovedAside) {
    const std::string profile = host().profileDir();
    const std::string path = profile + "/globals.json";
    const std::string good =
        "{\n  \"cadhostGlobals\": 1,\n  \"variables\": {\n    \"FONTALT\": \"txt.shx\",\n";
    struct Case {
        std::string content;
        const char* said;
        const char* fontalt;
        const char* osmode;
    };
    const Case cases[] = {
        // One bad byte in a text, then a value cut off.
        {good + "    \"OSMODE\": 35,\n    \"ORTHOMODE\": \"\xFF\",\n    \"SAVETIME\": ", "are damaged",
         "txt.shx", "35"},
        {"{ not json", "are damaged", "simplex.shx", "4133"},
        {R"({"variables": {"OSMODE": 35, "SAVETIME": 9999}})", "are ignored: SAVETIME (Value must be",
         "simplex.shx", "35"},
    };
    for (const Case& c : cases) {
        host().shutdown();
        std::filesystem::remove(path + ".unreadable");
        std::ofstream(path, std::ios::binary) << c.content;
        printed.clear();
        ASSERT_TRUE(restart(profile));
        EXPECT_NE(printed.find(c.said), std::string::npos) << c.content << " printed: " << printed;
        EXPECT_NE(printed.find("kept as " + path + ".unreadable"), std::string::npos) << printed;
        EXPECT_EQ(text("FONTALT"), std::string("FONTALT = ") + c.fontalt) << c.content;
        EXPECT_EQ(text("OSMODE"), std::string("OSMODE = ") + c.osmode) << c.content;
        EXPECT_EQ(text("SAVETIME"), "SAVETIME = 10") << c.content;
        EXPECT_EQ(readFile(path + ".unreadable"), c.content);
        EXPECT_FALSE(std::filesystem::exists(path)) << "nothing is written before a change";
    }
}

// A text that the globals file cannot hold is refused with its reason; the host stays up and the
// saved globals stay as they were, with no file left beside them.
TEST_F(SysVars, TextThatIsNoUtf8IsRefusedForAGlobal) {
    const std::string path = host().profileDir() + "/globals.json";
    resbuf font = textRb("romans.shx");
    ASSERT_EQ(acedSetVar("FONTALT", &font), RTNORM);
    ASSERT_TRUE(host().saveDocument(host().currentDocument(), host().profileDir() + "/a.dwg"));
    const std::string saved = readFile(path);
    for (const char* bad : {"gr\xFC\xDF", "\xFF", "\xC3", "\xED\xA0\x80"}) {
        printed.clear();
        resbuf value = textRb(bad);
        EXPECT_EQ(acedSetVar("FONTALT", &value), RTERROR) << bad;
        EXPECT_NE(printed.find("Variable FONTALT cannot take this text: the byte 0x"), std::string::npos)
            << printed;
        EXPECT_FALSE(host().setVariableText("FONTALT", bad)) << bad;
    }
    EXPECT_EQ(text("FONTALT"), "FONTALT = romans.shx");
    resbuf umlaut = textRb("gr\xC3\xBC\xC3\x9F.shx");
    EXPECT_EQ(acedSetVar("FONTALT", &umlaut), RTNORM) << "UTF-8 is taken";
    EXPECT_EQ(readFile(path), saved);
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()))
        EXPECT_FALSE(entry.path().filename().string().starts_with("globals.json."))
            << "left beside: " << entry.path();
}

// A shut-down host and a scratch folder for table files, both cleared at the end.
class VariableTableFile : public ::testing::Test {
protected:
    void SetUp() override {
        host.shutdown();
        ASSERT_NE(mkdtemp(pattern), nullptr);
    }
    void TearDown() override {
        host.shutdown();
        std::filesystem::remove_all(pattern);
    }
    cadhost::HostSession& host = cadhost::HostSession::instance();
    char pattern[32] = "/tmp/sdk_table_XXXXXX";
};

TEST_F(VariableTableFile, BadLinesAreReportedAndTheRestIsKept) {
    std::string path = std::string(pattern) + "/vars.tsv";
    std::ofstream(path) << "; comment\n"
                           "GOOD int 3 rw drawing range 0 5\n"
                           "BADTYPE float 1 rw drawing\n"
                           "BADDEFAULT int 9 rw drawing range 0 5\n"
                           "NOQUOTES string abc rw drawing\n"
                           "BADRULE int 1 rw drawing wobbly\n"
                           "SHORT int 1\n"
                           "GOOD int 4 rw drawing\n"
                           "TEXTY string \"a \\\"b\\\"\" rw global maxlen 10\n";
    cadhost::HostResult r = host.loadVariableTable(path);
    EXPECT_FALSE(r);
    for (const char* bad :
         {"line 3", "line 4", "line 5", "line 6", "line 7", "line 8: variable GOOD is defined twice"})
        EXPECT_NE(r.message.find(bad), std::string::npos) << bad << " in: " << r.message;
    resbuf rb{};
    EXPECT_EQ(acedGetVar("TEXTY", &rb), RTNORM);
    EXPECT_STREQ(rb.resval.rstring, "a \"b\"");
    std::free(rb.resval.rstring);
    EXPECT_EQ(acedGetVar("BADTYPE", &rb), RTERROR);
    EXPECT_FALSE(host.loadVariableTable(std::string(pattern) + "/missing.tsv"));
}

// Values are kept by the place of their variable in the table: another table, with other places,
// must not give an open drawing's value to another variable. Lookups in any order find the same.
TEST_F(VariableTableFile, AnotherTableKeepsEachOpenDrawingValueWithItsName) {
    const std::string first = std::string(pattern) + "/first.tsv",
                      second = std::string(pattern) + "/second.tsv";
    std::ofstream(first) << "ALPHA int 1 rw drawing\nBETA int 2 rw drawing\nGAMMA int 3 rw drawing\n";
    std::ofstream(second) << "AARDVARK int 9 rw drawing\nALPHA int 1 rw drawing\nBETA int 2 rw drawing\n"
                             "GAMMA int 3 rw drawing\n";
    ASSERT_TRUE(host.loadVariableTable(first));
    ASSERT_NE(host.newDocument(), nullptr);
    resbuf value = rb(RTSHORT, 7);
    ASSERT_EQ(acedSetVar("BETA", &value), RTNORM);
    ASSERT_TRUE(host.loadVariableTable(second));
    auto valueOf = [](const char* name) {
        resbuf out{};
        return acedGetVar(name, &out) == RTNORM ? out.resval.rint : -1;
    };
    const std::pair<const char*, int> expected[] = {{"GAMMA", 3}, {"AARDVARK", 9}, {" beta ", 7},
                                                    {"ALPHA", 1}, {"BETA", 7},     {"AARDVARK", 9}};
    for (const auto& [name, wanted] : expected)
        EXPECT_EQ(valueOf(name), wanted) << name;
}

} // namespace

// A drawing's or profile's value that the table refuses: the callers put "variable LUPREC: "
// before the sentence, so the sentence names nothing and the whole has one full stop.
TEST(VariableTableJson, RefusalIsTheSentenceBehindTheName) {
    cadhost::VarDef def;
    def.name = "LUPREC";
    def.type = cadhost::VarType::Int;
    def.hasMin = def.hasMax = true;
    def.min = 0;
    def.max = 8;
    cadhost::VarValue value;
    std::string why;
    EXPECT_FALSE(cadhost::valueFromJson(def, nlohmann::json(9), value, why));
    EXPECT_EQ(why, "Value must be between 0 and 8.");
    EXPECT_FALSE(cadhost::valueFromJson(def, nlohmann::json("x"), value, why));
    EXPECT_EQ(why, "Value must be an integer.");
    EXPECT_TRUE(cadhost::valueFromJson(def, nlohmann::json(8), value, why));
}
