#include "fct/fct2D.h"

#include "tests/fct/samples.h"

#include <numeric>

using namespace plw;

using Fct2DPtr = Owner<Fct2D, freeFct2D>;

static Fct2DPtr grid(int nx, int ny, double (*z)(double, double)) {
    Fct2DPtr F = newFct2DWith(nullptr, nx, ny, 0, 1, 0, 1);
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) F->z[i + j * nx] = z(i, j);
    return F;
}

static double plane(double x, double y) {
    return 1 + 2 * x - 3 * y;
}

TEST(NewFct2D, TakesRowsAndRoundsGridLinesOnce) {
    Values values(300L * 200);
    std::iota(values.begin(), values.end(), 0);
    const Fct2DPtr F = newFct2DWith(values.data(), 300, 200, 0.1, 1.0 / 3, 0.2, 0.7);
    for (int i = 0; i < 300; ++i) EXPECT_EQ(F->x[i], std::fma(i, 1.0 / 3, 0.1)) << i;
    for (int j = 0; j < 200; ++j) EXPECT_EQ(F->y[j], std::fma(j, 0.7, 0.2)) << j;
    EXPECT_EQ(Values(F->z, F->z + 300L * 200), values);
    EXPECT_EQ(F->fixedLen + F->fixedLenY, 0);

    const Fct2DPtr fixed = newFct2DFixedLen(0, -3);
    EXPECT_EQ(fixed->sizeX * 10 + fixed->sizeY, 11);
    EXPECT_EQ(fixed->fixedLen + fixed->fixedLenY, 2);
}

TEST(Fct2DDeathTest, StridesByItsCapacityAndChecksAgainstTheValidSize) {
    const Fct2DPtr F = newFct2D(5, 3);
    F->nx = 2;
    F->ny = 3;
    setFct2DByIndex(F, 1, 2, 7);
    EXPECT_EQ(F->z[1 + 2 * 5], 7);
    EXPECT_EQ(fct2DAt(F, 1, 2), 7);
    expectFatal([&] { fct2DAt(F, -1, 0); }, "ERROR in fct2DAt: index out of range (-1)");
    expectFatal([&] { fct2DAt(F, 1, 3); }, "ERROR in fct2DAt: index out of range (3)");
    expectFatal([&] { setFct2DByIndex(F, 2, 0, 1); },
                "ERROR in setFct2DByIndex: index out of range (2)");
    clearFct2D(F);
    EXPECT_EQ(F->nx + F->ny, 0);
}

TEST(EvalFct2D, IsExactOnAPlaneAndExtrapolatesBeyondTheLastLines) {
    const Fct2DPtr F = grid(4, 3, plane), column = grid(1, 3, plane), row = grid(4, 1, plane);
    for (double x : {0.0, 0.25, 1.0, 2.5, 3.0, 3.5, 20.0}) {
        for (double y : {0.0, 0.5, 1.75, 2.0, 2.5, 10.0}) {
            EXPECT_EQ(evalFct2D(F, x, y), plane(x, y)) << x << " " << y;
            EXPECT_EQ(evalFct2D(column, 0, y), plane(0, y)) << y;
        }
        EXPECT_EQ(evalFct2D(row, x, 0), plane(x, 0)) << x;
    }
    EXPECT_EQ(F->lastIndexX, 3);
    EXPECT_EQ(F->lastIndexY, 2);

    EXPECT_TRUE(std::isnan(evalFct2D(F, NaN, 0)));
    F->z[0] = NaN;
    EXPECT_EQ(evalFct2D(F, 0.5, 0), plane(1, 0)) << "one NaN neighbour is replaced";
}

TEST(EvalFct2DDeathTest, EndsOutsideAndOnASinglePoint) {
    const Fct2DPtr F = grid(3, 3, plane), point = grid(1, 1, plane), column = grid(1, 3, plane),
                   row = grid(3, 1, plane), empty = newFct2D(2, 2);
    const char *out = "fct2DAt: index out of range (-1)", *outX = "evalFct2D: x outside (1)",
               *outY = "evalFct2D: y outside (1)", *outAt0 = "fct2DAt: index out of range (0)";
    const struct {
        Fct2D *F;
        double x, y;
        const char *message;
    } cases[] = {{F, -0.1, 1, out},   {F, 1, -0.1, out},    {point, 0, 0, out},
                 {point, 1, 0, outX}, {column, 0, -1, out}, {column, NaN, 1, outX},
                 {row, 1, 1, outY},   {empty, 0, 0, outAt0}};
    for (const auto &c : cases)
        expectFatal([&] { evalFct2D(c.F, c.x, c.y); }, std::string("ERROR in ") + c.message);
}

TEST(PrintFct2D, RunsXFirstOrYFirst) {
    const double values[] = {1, 2, NaN, 1e-7};
    const Fct2DPtr F = newFct2DWith(values, 2, 2, 0, 1, 10, 0.5);
    testing::internal::CaptureStdout();
    printFct2Dx(F, nullptr);
    printFct2Dy(F, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "0  10  1\n1  10  2\n0  10.5  nan\n1  10.5  1e-07\n"
              "0  10  1\n0  10.5  nan\n1  10  2\n1  10.5  1e-07\n");
}

