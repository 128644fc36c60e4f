#include "util/number/decimal.h"

#include <gtest/gtest.h>

#include <string>

using namespace plw;

struct Decimal : testing::Test {
    ~Decimal() override { decimalSeparator = '.'; }
};

TEST_F(Decimal, ConvertsToAndFromTheSeparator) {
    const std::tuple<char, std::string, std::string> cases[] = {
        {'.', "1.5;2.5", "1,5;2.5"}, {',', "1.5;2.5", "1,5;2,5"}, {';', "1,5.2.5", "1,5;2;5"}};
    for (const auto &[separator, withDots, withSeparators] : cases) {
        decimalSeparator = separator;
        std::string dots = "1,5;2.5", separators = dots;
        decimalSeparatorToDot(dots.data());
        dotToDecimalSeparator(separators.data());
        EXPECT_EQ(dots, withDots) << separator;
        EXPECT_EQ(separators, withSeparators) << separator;
    }
}

TEST_F(Decimal, ReadsNumbersTolerantly) {
    EXPECT_EQ(valueOfString("1,5 mm"), 1.5);
    EXPECT_EQ(valueOfString(" -2.5e1"), -25);
    EXPECT_EQ(valueOfString("7"), 7) << "nothing is left of a longer one";
    EXPECT_EQ(valueOfString("x"), 0);
    EXPECT_EQ(valueOfString((std::string(254, ' ') + "12").c_str()), 1) << "255 bytes are read";
    decimalSeparator = ';';
    EXPECT_EQ(valueOfString("1;5"), 1.5);
    EXPECT_EQ(valueOfString("1,5"), 1);
}
