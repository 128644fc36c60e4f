#include "plotwerk/files/atomicFile.h"

#include "plotwerk/base/refusal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
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

// What is to take a file's place. Until then it has no name, so that nothing of it stays behind
// whenever the process is killed; where the file system can't do that, it has a temporary one.
class Replacement {
  public:
    explicit Replacement(const fs::path &replaced)
        : target(replaced), descriptor(opened(replaced.parent_path(), name)) {
        if (descriptor.number < 0) refuse("write", target, textOfErrno());
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;
    ~Replacement() {
        if (!name.empty()) unlink(name.c_str());
    }

    // Under which it can be opened, with or without a name of its own.
    std::string link() const { return "/proc/self/fd/" + std::to_string(descriptor.number); }

    // Synced, it takes the place. False, with the reason in errno, when that can't be done.
    bool moveIntoPlace(mode_t permissions) {
        if (fchmod(descriptor.number, permissions) != 0 || fsync(descriptor.number) != 0)
            return false;
        if (name.empty() && !takeName()) return false;
        if (std::rename(name.c_str(), target.c_str()) != 0) return false;
        name.clear();
        return true;
    }

  private:
    static int opened(const fs::path &directory, std::string &name) {
        const int nameless = open(directory.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
        if (nameless >= 0) return nameless;
        name = (directory / ".plotwerk-XXXXXX").string();
        return mkostemp(name.data(), O_CLOEXEC);
    }

    // Only a file with a name can be moved over another. One of that name would be what a process
    // with the same number left behind.
    bool takeName() {
        name = (target.parent_path() / (".plotwerk-" + std::to_string(getpid()))).string();
        unlink(name.c_str());
        return linkat(AT_FDCWD, link().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    }

    const fs::path target;
    std::string name; // empty: none
    const Descriptor descriptor;
};

} // namespace

std::string readWholeFile(const fs::path &path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.number < 0) refuse("read", path, textOfErrno());

    struct stat status {};
    if (fstat(file.number, &status) != 0) refuse("read", path, textOfErrno());
    if (S_ISDIR(status.st_mode)) refuse("read", path, std::strerror(EISDIR));
    if (!S_ISREG(status.st_mode)) refuse("read", path, "not a regular file");
    if (static_cast<std::size_t>(status.st_size) > largestFile) refuse("read", path, "too large");

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

// The permissions that the new file gets, once it is sure that the old one may be replaced.
static mode_t permissionsOf(const fs::path &path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) refuse("write", path, std::strerror(EISDIR));
        if (!S_ISREG(status.st_mode)) refuse("write", path, "not a regular file");
        if (access(path.c_str(), W_OK) != 0) refuse("write", path, textOfErrno());
        return status.st_mode & 0777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// Where a path leads that may be a symbolic link, to a file or to where there is none yet.
static fs::path withoutLinks(const fs::path &path) {
    std::error_code error;
    fs::path target = fs::absolute(path);
    for (int links = 0; fs::is_symlink(target, error); ++links) {
        if (links == 40) refuse("write", path, std::strerror(ELOOP));
        target = target.parent_path() / fs::read_symlink(target, error);
    }
    return target;
}

static void syncDirectory(const fs::path &directory) {
    const Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Not every file system syncs directories; the file itself is already safe.
    if (opened.number >= 0) fsync(opened.number);
}

void writeWholeFile(const fs::path &path, const std::function<void(std::ostream &)> &write) {
    if (path.empty()) refuse("write", path, std::strerror(ENOENT));
    const fs::path target = withoutLinks(path);
    const mode_t permissions = permissionsOf(target);

    Replacement replacement(target);
    std::ofstream stream(replacement.link(), std::ios::binary);
    write(stream);
    stream.close();
    if (!stream || !replacement.moveIntoPlace(permissions)) refuse("write", path, textOfErrno());
    syncDirectory(target.parent_path());
}

} // namespace plotwerk
