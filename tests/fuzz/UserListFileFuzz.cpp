// Fuzz target: any bytes as a user list file, read over a list holding a record of every kind.
#include "FuzzInput.h"
#include "vars/cSysVarList.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace {

// One record of each value type, as the host would have typed them.
cSysVarList& typedList() {
    static cSysVarList* list = [] {
        auto* made = new cSysVarList;
        const struct {
            const char* name;
            int type;
            const char* marks;
        } rows[] = {{"REAL", 5001, "+-"}, {"P2", 5002, "+-"},   {"INT", 5003, "+-"},  {"TEXT", 5005, "+-"},
                    {"P3", 5009, "++"},   {"LONG", 5010, "+-"}, {"NONE", 5000, "+-"}, {"RO", 5005, "--"}};
        for (const auto& row : rows) {
            made->addVariable("1", row.name, row.marks, "", 1);
            made->findName(row.name)->valueType = static_cast<ValueType>(row.type);
        }
        made->pointSeparator = ',';
        const std::string dir = "/tmp/vardesk-fuzz-" + std::to_string(getpid()) + "/";
        mkdir(dir.c_str(), 0700);
        made->userDirectory = dir;
        made->userFileName = "input.var";
        return made;
    }();
    return *list;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    cSysVarList& list = typedList();
    const std::string path = list.userDirectory + list.userFileName;
    if (!writeInputFile(path, data, size))
        return 0;
    ReportList report;
    list.readUserFile(report);
    // Writing back what was read must work on whatever the file left in the records.
    list.writeUserFile(list.userDirectory, "output.var", false);
    list.clearAllNewValues();
    return 0;
}
