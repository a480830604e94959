// BatchScript: the lines of a batch script, read from a regular file and handed out one by one.
#include "BatchScript.h"

#include "CommandWords.h"
#include "RegularFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace cadhost {

namespace {

constexpr std::size_t kReadBlock = 65536;

} // namespace

bool BatchScript::load(const std::string& path, std::string& error) {
    std::FILE* file = kova::openRegularFile(path);
    if (!file) {
        const std::string why = errno == ENODEV ? "it is no regular file" : std::strerror(errno);
        error = "Cannot read the script \"" + path + "\": " + why + ".";
        return false;
    }
    std::string text;
    char buffer[kReadBlock];
    std::size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        text.append(buffer, got);
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed) {
        error = "Cannot read the script \"" + path + "\".";
        return false;
    }
    setText(text);
    return true;
}

void BatchScript::setText(const std::string& text) {
    m_lines.clear();
    m_next = 0;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        m_lines.push_back(line);
    }
}

bool BatchScript::next(Line& line) {
    while (m_next < m_lines.size()) {
        const int number = int(m_next) + 1;
        std::string text = trimmed(m_lines[m_next++]);
        if (text.empty() || text[0] == ';')
            continue;
        line = {number, text};
        return true;
    }
    return false;
}

} // namespace cadhost
