// CKOVA_DwgIni: the settings record in the drawing, read, answered and written back. The record
// that SaveSettings leaves: see the settings scenarios; a refused lock and no working database
// in the running module: see the faults tests.
#include "../frame/TestHost.h"

#include "CKOVA_DwgIni.h"

#include <memory>

namespace {

using Record = std::vector<std::pair<short, std::string>>;
const std::string kDictionary = "KOVA_VARDESKVARDESK";

class DrawingStore : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_NE(host.newDocument(), nullptr);
    }

    // Puts chain (released here) as the record NOD/kDictionary/SETTINGS, as another writer would.
    static void storeChain(resbuf* chain) {
        AcDbDictionary* nod = nullptr;
        ASSERT_EQ(
            acdbHostApplicationServices()->workingDatabase()->getNamedObjectsDictionary(nod, AcDb::kForWrite),
            Acad::eOk);
        auto* dict = new AcDbDictionary;
        AcDbObjectId id;
        ASSERT_EQ(nod->setAt(kDictionary.c_str(), dict, id), Acad::eOk);
        nod->close();
        auto* record = new AcDbXrecord;
        ASSERT_EQ(dict->setAt("SETTINGS", record, id), Acad::eOk);
        dict->close();
        ASSERT_EQ(record->setFromRbChain(*chain), Acad::eOk);
        record->close();
        acutRelRb(chain);
    }

    static std::unique_ptr<CKOVA_DwgIni> openStore() {
        auto store = std::make_unique<CKOVA_DwgIni>();
        store->SetRootName("Kova_VarDesk");
        store->SetDrawingName("VarDesk");
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
    // The text that key reads as, or "<none>".
    static std::string get(CKOVA_DwgIni& store, const char* key) {
        std::string out = "<none>";
        store.Get(key, out);
        return out;
    }
};

TEST_F(DrawingStore, NamesAreUpperCasedAndTheDrawingAndEntryNamesCleaned) {
    CKOVA_DwgIni store;
    store.SetRootName("Kova_Var.Desk");
    store.SetDrawingName("my var.desk:v2\\x");
    store.SetEntryName("Set tings.a");
    EXPECT_EQ(store.rootName(), "KOVA_VAR.DESK") << "the root is upper-cased, not cleaned";
    EXPECT_EQ(store.drawingName(), "MY_VAR_DESK_V2_X");
    EXPECT_EQ(store.entryName(), "SET_TINGS_A");
}

TEST_F(DrawingStore, PutIsRefusedUntilTheDrawingAndEntryNamesAreSet) {
    CKOVA_DwgIni store;
    store.SetRootName("Kova_VarDesk");
    EXPECT_FALSE(store.Put("Key", "v", 1));
    store.SetDrawingName("VarDesk");
    EXPECT_FALSE(store.Put("Key", "v", 1));
    store.SetEntryName("Settings");
    EXPECT_TRUE(store.Put("Key", "v", 1));
}

// Numbers of every kind, as another writer leaves them.
const Record kNumbers = {{1, "TEXT"},  {1, "abc"},  {1, "REAL"}, {40, "0.333333"},
                         {1, "SHORT"}, {70, "-12"}, {1, "LONG"}, {90, "123456789"}};
resbuf* numbersChain() {
    return acutBuildList(1, "TEXT", 1, "abc", 1, "REAL", 40, 1.0 / 3.0, 1, "SHORT", 70, -12, 1, "LONG", 90,
                         static_cast<Adesk::Int32>(123456789), RTNONE);
}

TEST_F(DrawingStore, NumbersReadAsText) {
    storeChain(numbersChain());
    auto store = openStore();
    EXPECT_EQ(get(*store, "text"), "abc") << "a get upper-cases its key";
    EXPECT_EQ(get(*store, "REAL"), "0.333333333333");
    EXPECT_EQ(get(*store, "SHORT"), "-12");
    EXPECT_EQ(get(*store, "LONG"), "123456789");
    EXPECT_EQ(get(*store, "MISSING"), "<none>");
}

