// The capture of the drawing's number format into the variable list of a document context.
#include "TestHost.h"

#include "cDocCntx.h"

namespace {

// A database that answers DIMDSEP and LUPREC with given values and does nothing else.
class FormatDatabase : public AcDbDatabase {
public:
    FormatDatabase(char separator, Adesk::Int16 precision) : m_separator(separator), m_precision(precision) {}
    char dimdsep() const override { return m_separator; }
    Adesk::Int16 luprec() const override { return m_precision; }
    void addReactor(AcDbDatabaseReactor*) const override {}
    void removeReactor(AcDbDatabaseReactor*) const override {}
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*&, AcDb::OpenMode) override {
        return Acad::eNotApplicable;
    }

private:
    char m_separator;
    Adesk::Int16 m_precision;
};

// A control character, a digit or an E as the separator becomes a blank; a negative
// precision becomes 4. A null name stands for no database at all.
TEST(NumberFormatCapture, SeparatorAndPrecisionFromTheDatabase) {
    struct FormatCase {
        const char* name;
        char separator;
        Adesk::Int16 precision;
        char expectedSeparator;
        int expectedPrecision;
    };
    const FormatCase cases[] = {{"comma and 4 pass", ',', 4, ',', 4},
                                {"NUL", '\0', 6, ' ', 6},
                                {"digit 8", '8', 4, ' ', 4},
                                {"E", 'E', 4, ' ', 4},
                                {"precision -1", ',', -1, ',', 4},
                                {"precision 0 stays", ';', 0, ';', 0},
                                {nullptr, ',', 0, ' ', 4}};
    for (const FormatCase& c : cases) {
        FormatDatabase database(c.separator, c.precision);
        cDocCntx context(nullptr);
        context.varList.pointSeparator = 'X';
        context.varList.valuePrecision = 99;
        context.CaptureNumberFormat(c.name ? &database : nullptr);
        EXPECT_EQ(context.varList.pointSeparator, c.expectedSeparator) << (c.name ? c.name : "no database");
        EXPECT_EQ(context.varList.valuePrecision, c.expectedPrecision) << (c.name ? c.name : "no database");
    }
}

class NumberFormatFromHost : public testhost::HostTest {};

// The dialog loop takes the format from the host's working database at each run.
TEST_F(NumberFormatFromHost, RunDialogLoopReadsTheWorkingDatabase) {
    ASSERT_TRUE(host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv"));
    AcApDocument* doc = host.newDocument();
    ASSERT_NE(doc, nullptr);
    ASSERT_TRUE(host.setVariableText("DIMDSEP", ";"));
    ASSERT_TRUE(host.setVariableText("LUPREC", "0"));

    cDocCntx context(doc);
    context.RunDialogLoop();
    EXPECT_EQ(context.varList.pointSeparator, ';');
    EXPECT_EQ(context.varList.valuePrecision, 0);

    host.setWorkingDatabaseAvailable(false);
    context.RunDialogLoop();
    EXPECT_EQ(context.varList.pointSeparator, ' ') << "captured afresh at every run";
    EXPECT_EQ(context.varList.valuePrecision, 4);
}

} // namespace
