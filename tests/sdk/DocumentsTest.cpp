// Tests of documents and drawings: the order of document and editor events, locks, the runtime's
// registry, objects of the Named Objects Dictionary opened and closed, and the drawing file.
// Saving without a name, ACTIVATE by name and an open drawing opened again are in host_values.scr;
// a drawing read, listed and saved in host_basics.scr; bad JSON and a value out of range in
// bad_drawing.scr; a record replaced at each run of the module in settings_store.scr.
#include "SdkTestSupport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

using Lines = std::vector<std::string>;
using Documents = HostTest;

std::string base(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

// Every event of the documents and of the editor as "<event> <file name>", in one list.
class EventLog : public AcApDocManagerReactor, public AcEditorReactor {
public:
    void documentCreateStarted(AcApDocument* d) override { note("createStarted", d->fileName()); }
    void documentCreated(AcApDocument* d) override { note("created", d->fileName()); }
    void documentToBeDestroyed(AcApDocument* d) override { note("toBeDestroyed", d->fileName()); }
    void documentDestroyed(const char* name) override { note("destroyed", name); }
    void documentBecameCurrent(AcApDocument* d) override { note("becameCurrent", d->fileName()); }
    void documentToBeActivated(AcApDocument* d) override { note("toBeActivated", d->fileName()); }
    void documentToBeDeactivated(AcApDocument* d) override { note("toBeDeactivated", d->fileName()); }
    void documentActivated(AcApDocument* d) override { note("activated", d->fileName()); }
    void documentLockModeChangeVetoed(AcApDocument* d, const char*) override {
        note("lockVetoed", d->fileName());
    }
    void commandWillStart(const char* c) override { note("commandWillStart", c); }
    void commandEnded(const char* c) override { note("commandEnded", c); }
    void unknownCommand(const char* c) override { note("unknownCommand", c); }
    void beginDwgOpen(const char* f) override { note("beginDwgOpen", f); }
    void endDwgOpen(const char* f, AcDbDatabase*) override { note("endDwgOpen", f); }
    void beginSave(AcDbDatabase*, const char* f) override { note("beginSave", f); }
    void saveComplete(AcDbDatabase*, const char* f) override { note("saveComplete", f); }
    void beginClose(AcDbDatabase*) override { events.push_back("beginClose"); }
    void sysVarChanged(const char* v, bool) override { note("sysVarChanged", v); }
    Lines events;

private:
    void note(const char* what, const std::string& path) {
        events.push_back(std::string(what) + " " + base(path));
    }
};

// A module keeps what it knows of a drawing by the document's address until it leaves the
// process: a new drawing must never come at the address of a closed one.
TEST_F(Documents, ANewDrawingNeverTakesTheAddressOfAClosedOne) {
    std::vector<const AcApDocument*> seen;
    for (int i = 0; i < 50; ++i) {
        AcApDocument* doc = host().newDocument();
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(std::find(seen.begin(), seen.end(), doc), seen.end()) << "drawing " << i;
        seen.push_back(doc);
        ASSERT_TRUE(host().closeDocument(doc));
    }
}

TEST_F(Documents, CreateOpenSwitchAndCloseSendTheirEventsInOrder) {
    AcApDocument* saved = host().newDocument();
    ASSERT_TRUE(host().saveDocument(saved, scratch + "/B.dwg"));
    ASSERT_TRUE(host().closeDocument(saved));
    EventLog log;
    acDocManagerPtr()->addReactor(&log);

    AcApDocument* a = host().newDocument();
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(log.events,
              (Lines{"createStarted Drawing2.dwg", "created Drawing2.dwg", "toBeActivated Drawing2.dwg",
                     "activated Drawing2.dwg", "becameCurrent Drawing2.dwg"}));
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), a->database());
    log.events.clear();
    AcApDocument* b = host().openDocument(scratch + "/B.dwg");
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(log.events, (Lines{"createStarted B.dwg", "created B.dwg", "toBeDeactivated Drawing2.dwg",
                                 "toBeActivated B.dwg", "activated B.dwg", "becameCurrent B.dwg"}));
    log.events.clear();
    ASSERT_TRUE(host().activateDocument(a));
    ASSERT_TRUE(host().activateDocument(a)); // the current drawing: no events
    EXPECT_EQ(log.events, (Lines{"toBeDeactivated B.dwg", "toBeActivated Drawing2.dwg",
                                 "activated Drawing2.dwg", "becameCurrent Drawing2.dwg"}));

    struct Watcher : AcDbDatabaseReactor {
        int goodbyes = 0;
        void goodbye(const AcDbDatabase*) override { ++goodbyes; }
    } watcher;
    b->database()->addReactor(&watcher);
    b->database()->addReactor(&watcher); // added once only
    log.events.clear();
    ASSERT_TRUE(host().closeDocument(b)); // not current: made current first
    EXPECT_EQ(watcher.goodbyes, 1);
    EXPECT_EQ(log.events,
              (Lines{"toBeDeactivated Drawing2.dwg", "toBeActivated B.dwg", "activated B.dwg",
                     "becameCurrent B.dwg", "toBeDestroyed B.dwg", "destroyed B.dwg",
                     "toBeActivated Drawing2.dwg", "activated Drawing2.dwg", "becameCurrent Drawing2.dwg"}));
    log.events.clear();
    ASSERT_TRUE(host().closeDocument(a));
    EXPECT_EQ(log.events, (Lines{"toBeDestroyed Drawing2.dwg", "destroyed Drawing2.dwg"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), nullptr);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
    EXPECT_FALSE(host().closeDocument(a)) << "a closed drawing is no longer known";
    acDocManagerPtr()->removeReactor(&log);
}

