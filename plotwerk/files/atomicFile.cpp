#include "plotwerk/files/atomicFile.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/ending.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/directory.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <set>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace plotwerk {

namespace fs = std::filesystem;

static constexpr std::size_t largestFile = 2'000'000'000;

[[noreturn]] static void refuse(const char *verb, const fs::path &path, const std::string &reason) {
    throw Refusal(std::string("can't ") + verb + " " + path.string() + ": " + reason);
}

static std::string textOfErrno() {
    return std::strerror(errno);
}

namespace {

class Descriptor {
  public:
    explicit Descriptor(int descriptor) : number(descriptor) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (number >= 0) close(number);
    }
    const int number;
};

constexpr std::string_view temporaryPrefix = ".plotwerk-";
constexpr std::size_t digitsOfTemporary = 16;

// A name in the directory that nobody can foresee.
fs::path temporaryName(const fs::path &directory) {
    static std::random_device device;
    char random[digitsOfTemporary + 1];
    std::snprintf(random, sizeof random, "%08x%08x", device(), device());
    return directory / (std::string(temporaryPrefix) + random);
}

bool isTemporaryName(std::string_view name) {
    return name.size() == temporaryPrefix.size() + digitsOfTemporary &&
           name.starts_with(temporaryPrefix) &&
           name.find_first_not_of("0123456789abcdef", temporaryPrefix.size()) ==
               std::string_view::npos;
}

constexpr const char *accessControlList = "system.posix_acl_access";

// Who may do what with a file.
struct Access {
    mode_t permissions; // of a new one, before the umask or the directory's list takes some away
    std::optional<gid_t> group{}; // of the file that was there before
    std::string list{};           // its access control list; empty: none
};

// What is to take a file's place. Until then it has no name, so that nothing of it stays behind
// whenever the process is killed; where the file system can't do that, it has a temporary one. It
// is locked as long as its writer lives.
class Replacement {
  public:
    Replacement(const fs::path &replaced, const Access &given)
        : target(replaced),
          access(given),
          descriptor(
              opened(replaced.parent_path(), given.group ? userOnly : given.permissions, name)) {
        if (descriptor.number < 0) refuse("write", target, textOfErrno());
        flock(descriptor.number, LOCK_EX | LOCK_NB);
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;
    ~Replacement() {
        if (!name.empty()) unlink(name.c_str());
    }

    // Under which it can be opened, with or without a name of its own.
    std::string link() const { return "/proc/self/fd/" + std::to_string(descriptor.number); }

    // Synced, it takes the place. False, with the reason in errno, when that can't be done.
    bool moveIntoPlace() {
        if (!handOn() || !sync()) return false;
        if (name.empty() && !takeName()) return false;
        if (std::rename(name.c_str(), target.c_str()) != 0) return false;
        name.clear();
        return true;
    }

    // As moveIntoPlace, but EEXIST where there is something already.
    bool moveIntoFreePlace() {
        if (!sync()) return false;
        if (linkTo(target)) return true;
        if (errno == EEXIST || name.empty()) return false;
        if (renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) != 0)
            return false;
        name.clear();
        return true;
    }

  private:
    bool takeGroup(gid_t group) const {
        struct stat status {};
        return fstat(descriptor.number, &status) == 0 &&
               (status.st_gid == group || fchown(descriptor.number, -1, group) == 0);
    }

    // Where the old file's group or list can't be kept, the group gets none of its rights: with a
    // list, what the permissions say of the group is what others on the list may have at most.
    bool handOn() const {
        if (!access.group) return true;
        fremovexattr(descriptor.number, accessControlList); // that of the directory
        const bool keepsGroup = takeGroup(*access.group);
        if (keepsGroup && !access.list.empty() &&
            fsetxattr(descriptor.number, accessControlList, access.list.data(), access.list.size(),
                      0) == 0)
            return true;
        const bool all = keepsGroup && access.list.empty();
        return fchmod(descriptor.number, all ? access.permissions : access.permissions & ~0070) ==
               0;
    }

    // In parts, so that an end by a signal doesn't have to wait for all of a large file.
    bool sync() const {
        constexpr off_t part = 16 << 20;
        struct stat status {};
        if (fstat(descriptor.number, &status) != 0) return false;
        for (off_t at = 0; at < status.st_size; at += part) {
            if (at > 0 && endIsAskedFor()) {
                errno = EINTR;
                return false;
            }
            sync_file_range(descriptor.number, at, part,
                            SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                SYNC_FILE_RANGE_WAIT_AFTER);
        }
        return fsync(descriptor.number) == 0;
    }

    static constexpr int mostTries = 100; // for a name that is free

    static int opened(const fs::path &directory, mode_t mode, fs::path &name) {
        const int nameless = open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
        if (nameless >= 0) return nameless;
        for (int i = 0; i < mostTries; ++i) {
            name = temporaryName(directory);
            const int named = open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, mode);
            if (named >= 0) return named;
            if (errno != EEXIST) break;
        }
        name.clear(); // somebody else's
        return -1;
    }

    bool linkTo(const fs::path &path) const {
        return linkat(AT_FDCWD, link().c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
    }

    // Only a file with a name can be moved over another.
    bool takeName() {
        for (int i = 0; i < mostTries; ++i) {
            name.clear(); // somebody else's
            name = temporaryName(target.parent_path());
            if (linkTo(name)) return true;
            if (errno != EEXIST) break;
        }
        name.clear(); // somebody else's
        return false;
    }

    const fs::path target;
    const Access access;
    fs::path name; // empty: none
    const Descriptor descriptor;
};

