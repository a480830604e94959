// BatchScript: the lines of a batch script, read from a regular file and handed out one by one.
#include "BatchScript.h"

#include "CommandWords.h"
#include "RegularFile.h"

#include <cerrno>
#include <cstring>
#include <sstream>

namespace cadhost {

bool BatchScript::load(const std::string& path, std::string& error) {
    std::string text;
    const kova::FileRead read = kova::readRegularFile(path, text);
    if (read == kova::FileRead::NotOpened) {
        const std::string why = errno == ENODEV ? "it is no regular file" : std::strerror(errno);
        error = "Cannot read the script \"" + path + "\": " + why + ".";
        return false;
    }
    if (read == kova::FileRead::Failed) {
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
