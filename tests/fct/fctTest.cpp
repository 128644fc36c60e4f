#include "fct/fct.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "samples.h"

using namespace plw;

TEST(NewFct, RaisesTheCapacityToOneAndGrowsByTheRule) {
    for (int capacity : {0, -5, 1}) {
        const FctPtr f = own(newFct(capacity));
        EXPECT_EQ(f->size, 1) << capacity;
        for (int i = 0; i < 62; i++) {
            appendFct(f.get(), i, -i);
            EXPECT_EQ(f->size, i < 1 ? 1 : i < 25 ? 25 : i < 61 ? 61 : 115) << i;
        }
        EXPECT_EQ(f->n, 62);
        EXPECT_EQ(f->t[61], 61);
        EXPECT_EQ(f->y[25], -25);
    }
}

TEST(NewFct, ComesFromAnArrayWithPositionsRoundedOnce) {
    const Values y = {4, 5, 6};
    const FctPtr f = own(newFctWith(y.data(), 3, 1, 0.5));
    EXPECT_EQ(positions(f.get()), (Values{1, 1.5, 2}));
    EXPECT_EQ(ordinates(f.get()), y);

    const Values many(1000);
    const FctPtr thirds = own(newFctWith(many.data(), 1000, -7.7, 1.0 / 3));
    for (int i = 0; i < 1000; i++) EXPECT_EQ(thirds->t[i], std::fma(i, 1.0 / 3, -7.7)) << i;

    EXPECT_EQ(own(newFctWith(nullptr, 0, 0, 1))->n, 0);
}

TEST(CopyFct, IsGrowableAndItsOwn) {
    const FctPtr f = own(newFctFixedLen(2));
    appendFct(f.get(), 1, 10);
    appendFct(f.get(), 2, 20);
    f->lastIndex = 1;

    const FctPtr copy = own(copyFct(f.get()));
    EXPECT_EQ(copy->lastIndex, 0);
    appendFct(copy.get(), 3, 30);
    negFct(copy.get());
    EXPECT_EQ(ordinates(copy.get()), (Values{-10, -20, -30}));
    EXPECT_EQ(ordinates(f.get()), (Values{10, 20}));

    EXPECT_EQ(own(copyFct(own(newFct(5)).get()))->size, 1);
}

TEST(LinkFct, SharesTheArraysAndOwnsNothing) {
    const FctPtr f = function({0, 1, 2}, {1, 2, 3});
    f->lastIndex = 2;
    Fct *link = linkFct(f.get());
    EXPECT_EQ(link->size, 0);
    EXPECT_EQ(link->lastIndex, 0);
    EXPECT_EQ(link->linked, 1);
    link->y[1] = 7;
    removeAtEndFct(link, 1);
    freeFct(link);
    EXPECT_EQ(ordinates(f.get()), (Values{1, 7, 3}));
}

TEST(LinkFctDeathTest, OfAFixedLengthFunctionIsIncomplete) {
    const FctPtr f = own(newFctFixedLen(1));
    appendFct(f.get(), 0, 1);
    const FctPtr link = own(linkFct(f.get()));
    EXPECT_EXIT(evalFct(link.get(), 0), testing::ExitedWithCode(1),
                "^ERROR in evalFct: function incomplete \\(1\\)\n$");
}

TEST(RemoveFct, LimitsTheCountAndForgetsTheSearch) {
    const struct {
        void (*remove)(Fct *, int);
        int k;
        Values want;
    } cases[] = {
        {removeAtEndFct, 0, {1, 2, 3, 4}},
        {removeAtEndFct, 1, {1, 2, 3}},
        {removeAtEndFct, 4, {}},
        {removeAtEndFct, 5, {}},
        {removeAtEndFct, INT_MAX, {}},
        {removeAtBeginFct, 0, {1, 2, 3, 4}},
        {removeAtBeginFct, 2, {3, 4}},
        {removeAtBeginFct, 10, {}},
        {removeAtBeginFct, INT_MAX, {}},
        {removeAtBeginFct, -1, {1, 2, 3, 4}},
        {removeAtBeginFct, INT_MIN, {1, 2, 3, 4}},
    };
    for (const auto &c : cases) {
        const FctPtr f = function({1, 2, 3, 4}, {-1, -2, -3, -4});
        f->lastIndex = 3;
        c.remove(f.get(), c.k);
        EXPECT_EQ(positions(f.get()), c.want) << c.k;
        negFct(f.get());
        EXPECT_EQ(ordinates(f.get()), c.want) << c.k;
        EXPECT_EQ(f->lastIndex, 0) << c.k;
        EXPECT_EQ(f->size, 4) << c.k;
    }
}

