#include "util/text/utf8.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(Utf8, IsWhatTheBusCarries) {
    const struct {
        std::string text;
        bool is;
    } cases[] = {{"", true},
                 {"a", true},
                 {"\u00e4\u20ac\U0001F600\U0010FFFD", true},
                 {std::string(1, '\0'), false},
                 {"\xe4", false},
                 {"a\x80", false},
                 {"\xc0\x80", false},         // overlong
                 {"\xe0\x9f\xbf", false},     // overlong
                 {"\xf0\x8f\xbf\xbf", false}, // overlong
                 {"\xe2\x82", false},         // cut
                 {"\xed\xa0\x80", false},     // surrogate
                 {"\xef\xb7\x90", false},     // U+FDD0
                 {"\xef\xbf\xbe", false},     // U+FFFE
                 {"\xf0\x9f\xbf\xbf", false}, // U+1FFFF
                 {"\xf4\x90\x80\x80", false}, // beyond U+10FFFF
                 {"\xf5\x80\x80\x80", false},
                 {"\xff", false}};
    for (const auto &c : cases) {
        EXPECT_EQ(isUtf8(c.text), c.is) << testing::PrintToString(c.text);
        EXPECT_TRUE(isUtf8(utf8Of(c.text)));
    }
}

TEST(Utf8, OtherBytesAreReadAsIso8859_1WithoutZeroBytes) {
    EXPECT_EQ(utf8Of("\xc3\xa4"), "\xc3\xa4");
    EXPECT_EQ(utf8Of("\xe4\xff"), "\xc3\xa4\xc3\xbf");
    EXPECT_EQ(utf8Of("\xc3\xa4\xff"), "\xc3\x83\xc2\xa4\xc3\xbf");
    EXPECT_EQ(utf8Of(std::string("a\0b", 3)), "ab");
}
