#include "util/files/uniqueName.h"

#include <cstring>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace plw;

static std::string withTime(const std::string &name, std::time_t when) {
    char text[16];
    std::strftime(text, sizeof text, " %H:%M:%S", std::localtime(&when));
    return name + text;
}

TEST(UniqueName, LeavesAFreeNameOrAppendsTheTimeAndThenTheProcessesCounter) {
    const char *others[] = {"curve 2", "Curve"};
    char name[64] = "curve";
    EXPECT_EQ(uniqueName(name, others, 2), nullptr);
    EXPECT_EQ(uniqueName(name, nullptr, 0), nullptr);
    EXPECT_STREQ(name, "curve");

    // the name itself may be in the list, as it is where names live in records
    const std::time_t before = std::time(nullptr);
    const char *existing[] = {"other", name};
    EXPECT_EQ(uniqueName(name, existing, 2), name);
    bool isExpected = false; // the clock may step between the readings here and the one there
    for (std::time_t t = before; t <= std::time(nullptr); ++t)
        isExpected |= name == withTime("curve", t);
    EXPECT_TRUE(isExpected) << name;

    // taken for some time to come
    std::vector<std::string> taken = {"curve"};
    for (int second = 0; second < 600; ++second)
        taken.push_back(withTime("curve", before + second));
    std::vector<const char *> all;
    for (const std::string &t : taken) all.push_back(t.c_str());
    for (const char *end : {"#1", "#2"}) {
        std::strcpy(name, "curve");
        uniqueName(name, all.data(), static_cast<int>(all.size()));
        EXPECT_EQ(std::string(name).substr(14), end) << name;
    }
}
