#include "util/text/equation.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace plw;

TEST(ScanEquation, CutsOutNamesAndValuesOneAfterTheOther) {
    using Equations = std::vector<std::pair<std::string, std::string>>;
    const struct {
        const char *line;
        Equations equations;
        const char *rest; // where the cursor stays when there are no more
    } cases[] = {{"  x = 5, y=7", {{"x", "5"}, {"y", "7"}}, ""},
                 {"title = \"a, b\"", {{"title", "a, b"}}, ""},
                 {"a=1 b =2\tc= 3\nd = 4", {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}}, ""},
                 {"a=\"x\\\"y\",b=1", {{"a", "x\\\"y"}, {",b", "1"}}, ""},
                 {"a=\"x\"b=1", {{"a", "x"}, {"b", "1"}}, ""},
                 {"a=", {{"a", ""}}, ""},
                 {"a=,b==", {{"a", ""}, {"b", "="}}, ""},
                 {"a\n=1", {{"a", "1"}}, ""},
                 {"a=\n1=2", {{"a", ""}, {"1", "2"}}, ""},
                 {"\n=1", {{"", "1"}}, ""},
                 {"a=\"open, b", {{"a", "open, b"}}, ""},
                 {"a=x\"y\" ", {{"a", "x\"y\""}}, ""},
                 {"= 5", {}, "= 5"},
                 {"\"q\" = 5", {}, "\"q\" = 5"},
                 {"a\"=5", {{"a\"", "5"}}, ""},
                 {" a b=1", {}, " a"},
                 {"\xe4\xa0=\xa0", {{"\xe4\xa0", "\xa0"}}, ""},
                 {"name", {}, "name"},
                 {"", {}, ""}};
    for (const auto &c : cases) {
        std::string line = c.line;
        char *cursor = line.data();
        char *name;
        char *value;
        Equations equations;
        while (scanEquation(&cursor, &name, &value)) equations.emplace_back(name, value);
        EXPECT_EQ(equations, c.equations) << c.line;
        EXPECT_STREQ(cursor, c.rest) << c.line;
    }
}
