#include "fct/fct2D.h"

#include <gtest/gtest.h>

#include "samples.h"

using namespace plw;

using Fct2DPtr = std::unique_ptr<Fct2D, decltype(&freeFct2D)>;

static Fct2DPtr grid(int nx, int ny, double (*z)(double, double)) {
    Fct2DPtr F(newFct2DWith(nullptr, nx, ny, 0, 1, 0, 1), freeFct2D);
    for (int j = 0; j < ny; j++)
        for (int i = 0; i < nx; i++) setFct2DByIndex(F.get(), i, j, z(i, j));
    return F;
}

static double plane(double x, double y) {
    return 1 + 2 * x - 3 * y;
}

TEST(NewFct2D, TakesRowsAndRoundsGridLinesOnce) {
    const double values[] = {0, 1, 2, 3, 4, 5};
    const Fct2DPtr F(newFct2DWith(values, 3, 2, 0, 1, 10, 5), freeFct2D);
    EXPECT_EQ(Values(F->x, F->x + 3), (Values{0, 1, 2}));
    EXPECT_EQ(Values(F->y, F->y + 2), (Values{10, 15}));
    EXPECT_EQ(fct2DAt(F.get(), 2, 1), 5);
    EXPECT_EQ(F->fixedLen + F->fixedLenY, 0);

    const Fct2DPtr thirds(newFct2DWith(nullptr, 300, 1, 0.1, 1.0 / 3, 0, 1), freeFct2D);
    for (int i = 0; i < 300; i++) EXPECT_EQ(thirds->x[i], std::fma(i, 1.0 / 3, 0.1)) << i;

    const Fct2DPtr fixed(newFct2DFixedLen(0, -3), freeFct2D);
    EXPECT_EQ(fixed->sizeX * 10 + fixed->sizeY, 11);
    EXPECT_EQ(fixed->fixedLen + fixed->fixedLenY, 2);
}

TEST(Fct2D, StridesByItsCapacity) {
    const Fct2DPtr F(newFct2D(5, 3), freeFct2D);
    F->nx = 2;
    F->ny = 3;
    setFct2DByIndex(F.get(), 1, 2, 7);
    EXPECT_EQ(F->z[1 + 2 * 5], 7);
    EXPECT_EQ(fct2DAt(F.get(), 1, 2), 7);
}

TEST(Fct2DDeathTest, ChecksAgainstTheValidSize) {
    const Fct2DPtr F(newFct2D(4, 4), freeFct2D);
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(fct2DAt(F.get(), 0, 0), failed, "^ERROR in fct2DAt: index out of range \\(0\\)\n$");
    F->nx = 2;
    F->ny = 3;
    EXPECT_EXIT(fct2DAt(F.get(), -1, 0), failed, "fct2DAt: index out of range \\(-1\\)\n$");
    EXPECT_EXIT(fct2DAt(F.get(), 1, 3), failed, "fct2DAt: index out of range \\(3\\)\n$");
    EXPECT_EXIT(setFct2DByIndex(F.get(), 2, 0, 1), failed,
                "^ERROR in setFct2DByIndex: index out of range \\(2\\)\n$");
    clearFct2D(F.get());
    EXPECT_EXIT(setFct2DByIndex(F.get(), 0, 0, 1), failed, "index out of range \\(0\\)\n$");
}

TEST(EvalFct2D, IsExactOnAPlaneAndExtrapolatesBeyondTheLastLines) {
    const Fct2DPtr F = grid(4, 3, plane);
    for (double x : {0.0, 0.25, 1.0, 2.5, 3.0, 3.5, 20.0})
        for (double y : {0.0, 0.5, 1.75, 2.0, 2.5, 10.0})
            EXPECT_EQ(evalFct2D(F.get(), x, y), plane(x, y)) << x << " " << y;
    EXPECT_EQ(F->lastIndexX, 3);
    EXPECT_EQ(F->lastIndexY, 2);

    const double corners[] = {0, 1, 2, 5};
    const Fct2DPtr cell(newFct2DWith(corners, 2, 2, 0, 1, 0, 1), freeFct2D);
    EXPECT_EQ(evalFct2D(cell.get(), 1, 1), 5);
    EXPECT_EQ(evalFct2D(cell.get(), 0.5, 0.5), 2);
    EXPECT_EQ(evalFct2D(cell.get(), 2, 0), 2);
    EXPECT_TRUE(std::isnan(evalFct2D(cell.get(), NaN, 0)));

    setFct2DByIndex(cell.get(), 0, 0, NaN);
    EXPECT_EQ(evalFct2D(cell.get(), 0.5, 0), 1) << "one NaN neighbour is replaced";
}

