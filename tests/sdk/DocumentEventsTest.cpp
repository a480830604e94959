// Tests of documents: the order of document and editor events, locks, and the runtime's registry.
// Saving without a name, ACTIVATE by name and an open drawing opened again are in host_x_session.scr.
#include "SdkTestSupport.h"

#include <map>
#include <vector>

namespace {

std::string base(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

// Writes every event as "<event> <drawing name>" into one list.
class EventLog : public AcApDocManagerReactor {
public:
    void documentCreateStarted(AcApDocument* d) override { note("createStarted", d); }
    void documentCreated(AcApDocument* d) override { note("created", d); }
    void documentToBeDestroyed(AcApDocument* d) override { note("toBeDestroyed", d); }
    void documentDestroyed(const char* name) override { events.push_back("destroyed " + base(name)); }
    void documentBecameCurrent(AcApDocument* d) override { note("becameCurrent", d); }
    void documentToBeActivated(AcApDocument* d) override { note("toBeActivated", d); }
    void documentToBeDeactivated(AcApDocument* d) override { note("toBeDeactivated", d); }
    void documentActivated(AcApDocument* d) override { note("activated", d); }
    void documentLockModeChangeVetoed(AcApDocument* d, const char*) override { note("lockVetoed", d); }
    std::vector<std::string> events;

private:
    void note(const char* what, AcApDocument* d) {
        events.push_back(std::string(what) + " " + base(d->fileName()));
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
    void note(const char* what, const std::string& path) {
        events.push_back(std::string(what) + " " + base(path));
    }
};

using Documents = HostTest;
using Events = std::vector<std::string>;

TEST_F(Documents, CreateOpenSwitchAndCloseSendTheirEventsInOrder) {
    AcApDocument* saved = host().newDocument();
    ASSERT_TRUE(host().saveDocument(saved, scratch + "/B.dwg"));
    ASSERT_TRUE(host().closeDocument(saved));
    EventLog log;
    acDocManagerPtr()->addReactor(&log);

    AcApDocument* a = host().newDocument();
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(log.events,
              (Events{"createStarted Drawing2.dwg", "created Drawing2.dwg", "toBeActivated Drawing2.dwg",
                      "activated Drawing2.dwg", "becameCurrent Drawing2.dwg"}));
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), a->database());
    log.events.clear();
    AcApDocument* b = host().openDocument(scratch + "/B.dwg");
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(log.events, (Events{"createStarted B.dwg", "created B.dwg", "toBeDeactivated Drawing2.dwg",
                                  "toBeActivated B.dwg", "activated B.dwg", "becameCurrent B.dwg"}));
    log.events.clear();
    ASSERT_TRUE(host().activateDocument(a));
    ASSERT_TRUE(host().activateDocument(a)); // the current drawing: no events
    EXPECT_EQ(log.events, (Events{"toBeDeactivated B.dwg", "toBeActivated Drawing2.dwg",
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
              (Events{"toBeDeactivated Drawing2.dwg", "toBeActivated B.dwg", "activated B.dwg",
                      "becameCurrent B.dwg", "toBeDestroyed B.dwg", "destroyed B.dwg",
                      "toBeActivated Drawing2.dwg", "activated Drawing2.dwg", "becameCurrent Drawing2.dwg"}));
    log.events.clear();
    ASSERT_TRUE(host().closeDocument(a));
    EXPECT_EQ(log.events, (Events{"toBeDestroyed Drawing2.dwg", "destroyed Drawing2.dwg"}));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), nullptr);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
    EXPECT_FALSE(host().closeDocument(a)) << "a closed drawing is no longer known";
    acDocManagerPtr()->removeReactor(&log);
}

TEST_F(Documents, LocksAreGivenUnlessRefusedAndTheEditorHearsOpenSaveCloseAndVariables) {
    AcApDocManager* dm = acDocManagerPtr();
    AcApDocument* doc = host().newDocument();
    ASSERT_TRUE(host().saveDocument(doc, scratch + "/Ed.dwg"));
    ASSERT_TRUE(host().closeDocument(doc));
    EditorLog editor;
    EventLog log;
    AcEditor* ed = AcEditor::cast(acrxSysRegistry()->at("AcEditor"));
    ASSERT_NE(ed, nullptr);
    ed->addReactor(&editor);
    dm->addReactor(&log);
    doc = host().openDocument(scratch + "/Ed.dwg");
    ASSERT_NE(doc, nullptr);

    ASSERT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(dm->unlockDocument(doc), Acad::eOk);
    EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
    EXPECT_NE(dm->unlockDocument(doc), Acad::eOk) << "nothing left to unlock";
    EXPECT_EQ(dm->lockDocument(nullptr, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    log.events.clear();
    host().setDocumentLockRefused(true);
    EXPECT_EQ(dm->lockDocument(doc, AcAp::kWrite, nullptr, nullptr, true), Acad::eLockViolation);
    EXPECT_EQ(log.events, Events{"lockVetoed Ed.dwg"});
    host().setDocumentLockRefused(false);

    ASSERT_TRUE(host().setVariableText("LUPREC", "3"));
    ASSERT_TRUE(host().saveDocument(doc, scratch + "/Ed2.dwg"));
    ASSERT_FALSE(host().runCommand("NOSUCH"));
    ASSERT_TRUE(host().closeDocument(doc));
    ed->removeReactor(&editor);
    dm->removeReactor(&log);
    EXPECT_EQ(editor.events,
              (Events{"beginDwgOpen Ed.dwg", "endDwgOpen Ed.dwg", "sysVarChanged LUPREC", "beginSave Ed2.dwg",
                      "saveComplete Ed2.dwg", "unknownCommand NOSUCH", "beginClose"}));
}

TEST(RxRuntime, RegistryAndClassDictionaryAnswerByNameAndClassesKnowTheirBases) {
    AcRxDictionary* registry = acrxSysRegistry();
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
        EXPECT_STREQ(static_cast<AcRxClass*>(entry)->name(), name);
    }
    EXPECT_EQ(classes->at("AcEditorReactor"), AcEditorReactor::desc());
    EXPECT_FALSE(AcRxEventReactor::desc()->isDerivedFrom(AcEditorReactor::desc()));
    struct Mine : AcEditorReactor {
    } reactor;
    EXPECT_TRUE(reactor.isKindOf(AcRxEventReactor::desc()));
    EXPECT_FALSE(reactor.isKindOf(AcApDocManagerReactor::desc()));
}

} // namespace
