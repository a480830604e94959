// Shared set-up of the host SDK tests: a clean host session with the real variable table.
#pragma once
#include "arxheaders.h"
#include "hostsession.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

// A fresh host for each test: the session is shut down and set up again with the variable table
// of data/, a scratch profile folder, and the command line captured in `printed`.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        host().shutdown();
        char pattern[] = "/tmp/sdk_test_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        scratch = pattern;
        host().setOutput([this](const std::string& text) { printed += text; });
        ASSERT_TRUE(host().loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv"));
        ASSERT_TRUE(host().setProfileDir(scratch + "/profile"));
    }
    void TearDown() override {
        host().shutdown();
        std::error_code ec;
        std::filesystem::permissions(scratch, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(scratch, ec);
    }
    static cadhost::HostSession& host() { return cadhost::HostSession::instance(); }

    std::string scratch;
    std::string printed;
};