TEST(SliceFct2DDeathTest, IsAWholeColumnAsACompleteFunctionAndNoOther) {
    const Fct2DPtr F = grid(3, 4, plane);
    const FctPtr slice = sliceFct2D(F, 2, 0, 2, 3);
    EXPECT_EQ(positions(slice), (Values{0, 1, 2, 3}));
    EXPECT_EQ(ordinates(slice), (Values{5, 2, -1, -4}));
    EXPECT_EQ(slice->fixedLen, 1);
    EXPECT_EQ(evalFct(slice, 0.5), 3.5);
    const struct {
        double x0, y0, x1, y1;
        const char *index;
    } cases[] = {{1, 0, 2, 3, "(1)"},
                 {1, 0.1, 1, 3, "(1)"},
                 {1, 0, 1, 2, "(1)"},
                 {1.5, 0, 1.5, 3, "(1)"},
                 {NaN, 0, NaN, 3, "(0)"}};
    for (const auto &c : cases)
        expectFatal([&] { sliceFct2D(F, c.x0, c.y0, c.x1, c.y1); },
                    std::string("ERROR in sliceFct2D: implementation incomplete ") + c.index);
}

// A bump at (cx, cy) of unit height in both directions.
static Fct2DPtr bump(int nx, int ny, double dx, double cx, double cy) {
    Fct2DPtr F = newFct2DWith(nullptr, nx, ny, 0, dx, 0, 0.25);
    for (int k = 0; k < nx * ny; ++k) {
        const double x = F->x[k % nx] - cx, y = F->y[k / nx] - cy;
        F->z[k] = std::exp(-x * x - y * y);
    }
    return F;
}

TEST(PeakFct2D, ChoosesAlongXByTheNumberOfColumns) {
    const struct {
        const char *what;
        int nx, found;
        double dx, cx, widthX, x, tolerance;
    } cases[] = {{"many columns: peaks of the profile", 21, 1, 0.25, 2.5, 2, 2.5, 0.13},
                 {"too short for the window: parabola", 21, 1, 0.25, 2.5, 11, 2.5, 0.02},
                 {"few columns: parabola", 5, 1, 1, 2.2, 2, 2.2, 0.2},
                 {"ten columns, largest in the first", 10, 0, 0.5, 0, 9, 0, 0},
                 {"largest in the last column: no peaks at x = 0", 5, 0, 1, 4, 2, 0, 0},
                 {"two columns: as it is", 2, 1, 1, 1, 2, 1, 0},
                 {"one column", 1, 1, 1, 0, 2, 0, 0}};
    for (const auto &c : cases) {
        const Fct2DPtr F = bump(c.nx, 41, c.dx, c.cx, 5);
        double x = -7, y = -7, strength = -7;
        EXPECT_EQ(peakFct2D(F, &x, &y, &strength, 0.01, c.widthX, 2), c.found) << c.what;
        EXPECT_NEAR(x, c.x, c.tolerance) << c.what;
        EXPECT_GT(strength, 0.01) << c.what;
        EXPECT_NEAR(y, c.cx == 4 ? 0 : 5, 0.125) << c.what;
    }
}

TEST(PeakFct2DDeathTest, LeavesTheResultsWithoutAPeakAndHandlesOnlyFewerColumnsThanRows) {
    const Fct2DPtr flat = grid(3, 30, plane);
    double x = -7, y = -7, strength = -7;
    EXPECT_EQ(peakFct2D(flat, &x, &y, &strength, 0.5, 2, 4), 0);
    // peaks in every column, but none along x
    const Fct2DPtr ridge = grid(12, 30, [](double, double v) { return v == 15 ? 1.0 : 0.0; });
    EXPECT_EQ(peakFct2D(ridge, &x, &y, &strength, 0.5, 4, 4), 0);
    // eleven columns that just span half a window, largest in the first
    EXPECT_EQ(peakFct2D(bump(11, 41, 0.5, 0, 5), &x, &y, &strength, 0.01, 10, 2), 0);
    EXPECT_EQ(Values({x, y, strength}), Values({-7, -7, -7}));

    const std::tuple<int, int, const char *> refused[] = {
        {5, 5, "incompete implemented case 2 (5)"},
        {1, 1, "incompete implemented case 2 (1)"},
        {0, 2, "zero size function (0)"},
        {1, 0, "zero size function (0)"}};
    for (const auto &[nx, ny, message] : refused) {
        const Fct2DPtr F = grid(5, 5, plane);
        F->nx = nx;
        F->ny = ny;
        expectFatal([&] { peakFct2D(F, &x, &y, &strength, 0, 1, 1); },
                    std::string("ERROR in peakFct2D: ") + message);
    }
}
