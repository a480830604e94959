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
TEST_F(DocumentContexts, OneRecordPerDocumentKeepsItsStateAndItsDatabaseReactorThroughSwitches) {
    AcApDocument* first = host.newDocument();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(gCurDoc, nullptr);
    cDocCntx* firstRecord = gCurDoc;
    gDocList.ActivateDocument(first);
    gDocList.ActivateDocument(first);
    EXPECT_EQ(gDocList.count, 1);
    firstRecord->errorCount = 7;

    AcApDocument* second = host.newDocument();
    ASSERT_NE(second, nullptr);
    ASSERT_NE(gCurDoc, firstRecord);
    EXPECT_EQ(gCurDoc->errorCount, 0) << "a second drawing starts with its own state";
    EXPECT_NE(gCurDoc->dbsReactor->database(), first->database());
    ASSERT_TRUE(host.activateDocument(first));
    EXPECT_EQ(gCurDoc, firstRecord);
    EXPECT_EQ(gCurDoc->errorCount, 7);
    EXPECT_EQ(firstRecord->dbsReactor->database(), first->database());
}

TEST_F(DocumentContexts, NoDocumentIsToldAndKeepsTheCurrentRecord) {
    ASSERT_NE(host.newDocument(), nullptr);
    cDocCntx* current = gCurDoc;
    testhost::capture().printed.clear();
    gDocList.ActivateDocument(nullptr);
    EXPECT_EQ(gCurDoc, current);
    EXPECT_EQ(printed(), "Keine Zeichnung gefunden\n");
    ASSERT_FALSE(uiLines().empty());
    EXPECT_EQ(uiLines().back().rfind("BOX info:", 0), 0u) << uiLines().back();
}

// Clearing the list afterwards deletes both reactors: one of a dead database, one of a live one.
TEST_F(DocumentContexts, AClosedDocumentKeepsItsRecordButItsReactorLetsGoOfTheDatabase) {
    AcApDocument* first = host.newDocument();
    ASSERT_NE(first, nullptr);
    cDocCntx* firstRecord = gCurDoc;
    ASSERT_NE(host.newDocument(), nullptr);
    ASSERT_TRUE(host.closeDocument(first));
    EXPECT_EQ(gDocList.find(first), firstRecord);
    EXPECT_EQ(firstRecord->dbsReactor->database(), nullptr) << "the closed database is not touched again";
    EXPECT_EQ(gDocList.count, 2);
}

TEST_F(DocumentContexts, NoWorkingDatabaseGivesNoDatabaseReactor) {
    host.setWorkingDatabaseAvailable(false);
    EXPECT_EQ(cDocCntx(nullptr).dbsReactor, nullptr);
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
        ASSERT_EQ(gCurDoc->document, doc);
        EXPECT_EQ((std::vector<std::string>{gCurDoc->drawingPath, gCurDoc->drawingStem,
                                            gCurDoc->drawingFileName, gCurDoc->drawingBaseName}),
                  names);
    }
}

} // namespace
