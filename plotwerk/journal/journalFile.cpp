#include "plotwerk/journal/journalFile.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/files/directory.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/journal/bytes.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <libdeflate.h>
#include <ostream>
#include <random>
#include <span>
#include <streambuf>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

namespace {

constexpr std::array<char, 16> magic{'p', 'l', 'o', 't', 'w', 'e', 'r', 'k',
                                     ' ', 'j', 'o', 'u', 'r', 'n', 'a', 'l'};
constexpr std::uint32_t version = 1;
constexpr int mostAttempts = 3;
constexpr double leastRecords = 16 << 20;
constexpr auto suffix = ".journal";
constexpr auto unfinishedSuffix = ".journal.new";

// What follows the version is written anew while the file is in use.
struct Head {
    std::array<char, 16> mark = magic;
    std::uint32_t version = plotwerk::version;
    std::uint16_t attempts = 0;
    std::uint16_t incomplete = 0;
    std::int64_t stamp = 0;
};
static_assert(sizeof(Head) == 32);

struct RecordHead {
    std::uint64_t length = 0;
    std::uint32_t payloadSum = 0;
    std::uint32_t headSum = 0;

    RecordHead() = default;
    RecordHead(std::uint64_t payloadLength, std::uint32_t sum)
        : length(payloadLength), payloadSum(sum), headSum(sumOfHead()) {}
    std::uint32_t sumOfHead() const { return libdeflate_crc32(0, this, 12); }
};
static_assert(sizeof(RecordHead) == 16);

std::uint32_t sumOf(std::string_view bytes, std::uint32_t before = 0) {
    return libdeflate_crc32(before, bytes.data(), bytes.size());
}

[[noreturn]] void refuseToWrite(const fs::path &path) {
    throw Refusal("can't write " + path.string() + ": " + std::strerror(errno));
}

// False, with the reason in errno, when not all could be written.
bool writeAll(int file, const char *bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(file, bytes, std::min<std::size_t>(count, 1 << 30));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

// The same of several parts at a position, in as few writes as the system takes them in.
bool writeAll(int file, std::span<iovec> parts, std::uint64_t position) {
    while (!parts.empty()) {
        const std::size_t some = std::min<std::size_t>(parts.size(), IOV_MAX);
        const ssize_t written =
            pwritev(file, parts.data(), static_cast<int>(some), static_cast<off_t>(position));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        auto left = static_cast<std::size_t>(written);
        position += left;
        for (; !parts.empty() && left >= parts.front().iov_len; parts = parts.subspan(1))
            left -= parts.front().iov_len;
        if (left == 0) continue;
        parts.front().iov_base = static_cast<char *>(parts.front().iov_base) + left;
        parts.front().iov_len -= left;
    }
    return true;
}

// Writes to a file and sums up what it writes.
class SummingBuffer : public std::streambuf {
  public:
    explicit SummingBuffer(int descriptor) : file(descriptor) {
        setp(held.data(), held.data() + held.size());
    }

    std::uint64_t length = 0;
    std::uint32_t sum = 0;

    // False, with the reason in errno, when something couldn't be written.
    bool finish() {
        const bool good = passOn({pbase(), pptr()});
        setp(held.data(), held.data() + held.size());
        errno = good ? 0 : reason;
        return good;
    }

  protected:
    int_type overflow(int_type c) override {
        if (!finish()) return traits_type::eof();
        if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char *bytes, std::streamsize count) override {
        if (count < epptr() - pptr()) {
            std::copy_n(bytes, count, pptr());
            pbump(static_cast<int>(count));
            return count;
        }
        return finish() && passOn({bytes, static_cast<std::size_t>(count)}) ? count : 0;
    }

  private:
    bool passOn(std::string_view bytes) {
        if (reason != 0) return false;
        if (!writeAll(file, bytes.data(), bytes.size())) {
            reason = errno;
            return false;
        }
        sum = sumOf(bytes, sum);
        length += bytes.size();
        return true;
    }

    const int file;
    int reason = 0;
    std::array<char, 1 << 16> held;
};

bool readAll(int file, void *bytes, std::size_t count, std::uint64_t position) {
    auto *at = static_cast<char *>(bytes);
    while (count > 0) {
        const ssize_t got =
            pread(file, at, std::min<std::size_t>(count, 1 << 30), static_cast<off_t>(position));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        at += got;
        position += static_cast<std::uint64_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

std::string descriptionOf(const Document &document) {
    std::string bytes;
    putNumber(bytes, static_cast<std::uint8_t>(hasUnsavedChanges(document)));
    putText(bytes, document.name);
    putText(bytes, document.path.native());
    return bytes;
}

// The file at the path, locked. Negative when it is gone or in use.
int lockedFile(const fs::path &path) {
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) return -1;
    struct stat opened {
    }, named{};
    // Between the two calls another file can have taken its place.
    if (flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &opened) == 0 &&
        stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
        S_ISREG(opened.st_mode)) {
        return file;
    }
    close(file);
    return -1;
}

} // namespace

JournalDescriptor::JournalDescriptor(JournalDescriptor &&other) noexcept
    : number(std::exchange(other.number, -1)) {
}

JournalDescriptor &JournalDescriptor::operator=(JournalDescriptor &&other) noexcept {
    std::swap(number, other.number);
    return *this;
}

JournalDescriptor::~JournalDescriptor() {
    if (number >= 0) close(number);
}

fs::path JournalFile::freePath(const fs::path &directory) {
    std::random_device random;
    fs::path path;
    do {
        char name[32];
        std::snprintf(name, sizeof name, "%08x%08x%s", random(), random(), suffix);
        path = directory / name;
    } while (fs::exists(path));
    return path;
}

// Of the files that a process may have open, some must be left to save documents.
static bool isAmongTheLast(int file) {
    constexpr rlim_t forOthers = 16;
    rlimit limit{};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 &&
           static_cast<rlim_t>(file) + forOthers >= limit.rlim_cur;
}

// Under its own name from the beginning, somebody else could find it empty and not yet locked.
JournalFile::JournalFile(fs::path path, const Document &document, std::int64_t stamp)
    : place(std::move(path)), file(-1) {
    const std::string unfinished = place.string() + ".new";
    unlink(unfinished.c_str()); // left by a process that had this path before
    file.number =
        open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (file.number < 0) refuseToWrite(place);
    try {
        if (isAmongTheLast(file.number)) {
            errno = EMFILE;
            refuseToWrite(place);
        }
        if (flock(file.number, LOCK_EX | LOCK_NB) != 0) refuseToWrite(place);
        Head fileHead;
        fileHead.stamp = stamp;
        const std::string description = descriptionOf(document);
        const RecordHead descriptionHead(description.size(), sumOf(description));
        std::string head(reinterpret_cast<const char *>(&fileHead), sizeof fileHead);
        head.append(reinterpret_cast<const char *>(&descriptionHead), sizeof descriptionHead);
        head += description;
        const auto documentAt = static_cast<off_t>(head.size());
        head.resize(head.size() + sizeof(RecordHead)); // written when the sum is known
        if (!writeAll(file.number, head.data(), head.size())) refuseToWrite(place);

        SummingBuffer buffer(file.number);
        std::ostream stream(&buffer);
        writeDocument(stream, document, true);
        if (!buffer.finish()) refuseToWrite(place);
        const RecordHead documentHead(buffer.length, buffer.sum);
        if (pwrite(file.number, &documentHead, sizeof documentHead, documentAt) !=
                sizeof documentHead ||
            std::rename(unfinished.c_str(), place.c_str()) != 0) {
            refuseToWrite(place);
        }
        messages = size = head.size() + buffer.length;
    } catch (...) {
        unlink(unfinished.c_str());
        throw;
    }
}

void JournalFile::append(const std::vector<std::string_view> &message) {
    RecordHead head;
    std::vector<iovec> parts;
    parts.reserve(message.size() + 1);
    parts.push_back({&head, sizeof head});
    std::uint64_t length = 0;
    std::uint32_t sum = 0;
    for (const std::string_view piece : message) {
        length += piece.size();
        sum = sumOf(piece, sum);
        parts.push_back({const_cast<char *>(piece.data()), piece.size()});
    }
    head = RecordHead(length, sum);
    if (!writeAll(file.number, parts, size)) {
        const int reason = errno;
        // A half record at the end would do no harm either.
        if (ftruncate(file.number, static_cast<off_t>(size)) != 0) errno = reason;
        errno = reason;
        refuseToWrite(place);
    }
    size += sizeof head + length;
}

// Counting the document takes long where it has many columns, so it is put off.
bool JournalFile::isOutgrown(const Document &document) {
    const auto taken = static_cast<double>(size - messages);
    if (taken <= std::max(4 * roomOfDocument, leastRecords)) return false;
    roomOfDocument = bytesOf(document);
    return taken > 4 * roomOfDocument;
}

bool JournalFile::isGone() const {
    struct stat status {};
    return fstat(file.number, &status) != 0 || status.st_nlink == 0;
}

// What can't be noted in the head is no reason to lose the rest.
static void overwrite(int file, const void *bytes, std::size_t count, std::size_t position) {
    [[maybe_unused]] const ssize_t written =
        pwrite(file, bytes, count, static_cast<off_t>(position));
}

static void noteStamp(int file, std::int64_t stamp) {
    overwrite(file, &stamp, sizeof stamp, offsetof(Head, stamp));
}

void JournalFile::setStamp(std::int64_t stamp) {
    noteStamp(file.number, stamp);
}

static void noteIncomplete(int file) {
    constexpr std::uint16_t yes = 1;
    overwrite(file, &yes, sizeof yes, offsetof(Head, incomplete));
}

void JournalFile::setIncomplete() {
    noteIncomplete(file.number);
}

// Where it can't be deleted it must not bring back what has been saved or closed.
static void removeFile(const fs::path &path, const JournalDescriptor &file) {
    if (unlink(path.c_str()) == 0) return;
    [[maybe_unused]] const int emptied = ftruncate(file.number, 0);
}

void JournalFile::remove() {
    removeFile(place, file);
}

std::optional<LeftJournal> LeftJournal::lock(const fs::path &path) {
    LeftJournal journal;
    journal.path = path;
    journal.file.number = lockedFile(path);
    if (journal.file.number < 0) return std::nullopt;

    const auto refuse = [&](const std::string &reason) {
        throw Refusal(path.string() + ": " + reason);
    };
    struct stat status {};
    fstat(journal.file.number, &status);
    journal.size = static_cast<std::uint64_t>(status.st_size);
    journal.lastChange = status.st_mtime;
    if (journal.size == 0) return std::nullopt; // it couldn't be deleted
    Head head;
    if (!readAll(journal.file.number, &head, sizeof head, 0) || head.mark != magic)
        refuse("not a journal");
    if (head.version != version) {
        refuse("written by another Plotwerk (version " + std::to_string(head.version) +
               " of the format)");
    }
    journal.stamp = head.stamp;
    journal.attempts = head.attempts;
    journal.isIncomplete = head.incomplete != 0;
    journal.position = sizeof head;
    const auto description = journal.nextRecord();
    if (!description) refuse("damaged: cut off");
    ByteReader reader(*description);
    journal.hasUnsavedChanges = reader.number<std::uint8_t>() != 0;
    journal.name = reader.text();
    journal.documentPath = std::string(reader.text());
    return journal;
}

std::optional<std::string> LeftJournal::nextRecord() {
    RecordHead head;
    if (size - position < sizeof head) return std::nullopt;
    const auto damaged = [&] {
        return Refusal(path.string() + ": damaged at byte " + std::to_string(position));
    };
    if (!readAll(file.number, &head, sizeof head, position) || head.headSum != head.sumOfHead())
        throw damaged();
    if (size - position - sizeof head < head.length) return std::nullopt;
    std::string payload(head.length, '\0');
    if (!readAll(file.number, payload.data(), payload.size(), position + sizeof head) ||
        sumOf(payload) != head.payloadSum) {
        throw damaged();
    }
    position += sizeof head + head.length;
    return payload;
}

Document LeftJournal::document() {
    auto bytes = nextRecord();
    if (!bytes) throw Refusal(path.string() + ": damaged: cut off");
    Document document;
    try {
        document = documentOf(std::move(*bytes));
    } catch (const Refusal &refusal) {
        throw Refusal(path.string() + ": " + refusal.what());
    }
    document.path = documentPath;
    if (hasUnsavedChanges) change(document, [](Document &) {});
    return document;
}

std::optional<std::string> LeftJournal::nextMessage() {
    return nextRecord();
}

void LeftJournal::beginAttempt() {
    if (attempts >= mostAttempts) {
        throw Refusal(path.string() + ": " + std::to_string(attempts) +
                      " attempts to bring it back have ended the process");
    }
    ++attempts;
    noteAttempts();
}

void LeftJournal::endAttempt() {
    --attempts;
    noteAttempts();
}

void LeftJournal::noteAttempts() const {
    overwrite(file.number, &attempts, sizeof attempts, offsetof(Head, attempts));
    keepTime();
}

// Of what the document is, nothing has changed.
void LeftJournal::keepTime() const {
    const timespec times[] = {{0, UTIME_OMIT}, {lastChange, 0}};
    futimens(file.number, times);
}

void LeftJournal::setStamp(std::int64_t latest) {
    stamp = latest;
    noteStamp(file.number, stamp);
    keepTime();
}

void LeftJournal::setIncomplete() {
    isIncomplete = true;
    noteIncomplete(file.number);
    keepTime();
}

void LeftJournal::remove() {
    removeFile(path, file);
}

static std::vector<fs::path> pathsWithSuffix(const fs::path &directory, std::string_view ending) {
    std::vector<fs::path> paths = pathsIn(directory);
    std::erase_if(paths, [&](const fs::path &path) { return !path.native().ends_with(ending); });
    return paths;
}

std::vector<fs::path> journalPaths(const fs::path &directory) {
    return pathsWithSuffix(directory, suffix);
}

// The state of a file that nobody has locked.
static std::optional<struct stat> stateOfLeft(const fs::path &path) {
    const JournalDescriptor file(lockedFile(path));
    struct stat status {};
    if (file.number < 0 || fstat(file.number, &status) != 0) return std::nullopt;
    return status;
}

void removeOldJournals(const fs::path &directory) {
    constexpr std::time_t day = 24 * 3600;
    constexpr off_t mostBytes = 1'000'000'000;
    const std::time_t now = std::time(nullptr);

    // A younger one can be about to be locked.
    for (const fs::path &path : pathsWithSuffix(directory, unfinishedSuffix)) {
        const auto state = stateOfLeft(path);
        if (state && state->st_mtime < now - day) unlink(path.c_str());
    }

    struct Left {
        fs::path path;
        std::time_t changed;
        off_t size;
    };
    std::vector<Left> left;
    for (const fs::path &path : journalPaths(directory)) {
        if (const auto state = stateOfLeft(path))
            left.push_back({path, state->st_mtime, state->st_size});
    }
    std::sort(left.begin(), left.end(),
              [](const Left &a, const Left &b) { return a.changed > b.changed; });
    off_t bytes = 0;
    for (const Left &journal : left) {
        bytes += journal.size;
        const bool isOld = journal.changed < now - 30 * day || journal.size == 0;
        // What a process has just left is to be brought back, whatever its size.
        const bool isTooMuch = bytes > mostBytes && journal.changed < now - day;
        if (!isOld && !isTooMuch) continue;
        // Somebody may bring it back just now.
        if (const JournalDescriptor file(lockedFile(journal.path)); file.number >= 0)
            unlink(journal.path.c_str());
    }
}

} // namespace plotwerk
