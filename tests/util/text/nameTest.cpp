#include "util/text/name.h"

#include <gtest/gtest.h>

using namespace plw;

TEST(IndexOfName, SplitsOffASuffixWrittenAsAnInt) {
    const struct {
        const char *text, *name;
        int index;
    } cases[] = {{"curve12", "curve", 12},
                 {"curve7", "curve", 7},
                 {"curve0", "curve", 0},
                 {"a-b 0", "a-b ", 0},
                 {"x2147483647", "x", 2147483647},
                 {"x2147483648", "", -1},
                 {"x99999999999999999999", "", -1},
                 {"x4294967297", "", -1},
                 {"curve07", "", -1},
                 {"curve00", "", -1},
                 {"7up", "", -1},
                 {"curve", "", -1},
                 {"a1b", "", -1},
                 {"a1b2", "", -1},
                 {"a-1", "a-", 1},
                 {"a1 ", "", -1},
                 {"_1", "", -1},
                 {"\xe4"
                  "1",
                  "", -1},
                 {"", "", -1}};
    for (const auto &c : cases) {
        int index = 77;
        char name[50] = "old";
        indexOfName(c.text, &index, name);
        EXPECT_EQ(index, c.index) << c.text;
        EXPECT_STREQ(name, c.name) << c.text;
    }
}
