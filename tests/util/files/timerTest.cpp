#include "util/files/timer.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace plw;

TEST(Timer, CountsSecondsOfTheWallClock) {
    const auto before = static_cast<double>(std::time(nullptr));
    const double start = startTimer();
    EXPECT_GE(start, before);
    EXPECT_LT(start, before + 60);

    const double sinceAMinute = stopTimer(start - 60);
    EXPECT_GE(sinceAMinute, 60);
    EXPECT_LT(sinceAMinute, 120);
}
