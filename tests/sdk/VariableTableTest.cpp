// Tests of the host's system variables: the table file, the rules of acedSetVar, scopes and globals.
#include "SdkTestSupport.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>

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
    std::string string(const char* name) {
        resbuf rb{};
        EXPECT_EQ(acedGetVar(name, &rb), RTNORM) << name;
        EXPECT_EQ(rb.restype, RTSTR) << name;
        std::string out = rb.resval.rstring ? rb.resval.rstring : "";
        std::free(rb.resval.rstring);
        return out;
    }
};

TEST_F(SysVars, SysvarListIsInOrderAndFollowsThePattern) {
    auto list = [](const char* pattern) {
        std::vector<std::string> got;
        resbuf* names = nullptr;
        EXPECT_EQ(acedGetSysvarList(pattern, &names), RTNORM) << pattern;
        for (resbuf* rb = names; rb; rb = rb->rbnext)
            got.push_back(rb->resval.rstring);
        acutRelRb(names);
        return got;
    };
    const auto all = list("*");
    EXPECT_GE(all.size(), 300u);
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(list("lu*"), (std::vector<std::string>{"LUNITS", "LUPREC"}));
    resbuf* names = nullptr;
    EXPECT_EQ(acedGetSysvarList("NOSUCH*", &names), RTERROR);
    EXPECT_EQ(names, nullptr);
}

// Refusals of the text path (read-only, unknown, out of range, wrong kind) are in bad_setvar.scr;
// these are the resbuf path the module uses.
TEST_F(SysVars, SetVarTakesRoundsOrRefusesByTheRules) {
    struct SetCase {
        const char* name;
        resbuf value;
        bool taken;
        const char* readBack; // variableText after the call, or the printed refusal
    };
    const SetCase cases[] = {
        {"LUPREC", rb(RTSHORT, 8), true, "LUPREC = 8"},
        {"LUPREC", rb(RTSHORT, 9), false, "Value must be between 0 and 8.\n"},
        {"LUPREC", rb(RTREAL, 3), false, "LUPREC requires an integer.\n"},
        {"LUPREC", rb(RTLONG, 3), false, "LUPREC requires an integer.\n"},
        {"LUPREC", rb(RTSHORT, 4), true, "LUPREC = 4"},
        {"AUPREC", rb(RTSHORT, 0), true, "AUPREC = 0"},
        {"LUNITS", rb(RTSHORT, 0), false, "Value must be between 1 and 5.\n"},
        {"DIMSCALE", rb(RTREAL, 0), true, "DIMSCALE = 0.0000"},
        {"DIMSCALE", rb(RTREAL, -1), false, "Value must be zero or positive.\n"},
        {"TEXTSIZE", rb(RTREAL, 3.5), true, "TEXTSIZE = 3.5000"},
        {"TEXTSIZE", textRb("3.5"), false, "TEXTSIZE requires a real number.\n"},
        {"TEXTSIZE", rb(RTREAL, NAN), false, "Value must be a finite number.\n"},
        {"ANGBASE", rb(RTREAL, 7), true, "ANGBASE = 0.7168"},
        {"ANGBASE", rb(RTREAL, -std::numbers::pi / 2), true, "ANGBASE = 4.7124"},
        {"FACETRES", rb(RTREAL, 0.5049), true, "FACETRES = 0.5000"},
        {"FACETRES", rb(RTREAL, 0.004), false, "Value must be between 0.01 and 10.\n"},
        {"ZOOMFACTOR", rb(RTSHORT, 500), true, "ZOOMFACTOR = 100"},
        {"ZOOMFACTOR", rb(RTSHORT, 1), true, "ZOOMFACTOR = 3"},
        {"INSBASE", rb(RT3DPOINT, 1, 2, 3), true, "INSBASE = 1.0000,2.0000,3.0000"},
        {"INSBASE", rb(RTREAL, 1), false, "INSBASE requires a 3D point.\n"},
        {"LIMMAX", rb(RTPOINT, 100, 50), true, "LIMMAX = 100.0000,50.0000"},
        {"VIEWCTR", rb(RT3DPOINT, 1, 1, 0), false, "Variable VIEWCTR is read-only.\n"},
        {"CLAYER", textRb("Wände"), true, "CLAYER = Wände"},
        {"DIMDSEP", textRb(".."), false, "Value must be a single character.\n"},
        {"DIMDSEP", textRb("ä"), true, "DIMDSEP = ä"},
        {"OSMODE", rb(RTSHORT, 16383), true, "OSMODE = 16383"},
        {"OSMODE", rb(RTSHORT, 16384), false, "Value must be between 0 and 16383.\n"},
        {"SAVETIME", rb(RTSHORT, 601), false, "Value must be between 0 and 600.\n"},
        {"HPMAXLINES", rb(RTLONG, 10000000), true, "HPMAXLINES = 10000000"},
        {"HPMAXLINES", rb(RTLONG, 99), false, "Value must be between 100 and 10000000.\n"},
        {"HPMAXLINES", textRb("100"), false, "HPMAXLINES requires a long integer.\n"},
        {"NOSUCHVAR", rb(RTSHORT, 1), false, "Unknown variable name: NOSUCHVAR\n"},
    };
    for (const SetCase& c : cases) {
        printed.clear();
        std::string before, after;
        host().variableText(c.name, before);
        int result = acedSetVar(c.name, &c.value);
        EXPECT_EQ(result, c.taken ? RTNORM : RTERROR) << c.name << ": " << printed;
        if (c.taken) {
            EXPECT_EQ(printed, "") << c.name;
            EXPECT_EQ(text(c.name), c.readBack) << c.name;
        } else {
            EXPECT_EQ(printed, c.readBack) << c.name;
            host().variableText(c.name, after);
            EXPECT_EQ(after, before) << c.name << ": a refused value leaves the old one";
        }
    }
}

