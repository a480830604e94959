// Tests of the host's system variables: the table file, the rules of acedSetVar, scopes and globals.
#include "SdkTestSupport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <tuple>
#include <vector>

namespace {

// A value of the given type: a number, or up to three coordinates of a point.
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
resbuf realRb(double v) {
    return rb(RTREAL, v);
}
resbuf shortRb(short v) {
    return rb(RTSHORT, v);
}
resbuf longRb(int v) {
    return rb(RTLONG, v);
}
resbuf pointRb(short type, double x, double y, double z = 0) {
    return rb(type, x, y, z);
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
    std::string text(const char* name) {
        std::string out;
        EXPECT_TRUE(host().variableText(name, out)) << name;
        return out;
    }
    double real(const char* name) {
        resbuf rb{};
        EXPECT_EQ(acedGetVar(name, &rb), RTNORM) << name;
        return rb.resval.rreal;
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
        for (resbuf* rb = names; rb; rb = rb->rbnext) {
            EXPECT_EQ(rb->restype, RTSTR);
            got.push_back(rb->resval.rstring);
        }
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

TEST_F(SysVars, DefaultsOfTheNumberFormat) {
    EXPECT_EQ(string("DIMDSEP"), ",");
    EXPECT_EQ(text("LUPREC"), "LUPREC = 4");
    EXPECT_EQ(text("LUNITS"), "LUNITS = 2");
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(db->dimdsep(), ',');
    EXPECT_EQ(db->luprec(), 4);
}

struct SetCase {
    const char* name;
    resbuf value;
    bool taken;
    const char* readBack; // variableText after the call, or the printed refusal
};

TEST_F(SysVars, SetVarTakesRoundsOrRefusesByTheRules) {
    const double pi = std::numbers::pi;
    const SetCase cases[] = {
        {"LUPREC", shortRb(8), true, "LUPREC = 8"},
        {"LUPREC", shortRb(9), false, "Value must be between 0 and 8.\n"},
        {"LUPREC", shortRb(-1), false, "Value must be between 0 and 8.\n"},
        {"LUPREC", realRb(3), false, "LUPREC requires an integer.\n"},
        {"LUPREC", longRb(3), false, "LUPREC requires an integer.\n"},
        {"LUPREC", shortRb(4), true, "LUPREC = 4"},
        {"AUPREC", shortRb(0), true, "AUPREC = 0"},
        {"LUNITS", shortRb(0), false, "Value must be between 1 and 5.\n"},
        {"AUNITS", shortRb(4), true, "AUNITS = 4"},
        {"DIMSCALE", realRb(0), true, "DIMSCALE = 0.0000"},
        {"DIMSCALE", realRb(-1), false, "Value must be zero or positive.\n"},
        {"LTSCALE", realRb(0), false, "Value must be positive and nonzero.\n"},
        {"TEXTSIZE", realRb(3.5), true, "TEXTSIZE = 3.5000"},
        {"TEXTSIZE", textRb("3.5"), false, "TEXTSIZE requires a real number.\n"},
        {"TEXTSIZE", realRb(NAN), false, "Value must be a finite number.\n"},
        {"ANGBASE", realRb(7), true, "ANGBASE = 0.7168"},
        {"ANGBASE", realRb(-pi / 2), true, "ANGBASE = 4.7124"},
        {"FACETRES", realRb(0.5049), true, "FACETRES = 0.5000"},
        {"FACETRES", realRb(0.004), false, "Value must be between 0.01 and 10.\n"},
        {"ZOOMFACTOR", shortRb(500), true, "ZOOMFACTOR = 100"},
        {"ZOOMFACTOR", shortRb(1), true, "ZOOMFACTOR = 3"},
        {"INSBASE", pointRb(RT3DPOINT, 1, 2, 3), true, "INSBASE = 1.0000,2.0000,3.0000"},
        {"INSBASE", realRb(1), false, "INSBASE requires a 3D point.\n"},
        {"LIMMAX", pointRb(RTPOINT, 100, 50), true, "LIMMAX = 100.0000,50.0000"},
        {"VIEWCTR", pointRb(RT3DPOINT, 1, 1, 0), false, "Variable VIEWCTR is read-only.\n"},
        {"DWGNAME", textRb("x.dwg"), false, "Variable DWGNAME is read-only.\n"},
        {"CDATE", realRb(1), false, "Variable CDATE is read-only.\n"},
        {"CLAYER", textRb(""), false, "Value must not be empty.\n"},
        {"CLAYER", textRb("Wände"), true, "CLAYER = Wände"},
        {"DIMDSEP", textRb(".."), false, "Value must be a single character.\n"},
        {"DIMDSEP", textRb("ä"), true, "DIMDSEP = ä"},
        {"OSMODE", shortRb(16383), true, "OSMODE = 16383"},
        {"OSMODE", shortRb(16384), false, "Value must be between 0 and 16383.\n"},
        {"ORTHOMODE", shortRb(2), false, "Value must be 0 or 1.\n"},
        {"FILEDIA", shortRb(0), true, "FILEDIA = 0"},
        {"SAVETIME", shortRb(601), false, "Value must be between 0 and 600.\n"},
        {"HPMAXLINES", longRb(10000000), true, "HPMAXLINES = 10000000"},
        {"HPMAXLINES", longRb(99), false, "Value must be between 100 and 10000000.\n"},
        {"HPMAXLINES", textRb("100"), false, "HPMAXLINES requires a long integer.\n"},
        {"NOSUCHVAR", shortRb(1), false, "Unknown variable name: NOSUCHVAR\n"},
    };
    for (const SetCase& c : cases) {
        printed.clear();
        std::string before, after;
        host().variableText(c.name, before);
        int result = acedSetVar(c.name, &c.value);
        if (c.taken) {
            EXPECT_EQ(result, RTNORM) << c.name << ": " << printed;
            EXPECT_EQ(printed, "") << c.name;
            EXPECT_EQ(text(c.name), c.readBack) << c.name;
        } else {
            EXPECT_EQ(result, RTERROR) << c.name;
            EXPECT_EQ(printed, c.readBack) << c.name;
            host().variableText(c.name, after);
            EXPECT_EQ(after, before) << c.name << ": a refused value leaves the old one";
        }
    }
}

TEST_F(SysVars, ValuesReadBackInTheirOwnTypes) {
    struct Expect {
        const char* name;
        short type;
    } expects[] = {{"LUPREC", RTSHORT}, {"HPMAXLINES", RTLONG}, {"TEXTSIZE", RTREAL}, {"CLAYER", RTSTR},
                   {"LIMMIN", RTPOINT}, {"INSBASE", RT3DPOINT}, {"CDATE", RTREAL}};
    for (const Expect& e : expects) {
        resbuf rb{};
        rb.rbnext = reinterpret_cast<resbuf*>(&rb); // the host must clear it
        ASSERT_EQ(acedGetVar(e.name, &rb), RTNORM) << e.name;
        EXPECT_EQ(rb.restype, e.type) << e.name;
        EXPECT_EQ(rb.rbnext, nullptr) << e.name;
        if (rb.restype == RTSTR)
            std::free(rb.resval.rstring);
    }
    resbuf rb{};
    EXPECT_EQ(acedGetVar("NOSUCHVAR", &rb), RTERROR);
}

TEST_F(SysVars, CommandLineTextIsParsedByType) {
    struct TextCase {
        const char* name;
        const char* typed;
        const char* result; // read back, or the refusal
        bool taken;
    } cases[] = {
        {"LUPREC", "2", "LUPREC = 2", true},
        {"TEXTSIZE", "1.25", "TEXTSIZE = 1.25", true},
        {"INSBASE", "1,2,3", "INSBASE = 1.00,2.00,3.00", true},
        {"INSBASE", "4 5", "INSBASE = 4.00,5.00,0.00", true},
        {"LIMMAX", "1 2 3", "LIMMAX requires a 2D point.", false},
        {"CLAYER", "\"\"", "Value must not be empty.", false},
        {"LUPREC", "two", "LUPREC requires an integer.", false},
        {"LUPREC", "70000", "Requires an integer between -32768 and 32767.", false},
        {"VIEWCTR", "1,2,3", "Variable VIEWCTR is read-only.", false},
        {"foo", "1", "Unknown variable name: FOO", false},
    };
    for (const TextCase& c : cases) {
        cadhost::HostResult r = host().setVariableText(c.name, c.typed);
        EXPECT_EQ(r.ok, c.taken) << c.name << " " << c.typed << ": " << r.message;
        if (c.taken) {
            // LUPREC 2 from the first line gives two decimals from here on.
            std::string shown;
            ASSERT_TRUE(host().variableText(c.name, shown));
            EXPECT_EQ(shown, c.result) << c.typed;
        } else {
            EXPECT_EQ(r.message, c.result) << c.name << " " << c.typed;
        }
    }
}

TEST_F(SysVars, DrawingVariablesBelongToEachDrawing) {
    AcApDocument* first = host().currentDocument();
    resbuf six = shortRb(6);
    ASSERT_EQ(acedSetVar("LUPREC", &six), RTNORM);
    resbuf osmode = shortRb(1);
    ASSERT_EQ(acedSetVar("OSMODE", &osmode), RTNORM);
    ASSERT_NE(host().newDocument(), nullptr);
    EXPECT_EQ(text("LUPREC"), "LUPREC = 4") << "a new drawing starts with the default";
    EXPECT_EQ(text("OSMODE"), "OSMODE = 1") << "a global variable is the same in every drawing";
    ASSERT_TRUE(host().activateDocument(first));
    EXPECT_EQ(text("LUPREC"), "LUPREC = 6");
}

TEST_F(SysVars, DrawingNameAndFolderComeFromTheDocument) {
    EXPECT_EQ(string("DWGNAME"), "Drawing1.dwg");
    ASSERT_TRUE(host().saveDocument(host().currentDocument(), scratch + "/Plan A.dwg"));
    EXPECT_EQ(string("DWGNAME"), "Plan A.dwg");
    EXPECT_EQ(string("DWGPREFIX"), scratch + "/");
    EXPECT_EQ(text("DWGTITLED"), "DWGTITLED = 1");
}

TEST_F(SysVars, CdateIsTodayAsYearMonthDayDotTime) {
    double cdate = real("CDATE");
    time_t now = time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    double today = (t.tm_year + 1900) * 10000.0 + (t.tm_mon + 1) * 100 + t.tm_mday;
    EXPECT_GE(cdate, today);
    EXPECT_LT(cdate, today + 0.24); // the fraction is HHMMSS, below .235960
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
    resbuf v = shortRb(3), bad = shortRb(30), global = shortRb(0);
    acedSetVar("LUPREC", &v);
    acedSetVar("LUPREC", &bad);
    acedSetVar("FILEDIA", &global);
    db->removeReactor(&recorder);
    acedSetVar("LUPREC", &v);
    EXPECT_EQ(recorder.calls, (std::vector<std::string>{"will LUPREC", "changed LUPREC ok"}));
}

TEST_F(SysVars, GlobalVariablesOutliveTheSession) {
    resbuf lines = longRb(5000), save = shortRb(25);
    ASSERT_EQ(acedSetVar("HPMAXLINES", &lines), RTNORM);
    ASSERT_EQ(acedSetVar("SAVETIME", &save), RTNORM);
    std::string profile = host().profileDir();
    host().shutdown();
    EXPECT_EQ(acedGetVar("SAVETIME", &save), RTERROR) << "a session after shutdown knows no table";

    host().setOutput([this](const std::string& t) { printed += t; });
    ASSERT_TRUE(host().loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
    EXPECT_EQ(text("SAVETIME"), "SAVETIME = 10") << "no profile folder yet: defaults";
    ASSERT_TRUE(host().setProfileDir(profile));
    EXPECT_EQ(text("SAVETIME"), "SAVETIME = 25");
    EXPECT_EQ(text("HPMAXLINES"), "HPMAXLINES = 5000");
}

TEST_F(SysVars, BrokenGlobalsFileFallsBackToDefaults) {
    std::string profile = host().profileDir();
    host().shutdown();
    struct Bad {
        const char* content;
        const char* said;
    } bads[] = {{"{ not json", "are not readable"},
                {"[1, 2]", "are not readable"},
                {R"({"variables": {"SAVETIME": 9999}})", "Global variable SAVETIME"},
                {R"({"variables": {"SAVETIME": "ten"}})", "Global variable SAVETIME"}};
    for (const Bad& b : bads) {
        std::ofstream(profile + "/globals.json") << b.content;
        printed.clear();
        host().setOutput([this](const std::string& t) { printed += t; });
        ASSERT_TRUE(host().loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
        ASSERT_TRUE(host().setProfileDir(profile));
        EXPECT_NE(printed.find(b.said), std::string::npos) << b.content << " printed: " << printed;
        resbuf rb{};
        ASSERT_EQ(acedGetVar("SAVETIME", &rb), RTNORM);
        EXPECT_EQ(rb.resval.rint, 10) << b.content;
        host().shutdown();
    }
}

TEST_F(SysVars, ProfileFolderThatCannotBeWrittenIsReportedNotFatal) {
    std::string blocker = scratch + "/file";
    std::ofstream(blocker) << "x";
    cadhost::HostResult r = host().setProfileDir(blocker + "/profile");
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("cannot be written"), std::string::npos) << r.message;
    resbuf v = shortRb(30);
    EXPECT_EQ(acedSetVar("SAVETIME", &v), RTNORM) << "the value is taken all the same";
    EXPECT_EQ(printed.find("Cannot save global variables"), std::string::npos)
        << "a module's change is written when its command ends";
    EXPECT_TRUE(host().setVariableText("SAVETIME", "35"));
    EXPECT_NE(printed.find("Cannot save global variables"), std::string::npos) << printed;
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
