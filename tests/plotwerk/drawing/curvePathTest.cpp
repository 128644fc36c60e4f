#include "plotwerk/drawing/curvePath.h"
#include "tests/plotwerk/drawing/samples.h"

#include <cmath>
#include <random>

using namespace plotwerk;

TEST(CurvePath, ClipsAtTheBox) {
    const Box box{0, 0, 10, 10};
    const std::tuple<const char *, Path, const char *> cases[] = {
        {"leaves and comes back", {{5, 5}, {15, 5}, {15, 8}, {5, 8}}, "5,5 10,5 | 10,8 5,8"},
        {"crosses", {{-5, 5}, {15, 5}}, "0,5 10,5 |"},
        {"passes a corner by", {{-5, 8}, {3, 18}}, ""},
        {"far away", {{5, 5}, {5, 1e12}}, "5,5 5,10 |"},
        {"gap", {{1, 1}, pathBreak, {2, 2}, {3, 3}}, "1,1 | 2,2 3,3"},
        {"gap outside", {{20, 20}, pathBreak, {30, 5}, {40, 5}, pathBreak, {1, 1}}, "1,1"},
        {"gaps",
         {pathBreak, {1, 1}, pathBreak, pathBreak, {2, 2}, {2, 20}, pathBreak, {3, 3}},
         "1,1 | 2,2 2,10 | 3,3"},
        {"along the sides", {{0, -5}, {0, 5}, {10, 5}, {10, 15}}, "0,0 0,5 10,5 10,10 |"},
        {"beside the sides", {{-1, -5}, {-1, 15}, {15, 15}, {15, -1}, {-1, -1}}, ""},
        {"slanted",
         {{-2, 3}, {4, -3}, {14, 7}, {7, 14}, {-4, 3}},
         "0,1 1,0 | 7,0 10,3 | 3,10 0,7 |"},
    };
    for (const auto &[what, path, want] : cases)
        EXPECT_EQ(described(clippedPath(path, box)), want) << what;
}

TEST(CurvePath, AreasReachFromTheLineToTheBase) {
    const std::tuple<const char *, Path, double, const char *> cases[] = {
        {"inside", {{1, 5}, {3, 7}}, 10, "1,10 1,5 3,7 3,10;"},
        {"cut at a side", {{-2, 4}, {2, 8}}, 10, "0,10 0,6 2,8 2,10;"},
        {"cut at the top", {{2, 5}, {4, -5}}, 10, "2,10 2,5 3,0 4,0 4,10;"},
        {"from top to bottom", {{0, -5}, {4, 15}}, 4, "0,4 0,0 1,0 3,10 4,10 4,4;"},
        {"from bottom to top", {{4, 15}, {0, -5}}, 4, "4,4 4,10 3,10 1,0 0,0 0,4;"},
        {"cut at both sides, backwards", {{15, 0}, {-5, 10}}, 10, "10,10 10,2.5 0,7.5 0,10;"},
        {"upright", {{5, 2}, {5, 8}}, 10, "5,10 5,2 5,8 5,10;"},
        {"base outside", {{1, 5}, {3, 5}}, 1e9, "1,10 1,5 3,5 3,10;"},
        {"gap", {{1, 5}, {2, 5}, pathBreak, {4, 5}, {5, 5}}, 6, "1,6 1,5 2,5 2,6;4,6 4,5 5,5 5,6;"},
        {"outside", {{11, 5}, {12, 5}}, 10, ""},
        {"one point", {{1, 5}}, 10, ""},
    };
    for (const auto &[what, path, base, want] : cases) {
        std::string got;
        for (const Path &area : areasBetween(path, base, {0, 0, 10, 10}))
            got += described(area) + ';';
        EXPECT_EQ(got, want) << what;
    }
}

// Every point that was left out lies within the resolution of what is drawn.
TEST(CurvePath, ReductionKeepsTheLook) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    Path noise;
    Path circle;
    Path walk{{100, 100}};
    for (int i = 0; i < 600; ++i) {
        noise.push_back({i * 0.005, 10 * normal(random)});
        circle.push_back({50 * std::cos(i * 0.01), 50 * std::sin(i * 0.01)});
        walk.push_back({walk.back().x + normal(random), walk.back().y + normal(random)});
    }
    const std::pair<Path, std::size_t> pathsAndSizes[] = {{noise, 220}, {circle, 200}, {walk, 601}};
    for (const auto &[path, size] : pathsAndSizes) {
        const Path reduced = reducedPath(path);
        EXPECT_LE(reduced.size(), size);
        for (const Point &p : path)
            EXPECT_LE(distanceFrom(reduced, p), 2 * pathResolution) << p.x << ',' << p.y;
    }
    EXPECT_EQ(described(reducedPath({{0, 0}, {1, 0}, {5, 0}, {2, 0}, {9, 0}, pathBreak, {1, 1}})),
              "0,0 5,0 2,0 9,0 | 1,1");
}
