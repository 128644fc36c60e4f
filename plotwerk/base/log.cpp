#include "plotwerk/base/log.h"

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
    const auto escape = [&](unsigned char byte) {
        char hex[5];
        std::snprintf(hex, sizeof hex, "\\x%02x", byte);
        line += hex;
    };
    for (std::size_t i = 0; i < whole.size(); ++i) {
        const auto byte = static_cast<unsigned char>(whole[i]);
        const auto next = static_cast<unsigned char>(i + 1 < whole.size() ? whole[i + 1] : 0);
        if (byte < 0x20 || byte == 0x7f) {
            escape(byte);
        } else if (byte == 0xc2 && next < 0xa0) { // U+0080 to U+009F: a terminal obeys them too
            escape(next);
            ++i;
        } else {
            line += whole[i];
        }
    }
    return line;
}

void log(LogLevel level, std::string_view text) {
    if (level > highestLevel) return;
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