TEST(EvalFct2D, RunsAlongAGridOfOneColumnOrRow) {
    const Fct2DPtr column = grid(1, 3, plane);
    EXPECT_EQ(evalFct2D(column.get(), 0, 0.5), plane(0, 0.5));
    EXPECT_EQ(evalFct2D(column.get(), 0, 4), plane(0, 4));
    const Fct2DPtr row = grid(3, 1, plane);
    EXPECT_EQ(evalFct2D(row.get(), 0.5, 0), plane(0.5, 0));
    EXPECT_EQ(evalFct2D(row.get(), 2, 0), plane(2, 0));
}

TEST(EvalFct2DDeathTest, EndsOutsideAndOnASinglePoint) {
    const auto outOfRange = "^ERROR in fct2DAt: index out of range \\(-1\\)\n$";
    const auto failed = testing::ExitedWithCode(1);
    const Fct2DPtr F = grid(3, 3, plane);
    EXPECT_EXIT(evalFct2D(F.get(), -0.1, 1), failed, outOfRange);
    EXPECT_EXIT(evalFct2D(F.get(), 1, -0.1), failed, outOfRange);
    const Fct2DPtr point = grid(1, 1, plane);
    EXPECT_EXIT(evalFct2D(point.get(), 0, 0), failed, outOfRange);
    EXPECT_EXIT(evalFct2D(point.get(), 1, 0), failed, "^ERROR in evalFct2D: x outside \\(1\\)\n$");
    const Fct2DPtr column = grid(1, 3, plane);
    EXPECT_EXIT(evalFct2D(column.get(), 0, -1), failed, outOfRange);
    EXPECT_EXIT(evalFct2D(column.get(), NaN, 1), failed, "^ERROR in evalFct2D: x outside");
    const Fct2DPtr row = grid(3, 1, plane);
    EXPECT_EXIT(evalFct2D(row.get(), 1, 1), failed, "^ERROR in evalFct2D: y outside \\(1\\)\n$");
    const Fct2DPtr empty(newFct2D(2, 2), freeFct2D);
    EXPECT_EXIT(evalFct2D(empty.get(), 0, 0), failed, "^ERROR in fct2DAt: index out of range");
}

