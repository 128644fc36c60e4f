#include "util/text/missing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

using namespace plw;

TEST(RemoveNAN, KeepsCompletePairsInOrder) {
    const double x[] = {1, NAN, 3, INFINITY, NAN};
    const double y[] = {5, 6, -NAN, 8, NAN};
    for (const int n : {5, 2, 0}) {
        double *xOut;
        double *yOut;
        int *indexOut;
        int kept = -1;
        int *result = removeNAN(x, y, n, &xOut, &yOut, &kept, &indexOut);
        EXPECT_EQ(result, indexOut);
        const std::vector<int> want = n == 5 ? std::vector{0, 3} : std::vector<int>(n / 2, 0);
        ASSERT_EQ(std::vector<int>(indexOut, indexOut + kept), want) << n;
        for (int i = 0; i < kept; ++i) {
            EXPECT_EQ(xOut[i], x[want[i]]) << n;
            EXPECT_EQ(yOut[i], y[want[i]]) << n;
        }
        std::free(xOut);
        std::free(yOut);
        std::free(indexOut);
    }
}
