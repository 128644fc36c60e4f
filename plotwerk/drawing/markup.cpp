#include "plotwerk/drawing/markup.h"

#include "util/text/charclass.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <glib.h>
#include <string>
#include <vector>

namespace plotwerk {

static constexpr int deepest = 20;
static constexpr std::size_t longestField = 20;

static constexpr struct {
    std::string_view name, sign;
} signs[] = {
    {"alpha", "\u03b1"},
    {"beta", "\u03b2"},
    {"gamma", "\u03b3"},
    {"delta", "\u03b4"},
    {"epsilon", "\u03b5"},
    {"varepsilon", "\u03b5"},
    {"zeta", "\u03b6"},
    {"eta", "\u03b7"},
    {"theta", "\u03b8"},
    {"vartheta", "\u03d1"},
    {"iota", "\u03b9"},
    {"kappa", "\u03ba"},
    {"lambda", "\u03bb"},
    {"mu", "\u03bc"},
    {"nu", "\u03bd"},
    {"xi", "\u03be"},
    {"omicron", "\u03bf"},
    {"pi", "\u03c0"},
    {"rho", "\u03c1"},
    {"sigma", "\u03c3"},
    {"varsigma", "\u03c2"},
    {"tau", "\u03c4"},
    {"upsilon", "\u03c5"},
    {"phi", "\u03c6"},
    {"varphi", "\u03d5"},
    {"chi", "\u03c7"},
    {"psi", "\u03c8"},
    {"omega", "\u03c9"},
    {"Alpha", "\u0391"},
    {"Beta", "\u0392"},
    {"Gamma", "\u0393"},
    {"Delta", "\u0394"},
    {"Epsilon", "\u0395"},
    {"Zeta", "\u0396"},
    {"Eta", "\u0397"},
    {"Theta", "\u0398"},
    {"Iota", "\u0399"},
    {"Kappa", "\u039a"},
    {"Lambda", "\u039b"},
    {"Mu", "\u039c"},
    {"Nu", "\u039d"},
    {"Xi", "\u039e"},
    {"Omicron", "\u039f"},
    {"Pi", "\u03a0"},
    {"Rho", "\u03a1"},
    {"Sigma", "\u03a3"},
    {"Tau", "\u03a4"},
    {"Upsilon", "\u03a5"},
    {"Phi", "\u03a6"},
    {"Chi", "\u03a7"},
    {"Psi", "\u03a8"},
    {"Omega", "\u03a9"},
    {"pm", "\u00b1"},
    {"mp", "\u2213"},
    {"times", "\u00d7"},
    {"cdot", "\u00b7"},
    {"div", "\u00f7"},
    {"degree", "\u00b0"},
    {"AA", "\u00c5"},
    {"micro", "\u00b5"},
    {"ohm", "\u03a9"},
    {"permil", "\u2030"},
    {"infty", "\u221e"},
    {"to", "\u2192"},
    {"rightarrow", "\u2192"},
    {"leftarrow", "\u2190"},
    {"leftrightarrow", "\u2194"},
    {"uparrow", "\u2191"},
    {"downarrow", "\u2193"},
    {"Rightarrow", "\u21d2"},
    {"approx", "\u2248"},
    {"sim", "\u223c"},
    {"simeq", "\u2243"},
    {"equiv", "\u2261"},
    {"propto", "\u221d"},
    {"ne", "\u2260"},
    {"neq", "\u2260"},
    {"le", "\u2264"},
    {"leq", "\u2264"},
    {"ge", "\u2265"},
    {"geq", "\u2265"},
    {"ll", "\u226a"},
    {"gg", "\u226b"},
    {"partial", "\u2202"},
    {"nabla", "\u2207"},
    {"int", "\u222b"},
    {"sum", "\u2211"},
    {"prod", "\u220f"},
    {"sqrt", "\u221a"},
    {"hbar", "\u210f"},
    {"ell", "\u2113"},
    {"Re", "\u211c"},
    {"Im", "\u2111"},
    {"angle", "\u2220"},
    {"perp", "\u22a5"},
    {"parallel", "\u2225"},
    {"circ", "\u2218"},
    {"bullet", "\u2022"},
    {"star", "\u22c6"},
    {"dagger", "\u2020"},
    {"prime", "\u2032"},
    {"langle", "\u27e8"},
    {"rangle", "\u27e9"},
    {"in", "\u2208"},
    {"oplus", "\u2295"},
    {"otimes", "\u2297"},
    {"odot", "\u2299"},
    {"dots", "\u2026"},
    {"ldots", "\u2026"},
};

static std::string_view signNamed(std::string_view name) {
    const auto *found = std::ranges::find(signs, name, [](const auto &each) { return each.name; });
    return found == std::end(signs) ? std::string_view() : found->sign;
}

// Bytes beyond ASCII belong to letters often enough.
static bool isLetter(char c) {
    return plw::isLetter(c) || static_cast<unsigned char>(c) >= 0x80;
}

static bool isOfWord(char c) {
    return isLetter(c) || plw::isDigit(c) || c == '_';
}

static bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

namespace {

class MarkupReader {
  public:
    MarkupReader(const RichText &text, const FieldText &field_) : runs(text), field(field_) {
        for (const TextRun &run : runs) {
            begins.push_back(source.size());
            source += run.text;
        }
    }