// Whether nobody who lives writes that file, and it is the user's own. A file with a name of its
// own from the beginning isn't locked at once, so a young one is left alone.
bool isLeftBehind(const fs::path &path) {
    constexpr std::time_t young = 60;
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    return file.number >= 0 && fstat(file.number, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && status.st_mtime + young < std::time(nullptr) &&
           flock(file.number, LOCK_EX | LOCK_NB) == 0;
}

// Removes what killed processes have left in the directory; looks once for each directory.
void removeLeftovers(const fs::path &directory) {
    static std::set<fs::path> seen;
    if (!seen.insert(directory).second) return;
    for (const fs::path &path : pathsIn(directory))
        if (isTemporaryName(path.filename().native()) && isLeftBehind(path)) unlink(path.c_str());
}

} // namespace

std::string readWholeFile(const fs::path &path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.number < 0) refuse("read", path, textOfErrno());

    struct stat status {};
    if (fstat(file.number, &status) != 0) refuse("read", path, textOfErrno());
    if (S_ISDIR(status.st_mode)) refuse("read", path, std::strerror(EISDIR));
    if (!S_ISREG(status.st_mode)) refuse("read", path, "not a regular file");
    if (static_cast<std::size_t>(status.st_size) > largestFile) refuse("read", path, "too large");

    try { // for the bytes, and for what is made of them
        requireMemory(2 * static_cast<double>(status.st_size));
    } catch (const Refusal &refusal) {
        refuse("read", path, refusal.what());
    }

    // One byte more than the file has shows its end at once; a file that grows is read on.
    std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t used = 0;
    for (;;) {
        const ssize_t count = read(file.number, bytes.data() + used, bytes.size() - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) refuse("read", path, textOfErrno());
        if (count == 0) break;
        used += static_cast<std::size_t>(count);
        if (used > largestFile) refuse("read", path, "too large");
        if (used == bytes.size()) bytes.resize(bytes.size() * 2 + 4096);
    }
    bytes.resize(used);
    return bytes;
}

static std::string listOf(const fs::path &path) {
    const ssize_t size = getxattr(path.c_str(), accessControlList, nullptr, 0);
    std::string list(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
    const ssize_t got = getxattr(path.c_str(), accessControlList, list.data(), list.size());
    list.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return list;
}

// What the new file gets, once it is sure that the old one may be replaced.
static Access accessOf(const fs::path &path, mode_t ofNew) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) refuse("write", path, std::strerror(EISDIR));
        if (!S_ISREG(status.st_mode)) refuse("write", path, "not a regular file");
        if (access(path.c_str(), W_OK) != 0) refuse("write", path, textOfErrno());
        return {status.st_mode & 0777, status.st_gid, listOf(path)};
    }
    return {ofNew};
}

// In a folder that everybody can write to, a link may be somebody's trap: only links of the user's
// own, or of the folder's owner, are followed there, as the kernel does it.
static bool isTrustedLink(const fs::path &link) {
    struct stat folder {};
    struct stat status {};
    if (stat(link.parent_path().c_str(), &folder) != 0 || lstat(link.c_str(), &status) != 0)
        return false;
    const bool shared = (folder.st_mode & S_ISVTX) != 0 && (folder.st_mode & S_IWOTH) != 0;
    return !shared || status.st_uid == geteuid() || status.st_uid == folder.st_uid;
}

// Where a path leads that may have symbolic links in it, to a file or to where there is none yet.
static fs::path withoutLinks(const fs::path &path) {
    std::error_code error;
    fs::path target;
    fs::path rest = fs::absolute(path);
    for (int links = 0; !rest.empty();) {
        const fs::path next = target / *rest.begin();
        fs::path behind;
        for (auto part = std::next(rest.begin()); part != rest.end(); ++part) behind /= *part;
        if (fs::is_symlink(next, error)) {
            if (++links > 40) refuse("write", path, std::strerror(ELOOP));
            if (!isTrustedLink(next)) refuse("write", path, "a link of another user");
            const fs::path to = fs::read_symlink(next, error);
            rest = behind.empty() ? to : to / behind;
        } else {
            target = next;
            rest = behind;
        }
    }
    return target;
}

static void syncDirectory(const fs::path &directory) {
    const Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Not every file system syncs directories; the file itself is already safe.
    if (opened.number >= 0) fsync(opened.number);
}

// Has the file that is to take a place written, and moved there by `move`. What was in the way of
// that, as errno tells it; 0: nothing.
static int writeAndMove(const fs::path &path, const fs::path &target, const Access &access,
                        const std::function<void(std::ostream &)> &write,
                        bool (Replacement::*move)()) {
    removeLeftovers(target.parent_path());
    Replacement replacement(target, access);
    std::ofstream stream(replacement.link(), std::ios::binary);
    write(stream);
    stream.close();
    if (!stream) refuse("write", path, textOfErrno());
    if (!(replacement.*move)()) return errno;
    syncDirectory(target.parent_path());
    return 0;
}

void writeWholeFile(const fs::path &path, const std::function<void(std::ostream &)> &write,
                    mode_t ofNew) {
    if (!path.has_filename()) refuse("write", path, std::strerror(path.empty() ? ENOENT : EISDIR));
    const fs::path target = withoutLinks(path);
    const int error =
        writeAndMove(path, target, accessOf(target, ofNew), write, &Replacement::moveIntoPlace);
    if (error != 0) refuse("write", path, std::strerror(error));
}

bool writeNewFile(const fs::path &path, const std::function<void(std::ostream &)> &write,
                  mode_t ofNew) {
    const int error = writeAndMove(path, path, {ofNew}, write, &Replacement::moveIntoFreePlace);
    if (error != 0 && error != EEXIST) refuse("write", path, std::strerror(error));
    return error == 0;
}

} // namespace plotwerk
