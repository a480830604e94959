// Fuzz target: any bytes as a batch script, read and split into lines and words.
#include "BatchScript.h"
#include "CommandWords.h"
#include "FuzzInput.h"

#include <unistd.h>

#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = "/tmp/vardesk-fuzz-script-" + std::to_string(getpid()) + ".scr";
    if (!writeInputFile(path, data, size))
        return 0;
    cadhost::BatchScript script;
    std::string error;
    if (!script.load(path, error))
        __builtin_trap(); // a regular file is always readable
    cadhost::BatchScript::Line line;
    int last = 0;
    std::vector<std::string> words;
    while (script.next(line)) {
        // Lines come in file order, trimmed, never blank or a comment.
        if (line.number <= last || line.text.empty() || line.text[0] == ';' ||
            line.text != cadhost::trimmed(line.text))
            __builtin_trap();
        last = line.number;
        if (!cadhost::splitWords(line.text, words, error) && error.empty())
            __builtin_trap(); // a refused line always says why
    }
    return 0;
}
