#include "fct/cFct.h"

#include <gtest/gtest.h>

#include "samples.h"

using namespace plw;

using Complex = std::complex<double>;
using CFctPtr = std::unique_ptr<CFct, decltype(&freeCFct)>;
using CFct2DPtr = std::unique_ptr<CFct2D, decltype(&freeCFct2D)>;

TEST(CFct, GrowsAndSortsWholeSamples) {
    const CFctPtr f(newCFct(-1), freeCFct);
    EXPECT_EQ(f->size, 1);
    for (int i = 0; i < 30; i++) {
        appendCFct(f.get(), -i, i % 7 + 0.01 * i, i);
        EXPECT_EQ(f->size, i < 1 ? 1 : i < 25 ? 25 : 61) << i;
    }
    sortByTCFct(f.get());
    for (int i = 0; i < 30; i++) {
        EXPECT_EQ(f->t[i], i - 29);
        EXPECT_EQ(f->y[i].imag(), 29 - i);
    }
    sortByRealCFct(f.get());
    for (int i = 0; i < 30; i++) {
        EXPECT_EQ(f->y[i].imag(), -f->t[i]);
        if (i > 0) {
            EXPECT_LE(f->y[i - 1].real(), f->y[i].real());
        }
    }
}

TEST(CFctDeathTest, OfFixedLengthDoesNotGrow) {
    const CFctPtr f(newCFct(1), freeCFct);
    f->fixedLen = 1;
    appendCFct(f.get(), 0, 1, 2);
    EXPECT_EXIT(appendCFct(f.get(), 0, 1, 2), testing::ExitedWithCode(1),
                "^ERROR in appendCFct: function with fixed length full \\(1\\)\n$");
}

TEST(CFct2D, KeepsRowsOfPairs) {
    const Complex values[] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {8, 9}, {10, 11}};
    const CFct2DPtr F(newCFct2DWith(values, 3, 2, 0, 1, 10, 5), freeCFct2D);
    EXPECT_EQ(Values(F->x, F->x + 3), (Values{0, 1, 2}));
    EXPECT_EQ(Values(F->y, F->y + 2), (Values{10, 15}));
    EXPECT_EQ(cFct2DAt(F.get(), 2, 1), values[5]);
    setCFct2DByIndex(F.get(), 0, 1, -1, -2);
    EXPECT_EQ(cFct2DAt(F.get(), 0, 1), Complex(-1, -2));
}

TEST(ZeroCFct2D, TouchesTheValidAreaOnly) {
    const CFct2DPtr F(newCFct2D(3, 2), freeCFct2D);
    std::fill_n(F->z, 6, Complex(1, 1));
    F->nx = 2;
    F->ny = 2;
    zeroCFct2D(F.get());
    EXPECT_EQ(cFct2DAt(F.get(), 1, 1), Complex());
    EXPECT_EQ(F->z[2], Complex(1, 1));
    EXPECT_EQ(F->z[3], Complex());
    EXPECT_EQ(F->z[5], Complex(1, 1));
}

TEST(CFct2DDeathTest, ChecksAgainstTheValidSize) {
    const CFct2DPtr F(newCFct2DWith(nullptr, 2, 3, 0, 1, 0, 1), freeCFct2D);
    const auto failed = testing::ExitedWithCode(1);
    EXPECT_EXIT(cFct2DAt(F.get(), 2, 0), failed,
                "^ERROR in cFct2DAt: index out of range \\(2\\)\n$");
    EXPECT_EXIT(setCFct2DByIndex(F.get(), 1, -1, 0, 0), failed,
                "^ERROR in setCFct2DByIndex: index out of range \\(-1\\)\n$");
    clearCFct2D(F.get());
    EXPECT_EXIT(cFct2DAt(F.get(), 0, 0), failed, "index out of range \\(0\\)\n$");
}