    RichText read() {
        readPart(0, source.size(), {}, 0);
        return std::move(result);
    }

  private:
    struct Style {
        bool bold = false;
        bool italic = false;
        int script = 0;
        int innerScript = 0;

        bool operator==(const Style &) const = default;
    };

    // Nothing beyond the end, and before the beginning, where i has wrapped around.
    char at(std::size_t i) const { return i < source.size() ? source[i] : '\0'; }

    std::string_view from(std::size_t i) const { return std::string_view(source).substr(i); }

    std::size_t runAt(std::size_t i) const {
        return static_cast<std::size_t>(std::ranges::upper_bound(begins, i) - begins.begin()) - 1;
    }

    void readPart(std::size_t begin, std::size_t end, const Style &style, int depth) {
        for (std::size_t i = begin; i < end;) {
            std::size_t after = i;
            switch (source[i]) {
            case '\\': after = readEscape(i, style); break;
            case '<': after = readField(i, style); break;
            case '*': after = readEmphasis(i, end, style, depth); break;
            case '^':
            case '_': after = readScript(i, end, style, depth); break;
            case '-': // in a power, and where a sign stands
                if (style.script > 0 || (style.script < 0 && i == begin))
                    add("\u2212", i, style), after = i + 1;
                break;
            default: break;
            }
            if (after == i) {
                after = i + 1;
                while (source[i] == '*' && after < end && source[after] == '*') ++after;
                add(from(i).substr(0, after - i), i, style);
            }
            i = after;
        }
    }

    // Each of these gives the place behind what it has read: where it began, if that is no markup.

    std::size_t readEscape(std::size_t i, const Style &style) {
        const char c = at(i + 1);
        if (c != '\0' && std::string_view("_^*{}<>").find(c) != std::string_view::npos) {
            add(from(i + 1).substr(0, 1), i, style);
            return i + 2;
        }
        if (c == ',' || c == '\\') {
            add(c == ',' ? "\u2009" : "\n", i, style);
            return i + 2;
        }
        const std::size_t end = endOfSign(i);
        if (end == i) return i;
        add(signNamed(from(i + 1).substr(0, end - i - 1)), i, style);
        return from(end).starts_with("{}") ? end + 2 : end;
    }

    std::size_t endOfSign(std::size_t i) const {
        if (at(i) != '\\') return i;
        std::size_t end = i + 1;
        while (g_ascii_isalpha(at(end))) ++end;
        return signNamed(from(i + 1).substr(0, end - i - 1)).empty() ? i : end;
    }

    std::size_t readField(std::size_t i, const Style &style) {
        const std::size_t length = from(i + 1).substr(0, longestField).find('>');
        if (!field || length == std::string_view::npos) return i;
        const std::optional<RichText> text = field(from(i + 1).substr(0, length));
        if (!text) return i;
        const TextRun outer = look(i, style);
        for (TextRun run : *text) {
            run.bold |= outer.bold;
            run.italic |= outer.italic;
            run.underline |= outer.underline;
            if (outer.script != 0) {
                run.innerScript = run.script != 0 ? run.script : outer.innerScript;
                run.script = outer.script;
            }
            run.size = outer.size;
            run.rise = outer.rise;
            if (!run.colour) run.colour = outer.colour;
            result.push_back(std::move(run));
        }
        lastRun = std::string::npos;
        return i + length + 2;
    }

    std::size_t readEmphasis(std::size_t i, std::size_t end, Style style, int depth) {
        if (depth == deepest || isOfWord(at(i - 1))) return i;
        const std::size_t stars = at(i + 1) == '*' ? 2 : 1;
        const std::size_t close = closingStars(i + stars, end, stars);
        if (close == i) return i;
        (stars == 2 ? style.bold : style.italic) = true;
        readPart(i + stars, close, style, depth + 1);
        return close + stars;
    }

    // Where the stars that end the emphasis stand; the place of its opening ones if it doesn't end.
    std::size_t closingStars(std::size_t begin, std::size_t end, std::size_t stars) const {
        if (begin >= end || isBlank(source[begin])) return begin - stars;
        for (std::size_t i = begin; i < end && source[i] != '\n'; ++i) {
            if (source[i] == '\\' || from(i).starts_with("^*")) {
                ++i;
            } else if (source[i] == '*') {
                std::size_t count = 1;
                while (i + count < end && source[i + count] == '*') ++count;
                // of three the inner emphasis has the first ones
                const bool closes = count == stars || count > 2;
                if (closes && i > begin && !isBlank(source[i - 1])) return i + count - stars;
                i += count - 1;
            }
        }
        return begin - stars;
    }