TEST_F(SysVars, ValuesReadBackInTheirOwnTypesAndTheNumberFormatDefaults) {
    const std::pair<const char*, short> expects[] = {{"LUPREC", RTSHORT},  {"HPMAXLINES", RTLONG},
                                                     {"TEXTSIZE", RTREAL}, {"CLAYER", RTSTR},
                                                     {"LIMMIN", RTPOINT},  {"INSBASE", RT3DPOINT}};
    for (const auto& [name, type] : expects) {
        resbuf rb{};
        rb.rbnext = reinterpret_cast<resbuf*>(&rb); // the host must clear it
        ASSERT_EQ(acedGetVar(name, &rb), RTNORM) << name;
        EXPECT_EQ(rb.restype, type) << name;
        EXPECT_EQ(rb.rbnext, nullptr) << name;
        if (rb.restype == RTSTR)
            std::free(rb.resval.rstring);
    }
    resbuf rb{};
    EXPECT_EQ(acedGetVar("NOSUCHVAR", &rb), RTERROR);
    EXPECT_EQ(string("DIMDSEP"), ",");
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->dimdsep(), ',');
    EXPECT_EQ(db->luprec(), 4);

    // CDATE is today as YYYYMMDD.HHMMSS in local time.
    ASSERT_EQ(acedGetVar("CDATE", &rb), RTNORM);
    ASSERT_EQ(rb.restype, RTREAL);
    time_t now = time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    double today = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100 + t.tm_mday;
    EXPECT_GE(rb.resval.rreal, today);
    EXPECT_LT(rb.resval.rreal, today + 0.24);
}

