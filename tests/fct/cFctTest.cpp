#include "fct/cFct.h"

#include "tests/fct/samples.h"

#include <cstdlib>

using namespace plw;

using Complex = std::complex<double>;
using CFctPtr = Owner<CFct, freeCFct>;
using CFct2DPtr = Owner<CFct2D, freeCFct2D>;

TEST(CFct, GrowsAndSortsWholeSamples) {
    const CFctPtr f = newCFct(-1);
    EXPECT_EQ(f->size, 1);
    for (int i = 0; i < 30; ++i) {
        appendCFct(f, -i, i % 7 + 0.01 * i, i);
        EXPECT_EQ(f->size, i < 1 ? 1 : i < 25 ? 25 : 61) << i;
    }
    sortByTCFct(f);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(Complex(f->t[i], f->y[i].imag()), Complex(i - 29, 29 - i));
    sortByRealCFct(f);
    for (int i = 0; i < 30; ++i) EXPECT_EQ(f->y[i].imag(), -f->t[i]);
    for (int i = 1; i < 30; ++i) EXPECT_LE(f->y[i - 1].real(), f->y[i].real());
}

TEST(CFct, LeavesItsArraysToTheirOwnerWhenLinked) {
    const CFctPtr owner = newCFct(1);
    auto *link = static_cast<CFct *>(std::malloc(sizeof(CFct)));
    *link = *owner;
    link->linked = 1;
    freeCFct(link);
    appendCFct(owner, 1, 2, 3);
    EXPECT_EQ(owner->y[0], Complex(2, 3));
}

TEST(CFct2D, KeepsRowsOfPairsAndZerosItsValidAreaOnly) {
    const Complex values[] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {8, 9}, {10, 11}};
    const CFct2DPtr F = newCFct2DWith(values, 3, 2, 0, 1, 10, 5);
    EXPECT_EQ(Values(F->x, F->x + 3), (Values{0, 1, 2}));
    EXPECT_EQ(Values(F->y, F->y + 2), (Values{10, 15}));
    EXPECT_EQ(cFct2DAt(F, 2, 1), values[5]);
    setCFct2DByIndex(F, 0, 1, -1, -2);
    EXPECT_EQ(cFct2DAt(F, 0, 1), Complex(-1, -2));

    F->nx = 2;
    zeroCFct2D(F);
    EXPECT_EQ(std::vector<Complex>(F->z, F->z + 6),
              (std::vector<Complex>{0, 0, values[2], 0, 0, values[5]}));
}

TEST(CFctDeathTest, ChecksAgainstTheValidSize) {
    const CFctPtr f = newCFct(1);
    f->fixedLen = 1;
    appendCFct(f, 0, 1, 2);
    expectFatal([&] { appendCFct(f, 0, 1, 2); },
                "ERROR in appendCFct: function with fixed length full (1)");
    const CFct2DPtr F = newCFct2DWith(nullptr, 2, 3, 0, 1, 0, 1);
    expectFatal([&] { cFct2DAt(F, 2, 0); }, "ERROR in cFct2DAt: index out of range (2)");
    expectFatal([&] { setCFct2DByIndex(F, 1, -1, 0, 0); },
                "ERROR in setCFct2DByIndex: index out of range (-1)");
    clearCFct2D(F);
    EXPECT_EQ(F->nx + F->ny, 0);
}
