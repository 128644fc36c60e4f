#include "util/text/utf8.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

using namespace plw;

TEST(Utf8, IsWhatTheBusCarries) {
    // characters, and both sides of every gap
    std::istringstream good("a ä€ \xc2\x80 \xe0\xa0\x80 \xed\x9f\xbf \xee\x80\x80 \xef\xb7\x8f "
                            "\xef\xb7\xb0 \xef\xbf\xbd \xf0\x90\x80\x80 \xf4\x8f\xbf\xbd");
    for (std::string text; good >> text;) EXPECT_TRUE(isUtf8(text)) << text;

    std::istringstream bad(
        "\xe4 a\xff \xc3\xa4\xe4 \x80 \xe2\x82 \xe2\x82z \xe2\x82\xff " // bare, cut
        "\xc0\x80 \xc1\xbf \xe0\x9f\xbf \xf0\x8f\xbf\xbf "              // overlong
        "\xed\xa0\x80 \xed\xbf\xbf "                                    // surrogates
        "\xef\xb7\x90 \xef\xb7\xaf \xef\xbf\xbe \xef\xbf\xbf "          // U+FDD0 .. U+FDEF, U+FFFE
        "\xf0\x9f\xbf\xbe \xf4\x8f\xbf\xbf "                            // U+1FFFE, U+10FFFF
        "\xf4\x90\x80\x80 \xf5\x80\x80\x80");                           // beyond U+10FFFF
    for (std::string text; bad >> text;) {
        EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
        EXPECT_TRUE(isUtf8(utf8Of(text))) << testing::PrintToString(text);
    }
    EXPECT_FALSE(isUtf8(std::string(1, '\0')));
    EXPECT_TRUE(isUtf8(""));
}

TEST(Utf8, OtherBytesAreReadAsIso8859_1WithoutZeroBytes) {
    EXPECT_EQ(utf8Of("ä"), "ä");
    EXPECT_EQ(utf8Of("\xe4\xff"), "äÿ");
    EXPECT_EQ(utf8Of("\xc3\xa4\xff"), "Ã¤ÿ");
    EXPECT_EQ(utf8Of(std::string("a\0b", 3)), "ab");
}

TEST(Utf8, IsCutBetweenCharacters) {
    const std::string text = "aä€\xf0\x90\x80\x80z"; // characters of 1, 2, 3, 4, 1 bytes
    const std::size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
    for (std::size_t longest = 0; longest < std::size(ends); ++longest)
        EXPECT_EQ(prefixOfCharacters(text, longest), ends[longest]) << longest;
    EXPECT_EQ(prefixOfCharacters("", 0), 0U);
    EXPECT_EQ(prefixOfCharacters("ab\x80\x80", 3), 3U) << "continues no character";
    EXPECT_EQ(prefixOfCharacters("\xe4\x80\x80\x80\x80\x80", 5), 5U);
    EXPECT_EQ(prefixOfCharacters("\xc3\xa4\x80\x80", 3), 3U);
    EXPECT_EQ(prefixOfCharacters("\x80\x80", 1), 1U);
}