TEST(PrintFct2D, RunsXFirstOrYFirst) {
    const double values[] = {1, 2, NaN, 1e-7};
    const Fct2DPtr F(newFct2DWith(values, 2, 2, 0, 1, 10, 0.5), freeFct2D);
    testing::internal::CaptureStdout();
    printFct2Dx(F.get(), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "0  10  1\n1  10  2\n0  10.5  nan\n1  10.5  1e-07\n");
    testing::internal::CaptureStdout();
    printFct2Dy(F.get(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "0  10  1\n0  10.5  nan\n1  10  2\n1  10.5  1e-07\n");
}

TEST(SliceFct2D, IsAWholeColumnAsACompleteFunction) {
    const Fct2DPtr F = grid(3, 4, plane);
    const FctPtr slice = own(sliceFct2D(F.get(), 2, 0, 2, 3));
    EXPECT_EQ(positions(slice.get()), (Values{0, 1, 2, 3}));
    EXPECT_EQ(ordinates(slice.get()), (Values{5, 2, -1, -4}));
    EXPECT_EQ(slice->fixedLen, 1);
    EXPECT_EQ(evalFct(slice.get(), 0.5), 3.5);
}

TEST(SliceFct2DDeathTest, RefusesAllOthers) {
    const Fct2DPtr F = grid(3, 4, plane);
    const struct {
        double x0, y0, x1, y1;
    } cases[] = {{1, 0, 2, 3},     {1, 0.1, 1, 3}, {1, 0, 1, 2},
                 {1.5, 0, 1.5, 3}, {-1, 0, -1, 3}, {NaN, 0, NaN, 3}};
    for (const auto &c : cases)
        EXPECT_EXIT(sliceFct2D(F.get(), c.x0, c.y0, c.x1, c.y1), testing::ExitedWithCode(1),
                    "^ERROR in sliceFct2D: implementation incomplete \\(")
            << c.x0 << " " << c.y0 << " " << c.x1 << " " << c.y1;
}

// A bump at (cx, cy) of unit height in both directions.
static Fct2DPtr bump(int nx, int ny, double dx, double cx, double cy) {
    Fct2DPtr F(newFct2DWith(nullptr, nx, ny, 0, dx, 0, 0.25), freeFct2D);
    for (int j = 0; j < ny; j++)
        for (int i = 0; i < nx; i++) {
            const double x = F->x[i] - cx, y = F->y[j] - cy;
            setFct2DByIndex(F.get(), i, j, std::exp(-x * x - y * y));
        }
    return F;
}

TEST(PeakFct2D, ChoosesAlongXByTheNumberOfColumns) {
    const struct {
        const char *what;
        int nx, found;
        double dx, cx, widthX;
        double x, tolerance, y;
    } cases[] = {
        {"many columns: peaks of the profile", 21, 1, 0.25, 2.5, 2, 2.5, 0.13, 5},
        {"too short for the window: parabola", 21, 1, 0.25, 2.5, 11, 2.5, 0.02, 5},
        {"few columns: parabola", 5, 1, 1, 2.2, 2, 2.2, 0.2, 5},
        {"ten columns, largest in the first", 10, 0, 0.5, 0, 9, 0, 0, 5},
        {"largest in the first column", 5, 0, 1, 0, 2, 0, 0, 5},
        {"largest in the last column: no peaks at x = 0", 5, 0, 1, 4, 2, 0, 0, 0},
        {"two columns: as it is", 2, 1, 1, 1, 2, 1, 0, 5},
        {"one column", 1, 1, 1, 0, 2, 0, 0, 5},
    };
    for (const auto &c : cases) {
        const Fct2DPtr F = bump(c.nx, 41, c.dx, c.cx, 5);
        double x = -7, y = -7, strength = -7;
        EXPECT_EQ(peakFct2D(F.get(), &x, &y, &strength, 0.01, c.widthX, 2), c.found) << c.what;
        EXPECT_NEAR(x, c.x, c.tolerance) << c.what;
        EXPECT_GT(strength, 0.01) << c.what;
        EXPECT_NEAR(y, c.y, 0.125) << c.what;
    }
}

TEST(PeakFct2D, LeavesTheResultsAloneWithoutAPeak) {
    const Fct2DPtr flat = grid(3, 30, plane);
    double x = -7, y = -7, strength = -7;
    EXPECT_EQ(peakFct2D(flat.get(), &x, &y, &strength, 0.5, 2, 4), 0);
    // peaks in every column, but none along x
    const Fct2DPtr ridge = grid(12, 30, [](double, double v) { return v == 15 ? 1.0 : 0.0; });
    EXPECT_EQ(peakFct2D(ridge.get(), &x, &y, &strength, 0.5, 4, 4), 0);
    // eleven columns that just span half a window, largest in the first
    EXPECT_EQ(peakFct2D(bump(11, 41, 0.5, 0, 5).get(), &x, &y, &strength, 0.01, 10, 2), 0);
    EXPECT_EQ(Values({x, y, strength}), Values({-7, -7, -7}));
}

TEST(PeakFct2DDeathTest, HandlesOnlyFewerColumnsThanRows) {
    double x, y, strength;
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(peakFct2D(grid(5, 5, plane).get(), &x, &y, &strength, 0, 1, 1), failed,
                "^ERROR in peakFct2D: incompete implemented case 2 \\(5\\)\n$");
    const Fct2DPtr empty(newFct2D(1, 2), freeFct2D);
    EXPECT_EXIT(peakFct2D(empty.get(), &x, &y, &strength, 0, 1, 1), failed,
                "^ERROR in peakFct2D: zero size function \\(0\\)\n$");
}
