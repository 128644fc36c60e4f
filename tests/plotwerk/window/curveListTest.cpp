// The list of the curves.
#include "tests/plotwerk/window/windowTest.h"

#include <regex>

TEST_F(WindowTest, CurvesHiddenTogetherAreShownEachAsItWasByOneStep) {
    startWithLine();
    read("x a b c\n0 1 2 3\n9 4 5 6\n", "More", true);
    const auto select = [&](int curve, bool append) {
        plotwerk->selectCurvesOf_indexFirst_indexLast_appendSelection_(name, curve, curve, append);
    };
    const auto setParts = [&](int curve, int isLine, int isFilled, int hasSymbols) {
        select(curve, false);
        plotwerk
            ->setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_(
                name, isLine, 2, 2, 2, 2, isFilled, 2, 2, 2, hasSymbols);
    };
    setParts(1, 0, 0, 1);
    setParts(2, 1, 1, 0);
    for (const int curve : {2, 0, 1}) select(curve, curve != 2);
    screen.frame();
    const std::string before = contentsOf(name);
    screen.type("ctrl+h");
    waitUntil("hidden curves", [&] { return contentsOf(name) != before; });
    screen.settle();
    const std::string hidden = contentsOf(name);
    screen.type("ctrl+j");
    const auto parts = [&] { // apart from the layers: shown curves come to the front
        return std::regex_replace(contentsOf(name), std::regex("\"layer\":[0-9]+,?"), "");
    };
    const std::string want = std::regex_replace(before, std::regex("\"layer\":[0-9]+,?"), "");
    waitUntil("each as it was", [&] { return parts() == want; });
    screen.type("ctrl+z");
    waitUntil("hidden again, by one step", [&] { return contentsOf(name) == hidden; });
}
