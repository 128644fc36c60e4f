#include "plotwerk/window/viewHistory.h"

#include <gtest/gtest.h>

using namespace plotwerk;

static View viewTo(double max) {
    Document document;
    document.axes[xAxis].range = {0, max};
    return viewOf(document);
}

static double maxOf(const std::optional<View> &view) {
    return view ? (*view)[xAxis].max : -1;
}

TEST(ViewHistory, GoesBackAndForthUntilAnotherWayIsTaken) {
    ViewHistory history;
    history.leave(viewTo(1));
    history.leave(viewTo(2));
    EXPECT_EQ(maxOf(history.back(viewTo(3))), 2);
    EXPECT_EQ(maxOf(history.back(viewTo(2))), 1);
    history.leave(viewTo(1)); // for one that is refused, which is no view on the way
    EXPECT_FALSE(history.hasEarlier(viewTo(1)));
    EXPECT_TRUE(history.hasLater(viewTo(1)));
    EXPECT_EQ(maxOf(history.forward(viewTo(1))), 2);
    EXPECT_EQ(maxOf(history.back(viewTo(2))), 1);
    EXPECT_EQ(maxOf(history.forward(viewTo(1))), 2);
    history.leave(viewTo(2));
    EXPECT_FALSE(history.hasLater(viewTo(4)));
    EXPECT_EQ(maxOf(history.back(viewTo(4))), 2);
}
