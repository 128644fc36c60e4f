#include "util/files/output.h"

#include "tests/support/expect.h"
#include "tests/support/temporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

using namespace plw;
namespace fs = std::filesystem;

static void write(const std::string &path, const char *text) {
    FILE *out = openOutput(path.c_str());
    std::fputs(text, out);
    closeOutput(out, path.c_str());
}

TEST(OutputDeathTest, EmptiesTheFileOrCreatesOneDirectoryOrEndsTheProcess) {
    const TemporaryFolder folder;
    const std::string dir = folder.path;
    const mode_t mask = umask(022);
    write(dir + "/new/list.txt", "a longer text");
    umask(mask);
    EXPECT_EQ(fs::status(dir + "/new").permissions(), fs::perms(0755));
    write(dir + "/new/list.txt", "short");
    EXPECT_EQ(textOf(dir + "/new/list.txt"), "short");

    const fs::path home = fs::current_path();
    fs::current_path(dir);
    write("file", "text");
    fs::current_path(home);
    EXPECT_EQ(textOf(dir + "/file"), "text");

    const std::pair<std::string, std::string> refused[] = {
        {"/none/new/list.txt", "ERROR: can't create directory: " + dir + "/none/new"},
        {"/file/list.txt", "ERROR: can't create directory: " + dir + "/file"},
        {"/new", "ERROR: can't open file: " + dir + "/new"}};
    for (const auto &[path, message] : refused)
        expectFatal([&, path = dir + path] { openOutput(path.c_str()); }, message);
    expectFatal([] { write("/dev/full", "text"); }, "ERROR: can't write file: /dev/full");
}

TEST(Output, IsTheStandardOutputWithoutAPathAndStaysOpen) {
    for (const char *path : {static_cast<const char *>(nullptr), ""}) {
        closeOutput(openOutput(path), path);
        EXPECT_EQ(openOutput(path), stdout);
        EXPECT_NE(fcntl(STDOUT_FILENO, F_GETFD), -1);
    }
}
