// Opening and reading the files that a user or a drawing names: regular files only.
#pragma once
#include <cstdio>
#include <string>

namespace kova {

// Opens path for reading as std::fopen(path, "r") does, but only when it is a regular file (a
// link to one counts). A folder, a device such as /dev/zero, a FIFO or a socket gives null, as
// a file that cannot be opened does: reading them would never end or never begin. Opening does
// not wait for a FIFO's writer. On failure errno is that of the open, or EISDIR for a folder
// and ENODEV for anything else that is no regular file.
std::FILE* openRegularFile(const std::string& path);

// How reading a whole file went.
enum class FileRead { Done, NotOpened, Failed };

// Reads the regular file at path whole into content, opening it as openRegularFile does.
// NotOpened leaves errno as openRegularFile sets it; Failed is a read that broke off part way.
// Content changes only when the read is Done.
FileRead readRegularFile(const std::string& path, std::string& content);

} // namespace kova