TEST_F(Documents, LocksAreGivenUnlessRefusedAndARefusalIsToldAsAVeto) {
    AcApDocManager* dm = acDocManagerPtr();
    AcApDocument* doc = host().newDocument();
    EventLog log;
    dm->addReactor(&log);
    ASSERT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(dm->unlockDocument(doc), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
    EXPECT_NE(dm->unlockDocument(doc), Acad::eOk) << "nothing left to unlock";
    EXPECT_EQ(dm->lockDocument(nullptr, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    EXPECT_EQ(log.events, Lines{});
    host().setDocumentLockRefused(true);
    EXPECT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    host().setDocumentLockRefused(false);
    dm->removeReactor(&log);
    EXPECT_EQ(log.events, Lines{"lockVetoed Drawing1.dwg"});
}

TEST_F(Documents, TheEditorHearsOpenVariablesSaveUnknownCommandsAndClose) {
    AcApDocument* doc = host().newDocument();
    ASSERT_TRUE(host().saveDocument(doc, scratch + "/Ed.dwg"));
    ASSERT_TRUE(host().closeDocument(doc));
    EventLog log;
    AcEditor* ed = AcEditor::cast(acrxSysRegistry()->at("AcEditor"));
    ASSERT_NE(ed, nullptr);
    ed->addReactor(&log);
    doc = host().openDocument(scratch + "/Ed.dwg");
    ASSERT_NE(doc, nullptr);
    ASSERT_TRUE(host().setVariableText("LUPREC", "3"));
    ASSERT_TRUE(host().saveDocument(doc, scratch + "/Ed2.dwg"));
    ASSERT_FALSE(host().runCommand("NOSUCH"));
    ASSERT_TRUE(host().closeDocument(doc));
    ed->removeReactor(&log);
    EXPECT_EQ(log.events,
              (Lines{"beginDwgOpen Ed.dwg", "endDwgOpen Ed.dwg", "sysVarChanged LUPREC", "beginSave Ed2.dwg",
                     "saveComplete Ed2.dwg", "unknownCommand NOSUCH", "beginClose"}));
}

TEST(RxRuntime, RegistryAndClassDictionaryAnswerByName) {
    AcRxDictionary* registry = acrxSysRegistry();
    AcRxObject* linker = registry->at("DynamicLinker");
    ASSERT_NE(linker, nullptr);
    EXPECT_TRUE(linker->isKindOf(AcRxDynamicLinker::desc()));
    EXPECT_EQ(AcEditor::cast(linker), nullptr);
    EXPECT_EQ(registry->at("NoSuchEntry"), nullptr);
    auto* classes = static_cast<AcRxDictionary*>(registry->at("ClassDictionary"));
    ASSERT_NE(classes, nullptr);
    EXPECT_EQ(classes->at("AcEditorReactor"), AcEditorReactor::desc());
    EXPECT_STREQ(static_cast<AcRxClass*>(classes->at("AcDbXrecord"))->name(), "AcDbXrecord");
}

TEST(RxRuntime, ClassesKnowTheirBasesAndNotTheirSiblings) {
    EXPECT_FALSE(AcRxEventReactor::desc()->isDerivedFrom(AcEditorReactor::desc()));
    struct Mine : AcEditorReactor {
    } reactor;
    EXPECT_TRUE(reactor.isKindOf(AcRxEventReactor::desc()));
    EXPECT_FALSE(reactor.isKindOf(AcApDocManagerReactor::desc()));
}

// Each entry of a chain as its type and exact value, for comparing chains.
Lines entries(const resbuf* chain) {
    Lines out;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        char value[128] = "";
        const short t = rb->restype;
        if (t == 1 || t == 1000 || t == 330 || t == RTSTR)
            std::snprintf(value, sizeof value, "%s", rb->resval.rstring);
        else if (t == 40 || t == RTREAL)
            std::snprintf(value, sizeof value, "%.17g", rb->resval.rreal);
        else if (t == 10 || t == RT3DPOINT || t == RTPOINT)
            std::snprintf(value, sizeof value, "%.17g %.17g %.17g", rb->resval.rpoint[0],
                          rb->resval.rpoint[1], t == RTPOINT ? 0.0 : rb->resval.rpoint[2]);
        else if (t == 70 || t == 290 || t == RTSHORT)
            std::snprintf(value, sizeof value, "%d", rb->resval.rint);
        else if (t == 90 || t == 1071 || t == RTLONG)
            std::snprintf(value, sizeof value, "%ld", static_cast<long>(rb->resval.rlong));
        out.push_back(std::to_string(t) + " " + value);
    }
    return out;
}

// Opens NOD/path... of the working drawing for `mode`, making what is missing when writing; null
// when something is missing for reading.
AcDbObject* openPath(std::vector<const char*> path, AcDb::OpenMode mode) {
    AcDbDictionary* nod = nullptr;
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase()->getNamedObjectsDictionary(nod, mode),
              Acad::eOk);
    AcDbObject* current = nod;
    for (size_t i = 0; i < path.size(); ++i) {
        AcDbObject* next = nullptr;
        auto* dict = static_cast<AcDbDictionary*>(current);
        if (dict->getAt(path[i], next, mode) != Acad::eOk && mode == AcDb::kForWrite) {
            AcDbObjectId id;
            next = i + 1 == path.size() ? static_cast<AcDbObject*>(new AcDbXrecord()) : new AcDbDictionary();
            EXPECT_EQ(dict->setAt(path[i], next, id), Acad::eOk);
            EXPECT_FALSE(id.isNull());
        }
        current->close();
        if (!next)
            return nullptr;
        current = next;
    }
    return current;
}

TEST_F(Documents, EveryKindOfChainEntryAndNestedDictionariesSurviveSaveAndOpen) {
    ASSERT_NE(host().newDocument(), nullptr);
    const double p3[3] = {1.5, -2.25, 1e-300};
    const double p2[2] = {3, 4};
    resbuf* chain =
        acutBuildList(1, "Wände \"quoted\"\nzwei Zeilen ^", 40, 0.1, 70, -32768, 90, 2147483647, 10, p3, 1,
                      "", 40, INFINITY, 1000, "xdata", 290, 1, 1071, 42, 330, "1F", RTNONE);
    ASSERT_NE(chain, nullptr);
    // Result types and list markers have no place in a drawing file.
    resbuf* typed = acutBuildList(RTSTR, "a", RTPOINT, p2, RTNONE);
    resbuf* marked = acutBuildList(1, "a", RTLB, RTLE, RTNONE);
    for (resbuf* refused : {typed, marked}) {
        auto* rec = static_cast<AcDbXrecord*>(openPath({"OTHER"}, AcDb::kForWrite));
        EXPECT_EQ(rec->setFromRbChain(*refused), Acad::eInvalidInput);
        rec->close();
        acutRelRb(refused);
    }
    resbuf* small = acutBuildList(1, "deep", RTNONE);
    for (const auto& [path, content] : {std::pair{std::vector<const char*>{"OUTER", "PLAIN"}, chain},
                                        {{"outer", "Inner", "DEEP"}, small}}) { // keys ignore case
        auto* rec = static_cast<AcDbXrecord*>(openPath(path, AcDb::kForWrite));
        EXPECT_EQ(rec->setFromRbChain(*content), Acad::eOk);
        rec->close();
    }
    const std::string path = scratch + "/roundtrip.dwg";
    ASSERT_TRUE(host().saveDocument(host().currentDocument(), path));
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    std::string message;
    ASSERT_NE(host().openDocument(path, &message), nullptr) << message;

    auto* rec = static_cast<AcDbXrecord*>(openPath({"OUTER", "PLAIN"}, AcDb::kForRead));
    ASSERT_NE(rec, nullptr);
    resbuf* back = nullptr;
    EXPECT_EQ(rec->rbChain(&back), Acad::eOk);
    rec->close();
    EXPECT_EQ(entries(back), entries(chain));
    Lines lines;
    ASSERT_TRUE(host().namedObjectsListing(lines));
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3),
              (Lines{"XRECORD OTHER", "XRECORD OUTER/Inner/DEEP", "  1 deep"}));
    EXPECT_EQ(host().openObjectCount(), 0);
    acutRelRb(chain);
    acutRelRb(small);
    acutRelRb(back);
}

