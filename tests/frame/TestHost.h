// The in-process host for the frame tests: output and boxes captured, a scratch profile folder.
#pragma once
#include <gtest/gtest.h>

#include <arxheaders.h>
#include <hostsession.h>

#include "ScriptedUiServices.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace testhost {

// Collects what the scripted UI services print; boxes take the answers queued, then "ok".
class RecordingScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override {
        if (answers.empty())
            return "ok";
        std::string answer = answers.front();
        answers.erase(answers.begin());
        return answer;
    }
    int driveModal(QDialog&) override { return 0; }
    std::vector<std::string> lines;
    std::vector<std::string> answers;
};

// One script, one set of services and one printed text for the whole test program: the host
// keeps its services and its output sink for its lifetime.
struct Capture {
    RecordingScript script;
    kova::ScriptedUiServices services{script};
    std::string printed;
};

inline Capture& capture() {
    static Capture* instance = [] {
        auto* made = new Capture;
        cadhost::HostSession& host = cadhost::HostSession::instance();
        host.setUiServices(&made->services);
        host.setOutput([made](const std::string& text) { made->printed += text; });
        return made;
    }();
    return *instance;
}

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The entries of the xrecord NOD/dictName/entryName of the working database as (group code,
// value text) pairs; empty when there is none. Every object opened is closed again.
inline std::vector<std::pair<short, std::string>>
storedRecord(const std::string& dictName, const std::string& entryName, unsigned* entriesInDict = nullptr) {
    std::vector<std::pair<short, std::string>> entries;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbDictionary* nod = nullptr;
    if (!db || db->getNamedObjectsDictionary(nod, AcDb::kForRead) != Acad::eOk)
        return entries;
    AcDbObject* object = nullptr;
    const Acad::ErrorStatus found = nod->getAt(dictName.c_str(), object, AcDb::kForRead);
    nod->close();
    if (found != Acad::eOk)
        return entries;
    auto* dict = static_cast<AcDbDictionary*>(object);
    if (entriesInDict)
        *entriesInDict = dict->numEntries();
    AcDbObject* recordObject = nullptr;
    const Acad::ErrorStatus got = dict->getAt(entryName.c_str(), recordObject, AcDb::kForRead);
    dict->close();
    if (got != Acad::eOk)
        return entries;
    resbuf* chain = nullptr;
    static_cast<AcDbXrecord*>(recordObject)->rbChain(&chain);
    recordObject->close();
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        char number[64];
        switch (rb->restype) {
        case 1:
        case RTSTR:
            entries.emplace_back(rb->restype, rb->resval.rstring ? rb->resval.rstring : "");
            continue;
        case 40:
            std::snprintf(number, sizeof number, "%g", rb->resval.rreal);
            break;
        case 70:
            std::snprintf(number, sizeof number, "%d", rb->resval.rint);
            break;
        case 90:
            std::snprintf(number, sizeof number, "%d", static_cast<int>(rb->resval.rlong));
            break;
        default:
            number[0] = '\0';
        }
        entries.emplace_back(rb->restype, number);
    }
    acutRelRb(chain);
    return entries;
}

// A host with no documents, a fresh profile folder and a cleared capture for each test. Checks
// at the end that every database object opened was closed.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        capture();
        capture().printed.clear();
        capture().script.lines.clear();
        capture().script.answers.clear();
        char pattern[] = "/tmp/vardesk-frame-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        ASSERT_TRUE(host.setProfileDir(folder.string()));
    }

    void TearDown() override {
        EXPECT_EQ(host.openObjectCount(), 0) << "every opened database object is closed once";
        host.setWorkingDatabaseAvailable(true);
        host.setDocumentLockRefused(false);
        for (AcApDocument* doc : host.documents())
            host.closeDocument(doc);
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::string& printed() const { return capture().printed; }
    const std::vector<std::string>& uiLines() const { return capture().script.lines; }

    cadhost::HostSession& host = cadhost::HostSession::instance();
    std::filesystem::path folder;
};

} // namespace testhost
