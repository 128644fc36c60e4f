// Files are whole whenever they are looked at.
#include "plotwerk/files/atomicFile.h"
#include "tests/plotwerk/base/askedToEnd.h"
#include "tests/plotwerk/base/refusalOf.h"
#include "tests/support/temporaryFolder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace plotwerk;

namespace fs = std::filesystem;

// Some file systems know no files without names, and those no hard links either.
static bool allHaveNames = false;

extern "C" {

int open(const char *path, int flags, ...) {
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = va_arg(more, mode_t);
    va_end(more);
    if (allHaveNames && (flags & O_TMPFILE) == O_TMPFILE) return errno = EOPNOTSUPP, -1;
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

int linkat(int from, const char *file, int to, const char *path, int flags) noexcept {
    if (allHaveNames) return errno = EPERM, -1;
    return static_cast<int>(syscall(SYS_linkat, from, file, to, path, flags));
}
}

class AtomicFile : public testing::TestWithParam<bool> {
  protected:
    AtomicFile() { allHaveNames = GetParam(); }
    ~AtomicFile() override { allHaveNames = false; }

    // In several pieces, so that there is a time when a part of the text is on its way; the last
    // one is left in the stream.
    static void write(const fs::path &path, const std::string &text) {
        writeWholeFile(path, [&](std::ostream &stream) {
            for (std::size_t i = 0; i < text.size(); i += 1000)
                stream << std::flush << text.substr(i, 1000);
        });
    }

    // As a user with no rights of root's.
    static void expectUnprivileged(const fs::path &path, const std::string &refusal) {
        const auto write = [&] {
            if (getuid() == 0 &&
                (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0))
                std::exit(1);
            std::fputs(refusalOf([&] { AtomicFile::write(path, "new"); }).c_str(), stderr);
            std::exit(0);
        };
        EXPECT_EXIT(write(), testing::ExitedWithCode(0), testing::Eq(refusal));
    }

    // The names there, in order.
    std::string listing() const {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(directory))
            names.insert(entry.path().filename());
        std::string list;
        for (const std::string &name : names) list += name + ' ';
        return list;
    }

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
    const fs::path file = directory / "file";
};

INSTANTIATE_TEST_SUITE_P(OnEveryFileSystem, AtomicFile, testing::Bool());

TEST_P(AtomicFile, KeepsPermissionsAndLinks) {
    fs::create_symlink("second", directory / "link");
    fs::create_symlink(file, directory / "second");
    const mode_t before = umask(027);
    write(directory / "link", "old");
    umask(before);
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0640)) << "a new file";

    fs::permissions(file, static_cast<fs::perms>(0604));
    fs::create_hard_link(file, directory / "other");
    write(directory / "link", "new\n");
    EXPECT_EQ(readWholeFile(file), "new\n");
    EXPECT_EQ(readWholeFile(directory / "other"), "old") << "the file is replaced, not written to";
    fs::remove(directory / "other");
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0604));
    EXPECT_TRUE(fs::is_symlink(directory / "link") && fs::is_symlink(directory / "second"));
    EXPECT_EQ(listing(), "file link second ");
}

TEST_P(AtomicFile, GivesNothingToAnotherGroup) {
    if (geteuid() != 0) return; // only root can give a file to any group
    write(file, "old");
    ASSERT_EQ(chown(file.c_str(), 12345, 4), 0);
    fs::permissions(file, static_cast<fs::perms>(0640));
    write(file, "new");
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U) << "it is who wrote it";
    EXPECT_EQ(status.st_gid, 4U);
    EXPECT_EQ(status.st_mode & 0777, 0640U);

    ASSERT_EQ(chown(file.c_str(), 65534, 4), 0); // whose owner can't give the new one to the group
    ASSERT_EQ(chown(directory.c_str(), 65534, 65534), 0);
    fs::permissions(file, static_cast<fs::perms>(0664));
    expectUnprivileged(file, "");
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, 65534U);
    EXPECT_EQ(status.st_mode & 0777, 0604U);
}