TEST_F(DrawingStore, RecordIsNotWrittenBackWithoutAChange) {
    storeChain(numbersChain());
    auto store = openStore();
    get(*store, "REAL");
    EXPECT_FALSE(store->isDirty());
    EXPECT_EQ(destroy(store), 0);
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), kNumbers) << "not sorted: not written back";
}

// A pair with a non-text key is dropped, a key at the chain's end has no value, a lower-case key
// of another writer is carried along; numbers go back in their own kind, every key sorted.
TEST_F(DrawingStore, BrokenRecordIsMendedAndWrittenBackSorted) {
    storeChain(acutBuildList(1, "REAL", 40, 2.5, 1, "SHORT", 70, 7, 1, "LONG", 90,
                             static_cast<Adesk::Int32>(-5), 1, "A", 1, "", 70, 5, 1, "lost", 1, "mixed", 1,
                             "m", 1, "TAIL", RTNONE));
    auto store = openStore();
    EXPECT_EQ(get(*store, "A"), "");
    EXPECT_EQ(get(*store, "TAIL"), "<none>");
    EXPECT_EQ(get(*store, "mixed"), "<none>");
    EXPECT_TRUE(store->isDirty());
    ASSERT_TRUE(store->Put("Text", "t", 1));
    EXPECT_EQ(destroy(store), 0);
    const Record after = {{1, "A"},     {1, ""},   {1, "LONG"}, {90, "-5"}, {1, "REAL"},  {40, "2.5"},
                          {1, "SHORT"}, {70, "7"}, {1, "TEXT"}, {1, "t"},   {1, "mixed"}, {1, "m"}};
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), after);
}

TEST_F(DrawingStore, ANumberGroupTakesOnlyANumber) {
    auto store = openStore();
    EXPECT_FALSE(store->Put("Other", "abc", 70));
    EXPECT_TRUE(store->Put("Other", "12", 70));
    EXPECT_EQ(destroy(store), 0);
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), (Record{{1, "OTHER"}, {70, "12"}}));
}

TEST_F(DrawingStore, PutOfAnEqualValueStillMarksTheRecordChanged) {
    storeChain(acutBuildList(1, "TEXT", 1, "t", RTNONE));
    auto store = openStore();
    ASSERT_FALSE(store->isDirty());
    ASSERT_TRUE(store->Put("text", "t", 1));
    EXPECT_TRUE(store->isDirty());
    EXPECT_EQ(destroy(store), 0);
}

// A value of a kind that has no text here (a point, a text of another group code) counts as not
// found; the pairs behind it are read all the same, and it goes back into the record as it stood.
TEST_F(DrawingStore, ValueOfAnotherKindIsNotFoundAndTheRestIsKept) {
    const double point[3] = {1.5, 2, 3};
    storeChain(acutBuildList(1, "A", 1, "a", 1, "B", 10, point, 1, "C", 3, "note", 1, "D", 1, "d", RTNONE));
    auto store = openStore();
    EXPECT_EQ(get(*store, "A"), "a");
    EXPECT_EQ(get(*store, "B"), "<none>");
    EXPECT_EQ(get(*store, "C"), "<none>");
    EXPECT_EQ(get(*store, "D"), "d");
    ASSERT_TRUE(store->Put("E", "e", 1));
    EXPECT_EQ(destroy(store), 0);
    const Record after = {{1, "A"}, {1, "a"}, {1, "B"}, {10, ""}, {1, "C"},
                          {3, ""},  {1, "D"}, {1, "d"}, {1, "E"}, {1, "e"}};
    EXPECT_EQ(testhost::storedRecord(kDictionary, "SETTINGS"), after);
}

TEST_F(DrawingStore, NoWorkingDatabaseThrows3705AndIsNotTriedAgain) {
    host.setWorkingDatabaseAvailable(false);
    auto store = openStore();
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
