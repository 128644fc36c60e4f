// richText.h - texts of a picture: plain or RTF, as runs of equal look.
#ifndef PLOTWERK_DRAWING_RICHTEXT_H
#define PLOTWERK_DRAWING_RICHTEXT_H

#include "plotwerk/model/document.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

struct TextRun {
    std::string text; // valid UTF-8; of the control characters only line feed and tab
    bool bold = false;
    bool italic = false;
    bool underline = false;
    int script = 0;      // 1 superscript, -1 subscript
    int innerScript = 0; // the same, within that one
    double size = unset; // in points; unset: that of the surrounding picture
    double rise = 0;     // of the base line, in points
    std::optional<Colour> colour{};
    double width = unset;              // in points; unset: that of its characters, else these
    const CurveLook *sample = nullptr; // aren't drawn, but a piece of a curve if there is one
};

using RichText = std::vector<TextRun>;

// Text that begins with "{\rtf" is read as RTF, and what it holds once more if that does, too; any
// other is one run. A new line begins at each line feed: in RTF \par, \line, \sect, \page, \row and
// a backslash before the end of a line make one, while line ends by themselves are nothing; in
// other text CR LF and CR are one, too. Empty lines at the end are dropped, and so is what lies
// beyond 4096 bytes of text. Bytes that are no UTF-8 become U+FFFD. Nothing is refused: of
// malformed RTF what can be read is kept, unknown control words, destinations that aren't text and
// groups nested deeper than 200 lose their effect.
//   "{\\rtf1 10\\super 5}" -> "10", "5" as superscript       "a{b" -> "a{b"
RichText richTextOf(std::string_view text);

// The characters alone.
std::string plainTextOf(const RichText &text);

} // namespace plotwerk

#endif
