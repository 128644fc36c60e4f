// log.h - what happens, one line of standard error per event.
#ifndef PLOTWERK_BASE_LOG_H
#define PLOTWERK_BASE_LOG_H

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace plotwerk {

enum class LogLevel { error, warning, info, debug };

// The level called "error", "warning", "info" or "debug"; none for any other name.
std::optional<LogLevel> logLevelNamed(std::string_view name);

// Lines beyond this level are dropped from now on. It starts as info.
void setLogLevel(LogLevel level);

// The program that lines begin with; "plotwerkd" unless set.
void setLogProgram(std::string_view name);

bool isLogged(LogLevel level);

// Writes "PROGRAM: LEVEL: TEXT" as oneLine makes it. A line that nobody takes is lost.
void log(LogLevel level, std::string_view text);

// The same of the text that makeText() returns, of what is done already: where there is no memory
// for the line, it is lost.
template<class MakeText> void logDone(LogLevel level, MakeText makeText) noexcept {
    try {
        log(level, makeText());
    } catch (const std::exception &) { // it isn't undone for that
    }
}

// A text from anywhere as one line of bounded length, in UTF-8 that the bus carries: what can't be
// seen (characters.h) becomes \xHH or \uHHHH, and of a text of more than 800 bytes the middle is
// left out.
//   "a\nb" -> "a\x0ab"
std::string oneLine(std::string_view text);

} // namespace plotwerk

#endif
