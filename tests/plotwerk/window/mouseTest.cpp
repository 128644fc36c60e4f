// What the mouse does on the plot.
#include "tests/plotwerk/window/windowTest.h"

#include <cmath>

TEST_F(WindowTest, AnswersWhatTheMouseSelectedAndTheKeysHeld) {
    startWithLine();
    const ShownFrame frame = screen.frame();
    const auto answer = [&] { return runProgram({CALLPLW, "-x", "mouseClick"}).out; };
    const auto selected = [&] {
        return plotwerk->mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(name);
    };
    EXPECT_EQ(answer(), "none\n");
    const struct {
        const char *key;
        int code;
    } cases[] = {{"", 0}, {"shift", 1}, {"alt", 4}};
    for (const auto &c : cases) {
        screen.drag(frame.at(0.2, 0.9), frame.at(0.6, 0.4), 1, c.key);
        waitUntil("a selection", [&] {
            return !std::isnan(std::get<0>(selected())) && std::get<4>(selected()) == c.code;
        });
        const auto [x1, y1, x2, y2, keys] = selected();
        const double pixel = 1.5 / (frame.upperRight.x - frame.lowerLeft.x);
        EXPECT_NEAR(x1, 2, 10 * pixel);
        EXPECT_NEAR(y1, 90, 200 * pixel);
        EXPECT_NEAR(x2, 6, 10 * pixel);
        EXPECT_NEAR(y2, 40, 200 * pixel);
    }
    EXPECT_EQ(ranges(), (std::array<double, 4>{0, 10, 0, 100})) << "nothing was zoomed";
    screen.click(frame.at(0.8, 0.2));
    waitUntil("no selection", [&] { return answer() == "none\n"; });
}

// The place under the mouse keeps its value.
TEST_F(WindowTest, ZoomsAndPans) {
    startWithLine();
    const ShownFrame frame = screen.frame();
    constexpr double tolerance = 0.01;
    const std::array<double, 4> whole{0, 10, 0, 100};
    const auto restore = [&] {
        plotwerk->setXRangeOf_xmin_xmax_(name, 0, 10);
        plotwerk->setYRangeOf_ymin_ymax_(name, 0, 100);
        screen.settle();
    };

    screen.wheel(frame.at(0.5, 0.5), 1);
    waitForRanges({1, 9, 10, 90}, tolerance);
    screen.type("alt+Left");
    waitForRanges(whole, 0);
    screen.type("alt+Right");
    waitForRanges({1, 9, 10, 90}, tolerance);
    restore();

    Place below = frame.at(0.25, 0);
    below.y += 12;
    screen.wheel(below, 1);
    waitForRanges({0.5, 8.5, 0, 100}, tolerance);
    restore();

    screen.drag(frame.at(0.2, 0.5), frame.at(0.7, 0.9), 1, "ctrl");
    waitForRanges({2, 7, 50, 90}, tolerance);
    EXPECT_EQ(std::get<4>(plotwerk->mouseEventsShiftKeyDownOf_x1_y1_x2_y2_keyMode_(name)), 2);
    restore();

    screen.drag(frame.at(0.5, 0.5), frame.at(0.6, 0.4), 2);
    waitForRanges({-1, 9, 10, 110}, tolerance);
    restore();
}

TEST_F(WindowTest, SelectsTheCurveThatIsClicked) {
    startWithLine();
    read("x z\n0 100\n5 50\n10 0\n", "More");
    const ShownFrame frame = screen.frame();
    const auto isSelected = [&](int first, int count) {
        waitUntil("the selection", [&] {
            const auto selection =
                plotwerk->statisticOfSelectionOf_name_dataPoints_min_max_sum_std_area_(name);
            return plotwerk->indexOfSelectedCurveOf_(name) == first &&
                   std::get<1>(selection) == 3 * count;
        });
    };
    screen.click(frame.at(0.8, 0.8));
    isSelected(0, 1);
    screen.click(frame.at(0.8, 0.2));
    isSelected(1, 1);
    screen.click(frame.at(0.8, 0.8), "ctrl");
    isSelected(1, 2);
    screen.type("Delete");
    waitUntil("no curves", [&] { return plotwerk->indexOfSelectedCurveOf_(name) == -1; });
}
