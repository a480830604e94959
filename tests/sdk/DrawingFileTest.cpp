// Tests of drawings: the Named Objects Dictionary, open and close of objects, and the drawing file.
#include "SdkTestSupport.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

namespace {

// Each entry of a chain as its type and exact value, for comparing chains.
std::vector<std::string> entries(const resbuf* chain) {
    std::vector<std::string> out;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        char value[128] = "";
        const short t = rb->restype;
        if (t == 1 || t == 1000 || t == RTSTR)
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

class Drawing : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_NE(host().newDocument(), nullptr);
        db = acdbHostApplicationServices()->workingDatabase();
        ASSERT_NE(db, nullptr);
    }
    // Puts a chain under NOD/dicts.../entry, making the dictionaries that are missing; everything
    // opened is closed.
    void putRecord(std::vector<const char*> dicts, const char* entry, const resbuf* chain) {
        AcDbDictionary* dict = nullptr;
        ASSERT_EQ(db->getNamedObjectsDictionary(dict, AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        for (const char* name : dicts) {
            AcDbObject* obj = nullptr;
            AcDbDictionary* next = nullptr;
            if (dict->getAt(name, obj, AcDb::kForWrite) == Acad::eKeyNotFound) {
                next = new AcDbDictionary();
                EXPECT_EQ(dict->setAt(name, next, id), Acad::eOk);
                EXPECT_FALSE(id.isNull());
            } else {
                next = static_cast<AcDbDictionary*>(obj);
            }
            dict->close();
            dict = next;
        }
        auto* rec = new AcDbXrecord();
        ASSERT_EQ(dict->setAt(entry, rec, id), Acad::eOk);
        dict->close();
        ASSERT_EQ(rec->setFromRbChain(*chain), Acad::eOk);
        rec->close();
    }
    // The chain under NOD/path..., or null; everything opened is closed.
    resbuf* readRecord(std::vector<const char*> path) {
        AcDbDictionary* nod = nullptr;
        EXPECT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForRead), Acad::eOk);
        AcDbObject* current = nod;
        for (const char* key : path) {
            AcDbObject* next = nullptr;
            Acad::ErrorStatus es = static_cast<AcDbDictionary*>(current)->getAt(key, next, AcDb::kForRead);
            current->close();
            if (es != Acad::eOk)
                return nullptr;
            current = next;
        }
        resbuf* chain = nullptr;
        EXPECT_EQ(static_cast<AcDbXrecord*>(current)->rbChain(&chain), Acad::eOk);
        current->close();
        return chain;
    }

    AcDbDatabase* db = nullptr;
};

TEST_F(Drawing, EveryKindOfChainEntryAndNestedDictionariesSurviveSaveAndOpen) {
    const double p3[3] = {1.5, -2.25, 1e-300};
    const double p2[2] = {3, 4};
    resbuf* chain = acutBuildList(1, "Wände \"quoted\"", 40, 0.1, 70, -32768, 90, 2147483647, 10, p3, RTPOINT,
                                  p2, RTSTR, "", RTREAL, INFINITY, RTSHORT, 7, RTLONG, -1, RT3DPOINT, p3,
                                  1000, "xdata", 290, 1, 1071, 42, RTLB, RTLE, RTNONE);
    ASSERT_NE(chain, nullptr);
    putRecord({"OUTER"}, "PLAIN", chain);
    resbuf* small = acutBuildList(1, "deep", RTNONE);
    putRecord({"outer", "Inner"}, "DEEP", small); // keys ignore case: "outer" is OUTER
    EXPECT_EQ(host().openObjectCount(), 0);

    std::string path = scratch + "/roundtrip.dwg";
    ASSERT_TRUE(host().saveDocument(host().currentDocument(), path));
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    std::string message;
    ASSERT_NE(host().openDocument(path, &message), nullptr) << message;
    db = acdbHostApplicationServices()->workingDatabase();

    resbuf* back = readRecord({"OUTER", "PLAIN"});
    EXPECT_EQ(entries(back), entries(chain));
    resbuf* deep = readRecord({"OUTER", "INNER", "DEEP"});
    EXPECT_EQ(entries(deep), entries(small));

    std::vector<std::string> lines;
    ASSERT_TRUE(host().namedObjectsListing(lines));
    ASSERT_GE(lines.size(), 5u);
    EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 3),
              (std::vector<std::string>{"XRECORD OUTER/Inner/DEEP", "  1 deep", "XRECORD OUTER/PLAIN"}));
    EXPECT_EQ(lines[4], "  40 0.1");
    EXPECT_EQ(host().openObjectCount(), 0);
    for (resbuf* rb : {chain, small, back, deep})
        acutRelRb(rb);
}

