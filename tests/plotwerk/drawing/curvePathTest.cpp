#include "plotwerk/drawing/curvePath.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace plotwerk;

namespace {

std::string described(const Path &path) {
    std::string text;
    for (const Point &p : path) {
        char point[64];
        std::snprintf(point, sizeof point, "%g,%g", p.x, p.y);
        text += (text.empty() ? "" : " ") + std::string(isBreak(p) ? "|" : point);
    }
    return text;
}

double distanceToLine(const Point &p, const Point &a, const Point &b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t =
        square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distanceToPath(const Point &p, const Path &path) {
    double nearest = INFINITY;
    for (size_t i = 1; i < path.size(); ++i)
        nearest = std::min(nearest, distanceToLine(p, path[i - 1], path[i]));
    return nearest;
}

} // namespace

TEST(CurvePath, ClipsAtTheBox) {
    const Box box{0, 0, 10, 10};
    const struct {
        const char *what;
        Path path;
        const char *want;
    } cases[] = {
        {"inside", {{1, 1}, {2, 2}}, "1,1 2,2"},
        {"leaves", {{5, 5}, {15, 5}}, "5,5 10,5 |"},
        {"leaves and comes back", {{5, 5}, {15, 5}, {15, 8}, {5, 8}}, "5,5 10,5 | 10,8 5,8"},
        {"crosses", {{-5, 5}, {15, 5}}, "0,5 10,5 |"},
        {"passes a corner by", {{-5, 8}, {3, 18}}, ""},
        {"far away", {{5, 5}, {5, 1e12}}, "5,5 5,10 |"},
        {"gap", {{1, 1}, pathBreak, {2, 2}, {3, 3}}, "1,1 | 2,2 3,3"},
        {"point", {{1, 1}, pathBreak, {20, 20}}, "1,1 |"},
        {"empty", {}, ""},
    };
    for (const auto &c : cases) EXPECT_EQ(described(clippedPath(c.path, box)), c.want) << c.what;
}

TEST(CurvePath, StepsHoldUntilTheNextPoint) {
    EXPECT_EQ(described(steppedPath({{0, 1}, {1, 3}, pathBreak, {2, 5}})), "0,1 1,1 1,3 | 2,5");
}

TEST(CurvePath, AreasReachFromTheLineToTheBase) {
    const Box box{0, 0, 10, 10};
    const struct {
        const char *what;
        Path path;
        double base;
        std::vector<std::string> want;
    } cases[] = {
        {"inside", {{1, 5}, {3, 7}}, 10, {"1,10 1,5 3,7 3,10"}},
        {"cut at a side", {{-2, 4}, {2, 8}}, 10, {"0,10 0,6 2,8 2,10"}},
        {"cut at the top", {{2, 5}, {4, -5}}, 10, {"2,10 2,5 3,0 4,0 4,10"}},
        {"base outside", {{1, 5}, {3, 5}}, 1e9, {"1,10 1,5 3,5 3,10"}},
        {"gap",
         {{1, 5}, {2, 5}, pathBreak, {4, 5}, {5, 5}},
         10,
         {"1,10 1,5 2,5 2,10", "4,10 4,5 5,5 5,10"}},
        {"outside", {{11, 5}, {12, 5}}, 10, {}},
        {"one point", {{1, 5}}, 10, {}},
    };
    for (const auto &c : cases) {
        std::vector<std::string> got;
        for (const Path &area : areasBetween(c.path, c.base, box)) got.push_back(described(area));
        EXPECT_EQ(got, c.want) << c.what;
    }
}

// Every point that was left out lies within the resolution of what is drawn, and nothing is drawn
// where there was nothing.
TEST(CurvePath, ReductionKeepsTheLook) {
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    Path noise;
    Path circle;
    Path walk{{100, 100}};
    for (int i = 0; i < 3000; ++i) {
        noise.push_back({i * 0.005, 10 * normal(random)});
        circle.push_back({50 * std::cos(i * 0.01), 50 * std::sin(i * 0.01)});
        walk.push_back({walk.back().x + normal(random), walk.back().y + normal(random)});
    }
    const struct {
        const char *what;
        const Path &path;
        size_t most;
    } cases[] = {{"noise", noise, 1100}, {"circle", circle, 1000}, {"walk", walk, 3001}};
    for (const auto &c : cases) {
        const Path reduced = reducedPath(c.path);
        EXPECT_LE(reduced.size(), c.most) << c.what;
        for (const Point &p : c.path)
            EXPECT_LE(distanceToPath(p, reduced), 2 * pathResolution)
                << c.what << ' ' << p.x << ',' << p.y;
        for (const Point &p : reduced)
            EXPECT_LE(distanceToPath(p, c.path), 1e-9) << c.what << ' ' << p.x << ',' << p.y;
    }
    EXPECT_EQ(described(reducedPath({{0, 0}, {1, 0}, {5, 0}, {2, 0}, {9, 0}, pathBreak, {1, 1}})),
              "0,0 5,0 2,0 9,0 | 1,1");
}
