// Tests of drawings: the Named Objects Dictionary, open and close of objects, and the drawing file.
// A drawing file read from disk, listed and saved is in host_basics.scr; bad JSON and a variable out of
// range in bad_drawing.scr; a record replaced at each run of the module in settings_store.scr.
#include "SdkTestSupport.h"

#include <cmath>
#include <cstdio>
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
    }
    // Opens NOD/path... for `mode`, making missing dictionaries when writing; null when missing.
    AcDbObject* openPath(std::vector<const char*> path, AcDb::OpenMode mode) {
        AcDbDictionary* nod = nullptr;
        EXPECT_EQ(db->getNamedObjectsDictionary(nod, mode), Acad::eOk);
        AcDbObject* current = nod;
        for (size_t i = 0; i < path.size(); ++i) {
            const char* key = path[i];
            AcDbObject* next = nullptr;
            auto* dict = static_cast<AcDbDictionary*>(current);
            if (dict->getAt(key, next, mode) != Acad::eOk && mode == AcDb::kForWrite) {
                AcDbObjectId id;
                next =
                    i + 1 == path.size() ? static_cast<AcDbObject*>(new AcDbXrecord()) : new AcDbDictionary();
                EXPECT_EQ(dict->setAt(key, next, id), Acad::eOk);
                EXPECT_FALSE(id.isNull());
            }
            current->close();
            if (!next)
                return nullptr;
            current = next;
        }
        return current;
    }
    void putRecord(std::vector<const char*> path, const resbuf* chain) {
        auto* rec = static_cast<AcDbXrecord*>(openPath(path, AcDb::kForWrite));
        EXPECT_EQ(rec->setFromRbChain(*chain), Acad::eOk);
        rec->close();
    }
    std::vector<std::string> readRecord(std::vector<const char*> path) {
        AcDbObject* rec = openPath(path, AcDb::kForRead);
        if (!rec)
            return {"missing"};
        resbuf* chain = nullptr;
        EXPECT_EQ(static_cast<AcDbXrecord*>(rec)->rbChain(&chain), Acad::eOk);
        rec->close();
        std::vector<std::string> out = entries(chain);
        acutRelRb(chain);
        return out;
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
    resbuf* small = acutBuildList(1, "deep", RTNONE);
    putRecord({"OUTER", "PLAIN"}, chain);
    putRecord({"outer", "Inner", "DEEP"}, small); // keys ignore case: "outer" is OUTER

    const std::string path = scratch + "/roundtrip.dwg";
    ASSERT_TRUE(host().saveDocument(host().currentDocument(), path));
    ASSERT_TRUE(host().closeDocument(host().currentDocument()));
    std::string message;
    ASSERT_NE(host().openDocument(path, &message), nullptr) << message;
    db = acdbHostApplicationServices()->workingDatabase();
    EXPECT_EQ(readRecord({"OUTER", "PLAIN"}), entries(chain));
    EXPECT_EQ(readRecord({"OUTER", "INNER", "DEEP"}), entries(small));
    std::vector<std::string> lines;
    ASSERT_TRUE(host().namedObjectsListing(lines));
    ASSERT_GE(lines.size(), 5u);
    EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 3),
              (std::vector<std::string>{"XRECORD OUTER/Inner/DEEP", "  1 deep", "XRECORD OUTER/PLAIN"}));
    EXPECT_EQ(host().openObjectCount(), 0);
    acutRelRb(chain);
    acutRelRb(small);
}

TEST_F(Drawing, BrokenFilesOpenNothingAndSayWhy) {
    const std::string head = "{\"cadhostDrawing\": 1, ";
    const std::pair<std::string, const char*> bads[] = {
        {"", "not valid JSON"},
        {"[]", "not a drawing file"},
        {"{\"cadhostDrawing\": 2}", "version 2"},
        {head + "\"variables\": []}", "\"variables\" must be"},
        {head + "\"variables\": {\"LUPREC\": \"four\"}}", "variable LUPREC"},
        {head + "\"variables\": {\"INSBASE\": [1, 2]}}", "INSBASE requires a 3D point"},
        {head + "\"regApps\": [1]}", "regApps"},
        {head + "\"namedObjects\": []}", "must be a JSON object"},
        {head + "\"namedObjects\": {\"A\": {}}}", "A: an entry must be"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": {}}}}", "must be a JSON array"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [[40, \"x\"]]}}}",
         "A item 1: group code 40 has a value of the wrong kind"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [[70, 40000]]}}}", "group code 70"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [[-9999, 1]]}}}", "not supported"},
        {head + "\"namedObjects\": {\"A\": {\"xrecord\": [\"x\"]}}}", "[group code, value]"},
        {head + "\"namedObjects\": {\"A\": {\"dictionary\": {\"b\": {\"dictionary\": {}}, "
                "\"B\": {\"dictionary\": {}}}}}}",
         "twice"},
        {head + "\"namedObjects\": {\"\": {\"dictionary\": {}}}}", "empty key"},
    };
    for (const auto& [content, said] : bads) {
        const std::string path = scratch + "/bad.dwg";
        std::ofstream(path, std::ios::trunc) << content;
        std::string message;
        EXPECT_EQ(host().openDocument(path, &message), nullptr) << content;
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

TEST_F(Drawing, ObjectsAreOpenedAndClosedLikeInARealHost) {
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

TEST(ResultBuffers, BuildListEndsAtNoneOrZeroAndGivesNullForAnUnknownType) {
    EXPECT_EQ(acutBuildList(RTSTR, "a", 4711, 1, RTNONE), nullptr);
    resbuf* list = acutBuildList(RTSTR, "a", RTSHORT, 3, 0);
    EXPECT_EQ(entries(list),
              (std::vector<std::string>{std::to_string(RTSTR) + " a", std::to_string(RTSHORT) + " 3"}));
    acutRelRb(list);
    EXPECT_EQ(acutRelRb(nullptr), RTNORM);
}

} // namespace