TEST_F(Drawing, BrokenFilesOpenNothingAndSayWhy) {
    // A variable out of its range is in bad_drawing.scr.
    const std::pair<const char*, const char*> bads[] = {
        {"", "not valid JSON"},
        {"{\"cadhostDrawing\": 1,", "not valid JSON"},
        {"[]", "not a drawing file"},
        {"{\"variables\": {}}", "not a drawing file"},
        {"{\"cadhostDrawing\": 2}", "version 2"},
        {"{\"cadhostDrawing\": 1, \"variables\": []}", "\"variables\" must be"},
        {"{\"cadhostDrawing\": 1, \"variables\": {\"LUPREC\": \"four\"}}", "variable LUPREC"},
        {"{\"cadhostDrawing\": 1, \"variables\": {\"INSBASE\": [1, 2]}}", "INSBASE requires a 3D point"},
        {"{\"cadhostDrawing\": 1, \"regApps\": [1]}", "regApps"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": []}", "must be a JSON object"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {}}}", "A: an entry must be"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"xrecord\": {}}}}", "must be a JSON array"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"xrecord\": [[40, \"x\"]]}}}",
         "A item 1: group code 40 has a value of the wrong kind"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"xrecord\": [[70, 40000]]}}}", "group code 70"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"xrecord\": [[-9999, 1]]}}}", "not supported"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"xrecord\": [\"x\"]}}}", "[group code, value]"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"A\": {\"dictionary\": {\"b\": {\"dictionary\": {}}, "
         "\"B\": {\"dictionary\": {}}}}}}",
         "twice"},
        {"{\"cadhostDrawing\": 1, \"namedObjects\": {\"\": {\"dictionary\": {}}}}", "empty key"},
    };
    int before = acDocManagerPtr()->documentCount();
    for (const auto& [content, said] : bads) {
        std::string path = scratch + "/bad.dwg";
        std::ofstream(path, std::ios::trunc) << content;
        std::string message;
        EXPECT_EQ(host().openDocument(path, &message), nullptr) << content;
        EXPECT_NE(message.find(said), std::string::npos) << content << " said: " << message;
        EXPECT_EQ(message.rfind("Cannot open drawing", 0), 0u) << message;
        EXPECT_EQ(acDocManagerPtr()->documentCount(), before) << content;
        EXPECT_EQ(host().openObjectCount(), 0) << content;
    }
    std::string message;
    EXPECT_EQ(host().openDocument(scratch + "/missing.dwg", &message), nullptr);
    EXPECT_NE(message.find("No such file"), std::string::npos) << message;
    EXPECT_EQ(host().openDocument(scratch, &message), nullptr);
}

