// Fuzz target: any bytes as a drawing file (DXF or the former JSON form), read by the host's
// loader and written back as DXF.
#include "DrawingDatabase.h"
#include "HostTable.h"

#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string message;
    std::vector<std::string> notes;
    std::unique_ptr<cadhost::DrawingDatabase> db =
        cadhost::DrawingDatabase::fromFile(text, hostTable(), message, notes);
    if (!db) {
        if (message.empty())
            __builtin_trap(); // a refused file always says why
        return 0;
    }
    db->describeNamedObjects();
    // What the host saves it must open again, and save the same way.
    const std::string saved = db->toDxf(hostTable(), notes);
    std::string again;
    std::unique_ptr<cadhost::DrawingDatabase> reopened =
        cadhost::DrawingDatabase::fromFile(saved, hostTable(), again, notes);
    if (!reopened || reopened->toDxf(hostTable(), notes) != saved)
        __builtin_trap();
    if (db->openObjectCount() != 0 || reopened->openObjectCount() != 0)
        __builtin_trap();
    return 0;
}
