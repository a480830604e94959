// Document contexts under document events: repeated, switched, closed and null documents.
#include "TestHost.h"

#include "cDocCntx.h"
#include "cDocList.h"
#include "Reactors.h"

#include <unistd.h>

namespace {

class DocumentContexts : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        gDocList.clear();
        acDocManagerPtr()->addReactor(&reactor);
    }

    void TearDown() override {
        acDocManagerPtr()->removeReactor(&reactor);
        gDocList.clear();
        HostTest::TearDown();
    }

    CDocReactor reactor;
};

// A module loaded after the drawing was opened, with no event since, is in ModuleTest.
TEST_F(DocumentContexts, RepeatedEventsMakeOneRecordAndSwitchingBackFindsItWithItsState) {
    AcApDocument* first = host.newDocument();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(gCurDoc, nullptr);
    EXPECT_EQ(gCurDoc->document, first);
    cDocCntx* firstRecord = gCurDoc;
    gDocList.ActivateDocument(first);
    gDocList.ActivateDocument(first);
    EXPECT_EQ(gDocList.count, 1);
    EXPECT_EQ(gCurDoc, firstRecord);
    firstRecord->errorCount = 7;
    firstRecord->view = 1;

    AcApDocument* second = host.newDocument();
    ASSERT_NE(second, nullptr);
    ASSERT_NE(gCurDoc, firstRecord);
    EXPECT_EQ(gCurDoc->document, second);
    EXPECT_EQ(gCurDoc->errorCount, 0) << "a second drawing starts with its own state";
    cDocCntx* secondRecord = gCurDoc;

    ASSERT_TRUE(host.activateDocument(first));
    EXPECT_EQ(gCurDoc, firstRecord);
    EXPECT_EQ(gCurDoc->errorCount, 7);
    EXPECT_EQ(gCurDoc->view, 1);
    ASSERT_TRUE(host.activateDocument(second));
    EXPECT_EQ(gCurDoc, secondRecord);
    EXPECT_EQ(gDocList.count, 2);
}

TEST_F(DocumentContexts, ClosedDocumentKeepsItsRecordAndANewOneGetsAnother) {
    AcApDocument* closed = host.newDocument();
    ASSERT_NE(closed, nullptr);
    cDocCntx* closedRecord = gDocList.find(closed);
    ASSERT_TRUE(host.closeDocument(closed));
    EXPECT_EQ(gDocList.find(closed), closedRecord) << "records of closed documents stay";
    AcApDocument* later = host.newDocument();
    ASSERT_NE(later, nullptr);
    EXPECT_EQ(gCurDoc->document, later);
    EXPECT_EQ(gDocList.count, later == closed ? 1 : 2) << "records are matched by the document's address";
}

TEST_F(DocumentContexts, NullDocumentIsReportedAndChangesNothing) {
    AcApDocument* doc = host.newDocument();
    ASSERT_NE(doc, nullptr);
    cDocCntx* record = gCurDoc;
    testhost::capture().printed.clear();

    gDocList.ActivateDocument(nullptr);
    EXPECT_EQ(gCurDoc, record);
    EXPECT_EQ(gDocList.count, 1);
    EXPECT_EQ(printed(), "Keine Zeichnung gefunden\n");
    ASSERT_FALSE(uiLines().empty());
    EXPECT_EQ(uiLines().back().rfind("BOX info:", 0), 0u) << uiLines().back();
}

// A document whose file name is whatever the test says; the host never gives a bare name.
class NamedDocument : public AcApDocument {
public:
    explicit NamedDocument(const char* name) : m_name(name) {}
    const char* fileName() const override { return m_name; }
    AcDbDatabase* database() const override { return nullptr; }
    AcAp::DocLockMode myLockMode() const override { return AcAp::kNotLocked; }

private:
    const char* m_name;
};

TEST_F(DocumentContexts, NameFieldsComeFromTheFileName) {
    char cwd[4096];
    ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
    const std::string dir = folder.string() + "/";
    NamedDocument bare("bare.v1.dwg"), unnamed("");
    const std::pair<AcApDocument*, std::vector<std::string>> cases[] = {
        {host.newDocument(dir + "site plan.v2.dwg"),
         {dir + "site plan.v2.dwg", dir + "site plan.v2", "site plan.v2.dwg", "site plan.v2"}},
        {host.newDocument(dir + "noext"), {dir + "noext", dir + "noext", "noext", "noext"}},
        {&bare, {"bare.v1.dwg", std::string(cwd) + "/bare.v1", "bare.v1.dwg", "bare.v1"}},
        {&unnamed, {"", "", "", ""}}, // no file name yet: no names
    };
    for (const auto& [doc, names] : cases) {
        ASSERT_NE(doc, nullptr);
        gDocList.ActivateDocument(doc);
        ASSERT_NE(gCurDoc, nullptr);
        EXPECT_EQ(gCurDoc->document, doc);
        EXPECT_EQ((std::vector<std::string>{gCurDoc->drawingPath, gCurDoc->drawingStem,
                                            gCurDoc->drawingFileName, gCurDoc->drawingBaseName}),
                  names);
    }
}

TEST_F(DocumentContexts, DatabaseReactorHangsOnTheDatabaseOfItsCreation) {
    AcApDocument* first = host.newDocument();
    ASSERT_NE(first, nullptr);
    cDocCntx* firstRecord = gCurDoc;
    ASSERT_NE(firstRecord->dbsReactor, nullptr);
    EXPECT_EQ(firstRecord->dbsReactor->database(), first->database());

    AcApDocument* second = host.newDocument();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(firstRecord->dbsReactor->database(), first->database())
        << "still the first database after a switch";
    EXPECT_NE(gCurDoc->dbsReactor->database(), first->database());

    ASSERT_TRUE(host.closeDocument(first));
    EXPECT_EQ(firstRecord->dbsReactor->database(), nullptr)
        << "the closed database said goodbye and is not touched again";
    gDocList.clear(); // deletes both reactors: one dead database, one live one
    EXPECT_EQ(gCurDoc, nullptr);
    host.setWorkingDatabaseAvailable(false);
    EXPECT_EQ(cDocCntx(nullptr).dbsReactor, nullptr) << "no working database, no database reactor";
}

} // namespace
