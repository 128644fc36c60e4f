#include "util/text/utf8.h"

#include <gtest/gtest.h>

using namespace plw;
using namespace std::string_literals;

TEST(Utf8, IsWhatTheBusCarries) {
    for (const char *text : {"", "a", "\u00e4\u20ac\U0001F600\U0010FFFD"})
        EXPECT_TRUE(isUtf8(text)) << text;

    // bare and cut; overlong; a surrogate, beyond U+10FFFF; U+FDD0, U+FFFE and U+1FFFF
    const std::string zero(1, '\0');
    for (const std::string &text :
         {zero, "\xe4"s, "a\x80"s, "\xe2\x82"s, "\xff"s, "\xf5\x80\x80\x80"s, "\xc0\x80"s,
          "\xe0\x9f\xbf"s, "\xf0\x8f\xbf\xbf"s, "\xed\xa0\x80"s, "\xf4\x90\x80\x80"s,
          "\xef\xb7\x90"s, "\xef\xbf\xbe"s, "\xf0\x9f\xbf\xbf"s}) {
        EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
        EXPECT_TRUE(isUtf8(utf8Of(text))) << testing::PrintToString(text);
    }
}

TEST(Utf8, OtherBytesAreReadAsIso8859_1WithoutZeroBytes) {
    EXPECT_EQ(utf8Of("\xc3\xa4"), "\xc3\xa4");
    EXPECT_EQ(utf8Of("\xe4\xff"), "\xc3\xa4\xc3\xbf");
    EXPECT_EQ(utf8Of("\xc3\xa4\xff"), "\xc3\x83\xc2\xa4\xc3\xbf");
    EXPECT_EQ(utf8Of(std::string("a\0b", 3)), "ab");
}
