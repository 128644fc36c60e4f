#include "plotwerk/drawing/markup.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace plotwerk;

namespace {

// Each run as its look in braces, sizes and rises in half points, and its text.
std::string described(const RichText &text) {
    std::string all;
    for (const TextRun &run : text) {
        std::string look = (run.bold ? "b" : "") + std::string(run.italic ? "i" : "");
        if (run.underline) look += 'u';
        for (const int script : {run.script, run.innerScript})
            if (script != 0) look += script > 0 ? '^' : '_';
        if (run.colour) {
            for (const double part : {run.colour->red, run.colour->green, run.colour->blue})
                look += "#" + std::to_string(std::lround(255 * part));
        }
        if (!std::isnan(run.size)) look += std::to_string(std::lround(2 * run.size));
        if (run.rise > 0) look += '+';
        if (run.rise != 0) look += std::to_string(std::lround(2 * run.rise));
        all += look.empty() && all.empty() ? run.text : '<' + look + '>' + run.text;
    }
    return all;
}

} // namespace

TEST(RichText, ReadsRtf) {
    const struct {
        const char *rtf, *want;
    } cases[] = {
        {R"({\rtf1 a\b b\i c\b0 d\i0 e})", "a<b>b<bi>c<i>d<>e"},
        {R"({\rtf1 a{\b b}c\ul d\ulnone e\ul0 f})", "a<b>b<>c<u>d<>e<>f"},
        {R"({\rtf1 10\super 5\nosupersub  m\sub i})", "10<^>5<> m<_>i"},
        {R"({\rtf1 x\up6 2\up0 y\dn i\plain z})", "x<+6>2<>y<-6>i<>z"},
        {R"({\rtf1 x\up401 y\dn999 z})", "x<+400>y<-400>z"},
        {R"({\rtf1\fs24 a\fs100000 b\fs0 c})", "<24>a<400>b<2>c"},
        {R"({\rtf1\uc1 \u228?\u8364 ?\u-3913?})", "\u00e4\u20ac\uf0b7"},
        {R"({\rtf1\uc0\u228 b\uc2 \u228??c\uc1\u228\'e4d})", "\u00e4b\u00e4c\u00e4d"},
        {R"({\rtf1\u-10179?\u-8704?!\u-10179?x\u-8704?})", "\U0001f600!\ufffdx\ufffd"},
        {R"({\rtf1\u-10179?\b\u-8704?a\u-10179?})", "\ufffd<b>\ufffda\ufffd"},
        {R"({\rtf1 {\uc0\u228}?})", "\u00e4<>?"}, // a group ends the characters to skip
        {R"({\rtf1 \'e4\'80\'81\'zz\'04})", "\u00e4\u20aczz"}, // neither unassigned nor control
        {"{\\rtf1 a\\par b\\line c\\tab d\\\t\\~e\\_f\\{\\}\\\\}",
         "a\nb\nc\td\t\u00a0e\u2011f{}\\"},
        {"{\\rtf1 a\nb\r\nc\\\nd}", "abc\nd"}, // line ends are blank, an escaped one is a paragraph
        {R"({\rtf1{\fonttbl{\f0 Times;}}{\colortbl;\red1;}{\*\generator x;{y}}{\info{\title t}}z})",
         "z"},
        {R"({\rtf1\uc1 \{\\rtf1 a\\b b\}})", "a<b>b"}, // RTF wrapped as plain text
        {R"({\rtf1\frobnicate12 a\qc0\cf1 b\bin3 {}}c})", "a<>bc"},
        {R"({\rtf1{\colortbl;\red255\green0\blue300;\red1;}a\cf1 b{\cf2 c}\cf0 d\cf3 e\cf-1 f})",
         "a<#255#0#255>b<#1#0#0>c<>d<>e<>f"},
        {R"({\rtf1 \emdash\endash\bullet\lquote\rdblquote x})", "\u2014\u2013\u2022\u2018\u201dx"},
        {R"({\rtf1 a{\b b)", "a<b>b"}, // not closed
        {R"({\rtf1 a}}}b\)", "a<>b"},  // closed too often, ends in an escape
        {R"({\rtf1 a\u99999999999999999999 b\b-)", "a<b>-"},
        {"{\\rtf1 \xc3\xa4\xff}", "\u00e4\ufffd"},
        {R"({\rtf)", ""},
    };
    for (const auto &c : cases) EXPECT_EQ(described(richTextOf(c.rtf)), c.want) << c.rtf;

    std::string colours = "{\\rtf1{\\colortbl;";
    for (int i = 1; i <= 1000; ++i) colours += "\\red1;";
    EXPECT_EQ(described(richTextOf(colours + "}\\cf999 a\\cf1000 b}")), "<#1#0#0>a<>b");
}

