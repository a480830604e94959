// BatchScript: the lines of a batch script, read from a regular file and handed out one by one.
#pragma once
#include <string>
#include <vector>

namespace cadhost {

// A script is text: lines end at "\n" (a "\r" before it is dropped). Blank lines and lines whose
// first non-blank character is ';' are skipped; the others are handed out trimmed, with the
// number of their physical line.
class BatchScript {
public:
    struct Line {
        int number = 0;
        std::string text;
    };

    // Reads the script file: a regular file only, as a folder would read as an empty script and
    // a device such as /dev/zero would never end. False with a message when it cannot be read.
    bool load(const std::string& path, std::string& error);
    // The script as text.
    void setText(const std::string& text);
    // The next line that is no comment or blank; false at the end.
    bool next(Line& line);

private:
    std::vector<std::string> m_lines;
    size_t m_next = 0;
};

} // namespace cadhost
