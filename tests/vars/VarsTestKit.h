// Shared by the variable tests: a host in process, boxes captured as lines, scratch folders, files.
#pragma once
#include "acedads.h"
#include "hostsession.h"
#include "platform/ScriptedUiServices.h"
#include "vars/cSysVarList.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace filekit {

namespace fs = std::filesystem;

// Collects what the scripted services print; answers come from a queue ("no" when it is empty).
class RecordingScript : public kova::ScriptHost {
public:
    void printLine(const std::string& text) override { lines.push_back(text); }
    std::string takeAnswer(const std::string&) override {
        if (answers.empty())
            return "no";
        std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }
    int driveModal(QDialog&) override { return 0; }

    std::vector<std::string> lines;
    std::deque<std::string> answers;
};

// Scripted services whose program starts give a chosen result code (-1: check the program).
class RecordingUi : public kova::ScriptedUiServices {
public:
    explicit RecordingUi(RecordingScript& script) : ScriptedUiServices(script) {}
    int startProgram(const std::string& commandLine) override {
        const int checked = ScriptedUiServices::startProgram(commandLine);
        return execResult < 0 ? checked : execResult;
    }
    int execResult = -1;
};

// The one set of services of the test program, handed to the in-process host once.
struct Capture {
    RecordingScript script;
    RecordingUi ui{script};
};

inline Capture& capture() {
    static Capture* instance = [] {
        auto* made = new Capture;
        cadhost::HostSession::instance().setUiServices(&made->ui);
        return made;
    }();
    return *instance;
}

inline std::string readFile(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// The lines of a text, without their line ends; a text ending in a line end gives no empty last.
inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Every variable the host knows, in the host's order.
inline std::vector<std::string> hostNames() {
    std::vector<std::string> names;
    resbuf* chain = nullptr;
    if (acedGetSysvarList("*", &chain) != RTNORM)
        return names;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext)
        if (rb->restype == RTSTR && rb->resval.rstring)
            names.emplace_back(rb->resval.rstring);
    acutRelRb(chain);
    return names;
}

inline std::vector<std::string> chainNames(const cSysVarList& list) {
    std::vector<std::string> out;
    for (const cSysVar* v = list.first; v; v = v->next)
        out.push_back(v->name);
    return out;
}

// A host in process with the variable table of the data folder and a fresh drawing for each test.
class HostFixture : public ::testing::Test {
protected:
    void SetUp() override {
        auto& host = cadhost::HostSession::instance();
        static const bool loaded = host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv").ok;
        ASSERT_TRUE(loaded);
        host.setOutput([](const std::string&) {}); // the host's refusal messages are not wanted
        ASSERT_NE(host.newDocument(), nullptr);
    }
    void TearDown() override {
        if (auto* doc = cadhost::HostSession::instance().currentDocument())
            cadhost::HostSession::instance().closeDocument(doc);
    }
    static int setShort(const char* name, short v) {
        resbuf rb{};
        rb.restype = RTSHORT;
        rb.resval.rint = v;
        return acedSetVar(name, &rb);
    }
};

// A scratch folder of its own for each test, with boxes captured from an empty start. Base is
// the fixture to build on (a host in process, say).
template <class Base = ::testing::Test> class FileTestOf : public Base {
protected:
    void SetUp() override {
        Base::SetUp();
        Capture& c = capture();
        c.script.lines.clear();
        c.script.answers.clear();
        c.ui.execResult = -1;
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir = fs::temp_directory_path() /
              (std::string("vardesk-files-") + info->test_suite_name() + "-" + info->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override {
        fs::remove_all(dir);
        Base::TearDown();
    }

    std::vector<std::string>& boxes() { return capture().script.lines; }
    // The folder with its closing "/", as the lists keep directories.
    std::string folder() const { return dir.string() + "/"; }
    void writeFile(const std::string& name, const std::string& content) const {
        std::ofstream(dir / name, std::ios::binary) << content;
    }

    fs::path dir;
};
using FileTest = FileTestOf<>;

// Pseudo-random bytes, the same for the same seed.
inline std::string randomBytes(unsigned state, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) {
        state = state * 1103515245u + 12345u;
        bytes += static_cast<char>(state >> 16);
    }
    return bytes;
}

} // namespace filekit
