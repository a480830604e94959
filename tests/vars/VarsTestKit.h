// Shared by the variable tests: the frame tests' in-process host with the host's variable table
// and a fresh drawing for each test, boxes captured as lines, files in the scratch folder.
#pragma once
#include "../frame/TestHost.h"

#include "vars/cSysVarList.h"

namespace filekit {

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

class VarsTest : public testhost::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        static const bool loaded = host.loadVariableTable(VARDESK_SOURCE_DIR "/data/hostvars.tsv").ok;
        ASSERT_TRUE(loaded);
        ASSERT_NE(host.newDocument(), nullptr);
    }
    static std::vector<std::string>& boxes() { return testhost::capture().script.lines; }
    // The folder with its closing "/", as the lists keep directories.
    std::string dir() const { return folder.string() + "/"; }
    void writeFile(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
    }
    static int setShort(const char* name, short v) {
        resbuf rb{};
        rb.restype = RTSHORT;
        rb.resval.rint = v;
        return acedSetVar(name, &rb);
    }
};

} // namespace filekit
