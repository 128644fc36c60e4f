#include "util/files/output.h"

#include "tests/util/files/expectFatal.h"
#include "tests/util/files/textOf.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
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

TEST_F(Output, EmptiesTheFileOrCreatesTheMissingDirectory) {
    write(dir + "/new/list.txt", "a longer text");
    write(dir + "/new/list.txt", "short");
    EXPECT_EQ(textOf(dir + "/new/list.txt"), "short");

    const fs::path home = fs::current_path();
    fs::current_path(dir);
    write("bare.txt", "text");
    fs::current_path(home);
    EXPECT_EQ(textOf(dir + "/bare.txt"), "text");
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
    write(dir + "/file", "");
    fs::create_directory(dir + "/dir");
    const auto open = [&](const char *path) {
        return [=, this] { openOutput((dir + path).c_str()); };
    };
    expectFatal(open("/none/new/list.txt"), "ERROR: can't create directory: " + dir + "/none/new");
    expectFatal(open("/file/list.txt"), "ERROR: can't create directory: " + dir + "/file");
    expectFatal(open("/dir"), "ERROR: can't open file: " + dir + "/dir");
}