TEST(RichText, IsPlainTextAsItIsAndNeverTooLong) {
    std::string deep = "{\\rtf1 ";
    for (int i = 0; i < 100000; ++i) deep += "{\\b";
    deep += " bold" + std::string(100000, '}') + " after}";
    const struct {
        std::string text, want;
    } cases[] = {
        {"f / MHz {x} \\b <&>", "f / MHz {x} \\b <&>"},
        {"a\r\nb\rc\n\n", "a\nb\nc"},
        {"Gr\u00f6\u00dfe \xff\xc3", "Gr\u00f6\u00dfe \ufffd\ufffd"},
        {std::string("nul\0\x01\x7f!", 7), "nul!"},
        {std::string(4095, 'x') + "\u20ac", std::string(4095, 'x')},
        {deep, "bold after"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(plainTextOf(richTextOf(c.text)), c.want) << c.text.substr(0, 20);
}

TEST(Markup, SpellsOutSignsScriptsAndEmphasis) {
    const struct {
        const char *text, *want;
    } cases[] = {
        {R"(\alpha\beta{}m \Omega \pm\times\cdot\degree\AA\infty\to)", "αβm Ω ±×·°Å∞→"},
        {R"(\_\^\*\{\}\<5\,mm\\2 \foo \)", "_^*{}<5\u2009mm\n2 \\foo \\"},
        {"x_1 x_12 x_123 *T*_c \\alpha_s (p)_x",
         "x<_>1<> x<_>12<> x_123 <i>T<_>c<> α<_>s<> (p)<_>x"},
        {"T_c my_column pos_x T_x_1 run_2024 _1", "T<_>c<> my_column pos_x T_x_1 run_2024 _1"},
        {"H_2O (NH_4)_2SO_4 V_{out}", "H<_>2<>O (NH<_>4<>)<_>2<>SO<_>4<> V<_>out"},
        {"10^6 m^2 10^-6 s^-1.5 e^-x 2^nd K^+ x^* 0^\\degree",
         "10<^>6<> m<^>2<> 10<^>−6<> s<^>−1.5<> e<^>−x<> 2^nd K<^>+<> x<^>*<> 0<^>°"},
        {"\\pi^+_0 x^a_1 SO_4^{2-} a_{b-c}", "π<^>+<_>0<> x<^>a<_>1<> SO<_>4<^>2−<> a<_>b-c"},
        {"e^{-x_{i^2}} x_{} a_{b x^{c", "e<^>−x<^_>i<^^>2<> x a_{b x^{c"},
        {R"(x^{a\}b} x_{\{c} d)", "x<^>a}b<> x<_>{c<> d"},
        {"a*b 2*x*y *a* **b** ***c*** *d **e***", "a*b 2*x*y <i>a<> <b>b<> <bi>c<> <i>d <bi>e"},
        {"* a * (*x*) *m*v *a\nb* **c*", "* a * (<i>x<>) <i>m<>v *a\nb* **c*"},
        {R"({\rtf1 a_{\b b\'5c'}c})", "a<b_>b<b>\\'<>c"},
        {R"({\rtf1 x\super y_\{z\}})", "x<^>y<^_>z"},
        {"x_{-1} x_{a-1} x^{a-1} -1", "x<_>−1<> x<_>a-1<> x<^>a−1<> -1"},
        {"<name> <B> *<name>* \\<name>", "1<b#0#0#255>2<_>3<> <B> <i>1<bi#0#0#255>2<i_>3<> <name>"},
        {R"({\rtf1{\colortbl;\red255;}\cf1 <name>})", "<#255#0#0>1<b#0#0#255>2<_#255#0#0>3"},
        {"x^{<name>} x^{a_{<name>}}", "x<^>1<b^#0#0#255>2<^_>3<> x<^>a<^_>1<b^_#0#0#255>2<^_>3"},
    };
    const auto field = [](std::string_view name) -> std::optional<RichText> {
        if (name != "name") return std::nullopt;
        RichText text(3);
        text[0].text = "1";
        text[1].text = "2";
        text[1].bold = true;
        text[1].colour = Colour{0, 0, 1, 1};
        text[2].text = "3";
        text[2].script = -1;
        return text;
    };
    for (const auto &c : cases)
        EXPECT_EQ(described(readMarkup(richTextOf(c.text), field)), c.want) << c.text;
}

TEST(Markup, IsBounded) {
    std::string nested, braces(4096, '{'), stars(4096, '*'), fields;
    for (int i = 0; i < 2000; ++i) nested += "_{";
    for (int i = 0; i < 600; ++i) fields += "<name>";
    const std::string closed = nested.substr(0, 2040) + std::string(1020, '}');
    for (const std::string &text : {nested, closed, braces, stars, '_' + braces, fields})
        EXPECT_LE(plainTextOf(readMarkup(richTextOf(text))).size(), 4096u) << text.substr(0, 20);
    EXPECT_TRUE(plainTextOf(readMarkup(richTextOf(closed))).starts_with("_{_{"));
    for (const std::size_t depth : {20, 21}) {
        std::string text;
        for (std::size_t i = 0; i < depth; ++i) text += "a_{";
        text.append(depth, '}');
        EXPECT_EQ(plainTextOf(readMarkup(richTextOf(text))).find('_') == text.npos, depth <= 20)
            << depth;
    }
}
