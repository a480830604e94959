// Tests of documents: the order of document and editor events, current document, locks, working database.
#include "SdkTestSupport.h"

#include <map>
#include <vector>

namespace {

// Writes every event as "<event> <drawing name>" into one shared list.
class EventLog : public AcApDocManagerReactor {
public:
    void documentCreateStarted(AcApDocument* d) override { note("createStarted", d); }
    void documentCreated(AcApDocument* d) override { note("created", d); }
    void documentToBeDestroyed(AcApDocument* d) override { note("toBeDestroyed", d); }
    void documentDestroyed(const char* name) override {
        events.push_back(std::string("destroyed ") + base(name));
    }
    void documentBecameCurrent(AcApDocument* d) override { note("becameCurrent", d); }
    void documentToBeActivated(AcApDocument* d) override { note("toBeActivated", d); }
    void documentToBeDeactivated(AcApDocument* d) override { note("toBeDeactivated", d); }
    void documentActivated(AcApDocument* d) override { note("activated", d); }
    void documentLockModeChangeVetoed(AcApDocument* d, const char*) override { note("lockVetoed", d); }

    std::map<AcApDocument*, std::string> names;
    std::vector<std::string> events;

private:
    static std::string base(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }
    void note(const char* what, AcApDocument* d) {
        std::string name = names.count(d) ? names[d] : *d->fileName() ? base(d->fileName()) : "(new)";
        events.push_back(std::string(what) + " " + name);
    }
};

class EditorLog : public AcEditorReactor {
public:
    void commandWillStart(const char* c) override { note("commandWillStart", c); }
    void commandEnded(const char* c) override { note("commandEnded", c); }
    void unknownCommand(const char* c) override { note("unknownCommand", c); }
    void beginDwgOpen(const char* f) override { note("beginDwgOpen", f); }
    void endDwgOpen(const char* f, AcDbDatabase*) override { note("endDwgOpen", f); }
    void beginSave(AcDbDatabase*, const char* f) override { note("beginSave", f); }
    void saveComplete(AcDbDatabase*, const char* f) override { note("saveComplete", f); }
    void beginClose(AcDbDatabase*) override { events.push_back("beginClose"); }
    void sysVarChanged(const char* v, bool) override { note("sysVarChanged", v); }

    std::vector<std::string> events;

private:
    // The event and the last part of its path or name.
    void note(const char* what, const std::string& path) {
        events.push_back(std::string(what) + " " + path.substr(path.find_last_of('/') + 1));
    }
};

class Documents : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        acDocManagerPtr()->addReactor(&log);
    }
    // A saved drawing file named name in the scratch folder, made without events reaching the log.
    std::string drawingFile(const std::string& name) {
        acDocManagerPtr()->removeReactor(&log);
        AcApDocument* doc = host().newDocument();
        std::string path = scratch + "/" + name;
        EXPECT_TRUE(host().saveDocument(doc, path));
        EXPECT_TRUE(host().closeDocument(doc));
        acDocManagerPtr()->addReactor(&log);
        return path;
    }
    EventLog log;
};

TEST_F(Documents, FirstDrawingIsCreatedActivatedAndCurrent) {
    AcApDocument* doc = host().newDocument();
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(log.events, (std::vector<std::string>{"createStarted Drawing1.dwg", "created Drawing1.dwg",
                                                    "toBeActivated Drawing1.dwg", "activated Drawing1.dwg",
                                                    "becameCurrent Drawing1.dwg"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), doc);
    EXPECT_EQ(acDocManagerPtr()->mdiActiveDocument(), doc);
    EXPECT_STREQ(doc->fileName(), "Drawing1.dwg") << "a drawing never saved has its name alone";
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), doc->database());
}

TEST_F(Documents, OpeningASecondDrawingDeactivatesTheFirst) {
    std::string path = drawingFile("Second.dwg");
    AcApDocument* first = host().newDocument();
    log.names[first] = "A";
    log.events.clear();
    AcApDocument* second = host().openDocument(path);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(log.events, (std::vector<std::string>{"createStarted Second.dwg", "created Second.dwg",
                                                    "toBeDeactivated A", "toBeActivated Second.dwg",
                                                    "activated Second.dwg", "becameCurrent Second.dwg"}));
    EXPECT_EQ(std::string(second->fileName()), path);
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 2);
}