// One file of each kind of fault the reader names; any breakage at all is the fuzz target's.
TEST_F(Documents, BrokenDrawingFilesOpenNothingAndSayWhy) {
    host().newDocument();
    const std::string head = "{\"cadhostDrawing\": 1, ";
    const std::pair<std::string, const char*> bads[] = {
        {"[]", "line 1: \"[]\" is no group code"},
        {"{}", "not a drawing file"},
        {"{\"cadhostDrawing\": 2}", "version 2"},
        {head + "\"variables\": {\"LUPREC\": \"four\"}}", "variable LUPREC"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [[40, \"x\"]]}}}",
         "A item 1: group code 40 has a value of the wrong kind"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [[-9999, 1]]}}}", "not supported"},
        {head + "\"namedObjects\": {\"A\": {\"dictionary\": {\"b\": {\"dictionary\": {}}, \"B\": "
                "{\"dictionary\": {}}}}}}",
         "twice"}};
    for (const auto& [content, said] : bads) {
        std::ofstream(scratch + "/bad.dwg", std::ios::trunc) << content;
        std::string message;
        EXPECT_EQ(host().openDocument(scratch + "/bad.dwg", &message), nullptr) << content;
        EXPECT_EQ(message.rfind("Cannot open drawing", 0), 0u) << message;
        EXPECT_NE(message.find(said), std::string::npos) << content << " said: " << message;
        EXPECT_EQ(acDocManagerPtr()->documentCount(), 1) << content;
        EXPECT_EQ(host().openObjectCount(), 0) << content;
    }
    std::string message;
    EXPECT_EQ(host().openDocument(scratch + "/missing.dwg", &message), nullptr);
    EXPECT_NE(message.find("No such file"), std::string::npos) << message;
    EXPECT_EQ(host().openDocument(scratch, &message), nullptr);
}

