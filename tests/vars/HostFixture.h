// A host in process with the variable table of the data folder and a fresh drawing for each test.
#pragma once
#include "acedads.h"
#include "hostsession.h"

#include <gtest/gtest.h>

#include <string>

class HostFixture : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static bool loaded = false;
        if (!loaded) {
            const auto result = cadhost::HostSession::instance().loadVariableTable(
                VARDESK_SOURCE_DIR "/data/hostvars.tsv");
            ASSERT_TRUE(result.ok) << result.message;
            loaded = true;
        }
    }
    void SetUp() override
    {
        auto& host = cadhost::HostSession::instance();
        host.setOutput([](const std::string&) {}); // the host's refusal messages are not wanted
        ASSERT_NE(host.newDocument(), nullptr);
    }
    void TearDown() override
    {
        auto& host = cadhost::HostSession::instance();
        if (auto* doc = host.currentDocument())
            host.closeDocument(doc);
    }

    static int setReal(const char* name, double v)
    {
        resbuf rb{};
        rb.restype = RTREAL;
        rb.resval.rreal = v;
        return acedSetVar(name, &rb);
    }
    static int setShort(const char* name, short v)
    {
        resbuf rb{};
        rb.restype = RTSHORT;
        rb.resval.rint = v;
        return acedSetVar(name, &rb);
    }
};
