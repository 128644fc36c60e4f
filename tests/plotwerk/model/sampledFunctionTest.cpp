#include "plotwerk/model/sampledFunction.h"

#include "tests/plotwerk/model/documents.h"

#include <functional>

using namespace plotwerk;

// The library would end the process.
TEST(SampledFunction, RefusesWhatTheLibraryWouldDieOf) {
    using Values = std::vector<double>;
    Values none, one{1}, two{1, 2};
    int hint = 0;
    const struct {
        std::string want;
        std::function<void()> call;
    } cases[] = {
        {"a curve without points has no values", [&] { interpolated(none, none, 1, hint); }},
        {"a curve without points has no values", [&] { searched(none, none, 1, hint); }},
        {"a curve's columns differ in length", [&] { interpolated(two, one, 1, hint); }},
        {"a curve's columns differ in length", [&] { integral(two, one); }},
        {"a curve's columns differ in length", [&] { averageBlocks(one, two, 2); }},
        {"", [&] { EXPECT_EQ(integral(none, none), 0); }},
        {"", [&] { EXPECT_EQ(peakPositions(none, 1, 1), none); }},
        {"", [&] { EXPECT_EQ(averageBlocks(none, none, 2), 0); }}};
    for (const auto &c : cases) {
        Document unused;
        EXPECT_EQ(refusalOf(unused, [&](auto &) { c.call(); }), c.want);
    }
}
