// ReplacementFile: writing a file whole or not at all, through a new file renamed over the old one.
#pragma once
#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kova {

// Writes a new file beside the target and renames it over the target in commit(), so that a
// write that fails half way (a full disk) leaves the old file whole. A link is followed: the
// file it points to is replaced. The new file takes the old one's permissions.
class ReplacementFile {
public:
    explicit ReplacementFile(std::string target);
    // Removes the new file unless commit() renamed it.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // Makes the new file. False, with nothing made, when the target is write-protected or is no
    // regular file, or when the new file cannot be made.
    bool open();
    // The new file's stream while open.
    std::FILE* stream() const { return m_file; }
    // Flushes and closes the new file and renames it over the target. False when a write or the
    // rename failed: the target is then as it was, and the new file is gone.
    bool commit();

    // The whole new target made of the pieces, one after the other. False when it could not be
    // written (the target is then as it was); error, when given, gets the errno of the failure.
    static bool write(const std::string& target, std::initializer_list<std::string_view> pieces,
                      int* error = nullptr);

    // True when path names something that exists and may not be written: a file without write
    // permission for anyone (so also when the user is root), one the user may not write, or
    // something that is no regular file.
    static bool isWriteProtected(const std::string& path);

private:
    void discard();

    std::string m_target;
    std::string m_temp;
    std::FILE* m_file = nullptr;
};

} // namespace kova