TEST_F(Documents, SwitchAndCloseSendTheirEventsInOrder) {
    AcApDocument* a = host().newDocument();
    AcApDocument* b = host().newDocument();
    log.names[a] = "A";
    log.names[b] = "B";
    log.events.clear();
    ASSERT_TRUE(host().activateDocument(a));
    EXPECT_EQ(log.events, (std::vector<std::string>{"toBeDeactivated B", "toBeActivated A", "activated A",
                                                    "becameCurrent A"}));
    log.events.clear();
    ASSERT_TRUE(host().activateDocument(a));
    EXPECT_TRUE(log.events.empty()) << "activating the current drawing changes nothing";

    struct Watcher : AcDbDatabaseReactor {
        int goodbyes = 0;
        void goodbye(const AcDbDatabase*) override { ++goodbyes; }
    } watcher;
    b->database()->addReactor(&watcher);
    b->database()->addReactor(&watcher); // added once only
    // Closing a drawing that is not current makes it current first.
    ASSERT_TRUE(host().closeDocument(b));
    EXPECT_EQ(watcher.goodbyes, 1) << "the database says goodbye before it dies";
    EXPECT_EQ(log.events,
              (std::vector<std::string>{"toBeDeactivated A", "toBeActivated B", "activated B",
                                        "becameCurrent B", "toBeDestroyed B", "destroyed Drawing2.dwg",
                                        "toBeActivated A", "activated A", "becameCurrent A"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), a);
    log.events.clear();
    ASSERT_TRUE(host().closeDocument(a));
    EXPECT_EQ(log.events, (std::vector<std::string>{"toBeDestroyed A", "destroyed Drawing1.dwg"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), nullptr);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
    EXPECT_FALSE(host().closeDocument(a)) << "a closed drawing is no longer known";
}

// ACTIVATE by name without folder or extension and in any case is in host_basics.scr.
TEST_F(Documents, FindByPathAndAnOpenDrawingIsNotOpenedTwice) {
    std::string path = drawingFile("Plan.dwg");
    AcApDocument* doc = host().openDocument(path);
    host().newDocument();
    EXPECT_EQ(host().findDocument(path), doc);
    EXPECT_EQ(host().findDocument("nosuch"), nullptr);
    EXPECT_EQ(host().openDocument(path), doc) << "an open drawing is activated, not opened twice";
    EXPECT_EQ(acDocManagerPtr()->curDocument(), doc);
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 2);
}

TEST_F(Documents, LocksAreGivenUnlessRefused) {
    AcApDocManager* dm = acDocManagerPtr();
    AcApDocument* doc = host().newDocument();
    log.names[doc] = "D";
    EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
    ASSERT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(dm->unlockDocument(doc), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
    EXPECT_NE(dm->unlockDocument(doc), Acad::eOk) << "nothing left to unlock";
    EXPECT_EQ(dm->lockDocument(nullptr, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    log.events.clear();
    host().setDocumentLockRefused(true);
    EXPECT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    EXPECT_EQ(log.events, std::vector<std::string>{"lockVetoed D"});
    host().setDocumentLockRefused(false);
    EXPECT_EQ(dm->lockDocument(doc), Acad::eOk);
    EXPECT_EQ(dm->unlockDocument(doc), Acad::eOk);
}

TEST_F(Documents, EditorHearsOpenSaveCloseAndVariables) {
    std::string path = drawingFile("Ed.dwg");
    EditorLog editor;
    AcEditor* ed = AcEditor::cast(acrxSysRegistry()->at("AcEditor"));
    ASSERT_NE(ed, nullptr);
    ed->addReactor(&editor);
    AcApDocument* doc = host().openDocument(path);
    ASSERT_TRUE(host().setVariableText("LUPREC", "3"));
    ASSERT_TRUE(host().saveDocument(doc, scratch + "/Ed2.dwg"));
    ASSERT_FALSE(host().runCommand("NOSUCH"));
    ASSERT_TRUE(host().closeDocument(doc));
    ed->removeReactor(&editor);
    EXPECT_EQ(editor.events,
              (std::vector<std::string>{"beginDwgOpen Ed.dwg", "endDwgOpen Ed.dwg", "sysVarChanged LUPREC",
                                        "beginSave Ed2.dwg", "saveComplete Ed2.dwg", "unknownCommand NOSUCH",
                                        "beginClose"}));
}

TEST_F(Documents, SavingANewDrawingNeedsAName) {
    AcApDocument* doc = host().newDocument();
    cadhost::HostResult r = host().saveDocument(doc);
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("Drawing1.dwg"), std::string::npos) << r.message;
    r = host().saveDocument(doc, scratch + "/no/such/folder/x.dwg");
    EXPECT_FALSE(r);
    EXPECT_NE(r.message.find("Cannot save drawing"), std::string::npos) << r.message;
}

TEST(RxRuntime, RegistryAndClassDictionaryAnswerByName) {
    AcRxDictionary* registry = acrxSysRegistry();
    ASSERT_NE(registry, nullptr);
    AcRxObject* linker = registry->at("DynamicLinker");
    ASSERT_NE(linker, nullptr);
    EXPECT_TRUE(linker->isKindOf(AcRxDynamicLinker::desc()));
    EXPECT_NE(AcEditor::cast(registry->at("AcEditor")), nullptr);
    EXPECT_EQ(AcEditor::cast(linker), nullptr);
    EXPECT_EQ(registry->at("NoSuchEntry"), nullptr);
    auto* classes = static_cast<AcRxDictionary*>(registry->at("ClassDictionary"));
    ASSERT_NE(classes, nullptr);
    for (const char* name : {"AcApDocManagerReactor", "AcEditorReactor", "AcDbDatabaseReactor", "AcEditor",
                             "AcDbDictionary", "AcDbXrecord", "AcRxObject"}) {
        AcRxObject* entry = classes->at(name);
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_TRUE(entry->isKindOf(AcRxObject::desc()));
        EXPECT_STREQ(static_cast<AcRxClass*>(entry)->name(), name);
    }
    EXPECT_EQ(classes->at("NoSuchClass"), nullptr);
    EXPECT_EQ(classes->at("AcEditorReactor"), AcEditorReactor::desc());
    EXPECT_TRUE(AcEditorReactor::desc()->isDerivedFrom(AcRxEventReactor::desc()));
    EXPECT_FALSE(AcRxEventReactor::desc()->isDerivedFrom(AcEditorReactor::desc()));

    struct Mine : AcEditorReactor {
    } reactor;
    EXPECT_TRUE(reactor.isKindOf(AcRxEventReactor::desc()));
    EXPECT_FALSE(reactor.isKindOf(AcApDocManagerReactor::desc()));
    auto* dict = new AcDbDictionary();
    EXPECT_EQ(dict->isA(), AcDbDictionary::desc());
    EXPECT_TRUE(dict->isKindOf(AcDbObject::desc()));
    dict->close();
}

} // namespace