TEST(RemoveAtEndFct, TakesBackWhatItDropped) {
    const FctPtr f = function({1, 2, 3, 4}, {-1, -2, -3, -4});
    removeAtEndFct(f.get(), 3);
    removeAtEndFct(f.get(), -2);
    EXPECT_EQ(positions(f.get()), (Values{1, 2, 3}));
    removeAtEndFct(f.get(), INT_MIN);
    EXPECT_EQ(positions(f.get()), (Values{1, 2, 3, 4}));
}

TEST(ClearFct, KeepsCapacityAndSearchIndex) {
    const FctPtr f = function({1, 2}, {3, 4});
    f->lastIndex = 1;
    clearFct(f.get());
    EXPECT_EQ(f->n, 0);
    EXPECT_EQ(f->size, 2);
    EXPECT_EQ(f->lastIndex, 1);
    // the stale index is no hint
    appendFct(f.get(), 5, 6);
    EXPECT_EQ(indexFct(f.get(), 9), 0);
}

TEST(FctDeathTest, FixedLengthIsNeitherGrownNorShortenedNorSearchedTooEarly) {
    const FctPtr full = own(newFctFixedLen(1));
    appendFct(full.get(), 0, 1);
    EXPECT_EQ(indexFct(full.get(), 5), 0);
    const FctPtr partial = incompleteFunction();
    double t, y;
    int i;
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(appendFct(full.get(), 1, 1), failed,
                "^ERROR in appendFct: function with fixed length full \\(1\\)\n$");
    EXPECT_EXIT(removeAtEndFct(partial.get(), 0), failed,
                "^ERROR in appendFct: function with fixed length full \\(2\\)\n$");
    EXPECT_EXIT(removeAtBeginFct(partial.get(), 0), failed,
                "^ERROR in removeAtBeginFct: function with fixed length full \\(2\\)\n$");
    EXPECT_EXIT(indexFct(partial.get(), 0), failed,
                "^ERROR in indexFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(closestTFct(partial.get(), 0), failed,
                "^ERROR in closestTFct: function incomplete \\(2\\)\n$");
    EXPECT_EXIT(maximumFct(partial.get(), &t, &y, &i), failed,
                "^ERROR in maximumFct: function incomplete \\(2\\)\n$");
}

TEST(IndexFct, RemembersWhatItFound) {
    const FctPtr f = function({0, 1, 1, 3}, {0, 0, 0, 0});
    const struct {
        double x;
        int want;
    } cases[] = {{-7, 0}, {0, 0}, {0.5, 0}, {2, 2}, {3, 3}, {9, 3}, {NaN, 0}};
    for (const auto &c : cases) {
        EXPECT_EQ(indexFct(f.get(), c.x), c.want) << c.x;
        EXPECT_EQ(f->lastIndex, c.want) << c.x;
    }
    EXPECT_EQ(indexFct(own(newFct(1)).get(), 1), 0);
}

TEST(ClosestTFct, GivesTiesToTheLargerPosition) {
    const FctPtr f = function({0, 1, 3}, {0, 0, 0});
    const struct {
        double x, want;
    } cases[] = {{-7, 0}, {0.25, 0}, {0.5, 1}, {2, 3},        {1.999, 1},
                 {3, 3},  {9, 3},    {NaN, 1}, {-infinity, 1}};
    for (const auto &c : cases) EXPECT_EQ(closestTFct(f.get(), c.x), c.want) << c.x;
    const FctPtr gap = function({0, NaN, 3}, {0, 0, 0});
    EXPECT_TRUE(std::isnan(closestTFct(gap.get(), 1)));
    EXPECT_EQ(closestTFct(gap.get(), 3), 3);
    EXPECT_TRUE(std::isnan(closestTFct(own(newFct(1)).get(), 1)));
    EXPECT_EQ(closestTFct(function({4}, {0}).get(), -1), 4);
}

TEST(MaximumFct, TakesTheFirstOfEqualsAndNoNaN) {
    const struct {
        Values y;
        double want;
        int index;
    } cases[] = {{{1, 5, 5}, 5, 1},
                 {{NaN, -2, NaN}, -2, 1},
                 {{}, -1e300, -7},
                 {{NaN, -1e300, -infinity}, -1e300, -7}};
    for (const auto &c : cases) {
        const FctPtr f = function(Values(c.y.size(), 3), c.y);
        double t = -7, y = 0;
        int index = -7;
        maximumFct(f.get(), &t, &y, &index);
        EXPECT_EQ(y, c.want) << text(c.y);
        EXPECT_EQ(index, c.index) << text(c.y);
        EXPECT_EQ(t, c.index < 0 ? -7 : 3) << text(c.y);
    }
}

