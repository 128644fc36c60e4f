#include "util/arrays/missing.h"

#include "tests/support/expect.h"

#include <cstdlib>

using namespace plw;

TEST(RemoveNAN, KeepsCompletePairsInOrder) {
    const double x[] = {1, NaN, 3, infinity, NaN}, y[] = {5, 6, -NaN, 8, NaN};
    for (const int n : {5, 2, 0}) {
        double *xOut, *yOut;
        int *indexOut, kept = -1;
        EXPECT_EQ(removeNAN(x, y, n, &xOut, &yOut, &kept, &indexOut), indexOut);
        const std::vector<int> want = n == 5 ? std::vector{0, 3} : std::vector<int>(n / 2, 0);
        EXPECT_EQ(std::vector<int>(indexOut, indexOut + kept), want) << n;
        for (int i = 0; i < kept; ++i) {
            EXPECT_EQ(xOut[i], x[want[i]]) << n;
            EXPECT_EQ(yOut[i], y[want[i]]) << n;
        }
        std::free(xOut);
        std::free(yOut);
        std::free(indexOut);
    }
}
