// ReplacementFile: writing a file whole or not at all, through a new file renamed over the old one.
#include "ReplacementFile.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kova {

namespace {

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t kNewFileMode = 0666; // narrowed by the umask, as a plain fopen would

// The file a link points to, or path itself; empty when a link leads nowhere.
std::string resolvedTarget(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_symlink(path, ec))
        return path;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, ec);
    return ec ? std::string() : resolved.string();
}

} // namespace

ReplacementFile::ReplacementFile(std::string target) : m_target(std::move(target)) {}

ReplacementFile::~ReplacementFile() {
    discard();
}

bool ReplacementFile::isWriteProtected(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return false; // nothing there: a new file may be made
    if (!S_ISREG(info.st_mode))
        return true;
    return (info.st_mode & kAnyWrite) == 0 || ::access(path.c_str(), W_OK) != 0;
}

bool ReplacementFile::open() {
    discard();
    const std::string target = resolvedTarget(m_target);
    if (target.empty() || isWriteProtected(target))
        return false;
    m_target = target;
    m_temp = target + ".tmp" + std::to_string(::getpid());
    // O_NOFOLLOW: a link planted under the new file's name is not written through.
    const int fd =
        ::open(m_temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kNewFileMode);
    if (fd < 0) {
        m_temp.clear();
        return false;
    }
    m_file = ::fdopen(fd, "w");
    if (!m_file) {
        ::close(fd);
        discard();
        return false;
    }
    return true;
}

bool ReplacementFile::commit() {
    if (!m_file)
        return false;
    // No fsync, as with the other files written here: a full disk shows at the flush already.
    bool written = std::fflush(m_file) == 0 && !std::ferror(m_file);
    written = std::fclose(m_file) == 0 && written;
    m_file = nullptr;
    struct stat old {};
    if (written && ::stat(m_target.c_str(), &old) == 0)
        ::chmod(m_temp.c_str(), old.st_mode & 07777);
    if (!written || std::rename(m_temp.c_str(), m_target.c_str()) != 0) {
        discard();
        return false;
    }
    m_temp.clear();
    return true;
}

bool ReplacementFile::write(const std::string& target, std::initializer_list<std::string_view> pieces,
                            int* error) {
    ReplacementFile file(target);
    errno = 0;
    bool written = file.open();
    for (const std::string_view piece : pieces)
        if (!piece.empty()) // an empty view may hold no pointer at all
            written = written && std::fwrite(piece.data(), 1, piece.size(), file.stream()) == piece.size();
    const int failure = errno;
    if (written && file.commit())
        return true;
    if (error)
        *error = failure ? failure : (errno ? errno : EIO);
    return false;
}

void ReplacementFile::discard() {
    if (m_file) {
        std::fclose(m_file);
        m_file = nullptr;
    }
    if (!m_temp.empty()) {
        ::unlink(m_temp.c_str());
        m_temp.clear();
    }
}

} // namespace kova
