#include "plotwerk/drawing/markup.h"

#include <cmath>
#include <glib.h>
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
            if (script != 0) look += script == 1 ? '^' : script == -1 ? '_' : '?';
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
    const std::pair<const char *, const char *> cases[] = {
        {R"({\rtf1 a\b b\i c\b0 d\i0 e})", "a<b>b<bi>c<i>d<>e"},
        {R"({\rtf1 a{\b b}c\ul d\ulnone e\ul0 f})", "a<b>b<>c<u>d<>e<>f"},
        {R"({\rtf1 10\super 5\nosupersub  m\sub i})", "10<^>5<> m<_>i"},
        {R"({\rtf1 x\up6 2\up0 y\dn i\plain z})", "x<+6>2<>y<-6>i<>z"},
        {R"({\rtf1 x\up401 y\dn999 z})", "x<+400>y<-400>z"},
        {R"({\rtf1\fs24 a\fs100000 b\fs0 c})", "<24>a<400>b<2>c"},
        {R"({\rtf1\uc0\u228 b\u-3913\uc2 \u228??c\uc1\u228\'e4d})", "\u00e4b\uf0b7\u00e4c\u00e4d"},
        {R"({\rtf1\u-10179?\u-10179?\u-8704?\u-9217?\u-8192?\u-10240?\u-8193?\u-9217?\u-9216?})",
         "\ufffd\U0001f600\ufffd\ue000\U000103ff\U0010fc00"},
        {R"({\rtf1\b7 a\i0 b\up b\dn0 c\ul7\super0 d\sub0 e\up400 f\fs400 g\fs2 h\fs1 i})",
         "<b>a<b>b<b+6>b<b>c<bu>d<bu>e<bu+400>f<bu400+400>g<bu2+400>h<bu2+400>i"},
        {R"({\rtf1\uc2\u228\b{}b\u228\'e4\'e4c\uc200\u228 d\uc-1\u228 e})",
         "\u00e4<>b\u00e4c\u00e4\u00e4e"},
        {R"({\rtf1\sect\page\row\cell\emspace\enspace\rquote\ldblquote x})",
         "\n\n\n\t\u2003\u2002\u2019\u201cx"},
        {R"({\rtf1{\stylesheet x}{\pict x}{\object x}{\header x}{\headerl x}{\headerr x}{\headerf x}{\footer x}{\footerl x}{\footerr x}{\footerf x}{\footnote x}{\listtable x}{\filetbl x}{\revtbl x}{\nonshppict x}{\xe x}{\tc x}z})",
         "z"},
        {R"({\rtf1\u-10179?\tab\u-10179?\'e4})", "\ufffd\t\ufffd\u00e4"},
        {R"({\rtf1 {\uc0\u228}?})", "\u00e4<>?"}, // a group ends the characters to skip
        {R"({\rtf1 \'e4\'80\'81\'zz\'04})", "\u00e4\u20aczz"}, // neither unassigned nor control
        {"{\\rtf1 a\\par b\\line c\\tab d\\\t\\~e\\_f\\{\\}\\\\}",
         "a\nb\nc\td\t\u00a0e\u2011f{}\\"},
        {"{\\rtf1 a\nb\r\nc\\\nd}", "abc\nd"}, // line ends are blank, an escaped one is a paragraph
        {R"({\rtf1{\fonttbl{\f0 Times;}}{\colortbl;\red1;}{\*\generator x;{y}}{\info{\title t}}z})",
         "z"},
        {R"({\rtf1\uc1 \{\\rtf1 a\\b b\}})", "a<b>b"}, // RTF wrapped as plain text
        {R"({\rtf1\frobnicate12 a\qc0\cf1 b\bin3 {}}c})", "a<>bc"},
        {R"({\rtf1{\colortbl;\red255\green0 \blue300  ;\red1;}a\cf1 b{\cf2 c}\cf0 d\cf3 e\cf-1 f})",
         "a<#255#0#255>b<#1#0#0>c<>d<>e<>f"},
        {R"({\rtf1 \emdash\endash\bullet\lquote\rdblquote x})", "\u2014\u2013\u2022\u2018\u201dx"},
        {R"({\rtf1 a{\b b)", "a<b>b"}, // not closed
        {R"({\rtf1 a}}}b\)", "a<>b"},  // closed too often, ends in an escape
        {R"({\rtf1 a\u99999999999999999999 b\b-)", "a<b>-"},
        {"{\\rtf1 \xc3\xa4\xff}", "\u00e4\ufffd"},
        {R"({\rtf)", ""},
    };
    for (const auto &[rtf, want] : cases) EXPECT_EQ(described(richTextOf(rtf)), want) << rtf;

    EXPECT_EQ(described(richTextOf(std::string_view("{\\rtf1\\u2281").substr(0, 11))), "\u00e4");
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        const char character = static_cast<char>(byte);
        gchar *want = g_convert(&character, 1, "UTF-8", "CP1252", nullptr, nullptr, nullptr);
        char rtf[16];
        std::snprintf(rtf, sizeof rtf, "{\\rtf1\\'%x", byte);
        EXPECT_EQ(described(richTextOf(rtf)), want == nullptr ? "" : want) << byte;
        g_free(want);
    }

    std::string colours = "{\\rtf1{\\colortbl;";
    for (int i = 1; i <= 1000; ++i) colours += "\\red1;";
    EXPECT_EQ(described(richTextOf(colours + "}\\cf999 a\\cf1000 b}")), "<#1#0#0>a<>b");
}