// Nobody who looks for what dead processes have left takes it for that.
TEST_P(AtomicFile, IsLockedWhileItIsWritten) {
    int locked = 0;
    writeWholeFile(file, [&](std::ostream &) {
        for (const auto &each : fs::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const std::string open = fs::read_symlink(each.path(), gone).string();
            if (!open.starts_with(directory.string() + '/')) continue;
            const int other = ::open(each.path().c_str(), O_RDONLY | O_CLOEXEC);
            locked += flock(other, LOCK_EX | LOCK_NB) != 0;
            close(other);
        }
    });
    EXPECT_EQ(locked, 2) << "the file, and the stream on it";
}

// A user who may write and a group that may nothing: by its permissions alone, 0660, the group
// might.
TEST_P(AtomicFile, KeepsItsAccessControlListAndNoOtherAttribute) {
    struct Entry {
        std::uint16_t tag, rights;
        std::uint32_t id;
    };
    const struct {
        std::uint32_t version = 2;
        Entry entries[5] = {{1, 6, ~0U}, {2, 6, 12345}, {4, 0, ~0U}, {16, 6, ~0U}, {32, 0, ~0U}};
    } list;
    constexpr auto access = "system.posix_acl_access", ofDirectory = "system.posix_acl_default";
    const auto has = [](const fs::path &path, const char *name) {
        return getxattr(path.c_str(), name, nullptr, 0) > 0;
    };
    write(file, "old");
    write(directory / "plain", "old");
    if (setxattr(file.c_str(), access, &list, sizeof list, 0) != 0 && errno == ENOTSUP)
        GTEST_SKIP() << "the file system has no access control lists";
    setxattr(file.c_str(), "user.remark", "x", 1, 0);
    ASSERT_EQ(setxattr(directory.c_str(), ofDirectory, &list, sizeof list, 0), 0);

    write(file, "new");
    std::string kept(sizeof list + 1, '\0');
    kept.resize(getxattr(file.c_str(), access, kept.data(), kept.size()));
    EXPECT_EQ(kept, std::string(reinterpret_cast<const char *>(&list), sizeof list));
    EXPECT_EQ(fs::status(file).permissions(), static_cast<fs::perms>(0660));
    EXPECT_FALSE(has(file, "user.remark"));
    write(directory / "first", "new");
    EXPECT_EQ(fs::status(directory / "first").permissions(), static_cast<fs::perms>(0660))
        << "as the directory says, whatever the umask";
    write(directory / "plain", "new");
    EXPECT_FALSE(has(directory / "plain", access)) << "it had none, whatever new files get there";
}

