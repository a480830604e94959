// Parsing, checking and starting of a program command line.
#include "ProgramStart.h"

#include "UiServices.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <unistd.h>

namespace kova {
namespace {

namespace fs = std::filesystem;

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Splits text at blanks outside double quotes; the quotes themselves are removed.
std::vector<std::string> splitArguments(const std::string& text) {
    std::vector<std::string> result;
    std::string current;
    bool inToken = false;
    bool quoted = false;
    for (char c : text) {
        if (c == '"') {
            quoted = !quoted;
            inToken = true;
        } else if (isBlank(c) && !quoted) {
            if (inToken)
                result.push_back(current);
            current.clear();
            inToken = false;
        } else {
            current += c;
            inToken = true;
        }
    }
    if (inToken)
        result.push_back(current);
    return result;
}

bool isExistingFile(const std::string& path) {
    std::error_code ec;
    return fs::exists(path, ec) && !fs::is_directory(path, ec);
}

// A name without "/" is searched on PATH, as a shell would; empty when not found.
std::string searchPath(const std::string& name) {
    const char* path = std::getenv("PATH");
    if (path == nullptr)
        return {};
    std::string folders(path);
    std::size_t start = 0;
    while (start <= folders.size()) {
        std::size_t end = folders.find(':', start);
        if (end == std::string::npos)
            end = folders.size();
        std::string folder = folders.substr(start, end - start);
        if (folder.empty())
            folder = ".";
        const std::string candidate = folder + "/" + name;
        if (isExistingFile(candidate))
            return candidate;
        start = end + 1;
    }
    return {};
}

bool startsLikeAProgram(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return true; // executable but unreadable: only the system can tell, let it try
    char head[4] = {};
    in.read(head, sizeof head);
    const std::streamsize got = in.gcount();
    if (got >= 2 && head[0] == '#' && head[1] == '!')
        return true;
    return got == 4 && head[0] == '\x7f' && head[1] == 'E' && head[2] == 'L' && head[3] == 'F';
}

} // namespace

ProgramCall parseCommandLine(const std::string& commandLine) {
    ProgramCall call;
    std::size_t begin = 0;
    while (begin < commandLine.size() && isBlank(commandLine[begin]))
        ++begin;
    const std::string text = commandLine.substr(begin);
    if (text.empty())
        return call;

    std::string rest;
    if (text.front() == '"') {
        const std::size_t close = text.find('"', 1);
        call.program = text.substr(1, close == std::string::npos ? std::string::npos : close - 1);
        rest = close == std::string::npos ? std::string() : text.substr(close + 1);
    } else {
        std::size_t end = text.find_first_of(" \t");
        while (end != std::string::npos && !isExistingFile(text.substr(0, end)))
            end = text.find_first_of(" \t", end + 1);
        if (end == std::string::npos && !isExistingFile(text)) {
            // Nothing exists: the program is what stands before the first quoted argument, so
            // the failure names the right file and folder.
            end = text.find(" \"");
            if (end == std::string::npos)
                end = text.find_first_of(" \t");
        }
        call.program = text.substr(0, end);
        rest = end == std::string::npos ? std::string() : text.substr(end);
    }
    call.arguments = splitArguments(rest);
    return call;
}

int checkProgram(const ProgramCall& call) {
    if (call.program.empty())
        return ExecResult::FileNotFound;
    std::string path = call.program;
    if (path.find('/') == std::string::npos) {
        path = searchPath(path);
        if (path.empty())
            return ExecResult::FileNotFound;
    }
    std::error_code ec;
    if (!fs::exists(path, ec)) {
        const fs::path folder = fs::path(path).parent_path();
        if (!folder.empty() && !fs::is_directory(folder, ec))
            return ExecResult::PathNotFound;
        return ExecResult::FileNotFound;
    }
    if (fs::is_directory(path, ec) || ::access(path.c_str(), X_OK) != 0 || !startsLikeAProgram(path))
        return ExecResult::BadFormat;
    return ExecResult::Started;
}

int startProgramDetached(const std::string& commandLine) {
    const ProgramCall call = parseCommandLine(commandLine);
    const int check = checkProgram(call);
    if (check != ExecResult::Started)
        return check;
    QStringList arguments;
    for (const std::string& argument : call.arguments)
        arguments << QString::fromStdString(argument);
    if (!QProcess::startDetached(QString::fromStdString(call.program), arguments))
        return ExecResult::OutOfMemory;
    return ExecResult::Started;
}

} // namespace kova
