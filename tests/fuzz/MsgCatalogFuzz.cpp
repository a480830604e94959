// Fuzz target: any bytes as the message catalog file, loaded into a fresh catalog.
#include "FuzzInput.h"
#include "settings/cMsgCatalog.h"

#include <hostsession.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The alerts for missing keys go to the host's command line: keep them off the fuzzer's.
    cadhost::HostSession::instance().setOutput([](const std::string&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/tmp/vardesk-fuzz-catalog-" + std::to_string(getpid()) + ".msg";
    if (!writeInputFile(path, data, size))
        return 0;

    cMsgCatalog catalog;
    catalog.Load(path);
    // A text read is at most 511 bytes, and the escapes never make it longer.
    std::size_t total = 0;
    for (const cMsgCatalog::Entry& entry : cMsgCatalog::Entries()) {
        const std::string& text = catalog.*(entry.text);
        if (text.size() > 511)
            __builtin_trap();
        total += text.size();
    }
    std::remove(path.c_str());
    return total == static_cast<std::size_t>(-1);
}
