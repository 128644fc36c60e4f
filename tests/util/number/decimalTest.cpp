#include "util/number/decimal.h"

#include <gtest/gtest.h>

#include <string>

using namespace plw;

namespace {

class Decimal : public testing::Test {
  protected:
    ~Decimal() override { decimalSeparator = '.'; }
};

std::string toDot(std::string s) {
    decimalSeparatorToDot(s.data());
    return s;
}

std::string fromDot(std::string s) {
    dotToDecimalSeparator(s.data());
    return s;
}

} // namespace

TEST_F(Decimal, ConvertsToAndFromTheSeparator) {
    EXPECT_EQ(toDot("1,5;2,5"), "1.5;2.5") << "commas are decimal points too";
    EXPECT_EQ(fromDot("1.5"), "1.5");

    decimalSeparator = ',';
    EXPECT_EQ(fromDot("1.5 2.5"), "1,5 2,5");
    EXPECT_EQ(toDot("1,5 2,5"), "1.5 2.5");

    decimalSeparator = ';';
    EXPECT_EQ(toDot("1,5;2"), "1,5.2") << "only the separator";
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
