// The console's output: printed lines and the host's free-form acutPrintf text, kept in order.
#pragma once
#include <functional>
#include <string>

namespace cadhost {

// Joins two kinds of output into one transcript: whole lines (prompts, boxes, dumps) and
// text chunks that may or may not end a line (acutPrintf). A whole line always starts on a
// fresh line, so a module's unfinished output never runs into the next prompt.
class ConsoleOutput {
public:
    using Sink = std::function<void(const std::string&)>;
    // Writes to stdout, flushed after each call.
    ConsoleOutput();
    explicit ConsoleOutput(Sink sink);

    // A chunk as printed by the host; may hold line ends or none.
    void write(const std::string& chunk);
    // One whole line; text holds no line end.
    void line(const std::string& text);

private:
    Sink m_sink;
    bool m_atLineStart = true;
};

} // namespace cadhost
