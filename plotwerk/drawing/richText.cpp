#include "plotwerk/drawing/richText.h"

#include "plotwerk/base/memoryReserve.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <glib.h>
#include <memory>

namespace plotwerk {

static constexpr std::size_t longestText = 4096;
static constexpr std::size_t deepestGroup = 200;
static constexpr std::size_t mostColours = 1000;
static constexpr double smallestSize = 1;
static constexpr double largestSize = 200;

static std::string validUtf8(std::string text) {
    if (plw::isUtf8(text)) return text;
    requireFree(12 * text.size()); // three bytes for each bad one, and twice that while it grows
    const std::unique_ptr<gchar, decltype(&g_free)> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), g_free);
    return valid.get();
}

// Line ends of every system become line feeds; other control characters go.
static std::string withoutControls(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '\r') {
            if (i + 1 == text.size() || text[i + 1] != '\n') result += '\n';
        } else if (c == '\n' || c == '\t' || (c >= 0x20 && c != 0x7f)) {
            result += text[i];
        }
    }
    return result;
}

// Code page 1252 in 0x80..0x9f; elsewhere it is ISO 8859-1. 0 where nothing is assigned.
static constexpr std::array<std::uint16_t, 32> codePage1252 = {
    0x20ac, 0,      0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017d, 0,      0,      0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0,      0x017e, 0x0178};

static std::uint32_t codeOf1252(std::uint32_t byte) {
    return byte >= 0x80 && byte < 0xa0 ? codePage1252[byte - 0x80] : byte;
}

// Destinations whose text isn't part of the document's own; {\* ...} is left out as well.
static constexpr std::string_view hiddenDestinations[] = {
    "fonttbl",  "colortbl",  "stylesheet", "info",   "pict",       "object",  "header",
    "headerl",  "headerr",   "headerf",    "footer", "footerl",    "footerr", "footerf",
    "footnote", "listtable", "filetbl",    "revtbl", "nonshppict", "xe",      "tc"};

static constexpr struct {
    std::string_view word;
    std::uint32_t code;
} namedCharacters[] = {
    {"par", '\n'},      {"line", '\n'},      {"sect", '\n'},        {"page", '\n'},
    {"row", '\n'},      {"cell", '\t'},      {"tab", '\t'},         {"emdash", 0x2014},
    {"endash", 0x2013}, {"emspace", 0x2003}, {"enspace", 0x2002},   {"bullet", 0x2022},
    {"lquote", 0x2018}, {"rquote", 0x2019},  {"ldblquote", 0x201c}, {"rdblquote", 0x201d}};

namespace {

class RtfReader {
  public:
    explicit RtfReader(std::string_view rtf) : rest(rtf) {}

    RichText read() {
        while (!rest.empty() && length < longestText) {
            const char c = rest.front();
            rest.remove_prefix(1);
            if (c == '{')
                openGroup();
            else if (c == '}')
                closeGroup();
            else if (c == '\\')
                readControl();
            else if (group.colourTable)
                addColour(c);
            else if (c != '\n' && c != '\r')
                addByte(c);
        }
        flush();
        return std::move(runs);
    }

  private:
    struct Group {
        TextRun look; // without text
        bool hidden = false;
        bool colourTable = false;
        int unicodeFallback = 1; // characters that stand for \u in readers without Unicode
    };

    void openGroup() {
        skip = 0;
        if (outer.size() < deepestGroup)
            outer.push_back(group);
        else
            ++tooDeep;
    }

    void closeGroup() {
        skip = 0;
        if (tooDeep > 0) {
            --tooDeep;
        } else if (!outer.empty()) {
            flush();
            group = outer.back();
            outer.pop_back();
        }
    }

    void readControl() {
        if (rest.empty()) return;
        const char c = rest.front();
        if (g_ascii_isalpha(c)) {
            readWord();
            return;
        }
        rest.remove_prefix(1);
        switch (c) {
        case '\'': readHex(); break;
        case '*': group.hidden = true; break;
        case '~': addCode(0xa0); break;
        case '_': addCode(0x2011); break;
        case '\n':
        case '\r': addCode('\n'); break;
        case '\t': addCode('\t'); break;
        case '\\':
        case '{':
        case '}': addCode(static_cast<std::uint32_t>(c)); break;
        default: break;
        }
    }

    void readHex() {
        std::uint32_t byte = 0;
        const char *end = rest.data() + std::min<std::size_t>(rest.size(), 2);
        const auto [after, error] = std::from_chars(rest.data(), end, byte, 16);
        rest.remove_prefix(static_cast<std::size_t>(after - rest.data()));
        if (error == std::errc()) addCode(codeOf1252(byte));
    }

