#include "plotwerk/files/atomicFile.h"

#include "plotwerk/refusal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace plotwerk {

namespace fs = std::filesystem;

static constexpr size_t largestFile = 2'000'000'000;

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

// A temporary file that is gone again unless it is moved into place.
class Temporary {
  public:
    explicit Temporary(const fs::path &besides)
        : name((besides.parent_path() / ".plotwerk-XXXXXX").string()),
          descriptor(mkostemp(name.data(), O_CLOEXEC)) {
        if (descriptor.number < 0) refuse("write", besides, textOfErrno());
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary() {
        if (!moved) unlink(name.c_str());
    }

    bool moveTo(const fs::path &path) {
        moved = std::rename(name.c_str(), path.c_str()) == 0;
        return moved;
    }

    std::string name;
    const Descriptor descriptor;

  private:
    bool moved = false;
};

} // namespace

std::string readWholeFile(const fs::path &path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (file.number < 0) refuse("read", path, textOfErrno());

    struct stat status {};
    if (fstat(file.number, &status) != 0) refuse("read", path, textOfErrno());
    if (S_ISDIR(status.st_mode)) refuse("read", path, std::strerror(EISDIR));
    if (!S_ISREG(status.st_mode)) refuse("read", path, "not a regular file");
    if (static_cast<size_t>(status.st_size) > largestFile) refuse("read", path, "too large");

    // One byte more than the file has shows its end at once; a file that grows is read on.
    std::string bytes(static_cast<size_t>(status.st_size) + 1, '\0');
    size_t used = 0;
    for (;;) {
        const ssize_t count = read(file.number, bytes.data() + used, bytes.size() - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) refuse("read", path, textOfErrno());
        if (count == 0) break;
        used += static_cast<size_t>(count);
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

static void syncDirectory(const fs::path &directory) {
    const Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Not every file system syncs directories; the file itself is already safe.
    if (opened.number >= 0) fsync(opened.number);
}

void writeWholeFile(const fs::path &path, const std::function<void(std::ostream &)> &write) {
    if (path.empty()) refuse("write", path, std::strerror(ENOENT));
    std::error_code error;
    const fs::path target = fs::weakly_canonical(path, error);
    if (error) refuse("write", path, error.message());
    const mode_t permissions = permissionsOf(target);

    Temporary temporary(target);
    std::ofstream stream(temporary.name, std::ios::binary);
    write(stream);
    stream.close();
    if (!stream) refuse("write", path, textOfErrno());

    const int descriptor = temporary.descriptor.number;
    if (fchmod(descriptor, permissions) != 0 || fsync(descriptor) != 0 ||
        !temporary.moveTo(target)) {
        refuse("write", path, textOfErrno());
    }
    syncDirectory(target.parent_path());
}

} // namespace plotwerk
