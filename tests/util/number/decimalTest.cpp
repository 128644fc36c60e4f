#include "util/number/decimal.h"

#include <gtest/gtest.h>

#include <string>

using namespace plw;

struct Decimal : testing::Test {
    ~Decimal() override { decimalSeparator = '.'; }
};

TEST_F(Decimal, ConvertsToAndFromTheSeparator) {
    const struct {
        char separator;
        void (*convert)(char *);
        const char *text, *want;
    } cases[] = {{'.', decimalSeparatorToDot, "1,5;2,5", "1.5;2.5"},
                 {'.', dotToDecimalSeparator, "1.5", "1.5"},
                 {',', dotToDecimalSeparator, "1.5 2.5", "1,5 2,5"},
                 {',', decimalSeparatorToDot, "1,5 2,5", "1.5 2.5"},
                 {';', decimalSeparatorToDot, "1,5;2", "1,5.2"}};
    for (const auto &c : cases) {
        std::string s = c.text;
        decimalSeparator = c.separator;
        c.convert(s.data());
        EXPECT_EQ(s, c.want) << c.separator << " in " << c.text;
    }
}

TEST_F(Decimal, ReadsNumbersTolerantly) {
    EXPECT_EQ(valueOfString("1,5 mm"), 1.5);
    EXPECT_EQ(valueOfString(" -2.5e1"), -25);
    EXPECT_EQ(valueOfString("x"), 0);
    EXPECT_EQ(valueOfString(""), 0);
    EXPECT_EQ(valueOfString((std::string(254, ' ') + "12").c_str()), 1) << "255 bytes are read";
    EXPECT_EQ(valueOfString((std::string(255, ' ') + "12").c_str()), 0) << "255 bytes are read";

    decimalSeparator = ';';
    EXPECT_EQ(valueOfString("1;5"), 1.5);
    EXPECT_EQ(valueOfString("1,5"), 1);
}
