// Shared set-up of the host SDK tests: a clean host session with the real variable table.
#pragma once
#include "arxheaders.h"
#include "hostsession.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

// The whole content of a file, empty when it cannot be read.
inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// A fresh host for each test: the session is shut down and set up again with the variable table
// of data/, a scratch profile folder, and the command line captured in `printed`.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        host().shutdown();
        char pattern[] = "/tmp/sdk_test_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        scratch = pattern;
        ASSERT_TRUE(restart(scratch + "/profile"));
    }
    void TearDown() override {
        host().shutdown();
        std::error_code ec;
        std::filesystem::permissions(scratch, std::filesystem::perms::owner_all, ec);
        std::filesystem::remove_all(scratch, ec);
    }
    // Sets the session up as a start of cadhost does: output, variable table, profile folder.
    cadhost::HostResult restart(const std::string& profile) {
        host().setOutput([this](const std::string& text) { printed += text; });
        cadhost::HostResult table =
            host().loadVariableTable(std::string(VARDESK_SOURCE_DIR) + "/data/hostvars.tsv");
        return table ? host().setProfileDir(profile) : table;
    }
    static cadhost::HostSession& host() { return cadhost::HostSession::instance(); }
    // The variable as the command line shows it, "NAME = value".
    std::string text(const char* name) {
        std::string out;
        EXPECT_TRUE(host().variableText(name, out)) << name;
        return out;
    }
    // The printed lines since the last call.
    std::vector<std::string> take() {
        std::vector<std::string> lines;
        std::istringstream in(printed);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        printed.clear();
        return lines;
    }

    std::string scratch;
    std::string printed;
};
