#include "util/time/timer.h"

#include <ctime>
#include <gtest/gtest.h>

using namespace plw;

TEST(Timer, CountsSecondsOfTheWallClock) {
    const auto now = static_cast<double>(std::time(nullptr));
    EXPECT_NEAR(startTimer(), now, 60);
    EXPECT_NEAR(stopTimer(now - 1000), 1000, 60);
}
