// Puts a fuzzer's input into a file, for the readers that take a path.
#pragma once
#include <cstddef>
#include <cstdio>
#include <string>

// False when the file cannot be written; the input is then skipped.
inline bool writeInputFile(const std::string& path, const void* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool written = std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}
