// Fuzz target: any bytes as a drawing file, read by the host's loader and written back.
#include "DrawingDatabase.h"
#include "VariableTable.h"

#include <cstdint>
#include <string>

namespace {

const cadhost::VariableTable& table()
{
    static const cadhost::VariableTable* loaded = [] {
        auto* made = new cadhost::VariableTable;
        std::string report;
        made->load(VARDESK_SOURCE_DIR "/data/hostvars.tsv", report);
        return made;
    }();
    return *loaded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string message;
    std::unique_ptr<cadhost::DrawingDatabase> db = cadhost::DrawingDatabase::fromJson(text, table(), message);
    if (!db) {
        if (message.empty())
            __builtin_trap(); // a refused file always says why
        return 0;
    }
    db->describeNamedObjects();
    // What the host saves it must open again, and save the same way.
    const std::string saved = db->toJson(table());
    std::string again;
    std::unique_ptr<cadhost::DrawingDatabase> reopened = cadhost::DrawingDatabase::fromJson(saved, table(), again);
    if (!reopened || reopened->toJson(table()) != saved)
        __builtin_trap();
    if (db->openObjectCount() != 0 || reopened->openObjectCount() != 0)
        __builtin_trap();
    return 0;
}
