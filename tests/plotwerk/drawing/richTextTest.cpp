#include "plotwerk/drawing/richText.h"

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
        if (run.script != 0) look += run.script > 0 ? '^' : '_';
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
        {R"({\rtf1\fs24 a\fs100000 b\fs0 c})", "<24>a<400>b<2>c"},
        {R"({\rtf1\uc1 \u228?\u8364 ?\u-3913?})", "\u00e4\u20ac\uf0b7"},
        {R"({\rtf1\uc0\u228 b\uc2 \u228??c\uc1\u228\'e4d})", "\u00e4b\u00e4c\u00e4d"},
        {R"({\rtf1\u-10179?\u-8704?!\u-10179?x\u-8704?})", "\U0001f600!\ufffdx\ufffd"},
        {R"({\rtf1 {\uc0\u228}?})", "\u00e4<>?"}, // a group ends the characters to skip
        {R"({\rtf1 \'e4\'80\'81\'zz\'04})", "\u00e4\u20aczz"}, // neither unassigned nor control
        {R"({\rtf1 a\par b\line c\tab d\~e\_f\{\}\\})", "a\nb\nc\td\u00a0e\u2011f{}\\"},
        {"{\\rtf1 a\nb\r\nc\\\nd}", "abc\nd"}, // line ends are blank, an escaped one is a paragraph
        {R"({\rtf1{\fonttbl{\f0 Times;}}{\colortbl;\red1;}{\*\generator x;{y}}{\info{\title t}}z})",
         "z"},
        {R"({\rtf1\frobnicate12 a\qc0\cf1 b\bin3 {}}c})", "abc"},
        {R"({\rtf1 \emdash\endash\bullet\lquote\rdblquote x})", "\u2014\u2013\u2022\u2018\u201dx"},
        {R"({\rtf1 a{\b b)", "a<b>b"}, // not closed
        {R"({\rtf1 a}}}b\)", "a<>b"},  // closed too often, ends in an escape
        {R"({\rtf1 a\u99999999999999999999 b\b-)", "a<b>-"},
        {"{\\rtf1 \xc3\xa4\xff}", "\u00e4\ufffd"},
        {R"({\rtf)", ""},
    };
    for (const auto &c : cases) EXPECT_EQ(described(richTextOf(c.rtf)), c.want) << c.rtf;
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