TEST(RichText, IsPlainTextAsItIsAndNeverTooLong) {
    std::string deep = "{\\rtf1 ";
    for (int i = 0; i < 100000; ++i) deep += "{\\b";
    deep += " bold" + std::string(100000, '}') + " after}";
    const std::pair<std::string, std::string> cases[] = {
        {"f / MHz {x} \\b <&>", "f / MHz {x} \\b <&>"},
        {"a\r\nb\rc\n\n", "a\nb\nc"},
        {"Gr\u00f6\u00dfe \xff\xc3", "Gr\u00f6\u00dfe \ufffd\ufffd"},
        {std::string("nul\0\x01\x7f!", 7), "nul!"},
        {std::string(4095, 'x') + "\u20ac", std::string(4095, 'x')},
        {deep, "bold after"},
    };
    for (const auto &[text, want] : cases)
        EXPECT_EQ(plainTextOf(richTextOf(text)), want) << text.substr(0, 20);
}

TEST(Markup, SpellsOutSignsScriptsAndEmphasis) {
    const std::pair<const char *, const char *> cases[] = {
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
        {"**<name>** <12345678901234567890> <", "<b>1<b#0#0#255>2<b_>3<> <12345678901234567890> <"},
        {R"({\rtf1\ul\fs24\up6 <name>})", "<u24+6>1<bu#0#0#25524+6>2<u_24+6>3"},
        {"*_c **_c [a]_x \u00e4_x ab_x a1_x \\alpha{}_x b\\alpha_x a_x_y a_xy x_1a x_1_ x_1A "
         "a_\\beta "
         "a_b_{c} x_y1",
         "*_c **_c [a]<_>x<> ä<_>x<> ab_x a1_x α_x bα<_>x<> a_x_y a_xy x_1a x_1_ x<_>1<>A a<_>β<> "
         "a_b<_>c<> x_y1"},
        {"10^\u22126 x^+y x^ab x^+ab x^1.a x^1.5.2 x^.5 x^12a x^\u00e4 x^, x^-",
         "10<^>−6<> x<^>+y<> x^ab x^+ab x<^>1<>.a x<^>1.5<>.2 x^.5 x<^>12<>a x<^>ä<> x^, x<^>−"},
        {"*a* b*c* *d*e *f *g* h* *i\\*j* *k^*l* * q*",
         "<i>a<> b*c* <i>d<>e <i>f *g<> h* <i>i*j<> <i>k<i^>*<i>l<> * q*"},
        {"x_{a\\}", "x_{a}"},
        {"a_{*b* c} *a_{b}*", "a<i_>b<_> c<> <i>a<i_>b"},
        {"x^{<name>} x^{a_{<name>}}", "x<^>1<b^#0#0#255>2<^_>3<> x<^>a<^_>1<b^_#0#0#255>2<^_>3"},
    };
    const auto field = [](std::string_view name) -> std::optional<RichText> {
        if (name != "name") return std::nullopt;
        return RichText{{.text = "1"},
                        {.text = "2", .bold = true, .colour = Colour{0, 0, 1, 1}},
                        {.text = "3", .script = -1}};
    };
    for (const auto &[text, want] : cases)
        EXPECT_EQ(described(readMarkup(richTextOf(text), field)), want) << text;
}

TEST(Markup, IsBounded) {
    std::string nested, braces(4096, '{'), stars(4096, '*'), fields;
    for (int i = 0; i < 2000; ++i) nested += "_{";
    for (int i = 0; i < 600; ++i) fields += "<name>";
    const std::string closed = nested.substr(0, 2040) + std::string(1020, '}');
    for (const std::string &text : {nested, closed, braces, stars, '_' + braces, fields})
        EXPECT_LE(plainTextOf(readMarkup(richTextOf(text))).size(), 4096u) << text.substr(0, 20);
    EXPECT_TRUE(plainTextOf(readMarkup(richTextOf(closed))).starts_with("_{_{"));
    for (const std::string around : {"", "*"}) {
        const std::size_t deepest = around.empty() ? 20 : 19;
        for (const std::size_t depth : {deepest, deepest + 1}) {
            std::string text = "x" + std::string(depth, '}') + around;
            for (std::size_t i = 0; i < depth; ++i) text.insert(0, "a_{");
            EXPECT_EQ(plainTextOf(readMarkup(richTextOf(around + text))),
                      std::string(deepest, 'a') + (depth > deepest ? "a_{x}" : "x"));
        }
    }
}
