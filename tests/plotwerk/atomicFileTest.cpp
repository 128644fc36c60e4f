// Files are whole whenever they are looked at.
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/refusal.h"
#include "tests/support/process.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace plotwerk;

namespace fs = std::filesystem;

class AtomicFile : public testing::Test {
  protected:
    AtomicFile() {
        std::string pattern = (fs::temp_directory_path() / "atomicFile-XXXXXX").string();
        directory = mkdtemp(pattern.data());
        file = directory / "file";
    }
    ~AtomicFile() override { fs::remove_all(directory); }

    static void write(const fs::path &path, const std::string &text) {
        writeWholeFile(path, [&](std::ostream &stream) { stream << text; });
    }

    static std::string refusalOf(const std::function<void()> &work) {
        try {
            work();
            return "";
        } catch (const Refusal &refusal) {
            return refusal.what();
        }
    }

    size_t filesThere() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(directory), {}));
    }

    fs::path directory;
    fs::path file;
};

TEST_F(AtomicFile, ReplacesTheOldBytesAndKeepsPermissionsAndLinks) {
    write(file, "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("file", directory / "link");

    write(directory / "link", "new\n");
    EXPECT_EQ(readWholeFile(file), "new\n");
    EXPECT_TRUE(fs::is_symlink(directory / "link"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(filesThere(), 2U);
}

TEST_F(AtomicFile, CreatesAFileWithThePermissionsOfTheMask) {
    const mode_t before = umask(027);
    write(file, "");
    umask(before);
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640));
    EXPECT_EQ(readWholeFile(file), "");
}

TEST_F(AtomicFile, WritesOnlyWhereARegularFileMayStand) {
    mkfifo((directory / "pipe").c_str(), 0600);
    const struct {
        std::string path, reason;
    } cases[] = {
        {"", "No such file or directory"},
        {directory.string(), "Is a directory"},
        {(directory / "none" / "file").string(), "No such file or directory"},
        {(directory / "pipe").string(), "not a regular file"},
        {"/dev/null", "not a regular file"},
        {(directory / std::string(300, 'n')).string(), "File name too long"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(refusalOf([&] { write(c.path, "text"); }),
                  "can't write " + c.path + ": " + c.reason);
    }
    EXPECT_EQ(filesThere(), 1U);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(AtomicFile, StaysAsItWasWhenTheWriterGivesUp) {
    write(file, "old");
    EXPECT_THROW(writeWholeFile(file,
                                [](std::ostream &stream) {
                                    stream << "half";
                                    throw std::bad_alloc();
                                }),
                 std::bad_alloc);
    EXPECT_EQ(readWholeFile(file), "old");
    EXPECT_EQ(filesThere(), 1U);
}

// A limit stands for the full disk.
TEST_F(AtomicFile, StaysAsItWasWhenThereIsNoRoom) {
    write(file, "old");
    const auto tooLong = [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100'000, 100'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const std::string refusal = refusalOf([&] { write(file, std::string(200'000, 'n')); });
        std::fputs(refusal.c_str(), stderr);
        std::exit(0);
    };
    EXPECT_EXIT(tooLong(), testing::ExitedWithCode(0), ": File too large$");
    EXPECT_EQ(readWholeFile(file), "old");
    EXPECT_EQ(filesThere(), 1U);
}

TEST_F(AtomicFile, ReadsRegularFilesOnlyAndNeverWaits) {
    mkfifo((directory / "pipe").c_str(), 0600);
    const struct {
        std::string path, reason;
    } cases[] = {
        {"", "No such file or directory"},
        {(directory / "none").string(), "No such file or directory"},
        {directory.string(), "Is a directory"},
        {(directory / "pipe").string(), "not a regular file"},
        {"/dev/zero", "not a regular file"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(refusalOf([&] { readWholeFile(c.path); }),
                  "can't read " + c.path + ": " + c.reason);
    }
    EXPECT_NE(readWholeFile("/proc/self/status").find("Pid:"), std::string::npos)
        << "a file whose size isn't known beforehand";
}

static size_t evenLength(const std::string &text, char of) {
    return text.find_first_not_of(of) == std::string::npos ? text.size() : 0;
}

// Written in many pieces, so that most of the time is spent with half a text on its way.
static void writeInPieces(const fs::path &path, const std::string &text) {
    constexpr size_t piece = 1000;
    writeWholeFile(path, [&](std::ostream &stream) {
        for (size_t i = 0; i < text.size(); i += piece) {
            stream << text.substr(i, piece) << std::flush;
        }
    });
}

// Two texts take turns; whenever the writer is killed, the file is one of them.
TEST_F(AtomicFile, IsOneOfTheWholeTextsWheneverItsWriterIsKilled) {
    const std::string texts[] = {std::string(300'000, 'a'), std::string(500'000, 'b')};
    write(file, texts[0]);
    std::mt19937 random(1);
    for (int round = 0; round < 40; ++round) {
        int beats[2];
        ASSERT_EQ(pipe(beats), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (size_t turn = 0;; ++turn) {
                if (::write(beats[1], "", 1) != 1) _exit(1);
                writeInPieces(file, texts[turn % 2]);
            }
        }
        // A moment within the writing: so many turns, and a bit of one.
        char beat = 0;
        for (auto left = 1 + random() % 4; left > 0; --left) {
            ASSERT_EQ(::read(beats[0], &beat, 1), 1);
        }
        for (volatile auto spin = random() % 2'000'000; spin > 0;) spin = spin - 1;
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(beats[0]);
        close(beats[1]);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;

        const std::string found = readWholeFile(file);
        ASSERT_TRUE(evenLength(found, 'a') == texts[0].size() ||
                    evenLength(found, 'b') == texts[1].size())
            << "round " << round << ", " << found.size() << " bytes";
    }
}
