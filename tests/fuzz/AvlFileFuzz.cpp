// Fuzz target: any bytes as a description file, read from memory into a fresh list.
#include "vars/AvlFile.h"

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // fmemopen refuses a buffer of size 0; an empty file is one byte that is never read.
    static const char kEmpty = 0;
    std::FILE* file = size ? fmemopen(const_cast<std::uint8_t*>(data), size, "r")
                           : fmemopen(const_cast<char*>(&kEmpty), 1, "r");
    if (!file)
        return 0;
    if (!size)
        std::fgetc(file);
    cSysVarList list;
    ReportList report;
    readAvlStream(list, file, "fuzz.avl", report);
    std::fclose(file);
    // Walk what was made, so a broken chain shows under the sanitizers.
    std::size_t names = 0;
    for (const cSysVar* v = list.first; v; v = v->next)
        names += v->name.size();
    for (const cTheme* t = list.themes.first; t; t = t->next)
        names += t->name.size();
    return names == static_cast<std::size_t>(-1);
}