TEST_F(SysVars, CommandLineTextIsParsedByType) {
    struct TextCase {
        const char* name;
        const char* typed;
        const char* result; // read back, or the refusal
        bool taken;
    } cases[] = {
        {"LUPREC", "2", "LUPREC = 2", true}, // two decimals from here on
        {"TEXTSIZE", "1.25", "TEXTSIZE = 1.25", true},
        {"INSBASE", "4 5", "INSBASE = 4.00,5.00,0.00", true},
        {"LIMMAX", "1 2 3", "LIMMAX requires a 2D point.", false},
        {"LUPREC", "70000", "Requires an integer between -32768 and 32767.", false},
        {"foo", "1", "Unknown variable name: FOO", false},
    };
    for (const TextCase& c : cases) {
        cadhost::HostResult r = host().setVariableText(c.name, c.typed);
        EXPECT_EQ(r.ok, c.taken) << c.name << " " << c.typed << ": " << r.message;
        EXPECT_EQ(c.taken ? text(c.name) : r.message, c.result) << c.name << " " << c.typed;
    }
}

TEST_F(SysVars, DrawingVariablesBelongToEachDrawingAndNamesComeFromIt) {
    AcApDocument* first = host().currentDocument();
    EXPECT_EQ(string("DWGNAME"), "Drawing1.dwg");
    EXPECT_EQ(text("DWGTITLED"), "DWGTITLED = 0");
    ASSERT_TRUE(host().saveDocument(first, scratch + "/Plan A.dwg"));
    EXPECT_EQ(string("DWGNAME"), "Plan A.dwg");
    EXPECT_EQ(string("DWGPREFIX"), scratch + "/");
    EXPECT_EQ(text("DWGTITLED"), "DWGTITLED = 1");

    ASSERT_TRUE(host().setVariableText("LUPREC", "6"));
    ASSERT_TRUE(host().setVariableText("OSMODE", "1"));
    ASSERT_NE(host().newDocument(), nullptr);
    EXPECT_EQ(text("LUPREC"), "LUPREC = 4") << "a new drawing starts with the default";
    EXPECT_EQ(text("OSMODE"), "OSMODE = 1") << "a global variable is the same in every drawing";
    ASSERT_TRUE(host().activateDocument(first));
    EXPECT_EQ(text("LUPREC"), "LUPREC = 6");
}

TEST_F(SysVars, DrawingVariableChangeIsToldToDatabaseReactors) {
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

// The globals file of the profile folder: read at the next start, or defaults when it is broken.
TEST_F(SysVars, GlobalVariablesOutliveTheSessionUnlessTheFileIsBroken) {
    ASSERT_TRUE(host().setVariableText("HPMAXLINES", "5000"));
    resbuf save = rb(RTSHORT, 25); // a module's change: written when the command ends or at shutdown
    ASSERT_EQ(acedSetVar("SAVETIME", &save), RTNORM);
    const std::string profile = host().profileDir();
    host().shutdown();
    EXPECT_EQ(acedGetVar("SAVETIME", &save), RTERROR) << "a session after shutdown knows no table";
    ASSERT_TRUE(restart(profile));
    EXPECT_EQ(text("SAVETIME"), "SAVETIME = 25");
    EXPECT_EQ(text("HPMAXLINES"), "HPMAXLINES = 5000");

    const std::pair<const char*, const char*> bads[] = {
        {"{ not json", "are not readable"},
        {"[1, 2]", "are not readable"},
        {R"({"variables": {"SAVETIME": 9999}})", "Global variable SAVETIME"},
        {R"({"variables": {"SAVETIME": "ten"}})", "Global variable SAVETIME"}};
    for (const auto& [content, said] : bads) {
        host().shutdown();
        std::ofstream(profile + "/globals.json") << content;
        printed.clear();
        ASSERT_TRUE(restart(profile));
        EXPECT_NE(printed.find(said), std::string::npos) << content << " printed: " << printed;
        EXPECT_EQ(text("SAVETIME"), "SAVETIME = 10") << content;
    }
}

TEST(VariableTableFile, BadLinesAreReportedAndTheRestIsKept) {
    cadhost::HostSession& host = cadhost::HostSession::instance();
    host.shutdown();
    char pattern[] = "/tmp/sdk_table_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
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
    host.shutdown();
    std::filesystem::remove_all(pattern);
}

} // namespace
