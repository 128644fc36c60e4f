#include "util/files/path.h"

#include "util/files/uniqueName.h"

#include <cstring>
#include <ctime>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace plw;

TEST(Path, TakesApartWhateverTheDotsAndSlashes) {
    // directory, name and extension, and the path without its extension
    const std::pair<const char *, const char *> cases[] = {
        {"/a/b/c.txt", "/a/b, c.txt, txt, /a/b/c"},
        {"a.b.c", ", a.b.c, c, a.b"},
        {"/name", ", name, , /name"},
        {"dir.x/file", "dir.x, file, , dir"}, // cuts the directory: a kept oddity
        {"a/.rc", "a, .rc, rc, a/"},
        {"a//b.", "a/, b., , a//b"},
        {"", ", , , "}};
    for (const auto &[text, want] : cases) {
        char path[32], dir[32];
        std::strcpy(path, text);
        std::string parts = std::string(dirOfPath(path, dir)) + ", " + fileNameOfPath(path) + ", ";
        EXPECT_EQ(fileextension(path) + std::strlen(fileextension(path)), path + std::strlen(path));
        parts += fileextension(path) + std::string(", ");
        const char *cut = removeExtension(path);
        EXPECT_EQ(cut, std::strcmp(path, text) == 0 ? nullptr : path + std::strlen(path)) << text;
        EXPECT_EQ(parts + path, want);
    }

    char inPlace[] = "/a/b";
    EXPECT_STREQ(dirOfPath(inPlace, inPlace), "/a");
}

TEST(Limitfilename, KeepsTrailingComponentsWithinTheLength) {
    const std::tuple<const char *, int, const char *> cases[] = {
        {"/aa/bb/cc", 9, "/aa/bb/cc"}, {"/aa/bb/cc", 8, "/bb/cc"},
        {"/aa/bb/cc", 6, "/bb/cc"},    {"/aa/bb/cc", 5, "/cc"},
        {"/aa/bb/cc", 2, "c"},         {"abcdefgh", 1, ""},
        {"abcdefgh", 0, ""},           {"", 0, ""}};
    for (const auto &[path, maxLen, want] : cases) {
        const char *shortened = limitfilename(path, maxLen);
        EXPECT_STREQ(shortened, want) << path << ", " << maxLen;
        EXPECT_EQ(shortened, path + std::strlen(path) - std::strlen(want)) << path;
    }
}

TEST(ConvertBlankToUnderline, ReplacesBlanksOnly) {
    char s[] = " a  b\tc ";
    convertBlankToUnderline(s);
    EXPECT_STREQ(s, "_a__b\tc_");
}

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