TEST_P(AtomicFile, IsARegularOneOrRefusedWithoutWaiting) {
    mkfifo((directory / "pipe").c_str(), 0600);
    fs::create_symlink("loop", directory / "loop");
    const std::pair<std::string, const char *> cases[] = {
        {"", "No such file or directory"},
        {directory, "Is a directory"},
        {directory / "none" / "file", "No such file or directory"},
        {directory / "pipe", "not a regular file"},
        {"/dev/zero", "not a regular file"},
        {directory / "loop", "Too many levels of symbolic links"},
        {directory / std::string(300, 'n'), "File name too long"}};
    for (const auto &c : cases) {
        const std::string why = c.first + ": " + c.second;
        EXPECT_EQ(refusalOf([&] { write(c.first, "text"); }), "can't write " + why);
        EXPECT_EQ(refusalOf([&] { readWholeFile(c.first); }), "can't read " + why);
    }
    const fs::path none = directory / "none" / "";
    EXPECT_EQ(refusalOf([&] { write(none, ""); }),
              "can't write " + none.string() + ": Is a directory");
    EXPECT_EQ(listing(), "loop pipe ");
    EXPECT_TRUE(fs::is_character_file("/dev/zero"));
    write(file, "");
    for (const auto &[size, reason] :
         {std::pair(2'000'000'001, "too large"),
          {2'000'000'000, "would take too much memory (limit memory)"},
          {500'000'001, "would take too much memory (limit memory)"}}) {
        fs::resize_file(file, size);
        EXPECT_EQ(refusalOf([&] { readWholeFile(file); }),
                  "can't read " + file.string() + ": " + reason);
    }
    fs::remove(file);
    EXPECT_NE(readWholeFile("/proc/self/smaps").find("[stack]"), std::string::npos)
        << "a long file whose size isn't known beforehand";
}

TEST_P(AtomicFile, RemovesWhatDeadProcessesLeftAndNothingElse) {
    const auto leave = [&](const std::string &name, bool old) {
        std::ofstream(directory / name) << "left";
        const auto now = fs::file_time_type::clock::now();
        fs::last_write_time(directory / name, now - std::chrono::seconds(old ? 63 : 50));
    };
    const std::string start = ".plotwerk-0123456789abcde"; // and a digit
    leave(start + '0', true);
    leave(start + '1', false);
    leave(start + '2', true);
    for (const char *own : {".plotwerk-0123456789abcdef0", ".plotwerk-results2026nov01", "other"})
        leave(own, true);
    leave(start + '3', true); // stays where only root could make it another user's
    const bool isForeign = chown((directory / (start + '3')).c_str(), 12345, 12345) == 0;
    const int held = open((directory / (start + '2')).c_str(), O_RDONLY);
    flock(held, LOCK_EX);
    write(file, "new");
    close(held);
    leave(start + '4', true); // looked for once
    write(file, "newer");
    EXPECT_EQ(listing(),
              start + "1 " + start + "2 " + (isForeign ? start + "3 " : "") + start +
                  "4 .plotwerk-0123456789abcdef0 .plotwerk-results2026nov01 file other ");
}

TEST_P(AtomicFile, FollowsNoLinkThatAnotherUserPutIntoASharedFolder) {
    if (geteuid() != 0) return; // only root can make another user's link
    write(directory / "target", "old");
    fs::create_symlink("target", file);
    ASSERT_EQ(lchown(file.c_str(), 12345, 12345), 0);
    fs::permissions(directory, static_cast<fs::perms>(01777));
    fs::create_symlink(".", directory / "way");
    ASSERT_EQ(lchown((directory / "way").c_str(), 12345, 12345), 0);
    for (const fs::path &path : {file, directory / "way" / "target"})
        EXPECT_EQ(refusalOf([&] { write(path, "new"); }),
                  "can't write " + path.string() + ": a link of another user");
    const std::tuple<int, uid_t, uid_t> trusted[] = {
        {01755, 12345, 0}, {0777, 12345, 0}, {01777, 0, 12345}, {01777, 12345, 12345}};
    for (const auto &[mode, owner, ofFolder] : trusted) {
        fs::permissions(directory, static_cast<fs::perms>(mode));
        ASSERT_EQ(lchown(file.c_str(), owner, 0) + chown(directory.c_str(), ofFolder, 0), 0);
        write(file, std::to_string(mode + owner));
        EXPECT_EQ(readWholeFile(directory / "target"), std::to_string(mode + owner));
    }
}

TEST_P(AtomicFile, ThatIsNewTakesNoPlaceThatIsTaken) {
    const auto writeNew = [&](const std::string &before) {
        return writeNewFile(file, [&](std::ostream &stream) {
            stream << "new";
            if (!before.empty()) std::ofstream(file) << before;
        });
    };
    EXPECT_FALSE(writeNew("somebody else's")) << "which came while it was written";
    EXPECT_EQ(readWholeFile(file), "somebody else's");
    fs::remove(file);
    fs::create_symlink("target", file);
    EXPECT_FALSE(writeNew(""));
    fs::remove(file);
    EXPECT_TRUE(writeNew(""));
    EXPECT_EQ(readWholeFile(file), "new");
    EXPECT_EQ(listing(), "file ");
    const fs::path nowhere = directory / "none" / "file";
    EXPECT_EQ(refusalOf([&] { writeNewFile(nowhere, [](std::ostream &) {}); }),
              "can't write " + nowhere.string() + ": No such file or directory");
}

// The directory may be written to, the file itself not.
TEST_P(AtomicFile, IsNotReplacedWithoutItsPermission) {
    write(file, "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(directory, fs::perms::all);
    expectUnprivileged(file, "can't write " + file.string() + ": Permission denied");
    EXPECT_EQ(readWholeFile(file), "old");
}

// Where the writer gives up, and on a full disk, for which a limit stands.
TEST_P(AtomicFile, StaysAsItWasWhenItCannotBeWritten) {
    write(file, "old");
    const auto giveUp = [](std::ostream &stream) {
        stream << "half";
        throw std::bad_alloc();
    };
    EXPECT_THROW(writeWholeFile(file, giveUp), std::bad_alloc);
    const auto tooLong = [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{100'000, 100'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::exit(refusalOf([&] { write(file, std::string(200'000, 'n')); }) !=
                  "can't write " + file.string() + ": File too large");
    };
    EXPECT_EXIT(tooLong(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(readWholeFile(file), "old");
    EXPECT_EQ(listing(), "file ");
}

// Runs the work in a process that is stopped before and after each system call, and killed at the
// n-th stop. `order` gets the calls of interest before that. False when the work ended earlier.
static bool killedAtStop(int n, const std::function<void()> &work, std::string &order) {
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
    for (; n > 0; --n) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitpid(child, &status, 0);
        if (!WIFSTOPPED(status)) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
            return false;
        }
        __ptrace_syscall_info call{};
        ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call);
        if (call.op != PTRACE_SYSCALL_INFO_ENTRY) continue;
        const auto number = static_cast<long>(call.entry.nr);
        if (number == SYS_fsync) order += "sync ";
        if (number == SYS_renameat2 || number == SYS_renameat || number == SYS_rename)
            order += "move ";
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << status;
    return true;
}

TEST_P(AtomicFile, IsFinishedWhenItIsSmallAndGivenUpWhenItIsLargeAtTheEnd) {
    const AskedToEnd asked;
    write(file, "small");
    EXPECT_NE(refusalOf([&] { write(file, std::string(20 << 20, 'x')); }), "");
    EXPECT_EQ(readWholeFile(file), "small");
    EXPECT_EQ(listing(), "file ");
}

TEST_P(AtomicFile, IsTheWholeOldOrTheWholeNewOneWheneverItsWriterIsKilled) {
    const std::string texts[] = {std::string(30'000, 'a'), std::string(5'000, 'b')};
    const int nameless = open(directory.c_str(), O_TMPFILE | O_WRONLY, 0600);
    close(nameless);
    std::string order;
    int whole[2] = {0, 0};
    bool killed = true;
    for (int stop = 1; killed; ++stop) {
        write(file, texts[0]);
        order.clear();
        killed = killedAtStop(
            stop, [&] { write(file, texts[1]); }, order);
        const std::string found = readWholeFile(file);
        ASSERT_TRUE(found == texts[0] || found == texts[1]) << "stop " << stop << ", " << found;
        ++whole[found == texts[1]];
        const std::string left = listing();
        const bool named = nameless < 0 || order.find("sync") != std::string::npos;
        EXPECT_TRUE(named || left == "file ") << "stop " << stop << ", " << left;
        if (left == "file ") continue;
        EXPECT_EQ(left.find_first_not_of("0123456789abcdef", 10), 26U) << left;
        fs::remove(directory / left.substr(0, left.find(' ')));
    }
    EXPECT_EQ(order, "sync move sync ");
    EXPECT_TRUE(whole[0] > 20 && whole[1] > 2);
}
