#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/base/refusal.h"

#include <bit>
#include <climits>
#include <gtest/gtest.h>

using namespace plotwerk;

TEST(RecordedMessage, GivesItsArgumentsBackBitForBit) {
    const std::string text = "\u00e4\n\t\U0001F600" + std::string(100'000, 'x'), empty;
    const double nan = std::bit_cast<double>(0xfff8'0000'dead'beefULL);
    const std::int32_t least = INT_MIN;
    const double minusZero = -0.0;
    const bool yes = true;
    const std::string record =
        encodedMessage(',', "mixed", std::tie(text, least, minusZero, yes, empty, nan));
    const RecordedMessage message = decodedMessage(record);
    EXPECT_EQ(message.decimalSeparator, ',');
    EXPECT_EQ(message.member, "mixed");
    ASSERT_EQ(message.arguments.size(), 6U);
    EXPECT_EQ(message.arguments[0], Argument(text));
    EXPECT_EQ(message.arguments[1], Argument(INT_MIN));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[2])), 1ULL << 63);
    EXPECT_EQ(message.arguments[3], Argument(true));
    EXPECT_EQ(message.arguments[4], Argument(empty));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[5])),
              0xfff8'0000'dead'beefULL);

    for (size_t length = record.size() - 8; length < record.size(); ++length)
        EXPECT_THROW(decodedMessage(std::string_view(record).substr(0, length)), Refusal);
    EXPECT_THROW(decodedMessage(record + 'q'), Refusal);
    EXPECT_TRUE(decodedMessage(encodedMessage('.', "none", std::tuple<>())).arguments.empty());
}