    std::size_t readScript(std::size_t i, std::size_t end, Style style, int depth) {
        if (depth == deepest) return i;
        std::size_t begin = i + 1;
        std::size_t close = i;
        std::size_t after = i;
        if (at(begin) == '{') {
            close = closingBrace(begin, end);
            if (close == begin) return i;
            after = close + 1;
            ++begin;
        } else {
            close = source[i] == '^' ? endOfPlainSuperscript(begin) : endOfPlainSubscript(i);
            close = after = std::min(close, end);
            if (close <= begin) return i;
        }
        const int script = source[i] == '^' ? 1 : -1;
        (style.script == 0 ? style.script : style.innerScript) = script;
        readPart(begin, close, style, depth + 1);
        return after;
    }

    // Of the brace there; its own place if it isn't closed.
    std::size_t closingBrace(std::size_t open, std::size_t end) const {
        int depth = 0;
        for (std::size_t i = open; i < end; ++i) {
            if (source[i] == '\\')
                ++i;
            else if (source[i] == '{')
                ++depth;
            else if (source[i] == '}' && --depth == 0)
                return i;
        }
        return open;
    }

    // Behind the letter there; its own place if there is none, or more than one.
    std::size_t endOfLetter(std::size_t i) const {
        if (!isLetter(at(i))) return i;
        const std::size_t end = i + plw::firstCharacter(from(i)).size();
        return isLetter(at(end)) || plw::isDigit(at(end)) ? i : end;
    }

    std::size_t endOfPlainSuperscript(std::size_t begin) const {
        if (at(begin) == '*') return begin + 1;
        if (const std::size_t end = endOfSign(begin); end > begin) return end;
        std::size_t i = begin;
        if (from(i).starts_with("\u2212"))
            i += 3;
        else if (at(i) == '-' || at(i) == '+')
            ++i;
        if (const std::size_t end = endOfLetter(i); end > i) return end;
        std::size_t end = i;
        while (plw::isDigit(at(end))) ++end;
        if (end > i && at(end) == '.' && plw::isDigit(at(end + 1)))
            for (++end; plw::isDigit(at(end));) ++end;
        return end > i || !isLetter(at(end)) ? end : begin;
    }

    std::size_t endOfPlainSubscript(std::size_t underscore) const {
        std::size_t wordBegin = underscore;
        while (isOfWord(at(wordBegin - 1))) --wordBegin;
        for (std::size_t i = wordBegin; isOfWord(at(i)); ++i)
            if (at(i) == '_' && at(i + 1) != '{' && endOfSubscript(i) == i) return underscore;
        return endOfSubscript(underscore);
    }

    // Behind the digits, the letter or the sign after this underscore; its own place if that is no
    // subscript.
    std::size_t endOfSubscript(std::size_t underscore) const {
        const std::size_t begin = underscore + 1;
        if (underscore == 0 || isBlank(source[underscore - 1])) return underscore;
        if (const std::size_t end = endOfSign(begin); end > begin) return end;
        std::size_t digits = 0;
        while (plw::isDigit(at(begin + digits))) ++digits;
        if (digits > 0) {
            const char next = at(begin + digits);
            return digits > 2 || g_ascii_islower(next) || next == '_' ? underscore : begin + digits;
        }
        const std::size_t end = endOfLetter(begin);
        return end > begin && at(end) != '_' && isSingleBefore(underscore) ? end : underscore;
    }

    // Whether one letter, a sign or a bracket stands there, perhaps in italics.
    bool isSingleBefore(std::size_t end) const {
        while (at(end - 1) == '*') --end;
        std::size_t begin = end;
        while (isOfWord(at(begin - 1))) --begin;
        if (begin == end) return at(end - 1) == ')' || at(end - 1) == ']';
        if (endOfSign(begin - 1) == end) return true;
        return isLetter(source[begin]) && begin + plw::firstCharacter(from(begin)).size() == end;
    }

    TextRun look(std::size_t i, const Style &style) const {
        const TextRun &origin = runs[runAt(i)];
        TextRun run = origin;
        run.text.clear();
        run.bold |= style.bold;
        run.italic |= style.italic;
        if (style.script != 0) {
            run.innerScript = run.script != 0 ? style.script : style.innerScript;
            if (run.script == 0) run.script = style.script;
        }
        return run;
    }

    void add(std::string_view text, std::size_t i, const Style &style) {
        const std::size_t run = runAt(i);
        if (run != lastRun || style != lastStyle) result.push_back(look(i, style));
        lastRun = run;
        lastStyle = style;
        result.back().text += text;
    }

    const RichText &runs;
    const FieldText &field;
    std::string source;
    std::vector<std::size_t> begins; // of the runs in the source
    RichText result;
    std::size_t lastRun = std::string::npos; // that the end of the result comes from
    Style lastStyle;
};

} // namespace

RichText readMarkup(const RichText &text, const FieldText &field) {
    return MarkupReader(text, field).read();
}

} // namespace plotwerk
