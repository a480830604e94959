// The line reader of the two text files the system reads, and the AVL reader's stream entry.
#pragma once
#include "cSysVarList.h"

#include <cstdio>
#include <string>

// Longest line the readers take whole, in bytes, without its line end.
inline constexpr std::size_t kMaxLineBytes = 32766;

// Reads a text file line by line through one fixed buffer of kMaxLineBytes + 1 bytes.
//
// A line ends at "\n" or at the end of the file; a last line without a line end is a line like
// any other, and a file that ends in a line end gives no extra empty line. Bytes are taken as
// they stand: a carriage return, a NUL byte or invalid UTF-8 stays in the line for the caller's
// trimming and checks.
//
// A line of more than kMaxLineBytes bytes gives its first kMaxLineBytes bytes with the outcome
// TooLong. The rest of that physical line is then skipped up to and with its line end, and
// reading goes on with the next line: one over-long line costs that line alone, its tail is never
// taken for a line of its own, and line numbers keep counting physical lines.
class TextLineReader {
public:
    enum class Outcome {
        Line,    // a whole line
        TooLong, // the first kMaxLineBytes bytes of a longer line
        End,     // no further line; line is empty
        Failed,  // the stream reported an error; line is empty
    };

    explicit TextLineReader(std::FILE* file) : m_file(file) {}

    // The next line without its line end.
    Outcome next(std::string& line);

private:
    std::FILE* m_file;
    char m_buffer[kMaxLineBytes + 1];
};

// The next line that is neither blank nor a comment (";" first), trimmed at both ends. Every
// physical line counts in lineNumber; a line cut at kMaxLineBytes is reported by its number and
// then taken as far as it was read. Gives Line, End or Failed; the caller reports a failure.
TextLineReader::Outcome nextContentLine(TextLineReader& reader, std::string& line, int& lineNumber,
                                        ReportList& report);

// readAvlFile's work on an open stream: every line into the list's themes and records, each bad
// line a report line. fileName names the file in the report line of a fatal read error, which is
// then the last line of the report. Returns false after a fatal read error, else true. Shows no
// box and does not close the stream: both are readAvlFile's.
bool readAvlStream(cSysVarList& list, std::FILE* file, const std::string& fileName, ReportList& report);
