#include "plotwerk/model/sampledFunction.h"

#include "tests/plotwerk/model/documents.h"
#include "tests/plotwerk/model/withinMemory.h"

#include <functional>
#include <random>

using namespace plotwerk;

// The library would end the process.
TEST(SampledFunction, RefusesWhatTheLibraryWouldDieOf) {
    using Values = std::vector<double>;
    Values none, one{1}, two{1, 2};
    int hint = 0;
    const std::pair<const char *, std::function<void()>> cases[] = {
        {"a curve without points has no values", [&] { interpolated(none, none, 1, hint); }},
        {"a curve without points has no values", [&] { searched(none, none, 1, hint); }},
        {"a curve's columns differ in length", [&] { interpolated(two, one, 1, hint); }},
        {"a curve's columns differ in length", [&] { integral(two, one); }},
        {"a curve's columns differ in length", [&] { averageBlocks(one, two, 2); }},
        {"", [&] { EXPECT_EQ(interpolated(one, one, 7, hint), 0); }},
        {"", [&] { EXPECT_EQ(integral(none, none), 0); }},
        {"", [&] { EXPECT_EQ(peakPositions(none, 1, 1), none); }},
        {"", [&] { EXPECT_EQ(averageBlocks(none, none, 2), 0); }}};
    for (const auto &[want, call] : cases) EXPECT_EQ(refusalOf(call), want);
}

// A sanitizer ends the process where an allocation fails.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
TEST(SampledFunction, RefusesToSearchWithoutTheMemoryForIt) {
    std::vector<double> noise(50'000);
    std::minstd_rand random(1);
    for (double &y : noise) y = std::generate_canonical<double, 32>(random);
    const auto search = [&] { peakPositions(noise, 0.9, 2); };
    for (rlim_t bytes = 0; bytes < 10'000'000; bytes += 100'000)
        EXPECT_EXIT(doWithin(bytes, search), isDoneOrRefused, "") << bytes;
}
#endif