TEST_F(Documents, AWriterOpensAloneAndReadersShare) {
    AcDbDatabase* db = host().newDocument()->database();
    AcDbDictionary* nod = nullptr;
    AcDbDictionary* again = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(db->getNamedObjectsDictionary(again, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(nod->close(), Acad::eOk);
    EXPECT_NE(nod->close(), Acad::eOk) << "a second close is refused";
    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(db->getNamedObjectsDictionary(again, AcDb::kForRead), Acad::eOk) << "readers share";
    EXPECT_EQ(host().openObjectCount(), 2);
    AcDbDictionary* writer = nullptr;
    EXPECT_EQ(db->getNamedObjectsDictionary(writer, AcDb::kForWrite), Acad::eWasOpenForRead);
    AcDbObjectId id;
    auto* rec = new AcDbXrecord();
    EXPECT_EQ(nod->setAt("X", rec, id), Acad::eNotOpenForWrite);
    rec->close(); // never added: closing it ends it
    AcDbObject* missing = nod;
    EXPECT_EQ(nod->getAt("NOSUCH", missing, AcDb::kForRead), Acad::eKeyNotFound);
    EXPECT_EQ(missing, nullptr);
    nod->close();
    again->close();
    EXPECT_EQ(host().openObjectCount(), 0);
}

TEST(ResultBuffers, AnXrecordRefusesAnEntityNameAndGivesANullChainWhenEmpty) {
    auto* rec = new AcDbXrecord();
    resbuf odd{};
    odd.restype = RTENAME;
    EXPECT_EQ(rec->setFromRbChain(odd), Acad::eInvalidInput);
    resbuf* out = &odd;
    ASSERT_EQ(rec->rbChain(&out), Acad::eOk);
    EXPECT_EQ(out, nullptr);
    rec->close(); // never added: closing it ends it
}

TEST(ResultBuffers, BuildListRefusesAnUnknownTypeAndEndsAtZero) {
    EXPECT_EQ(acutBuildList(RTSTR, "a", 4711, 1, RTNONE), nullptr);
    resbuf* list = acutBuildList(RTSTR, "a", RTSHORT, 3, 0);
    EXPECT_EQ(entries(list), (Lines{std::to_string(RTSTR) + " a", std::to_string(RTSHORT) + " 3"}));
    acutRelRb(list);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}

} // namespace
