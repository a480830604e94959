// The console's output: printed lines and the host's free-form acutPrintf text, kept in order.
#include "ConsoleOutput.h"

#include <cstdio>

namespace cadhost {

ConsoleOutput::ConsoleOutput()
    : m_sink([](const std::string& text) {
          std::fwrite(text.data(), 1, text.size(), stdout);
          std::fflush(stdout);
      }) {}

ConsoleOutput::ConsoleOutput(Sink sink) : m_sink(std::move(sink)) {}

void ConsoleOutput::write(const std::string& chunk) {
    if (chunk.empty())
        return;
    m_sink(chunk);
    m_atLineStart = chunk.back() == '\n';
}

void ConsoleOutput::line(const std::string& text) {
    m_sink(m_atLineStart ? text + "\n" : "\n" + text + "\n");
    m_atLineStart = true;
}

} // namespace cadhost
