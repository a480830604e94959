// Opening and reading the files that a user or a drawing names: regular files only.
#include "RegularFile.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kova {

namespace {

constexpr std::size_t kReadBlock = 65536;

} // namespace

std::FILE* openRegularFile(const std::string& path) {
    // Without O_NONBLOCK, opening a FIFO would wait for a writer that may never come.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        errno = S_ISDIR(info.st_mode) ? EISDIR : ENODEV;
        return nullptr;
    }
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags >= 0)
        ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    std::FILE* file = ::fdopen(fd, "r");
    if (!file)
        ::close(fd);
    return file;
}

FileRead readRegularFile(const std::string& path, std::string& content) {
    std::FILE* file = openRegularFile(path);
    if (!file)
        return FileRead::NotOpened;
    std::string text;
    char buffer[kReadBlock];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        text.append(buffer, got);
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed)
        return FileRead::Failed;
    content = std::move(text);
    return FileRead::Done;
}

} // namespace kova
