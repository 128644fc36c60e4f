// Which clients are cut off, at the limits as they are at first.
#include "plotwerk/server/unreadAnswers.h"

#include <gtest/gtest.h>
#include <map>

using namespace plotwerk;

class UnreadAnswersTest : public testing::Test {
  protected:
    // That many bytes were answered, with what each answer counts beside its own.
    void answer(const std::string &client, double bytes) {
        unread.add(client, static_cast<std::size_t>(bytes) - 256);
    }

    template<class Work> static bool isRefused(Work work) {
        try {
            work();
            return false;
        } catch (const sdbus::Error &error) {
            EXPECT_EQ(error.getName(), "org.freedesktop.DBus.Error.LimitsExceeded");
            return true;
        }
    }
    bool isCutOff(const std::string &client) {
        return isRefused([&] { unread.require(client); });
    }
    bool hasRoomFor(double bytes) {
        return !isRefused([&] { unread.requireRoomFor(static_cast<std::size_t>(bytes)); });
    }

    std::map<std::string, double> bus; // what it holds
    int asked = 0;
    UnreadAnswers unread{[this](const std::string &client) {
        ++asked;
        return bus[client];
    }};
};

TEST_F(UnreadAnswersTest, OfOneClientAreCountedUntilTheBusIsToBeAsked) {
    EXPECT_FALSE(isCutOff("a"));
    answer("a", 199e6);
    answer("a", 1e6 - 1);
    EXPECT_FALSE(isCutOff("a"));
    EXPECT_EQ(asked, 0);
    answer("a", 257);
    testing::internal::CaptureStderr();
    for (const double held : {200e6 - 1, 200e6, 200e6, 1e6, 200e6}) {
        if (asked == 4) answer("a", 199e6); // it has read, and is asked for when it may not have
        bus["a"] = held;
        EXPECT_EQ(isCutOff("a"), held == 200e6) << asked;
        if (asked == 1) answer("a", 300);
    }
    EXPECT_EQ(asked, 5);
    const std::string line =
        "plotwerkd: warning: client a doesn't read its answers (limit unread)\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line);
}

TEST_F(UnreadAnswersTest, AreBoundedForAllWhileThoseWhoReadAreServed) {
    for (const char *client : {"a", "b", "c"}) answer(client, bus[client] = 190e6);
    answer("small", bus["small"] = 30e6 - 1);
    EXPECT_FALSE(isCutOff("a"));
    EXPECT_EQ(asked, 0) << "600 MB may be held for all";
    answer("small", 8e6 + 1);
    answer("idle", 256);
    bus["small"] = 38e6; // a quarter of the mean of those that have any
    EXPECT_FALSE(isCutOff("idle"));
    EXPECT_FALSE(isCutOff("small"));
    EXPECT_EQ(asked, 6);
    EXPECT_TRUE(isCutOff("a"));
    bus["small"] += 1;
    EXPECT_TRUE(isCutOff("small"));
    EXPECT_EQ(asked, 8) << "of all only once a second";
    bus["a"] = 0;
    EXPECT_FALSE(isCutOff("a"));
    EXPECT_FALSE(isCutOff("small"));
}

TEST_F(UnreadAnswersTest, LeaveRoomInTheBusForTheNextOne) {
    for (int i = 0; i < 8; ++i) answer(std::to_string(i), bus[std::to_string(i)] = 110e6);
    EXPECT_TRUE(hasRoomFor(100e6));
    EXPECT_EQ(asked, 0);
    bus["7"] -= 50;
    EXPECT_TRUE(hasRoomFor(100e6 + 50));
    EXPECT_EQ(asked, 8);
    EXPECT_FALSE(hasRoomFor(100e6 + 51));
}

TEST_F(UnreadAnswersTest, OfClientsThatAreGoneAreForgotten) {
    for (int i = 0; i < 1001; ++i) answer(std::to_string(i), 256);
    EXPECT_EQ(asked, 0);
    bus = {{"1", 900e6}, {"2", 1e5}, {"3", 1e5 - 1}};
    answer("new", 256);
    EXPECT_EQ(asked, 1001);
    EXPECT_TRUE(hasRoomFor(80e6 - 1e5 - 256));
    EXPECT_FALSE(hasRoomFor(80e6 - 1e5 - 255));
}
