// CKOVA_DwgIni: the settings record in the drawing, read, answered and written back.
#include "../frame/TestHost.h"

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

// Another writer's record: how each key reads, and the record after the write back.
TEST_F(DrawingStore, StoredRecordsAreReadAsTextAndWrittenBackSorted) {
    using Record = std::vector<std::pair<short, std::string>>;
    struct Case {
        const char* what;
        resbuf* chain;
        std::vector<std::pair<const char*, const char*>> gets; // key, text (nullptr: not found)
        int dirty;                                             // -1: not asked
        std::pair<const char*, const char*> put;               // key, text (nullptr: no put)
        Record after;
    };
    const Case cases[] = {
        {"values of kind 40, 70 and 90 read as text; no write back without a change",
         acutBuildList(1, "TEXT", 1, "abc", 1, "REAL", 40, 1.0 / 3.0, 1, "SHORT", 70, -12, 1, "LONG", 90,
                       static_cast<Adesk::Int32>(123456789), 1, "EMPTY", 1, "", RTNONE),
         {{"text", "abc"},
          {"Real", "0.333333333333"},
          {"SHORT", "-12"},
          {"LONG", "123456789"},
          {"EMPTY", ""}},
         0,
         {nullptr, nullptr},
         {{1, "TEXT"},
          {1, "abc"},
          {1, "REAL"},
          {40, "0.333333"},
          {1, "SHORT"},
          {70, "-12"},
          {1, "LONG"},
          {90, "123456789"},
          {1, "EMPTY"},
          {1, ""}}},
        {"numbers are written back in their own kind",
         acutBuildList(1, "REAL", 40, 2.5, 1, "SHORT", 70, 7, 1, "LONG", 90, static_cast<Adesk::Int32>(-5),
                       RTNONE),
         {},
         0,
         {"Text", "t"},
         {{1, "LONG"}, {90, "-5"}, {1, "REAL"}, {40, "2.5"}, {1, "SHORT"}, {70, "7"}, {1, "TEXT"}, {1, "t"}}},
        {"a pair with a non-text key is dropped; a key at the chain's end has no value",
         acutBuildList(1, "A", 1, "1", 70, 5, 1, "lost", 1, "B", 1, "2", 1, "TAIL", RTNONE),
         {{"A", "1"}, {"B", "2"}, {"TAIL", nullptr}},
         1,
         {nullptr, nullptr},
         {{1, "A"}, {1, "1"}, {1, "B"}, {1, "2"}}},
        {"a lower-case key of another writer is carried along, but a get upper-cases its key",
         acutBuildList(1, "mixed", 1, "m", 1, "UPPER", 1, "u", RTNONE),
         {{"mixed", nullptr}},
         -1,
         {"Upper", "U2"},
         {{1, "UPPER"}, {1, "U2"}, {1, "mixed"}, {1, "m"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        host.closeDocument(doc);
        doc = host.newDocument();
        storeChain(kDictionary, "SETTINGS", c.chain);
        auto store = openStore();
        for (const auto& [key, text] : c.gets) {
            std::string out = "<none>";
            EXPECT_EQ(store->Get(key, out), text != nullptr) << key;
            if (text) {
                EXPECT_EQ(out, text) << key;
            }
        }
        if (c.dirty >= 0) {
            EXPECT_EQ(store->isDirty(), c.dirty == 1);
        }
        if (c.put.first) {
            ASSERT_TRUE(store->Put(c.put.first, c.put.second, 1));
        }
        EXPECT_EQ(destroy(store), 0);
        EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), c.after);
    }
}

TEST_F(DrawingStore, PutMarksDirtyEvenForAnEqualValue) {
    auto store = openStore();
    ASSERT_TRUE(store->Put("Key", "same", 1));
    EXPECT_EQ(destroy(store), 0);
    store = openStore();
    EXPECT_FALSE(store->isDirty());
    ASSERT_TRUE(store->Put("key", "same", 1));
    EXPECT_TRUE(store->isDirty());
    EXPECT_FALSE(store->Put("Key", "abc", 70)) << "a short takes a number only";
    EXPECT_EQ(destroy(store), 0);
}

// The record that SaveSettings leaves and a refused document lock: see the scenarios and the faults tests.
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

} // namespace
