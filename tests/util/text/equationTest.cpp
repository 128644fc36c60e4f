#include "util/text/equation.h"

#include <gtest/gtest.h>

#include <string>

using namespace plw;

TEST(ScanEquation, CutsOutNamesAndValuesOneAfterTheOther) {
    // every equation as "name:value;", and where the cursor stays when there are no more
    for (const std::string c :
         {"  x = 5, y=7 -> x:5;y:7;|", "title = \"a, b\" -> title:a, b;|",
          "a=1 b =2\tc= 3\nd = 4 -> a:1;b:2;c:3;d:4;|", "a=\"x\\\"y\",b=1 -> a:x\\\"y;,b:1;|",
          "a=\"x\"b=1 -> a:x;b:1;|", "a= -> a:;|", "a=,b== -> a:;b:=;|", "a\n=1 -> a:1;|",
          "a=\n1=2 -> a:;1:2;|", "\n=1 -> :1;|", "a=\"open, b -> a:open, b;|",
          "a=x\"y\"  -> a:x\"y\";|", "= 5 -> |= 5", "\"q\" = 5 -> |\"q\" = 5", "a\"=5 -> a\":5;|",
          " a b=1 -> | a", "\xe4\xa0=\xa0 -> \xe4\xa0:\xa0;|", "name -> |name", " -> |"}) {
        const auto arrow = c.find(" -> ");
        std::string line = c.substr(0, arrow), equations;
        char *cursor = line.data();
        char *name;
        char *value;
        while (scanEquation(&cursor, &name, &value))
            equations.append(name).append(":").append(value).append(";");
        EXPECT_EQ(equations + "|" + cursor, c.substr(arrow + 4)) << c;
    }
}
