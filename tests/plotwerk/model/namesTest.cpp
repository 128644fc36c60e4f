#include "plotwerk/model/names.h"

#include <gtest/gtest.h>

using namespace plotwerk;

TEST(FreeName, LeavesANameThatIsNotTakenAsItIs) {
    for (const std::string &name : {std::string(), std::string("m"), std::string(5000, 'm')})
        EXPECT_EQ(freeName(name, {"n"}), name);
}
