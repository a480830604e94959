// CKOVA_DwgIni: the settings record in the drawing, read, answered and written back.
#include "../frame/TestHost.h"

#include "cContext.h"
#include "cDocCntx.h"
#include "CKOVA_DwgIni.h"

#include <memory>

namespace {

const std::string kDictionary = "KOVA_VARDESKVARDESK";

class DrawingStore : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        doc = host.newDocument();
        ASSERT_NE(doc, nullptr);
    }

    // Puts chain (released here) as the record NOD/dictName/entryName, as another writer would.
    void storeChain(const std::string& dictName, const std::string& entryName, resbuf* chain) {
        ASSERT_NE(chain, nullptr);
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        AcDbDictionary* nod = nullptr;
        ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForWrite), Acad::eOk);
        auto* dict = new AcDbDictionary;
        AcDbObjectId id;
        ASSERT_EQ(nod->setAt(dictName.c_str(), dict, id), Acad::eOk);
        nod->close();
        auto* record = new AcDbXrecord;
        ASSERT_EQ(dict->setAt(entryName.c_str(), record, id), Acad::eOk);
        dict->close();
        ASSERT_EQ(record->setFromRbChain(*chain), Acad::eOk);
        record->close();
        acutRelRb(chain);
    }

    static std::unique_ptr<CKOVA_DwgIni> openStore(const std::string& drawingName = "VarDesk") {
        auto store = std::make_unique<CKOVA_DwgIni>();
        store->SetRootName("Kova_VarDesk");
        store->SetDrawingName(drawingName);
        store->SetEntryName("Settings");
        return store;
    }

    // Destroys the store, giving the integer it threw, or 0.
    static int destroy(std::unique_ptr<CKOVA_DwgIni>& store) {
        try {
            delete store.release();
        } catch (int number) {
            return number;
        }
        return 0;
    }

    AcApDocument* doc = nullptr;
};

TEST_F(DrawingStore, NamesAreNormalised) {
    CKOVA_DwgIni store;
    EXPECT_EQ(store.rootName(), "KOVA_");
    store.SetRootName("Kova_Var.Desk");
    store.SetDrawingName("my var.desk:v2\\x");
    store.SetEntryName("Set tings.a");
    EXPECT_EQ(store.rootName(), "KOVA_VAR.DESK") << "the root is upper-cased, not cleaned";
    EXPECT_EQ(store.drawingName(), "MY_VAR_DESK_V2_X");
    EXPECT_EQ(store.entryName(), "SET_TINGS_A");
}

TEST_F(DrawingStore, NoEntryFindsNothingAndNamesMissingRefuseAll) {
    auto store = openStore();
    std::string out = "kept";
    EXPECT_FALSE(store->Get("MainPosX", out));
    EXPECT_EQ(out, "kept");
    EXPECT_EQ(destroy(store), 0);
    EXPECT_TRUE(testhost::storedRecord(kDictionary, "SETTINGS").empty()) << "a read writes nothing";

    CKOVA_DwgIni partial;
    partial.SetRootName("Kova_VarDesk");
    EXPECT_FALSE(partial.Put("Key", "v", 1));
    EXPECT_FALSE(partial.Get("Key", out));
}

TEST_F(DrawingStore, ValuesOfEveryReadableKindComeAsText) {
    storeChain(kDictionary, "SETTINGS",
               acutBuildList(1, "TEXT", 1, "abc", 1, "REAL", 40, 1.0 / 3.0, 1, "SHORT", 70, -12, 1, "LONG",
                             90, static_cast<Adesk::Int32>(123456789), 1, "EMPTY", 1, "", RTNONE));
    auto store = openStore();
    const std::pair<const char*, const char*> expected[] = {
        {"text", "abc"}, {"Real", "0.333333333333"}, {"SHORT", "-12"}, {"LONG", "123456789"}, {"EMPTY", ""},
    };
    for (const auto& [key, value] : expected) {
        std::string out = "<none>";
        EXPECT_TRUE(store->Get(key, out)) << key;
        EXPECT_EQ(out, value) << key;
    }
    EXPECT_FALSE(store->isDirty());
    EXPECT_EQ(destroy(store), 0);
}

TEST_F(DrawingStore, NumbersAreWrittenBackInTheirOwnKind) {
    storeChain(kDictionary, "SETTINGS",
               acutBuildList(1, "REAL", 40, 2.5, 1, "SHORT", 70, 7, 1, "LONG", 90,
                             static_cast<Adesk::Int32>(-5), RTNONE));
    auto store = openStore();
    ASSERT_TRUE(store->Put("Text", "t", 1));
    EXPECT_EQ(destroy(store), 0);
    const auto record = testhost::storedRecord(kDictionary, "SETTINGS");
    const std::vector<std::pair<short, std::string>> expected = {
        {1, "LONG"}, {90, "-5"}, {1, "REAL"}, {40, "2.5"}, {1, "SHORT"}, {70, "7"}, {1, "TEXT"}, {1, "t"},
    };
    EXPECT_EQ(record, expected);
}

