// Opening the files that a user or a drawing names for reading: regular files only.
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

} // namespace kova