TEST(SortFct, MovesWholeSamples) {
    const FctPtr f = function({3, 1, 2}, {10, 30, 20});
    sortByTFct(f.get());
    EXPECT_EQ(positions(f.get()), (Values{1, 2, 3}));
    EXPECT_EQ(ordinates(f.get()), (Values{30, 20, 10}));
    sortByYFct(f.get());
    EXPECT_EQ(positions(f.get()), (Values{3, 2, 1}));
    sortByTFct(own(newFct(1)).get());
}

// The rule word by word, on a copy.
static Values unwrapped(const Values &y, int m) {
    Values v = y;
    double r = y.empty() ? 0 : y[0], c = 0;
    for (int i = 1; i < static_cast<int>(y.size()); i++) {
        double u = y[i] + c;
        if (u - r > 3.141592653589793)
            c = c - 6.283185307179586;
        else if (u - r < -3.141592653589793)
            c = c + 6.283185307179586;
        u = y[i] + c;
        v[i] = u;
        r = std::fma(1.0 / m, v[i] - v[i - m >= 1 ? i - m : 0], r);
    }
    return v;
}

TEST(UnwrapPhaseFct, FollowsThePhaseThroughItsJumps) {
    constexpr double turn = 6.283185307179586;
    FctPtr f = function({0, 1, 2, 3}, {0, 3, 6.2, 0.1});
    unwrapPhaseFct(f.get(), 1);
    EXPECT_EQ(ordinates(f.get()), (Values{0, 3, 6.2 - turn, 0.1}));

    f = function({0, 1, 2}, {0, 10, 10}); // a jump of more than 3 pi: one turn at each sample
    unwrapPhaseFct(f.get(), 1);
    EXPECT_EQ(ordinates(f.get()), (Values{0, 10 - turn, 10 - turn}));

    RandomFunctions functions;
    functions.gaps = 0.01;
    for (int round = 0; round < 200; round++) {
        f = functions.next(40);
        for (int i = 0; i < f->n; i++) f->y[i] *= 2;
        const int m = round % 50 == 0 ? INT_MAX : 1 + functions.upTo(6);
        const Values want = unwrapped(ordinates(f.get()), m);
        const std::string input = text(f.get());
        unwrapPhaseFct(f.get(), m);
        EXPECT_TRUE(same(ordinates(f.get()), want)) << "m = " << m << ", " << input;
    }
}

namespace {

std::string contents(const std::filesystem::path &path) {
    std::stringstream s;
    s << std::ifstream(path).rdbuf();
    return s.str();
}

struct PrintFct : testing::Test {
    std::filesystem::path dir =
        std::filesystem::path(testing::TempDir()) /
        (std::string("plw") + testing::UnitTest::GetInstance()->current_test_info()->name());

    void SetUp() override { std::filesystem::remove_all(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }
};

using PrintFctDeathTest = PrintFct;

} // namespace

TEST_F(PrintFct, WritesWhatPrintfDoes) {
    const FctPtr f = own(newFct(1));
    for (double special : {0.0, -0.0, NaN, -NaN, infinity, -infinity, 1e-5, 1e-4, 999999.5, 1e6,
                           0.1, std::numeric_limits<double>::denorm_min(), -1.7976931348623157e308})
        appendFct(f.get(), special, -special);
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; i++)
        appendFct(f.get(), std::bit_cast<double>(random()),
                  std::ldexp(static_cast<double>(random() % 2000001), -static_cast<int>(i % 24)));

    std::string want;
    for (int i = 0; i < f->n; i++) {
        char line[64];
        std::snprintf(line, sizeof line, "%g  %g\n", f->t[i], f->y[i]);
        want += line;
    }
    printFct(f.get(), (dir / "made.txt").c_str());
    EXPECT_TRUE(contents(dir / "made.txt") == want);

    printFct(own(newFct(1)).get(), (dir / "made.txt").c_str());
    EXPECT_EQ(contents(dir / "made.txt"), "");
}

TEST_F(PrintFct, GoesToStandardOutputWithoutAPath) {
    const FctPtr f = function({1, 2}, {0.5, NaN});
    testing::internal::CaptureStdout();
    printFct(f.get(), nullptr);
    pp(f.get());
    std::puts("still open");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "1  0.5\n2  nan\n1  0.5\n2  nan\nstill open\n");
}

TEST_F(PrintFctDeathTest, MakesNoParents) {
    const std::string parent = (dir / "deep").string();
    EXPECT_EXIT(printFct(function({1}, {1}).get(), (parent + "/file").c_str()),
                testing::ExitedWithCode(1), "^ERROR: can't create directory: " + parent + "\n$");
}