TEST_F(DrawingStore, PairWithANonTextKeyIsDroppedAndGoneAfterTheWriteBack) {
    storeChain(kDictionary, "SETTINGS",
               acutBuildList(1, "A", 1, "1", 70, 5, 1, "lost", 1, "B", 1, "2", 1, "TAIL", RTNONE));
    auto store = openStore();
    EXPECT_TRUE(store->isDirty()) << "a bad pair makes the record be rewritten";
    std::string out;
    EXPECT_TRUE(store->Get("A", out));
    EXPECT_EQ(out, "1");
    EXPECT_TRUE(store->Get("B", out));
    EXPECT_EQ(out, "2");
    EXPECT_FALSE(store->Get("TAIL", out)) << "a key at the chain's end has no value";
    EXPECT_EQ(destroy(store), 0);
    const auto record = testhost::storedRecord(kDictionary, "SETTINGS");
    const std::vector<std::pair<short, std::string>> expected = {{1, "A"}, {1, "1"}, {1, "B"}, {1, "2"}};
    EXPECT_EQ(record, expected);
}

TEST_F(DrawingStore, LowerCaseKeyOfAnotherWriterIsCarriedAlong) {
    storeChain(kDictionary, "SETTINGS", acutBuildList(1, "mixed", 1, "m", 1, "UPPER", 1, "u", RTNONE));
    auto store = openStore();
    std::string out;
    EXPECT_FALSE(store->Get("mixed", out)) << "a get upper-cases the key it looks for";
    ASSERT_TRUE(store->Put("Upper", "U2", 1));
    EXPECT_EQ(destroy(store), 0);
    const std::vector<std::pair<short, std::string>> expected = {
        {1, "UPPER"}, {1, "U2"}, {1, "mixed"}, {1, "m"}};
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), expected);
}

TEST_F(DrawingStore, PutMarksDirtyEvenForAnEqualValue) {
    auto store = openStore();
    ASSERT_TRUE(store->Put("Key", "same", 1));
    EXPECT_EQ(destroy(store), 0);
    store = openStore();
    EXPECT_FALSE(store->isDirty());
    ASSERT_TRUE(store->Put("key", "same", 1));
    EXPECT_TRUE(store->isDirty());
    EXPECT_FALSE(store->Put("Key", "x", 10)) << "a group code with no text form is refused";
    EXPECT_FALSE(store->Put("Key", "abc", 70)) << "a short takes a number only";
    EXPECT_EQ(destroy(store), 0);
}

TEST_F(DrawingStore, SaveSettingsWritesTwentySixPairsInByteOrder) {
    const std::string saved = gContext.userIniFile;
    gContext.userIniFile = (folder / "VarDesk.ini").string();
    cDocCntx context(doc);
    context.LoadSettings();
    context.SaveSettings();
    unsigned entries = 0;
    auto record = testhost::storedRecord(kDictionary, "SETTINGS", &entries);
    ASSERT_EQ(record.size(), 52u);
    EXPECT_EQ(record[0].second, "AUTOCADVARLIST");
    for (std::size_t i = 0; i < record.size(); ++i)
        EXPECT_EQ(record[i].first, 1) << "entry " << i;
    for (std::size_t i = 2; i < record.size(); i += 2)
        EXPECT_LT(record[i - 2].second, record[i].second) << "key " << i / 2;
    EXPECT_EQ(entries, 1u);

    context.mainPosX = 33;
    context.SaveSettings();
    record = testhost::storedRecord(kDictionary, "SETTINGS", &entries);
    EXPECT_EQ(entries, 1u) << "a second save replaces the record";
    EXPECT_EQ(record.size(), 52u);
    gContext.userIniFile = saved;
}

TEST_F(DrawingStore, RefusedLockIsReportedAndLeavesNothingOpen) {
    host.setDocumentLockRefused(true);
    auto store = openStore();
    ASSERT_TRUE(store->Put("Key", "v", 1));
    testhost::capture().printed.clear();
    EXPECT_EQ(destroy(store), 0);
    EXPECT_EQ(printed().rfind("Die Zeichnung kann nicht gesperrt werden.\n", 0), 0u) << printed();
    EXPECT_EQ(host.openObjectCount(), 0);
    const std::vector<std::pair<short, std::string>> expected = {{1, "KEY"}, {1, "v"}};
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), expected)
        << "the writer goes on without the lock as far as the host lets it";
}

TEST_F(DrawingStore, NoWorkingDatabaseThrows3705AndIsNotTriedAgain) {
    auto store = openStore();
    ASSERT_TRUE(store->Put("Key", "v", 1));
    host.setWorkingDatabaseAvailable(false);
    EXPECT_EQ(destroy(store), 3705);

    store = openStore(); // still no database: the store starts empty
    ASSERT_TRUE(store->Put("Key", "v", 1));
    int thrown = 0;
    try {
        store->SetEntryName("Other"); // a rename writes back what is pending
    } catch (int number) {
        thrown = number;
    }
    EXPECT_EQ(thrown, 3705);
    EXPECT_FALSE(store->isDirty()) << "a failed write is not tried again";
    EXPECT_EQ(destroy(store), 0);
}

TEST_F(DrawingStore, EmptiedRecordIsRemoved) {
    storeChain(kDictionary, "SETTINGS", acutBuildList(70, 1, 1, "bad", RTNONE));
    auto store = openStore();
    std::string out;
    EXPECT_FALSE(store->Get("bad", out));
    EXPECT_EQ(destroy(store), 0);
    unsigned entries = 99;
    EXPECT_TRUE(testhost::storedRecord(kDictionary, "SETTINGS", &entries).empty());
    EXPECT_EQ(entries, 0u) << "the dictionary stays, without the record";
}

} // namespace
