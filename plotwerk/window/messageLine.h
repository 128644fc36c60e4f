// messageLine.h - messages as the command lines by which a script sends them.
#ifndef PLOTWERK_WINDOW_MESSAGELINE_H
#define PLOTWERK_WINDOW_MESSAGELINE_H

#include "plotwerk/server/recordedMessage.h"

#include <optional>
#include <string>

namespace plotwerk {

struct MessageLine {
    std::string document; // that the message is about
    std::string text;     // of the line, for a shell: callPlw -x setXRange -s 1 -e 2

    // The setting that it gives a value of its own, so that it makes a line before it with the same
    // one superfluous, if only lines with such settings stand between; empty for other messages.
    std::string setting;

    // That the line needs to be in force; nothing where it makes no difference.
    std::optional<char> decimalSeparator{};

    bool opens = false;     // a file; the document is in front then, whatever its name
    bool selects = false;   // curves, and nothing else
    bool keepsData = false; // all values of all columns stay
};

// Without the document's name: the line is for the document in front. What no command of callPlw
// can say is sent by busctl; data too long for a line are read in by several. Nothing for one that
// only asks, makes, raises or closes a document, or is about a composition.
std::optional<MessageLine> messageLine(const RecordedMessage &message);

} // namespace plotwerk

#endif
