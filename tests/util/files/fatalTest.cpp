#include "util/files/fatal.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(FatalDeathTest, ReportsTheWholeMessageAndEndsWithStatusOne) {
    EXPECT_EXIT(myexit("ERROR in val: index out of range", 7), testing::ExitedWithCode(1),
                "^ERROR in val: index out of range \\(7\\)\n$");
    EXPECT_EXIT(myexitText("ERROR: can't create directory: ", "a/b"), testing::ExitedWithCode(1),
                "^ERROR: can't create directory: a/b\n$");
}
