// Fuzz target: any bytes as the host's globals file, read leniently, written and read back.
#include "FuzzInput.h"
#include "GlobalsFile.h"
#include "HostTable.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string dir = "/tmp/vardesk-fuzz-globals-" + std::to_string(getpid());
    mkdir(dir.c_str(), 0700);
    const std::string path = dir + "/globals.json";
    const std::string saved = dir + "/saved.json";
    if (!writeInputFile(path, data, size))
        return 0;
    cadhost::VarValues values;
    std::vector<std::string> notes;
    cadhost::GlobalsFile::read(path, hostTable(), values, notes);
    // Only changeable globals of the table are taken; a file with anything else is set aside.
    for (const auto& [name, value] : values) {
        const cadhost::VarDef* def = hostTable().find(name);
        if (!def || !def->global || def->readOnly || def->type != value.type)
            __builtin_trap();
    }
    if (std::filesystem::exists(path) && !notes.empty())
        __builtin_trap(); // a note always says the file was moved or why it could not be
    // What was taken is written, and reads back the same without a note.
    std::string why;
    if (!cadhost::GlobalsFile::write(saved, values, why))
        __builtin_trap();
    cadhost::VarValues again;
    std::vector<std::string> againNotes;
    cadhost::GlobalsFile::read(saved, hostTable(), again, againNotes);
    if (again != values || !againNotes.empty())
        __builtin_trap();
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::filesystem::remove(path + ".unreadable", ignored);
    return 0;
}