    void readWord() {
        std::size_t size = 0;
        while (size < rest.size() && g_ascii_isalpha(rest[size])) ++size;
        const std::string_view word = rest.substr(0, size);
        rest.remove_prefix(size);

        int number = 0;
        const auto [after, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
        const bool hasNumber = after != rest.data();
        if (error == std::errc::result_out_of_range) number = 0;
        rest.remove_prefix(static_cast<std::size_t>(after - rest.data()));
        if (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
        apply(word, number, hasNumber);
    }

    void apply(std::string_view word, int number, bool hasNumber) {
        if (word == "u") {
            addUnit(static_cast<std::uint32_t>(number) & 0xffff);
            skip = group.unicodeFallback;
        } else if (word == "uc") {
            group.unicodeFallback = std::clamp(number, 0, 100);
        } else if (word == "bin") {
            rest.remove_prefix(
                std::min(rest.size(), static_cast<std::size_t>(std::max(number, 0))));
        } else if (skip > 0) {
            --skip;
        } else if (std::find(std::begin(hiddenDestinations), std::end(hiddenDestinations), word) !=
                   std::end(hiddenDestinations)) {
            group.hidden = true;
            group.colourTable = word == "colortbl";
        } else if (group.colourTable) {
            changeColour(word, number);
        } else {
            for (const auto &named : namedCharacters)
                if (named.word == word) addCode(named.code);
            changeLook(word, number, hasNumber);
        }
    }

    void changeColour(std::string_view word, int number) {
        const double part = std::clamp(number, 0, 255) / 255.0;
        if (!colour) colour = Colour{};
        if (word == "red")
            colour->red = part;
        else if (word == "green")
            colour->green = part;
        else if (word == "blue")
            colour->blue = part;
    }

    // An entry of the colour table ends; one without a colour is that of the surrounding.
    void addColour(char c) {
        if (c != ';') return;
        if (colours.size() < mostColours) colours.push_back(colour);
        colour.reset();
    }

    void changeLook(std::string_view word, int number, bool hasNumber) {
        TextRun look = group.look;
        const bool on = !hasNumber || number != 0;
        const double halfPoints = std::clamp(hasNumber ? number : 6, 0, 400) / 2.0;
        if (word == "plain")
            look = {};
        else if (word == "b")
            look.bold = on;
        else if (word == "i")
            look.italic = on;
        else if (word == "ul")
            look.underline = on;
        else if (word == "ulnone")
            look.underline = false;
        else if (word == "super")
            look.script = on ? 1 : 0;
        else if (word == "sub")
            look.script = on ? -1 : 0;
        else if (word == "nosupersub")
            look.script = 0;
        else if (word == "up")
            look.rise = halfPoints;
        else if (word == "dn")
            look.rise = -halfPoints;
        else if (word == "cf")
            look.colour = colourAt(number);
        else if (word == "fs" && hasNumber)
            look.size = std::clamp(number / 2.0, smallestSize, largestSize);
        else
            return;
        flush();
        group.look = look;
    }

    std::optional<Colour> colourAt(int number) const {
        if (number < 0 || static_cast<std::size_t>(number) >= colours.size()) return std::nullopt;
        return colours[static_cast<std::size_t>(number)];
    }

    void addByte(char c) {
        if (skip > 0) {
            --skip;
        } else if (!group.hidden) {
            settleSurrogate();
            text += c;
            ++length;
        }
    }

    void addCode(std::uint32_t code) {
        if (skip > 0) {
            --skip;
        } else if (!group.hidden && code != 0) {
            settleSurrogate();
            append(code);
        }
    }

    // One UTF-16 code unit of \u.
    void addUnit(std::uint32_t unit) {
        if (group.hidden) return;
        if (unit >= 0xd800 && unit < 0xdc00) {
            settleSurrogate();
            highSurrogate = unit;
        } else if (unit >= 0xdc00 && unit < 0xe000 && highSurrogate != 0) {
            append(0x10000 + ((highSurrogate - 0xd800) << 10) + (unit - 0xdc00));
            highSurrogate = 0;
        } else {
            settleSurrogate();
            const bool surrogate = unit >= 0xd800 && unit < 0xe000;
            if (unit != 0) append(surrogate ? 0xfffd : unit);
        }
    }

    // A high surrogate that got no partner.
    void settleSurrogate() {
        if (highSurrogate != 0) append(0xfffd);
        highSurrogate = 0;
    }

    void append(std::uint32_t code) {
        char utf8[6];
        const int size = g_unichar_to_utf8(code, utf8);
        text.append(utf8, static_cast<std::size_t>(size));
        length += static_cast<std::size_t>(size);
    }

    void flush() {
        settleSurrogate();
        TextRun run = group.look;
        run.text = validUtf8(withoutControls(text));
        text.clear();
        if (!run.text.empty()) runs.push_back(std::move(run));
    }

    std::string_view rest;
    RichText runs;
    std::string text; // of the run that is being read
    std::size_t length = 0;
    Group group;
    std::vector<Group> outer;
    std::vector<std::optional<Colour>> colours;
    std::optional<Colour> colour; // of the table's entry that is being read
    std::size_t tooDeep = 0;
    int skip = 0; // characters that a \u before them replaces
    std::uint32_t highSurrogate = 0;
};

} // namespace

static void dropEmptyLinesAtEnd(RichText &runs) {
    while (!runs.empty()) {
        std::string &last = runs.back().text;
        while (!last.empty() && last.back() == '\n') last.pop_back();
        if (!last.empty()) return;
        runs.pop_back();
    }
}

RichText richTextOf(std::string_view text) {
    RichText runs;
    if (text.starts_with("{\\rtf")) {
        runs = RtfReader(text).read();
        // what was RTF already when a client wrapped it as plain text
        const std::string wrapped = plainTextOf(runs);
        if (wrapped.starts_with("{\\rtf")) runs = RtfReader(wrapped).read();
    } else {
        TextRun run;
        run.text =
            validUtf8(withoutControls(text.substr(0, plw::prefixOfCharacters(text, longestText))));
        runs.push_back(std::move(run));
    }
    dropEmptyLinesAtEnd(runs);
    return runs;
}

std::string plainTextOf(const RichText &text) {
    std::string plain;
    for (const TextRun &run : text) plain += run.text;
    return plain;
}

} // namespace plotwerk