TEST_F(Drawing, ObjectsAreOpenedAndClosedLikeInARealHost) {
    AcDbDictionary* nod = nullptr;
    AcDbDictionary* again = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(host().openObjectCount(), 1);
    EXPECT_EQ(db->getNamedObjectsDictionary(again, AcDb::kForWrite), Acad::eWasOpenForWrite);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(db->getNamedObjectsDictionary(again, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(nod->close(), Acad::eOk);
    EXPECT_NE(nod->close(), Acad::eOk) << "a second close is refused";
    EXPECT_EQ(host().openObjectCount(), 0);

    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(db->getNamedObjectsDictionary(again, AcDb::kForRead), Acad::eOk) << "readers share";
    EXPECT_EQ(host().openObjectCount(), 2);
    AcDbDictionary* writer = nullptr;
    EXPECT_EQ(db->getNamedObjectsDictionary(writer, AcDb::kForWrite), Acad::eWasOpenForRead);
    AcDbObjectId id;
    auto* rec = new AcDbXrecord();
    EXPECT_EQ(nod->setAt("X", rec, id), Acad::eNotOpenForWrite);
    resbuf odd{};
    odd.restype = RTENAME;
    EXPECT_EQ(rec->setFromRbChain(odd), Acad::eInvalidInput);
    resbuf* out = nullptr;
    ASSERT_EQ(rec->rbChain(&out), Acad::eOk);
    EXPECT_EQ(out, nullptr) << "no data gives a null chain";
    rec->close(); // never added: closing it ends it
    AcDbObject* missing = nod;
    EXPECT_EQ(nod->getAt("NOSUCH", missing, AcDb::kForRead), Acad::eKeyNotFound);
    EXPECT_EQ(missing, nullptr);
    nod->close();
    again->close();
    EXPECT_EQ(host().openObjectCount(), 0);
}

TEST_F(Drawing, SetAtReplacesRemoveErasesAndARecordOpenForReadIsNotWritten) {
    resbuf* one = acutBuildList(1, "one", RTNONE);
    resbuf* two = acutBuildList(1, "two", RTNONE);
    putRecord({"D"}, "E", one);
    putRecord({"D"}, "e", two);
    AcDbDictionary* nod = nullptr;
    ASSERT_EQ(db->getNamedObjectsDictionary(nod, AcDb::kForRead), Acad::eOk);
    AcDbObject* obj = nullptr;
    ASSERT_EQ(nod->getAt("D", obj, AcDb::kForWrite), Acad::eOk);
    nod->close();
    auto* dict = static_cast<AcDbDictionary*>(obj);
    EXPECT_EQ(dict->numEntries(), 1u);
    AcDbObject* recObj = nullptr;
    ASSERT_EQ(dict->getAt("E", recObj, AcDb::kForRead), Acad::eOk);
    auto* rec = static_cast<AcDbXrecord*>(recObj);
    EXPECT_EQ(rec->setFromRbChain(*one), Acad::eNotOpenForWrite);
    resbuf* got = nullptr;
    ASSERT_EQ(rec->rbChain(&got), Acad::eOk);
    EXPECT_EQ(entries(got), entries(two));
    rec->close();
    resbuf* none = nullptr;
    EXPECT_EQ(rec->rbChain(&none), Acad::eNotOpenForRead) << "closed";
    EXPECT_EQ(dict->remove("E"), Acad::eOk);
    EXPECT_EQ(dict->remove("E"), Acad::eKeyNotFound);
    EXPECT_FALSE(dict->has("E"));
    dict->close();
    EXPECT_EQ(readRecord({"D", "E"}), nullptr);
    EXPECT_EQ(host().openObjectCount(), 0);
    for (resbuf* chain : {one, two, got})
        acutRelRb(chain);
}

TEST(ResultBuffers, BuildListEndsAtNoneOrZeroAndGivesNullForAnUnknownType) {
    EXPECT_EQ(acutBuildList(RTSTR, "a", 4711, 1, RTNONE), nullptr);
    resbuf* list = acutBuildList(RTSTR, "a", RTSHORT, 3, 0);
    EXPECT_EQ(entries(list),
              (std::vector<std::string>{std::to_string(RTSTR) + " a", std::to_string(RTSHORT) + " 3"}));
    acutRelRb(list);
    resbuf* one = acutNewRb(RTREAL);
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->restype, RTREAL);
    EXPECT_EQ(one->rbnext, nullptr);
    acutRelRb(one);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}

} // namespace
