#include "plotwerk/window/viewRanges.h"

#include "plotwerk/window/viewHistory.h"

#include <gtest/gtest.h>

using namespace plotwerk;

static ScaledFrame frameOf(Axis x, Axis y) {
    Document document;
    document.axes[xAxis] = x;
    document.axes[yAxis] = y;
    return scaledFrameOf(document, {});
}

static std::string textOf(const std::vector<AxisRange> &ranges) {
    std::string text;
    for (const AxisRange &range : ranges) {
        char part[80];
        std::snprintf(part, sizeof part, "%d: %g..%g ", range.axis, range.min, range.max);
        text += part;
    }
    return text;
}

TEST(ViewRanges, FollowTheScaleOfEachAxis) {
    const Range ten{0, 10};
    const Range decades{1, 10000};
    const ScaledFrame linear = frameOf({.range = ten}, {.range = ten});
    const ScaledFrame other =
        frameOf({.range = ten, .reversed = true}, {.range = decades, .logarithmic = true});
    const double w = linear.width;
    const double h = linear.height;
    const auto all = [&](const ScaledFrame &frame) { return axesAt(frame, {w / 2, h / 2}); };
    const struct {
        const char *what;
        std::vector<AxisRange> is;
        const char *want;
    } cases[] = {
        {"in about the middle", zoomedRanges(linear, all(linear), {w / 2, h / 2}, 0.5),
         "0: 2.5..7.5 1: 2.5..7.5 "},
        {"out about the lower left", zoomedRanges(linear, all(linear), {0, h}, 2),
         "0: 0..20 1: 0..20 "},
        {"reversed and logarithmic", zoomedRanges(other, all(other), {w, h}, 0.5),
         "0: 0..5 1: 1..100 "},
        {"a box", rangesOfBox(linear, {w / 4, h / 4, w / 2, h / 2}), "0: 2.5..5 1: 5..7.5 "},
        {"a box cut at the frame", rangesOfBox(linear, {-w, h / 2, w / 2, 2 * h}),
         "0: 0..5 1: 0..5 "},
        {"a box beside the frame", rangesOfBox(linear, {-w, 0, -1, h}), ""},
        {"a box of other scales", rangesOfBox(other, {0, h / 4, w / 4, h / 2}),
         "0: 7.5..10 1: 100..1000 "},
        {"moved", movedRanges(linear, all(linear), {w / 10, h / 10}), "0: -1..9 1: 1..11 "},
        {"moved on other scales", movedRanges(other, all(other), {w / 10, -h / 4}),
         "0: 1..11 1: 0.1..1000 "},
        {"too narrow for doubles", zoomedRanges(linear, all(linear), {w / 2, h / 2}, 1e-14), ""},
        {"too wide for doubles", zoomedRanges(other, {yAxis}, {0, 0}, 1e3), ""},
    };
    for (const auto &c : cases) EXPECT_EQ(textOf(c.is), c.want) << c.what;
}

TEST(ViewRanges, AreThoseOfTheAxesAtAPlace) {
    const ScaledFrame frame = frameOf({.range = {0, 1}}, {.range = {0, 1}});
    ScaledFrame four = frame;
    for (const AxisCode axis : {upperXAxis, rightYAxis}) four.own[axis] = true;
    const struct {
        double x, y;
        std::vector<AxisCode> of, ofFour;
    } cases[] = {
        {1, 1, {xAxis, yAxis}, {xAxis, yAxis, upperXAxis, rightYAxis}},
        {1, -1, {xAxis}, {upperXAxis}},
        {1, frame.height + 1, {xAxis}, {xAxis}},
        {-1, 1, {yAxis}, {yAxis}},
        {frame.width + 1, 1, {yAxis}, {rightYAxis}},
        {-1, -1, {}, {}},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(axesAt(frame, {c.x, c.y}), c.of) << c.x << ' ' << c.y;
        EXPECT_EQ(axesAt(four, {c.x, c.y}), c.ofFour) << c.x << ' ' << c.y;
    }
}

TEST(ViewRanges, AreNumbersNoLongerThanTheyNeedToBe) {
    const struct {
        double value, distance, want;
    } cases[] = {{1.23456789, 0.01, 1.23},      {1.23456789, 0.02, 1.23}, {123456, 1000, 123000},
                 {-0.00123456, 1e-5, -0.00123}, {1e-9, 0.01, 0},          {5, 0, 5},
                 {1e300, 1e-5, 1e300}};
    for (const auto &c : cases)
        EXPECT_DOUBLE_EQ(roundedTo(c.value, c.distance), c.want) << c.value << ' ' << c.distance;
}

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
