#include "util/files/output.h"

#include "tests/util/files/textOf.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace plw;
namespace fs = std::filesystem;

// An empty directory, gone with its content at the end of the test.
class Output : public testing::Test {
  protected:
    Output() {
        std::string name = testing::TempDir() + "outputXXXXXX";
        dir = mkdtemp(name.data());
    }
    ~Output() override { fs::remove_all(dir); }

    std::string dir;
};
using OutputDeathTest = Output;

static void write(const std::string &path, const char *text) {
    FILE *out = openOutput(path.c_str());
    std::fputs(text, out);
    closeOutput(out);
}

TEST_F(Output, EmptiesTheFileThatWasThere) {
    write(dir + "/list.txt", "a longer text");
    write(dir + "/list.txt", "short");
    EXPECT_EQ(textOf(dir + "/list.txt"), "short");
}

TEST_F(Output, CreatesTheMissingDirectory) {
    write(dir + "/new/list.txt", "text");
    EXPECT_EQ(textOf(dir + "/new/list.txt"), "text");
}

TEST_F(Output, TakesANameWithoutDirectory) {
    const fs::path home = fs::current_path();
    fs::current_path(dir);
    write("list.txt", "text");
    fs::current_path(home);
    EXPECT_EQ(textOf(dir + "/list.txt"), "text");
}

TEST_F(Output, IsTheStandardOutputWithoutAPathAndStaysOpen) {
    for (const char *path : {static_cast<const char *>(nullptr), ""}) {
        FILE *out = openOutput(path);
        EXPECT_EQ(out, stdout);
        closeOutput(out);
        EXPECT_NE(fcntl(STDOUT_FILENO, F_GETFD), -1);
    }
}

TEST_F(OutputDeathTest, EndsTheProcessWithoutDirectoryOrFile) {
    const std::string missingParent = dir + "/none/new";
    EXPECT_EXIT(openOutput((missingParent + "/list.txt").c_str()), testing::ExitedWithCode(1),
                "^ERROR: can't create directory: " + missingParent + "\n$");

    write(dir + "/file", "");
    EXPECT_EXIT(openOutput((dir + "/file/list.txt").c_str()), testing::ExitedWithCode(1),
                "^ERROR: can't create directory: " + dir + "/file\n$");

    fs::create_directory(dir + "/dir");
    EXPECT_EXIT(openOutput((dir + "/dir").c_str()), testing::ExitedWithCode(1),
                "^ERROR: can't open file: " + dir + "/dir\n$");
}
