#include "plotwerk/server/recordedMessage.h"

#include "plotwerk/base/refusal.h"
#include "tests/support/privateBus.h"

#include <bit>
#include <climits>
#include <gtest/gtest.h>
#include <limits>

using namespace plotwerk;

// The bus checks messages on their way, so that one of a test's own making would show less.
TEST(RecordedMessage, IsTheMessageThatIsBeingAnswered) {
    const PrivateBus privateBus;
    const auto server = sdbus::createSessionBusConnection("org.plotwerk.Test");
    const auto object = sdbus::createObject(*server, "/test");
    std::string record;
    const auto keep = [&] {
        auto *message = const_cast<sdbus::Message *>(object->getCurrentlyProcessedMessage());
        record = encodedMessage(recordedMessage(*message, ','));
    };
    object->registerMethod("mixed")
        .onInterface("org.plotwerk.Test")
        .implementedAs(
            [&](const std::string &text, std::int32_t, double, bool, const std::string &, double) {
                keep();
                return text;
            });
    object->registerMethod("none").onInterface("org.plotwerk.Test").implementedAs(keep);
    object->registerMethod("other")
        .onInterface("org.plotwerk.Test")
        .implementedAs([&](sdbus::Struct<double, double>) { EXPECT_THROW(keep(), Refusal); });
    object->finishRegistration();
    server->enterEventLoopAsync();

    const auto client =
        sdbus::createProxy(sdbus::createSessionBusConnection(), "org.plotwerk.Test", "/test");
    const std::string text = "\u00e4\n\t\U0001F600" + std::string(100'000, 'x');
    const double nan = std::bit_cast<double>(0xfff8'0000'dead'beefULL);
    std::string answer;
    client->callMethod("mixed")
        .onInterface("org.plotwerk.Test")
        .withArguments(text, INT_MIN, -0.0, true, std::string(), nan)
        .storeResultsTo(answer);
    EXPECT_EQ(answer, text) << "the answer is not disturbed";
    const RecordedMessage message = decodedMessage(record);
    EXPECT_EQ(message.decimalSeparator, ',');
    EXPECT_EQ(message.member, "mixed");
    ASSERT_EQ(message.arguments.size(), 6U);
    EXPECT_EQ(message.arguments[0], Argument(text));
    EXPECT_EQ(message.arguments[1], Argument(INT_MIN));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[2])), 1ULL << 63);
    EXPECT_EQ(message.arguments[3], Argument(true));
    EXPECT_EQ(message.arguments[4], Argument(std::string()));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(std::get<double>(message.arguments[5])),
              0xfff8'0000'dead'beefULL);

    for (size_t length = record.size() - 8; length < record.size(); ++length)
        EXPECT_THROW(decodedMessage(std::string_view(record).substr(0, length)), Refusal);
    EXPECT_THROW(decodedMessage(record + 'q'), Refusal);

    client->callMethod("none").onInterface("org.plotwerk.Test");
    EXPECT_EQ(decodedMessage(record).member, "none");
    EXPECT_TRUE(decodedMessage(record).arguments.empty());
    client->callMethod("other")
        .onInterface("org.plotwerk.Test")
        .withArguments(sdbus::Struct<double, double>(1, 2));
}
