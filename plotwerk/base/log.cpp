#include "plotwerk/base/log.h"

#include "plotwerk/base/characters.h"
#include "util/text/utf8.h"

#include <array>
#include <cstdio>
#include <poll.h>
#include <unistd.h>

namespace plotwerk {

static constexpr std::array<std::string_view, 4> levelNames{"error", "warning", "info", "debug"};

static LogLevel highestLevel = LogLevel::info;
static std::string program = "plotwerkd";

std::optional<LogLevel> logLevelNamed(std::string_view name) {
    for (std::size_t i = 0; i < levelNames.size(); ++i) {
        if (name == levelNames[i]) return static_cast<LogLevel>(i);
    }
    return std::nullopt;
}

void setLogProgram(std::string_view name) {
    program = name;
}

void setLogLevel(LogLevel level) {
    highestLevel = level;
}

bool isLogged(LogLevel level) {
    return level <= highestLevel;
}

// What a message complains about may stand at either end of its text: both ends stay.
static std::string shortened(std::string_view text) {
    constexpr std::size_t longest = 800;
    constexpr std::size_t end = longest / 2;
    if (text.size() <= longest) return std::string(text);

    const std::size_t head = plw::prefixOfCharacters(text, end);
    const std::size_t tail = plw::prefixOfCharacters(text, text.size() - end);
    return std::string(text.substr(0, head)) + "..." + std::string(text.substr(tail));
}

std::string oneLine(std::string_view text) {
    const std::string whole = plw::utf8Of(shortened(text));

    std::string line;
    line.reserve(whole.size());
    std::size_t length = 0;
    for (std::string_view rest = whole; !rest.empty(); rest.remove_prefix(length)) {
        const std::uint32_t code = plw::firstCodePoint(rest, &length);
        if (isControl(code) || isFormat(code)) {
            char escaped[12];
            std::snprintf(escaped, sizeof escaped, code < 0x100 ? "\\x%02x" : "\\u%04x", code);
            line += escaped;
        } else {
            line += rest.substr(0, length);
        }
    }
    return line;
}

void log(LogLevel level, std::string_view text) {
    if (!isLogged(level)) return;
    std::string line = program + ": ";
    line += levelNames[static_cast<std::size_t>(level)];
    line += ": ";
    line += oneLine(text);
    line += '\n';

    // A reader that has stopped reading must not stop the server: a pipe that polls as writable
    // takes PIPE_BUF bytes, and no line is longer.
    pollfd stderrReady{STDERR_FILENO, POLLOUT, 0};
    if (poll(&stderrReady, 1, 0) != 1) return;
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

} // namespace plotwerk
