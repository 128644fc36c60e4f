#include "plotwerk/journal/journalFile.h"

#include "plotwerk/base/log.h"
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
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

namespace {

using Mark = std::array<char, 16>;

constexpr Mark markOf(const char (&text)[17]) {
    Mark mark{};
    std::copy_n(text, mark.size(), mark.begin());
    return mark;
}

constexpr Mark magic = markOf("plotwerk journal");
constexpr Mark deleted = markOf("plotwerk deleted");
constexpr std::uint32_t version = 2;
constexpr std::uint32_t mostAttempts = 3;
constexpr std::time_t day = 24 * 3600;
constexpr double leastRecords = 16 << 20;
constexpr auto suffix = ".journal";
constexpr auto unfinishedSuffix = ".journal.new";

struct Head {
    Mark mark = magic;
    std::uint32_t version = plotwerk::version;
    std::uint32_t sum = 0; // of the state
    JournalState state;

    void setState(const JournalState &given) {
        state = given;
        sum = sumOfState();
    }
    std::uint32_t sumOfState() const { return libdeflate_crc32(0, &state, sizeof state); }
};
static_assert(sizeof(Head) == 48);

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

template<class T> std::string_view bytesIn(const T &record) {
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

std::uint32_t sumOf(std::string_view bytes, std::uint32_t before = 0) {
    return libdeflate_crc32(before, bytes.data(), bytes.size());
}

[[noreturn]] void refuseToWrite(const fs::path &path) {
    throw Refusal("can't write " + path.string() + ": " + std::strerror(errno));
}

// Both at a position. False, with the reason in errno, when not all could be written.
bool writeAll(int file, std::string_view bytes, std::uint64_t position) {
    while (!bytes.empty()) {
        const ssize_t written =
            pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        position += static_cast<std::uint64_t>(written);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// In one write where the system takes them in so.
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

// Writes to a file from a position on, and sums up what it writes. A stream on it is to be flushed.
class SummingBuffer : public std::streambuf {
  public:
    SummingBuffer(int descriptor, std::uint64_t position) : file(descriptor), begin(position) {
        setp(held.data(), held.data() + held.size());
    }

    std::uint64_t length = 0;
    std::uint32_t sum = 0;
    int reason = 0; // as errno has it, why something couldn't be written

  protected:
    std::streamsize xsputn(const char *bytes, std::streamsize count) override {
        if (count < epptr() - pptr()) {
            std::copy_n(bytes, count, pptr());
            pbump(static_cast<int>(count));
            return count;
        }
        return sync() == 0 && passOn({bytes, static_cast<std::size_t>(count)}) ? count : 0;
    }
    int sync() override {
        if (!passOn({pbase(), pptr()})) return -1;
        setp(held.data(), held.data() + held.size());
        return 0;
    }

  private:
    bool passOn(std::string_view bytes) {
        if (!writeAll(file, bytes, begin + length)) {
            reason = errno;
            return false;
        }
        sum = sumOf(bytes, sum);
        length += bytes.size();
        return true;
    }

    const int file;
    const std::uint64_t begin;
    std::array<char, 1 << 16> held;
};

bool readAll(int file, void *bytes, std::size_t count, std::uint64_t position) {
    auto *at = static_cast<char *>(bytes);
    while (count > 0) {
        const ssize_t got = pread(file, at, count, static_cast<off_t>(position));
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

[[noreturn]] void refuseToRead(const fs::path &path, const char *reason) {
    throw Refusal(path.string() + ": " + reason);
}

struct flock wholeFile() {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    return whole;
}

// False when somebody else has. Of the open file, not of the process: it outlives a fork's end, and
// can be looked for without keeping others from it.
bool takeLock(int file) {
    struct flock whole = wholeFile();
    return fcntl(file, F_OFD_SETLK, &whole) == 0;
}

bool isLocked(int file) {
    struct flock whole = wholeFile();
    return fcntl(file, F_OFD_GETLK, &whole) == 0 && whole.l_type != F_UNLCK;
}

// Negative when there is no file any more.
int openedFile(const fs::path &path, int access) {
    const int file = open(path.c_str(), access | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0 && errno != ENOENT) refuseToRead(path, std::strerror(errno));
    return file;
}

// Also when another one has taken its place.
bool isDeleted(int file) {
    struct stat status {};
    return fstat(file, &status) != 0 || status.st_nlink == 0;
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
    char name[32];
    std::snprintf(name, sizeof name, "%08x%08x%s", random(), random(), suffix);
    return directory / name;
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
        if (!takeLock(file.number)) refuseToWrite(place);
        state.stamp = stamp;
        Head fileHead;
        fileHead.setState(state);
        const std::string description = descriptionOf(document);
        const RecordHead descriptionHead(description.size(), sumOf(description));
        std::string head(bytesIn(fileHead));
        head.append(bytesIn(descriptionHead)).append(description);
        const std::size_t documentAt = head.size();
        head.resize(head.size() + sizeof(RecordHead)); // written when the sum is known
        if (!writeAll(file.number, head, 0)) refuseToWrite(place);

        SummingBuffer buffer(file.number, head.size());
        std::ostream stream(&buffer);
        writeDocument(stream, document, true);
        if (!stream.flush()) {
            errno = buffer.reason;
            refuseToWrite(place);
        }
        const RecordHead documentHead(buffer.length, buffer.sum);
        if (!writeAll(file.number, bytesIn(documentHead), documentAt) ||
            std::rename(unfinished.c_str(), place.c_str()) != 0) {
            refuseToWrite(place);
        }
        messages = size = head.size() + buffer.length;
    } catch (...) {
        unlink(unfinished.c_str());
        throw;
    }
}

// A short record is put together first: the system takes longer over parts.
static bool writeRecord(int file, const RecordHead &head,
                        const std::vector<std::string_view> &message, std::uint64_t position) {
    std::array<char, 1024> together;
    if (head.length <= together.size() - sizeof head) {
        char *end = std::ranges::copy(bytesIn(head), together.data()).out;
        for (const std::string_view piece : message) end = std::ranges::copy(piece, end).out;
        return writeAll(file, {together.data(), end}, position);
    }
    std::vector<iovec> parts;
    parts.reserve(message.size() + 1);
    parts.push_back({const_cast<RecordHead *>(&head), sizeof head});
    for (const std::string_view piece : message)
        parts.push_back({const_cast<char *>(piece.data()), piece.size()});
    return writeAll(file, parts, position);
}

void JournalFile::append(const std::vector<std::string_view> &message) {
    std::uint64_t length = 0;
    std::uint32_t sum = 0;
    for (const std::string_view piece : message) {
        length += piece.size();
        sum = sumOf(piece, sum);
    }
    const RecordHead head(length, sum);
    if (!writeRecord(file.number, head, message, size)) {
        const int reason = errno;
        // A half record at the end would do no harm either.
        [[maybe_unused]] const int cut = ftruncate(file.number, static_cast<off_t>(size));
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
    return isDeleted(file.number);
}

// What can't be noted in the head is no reason to lose the rest.
static void writeState(int file, const JournalState &state) {
    Head head;
    head.setState(state);
    [[maybe_unused]] const ssize_t written = pwrite(file, &head, sizeof head, 0);
}

void JournalFile::setStamp(std::int64_t stamp) {
    state.stamp = stamp;
    writeState(file.number, state);
}

void JournalFile::setIncomplete() {
    state.incomplete = 1;
    writeState(file.number, state);
}

// Where it can't be deleted it must not bring back what has been saved or closed.
static void removeFile(const fs::path &path, const JournalDescriptor &file) {
    if (unlink(path.c_str()) == 0) return;
    [[maybe_unused]] const int emptied = ftruncate(file.number, 0);
}

void JournalFile::remove() {
    removeFile(place, file);
}

void JournalFile::setDeleted() {
    if (!writeAll(file.number, bytesIn(deleted), 0)) remove();
}

LeftJournal::LeftJournal(fs::path place, int descriptor)
    : path(std::move(place)), file(descriptor) {
}

std::optional<LeftJournal> LeftJournal::lock(const fs::path &path) {
    LeftJournal journal(path, openedFile(path, O_RDWR));
    if (journal.file.number < 0) return std::nullopt;
    if (isAmongTheLast(journal.file.number)) refuseToRead(path, std::strerror(EMFILE));
    if (!takeLock(journal.file.number)) {
        if (errno != EAGAIN) refuseToRead(path, std::strerror(errno));
        return std::nullopt;
    }
    if (isDeleted(journal.file.number)) return std::nullopt; // between opening and locking
    journal.readBeginning();
    if (journal.size == 0) return std::nullopt;
    return journal;
}

std::optional<LeftJournal> LeftJournal::look(const fs::path &path) {
    LeftJournal journal(path, openedFile(path, O_RDONLY));
    if (journal.file.number < 0 || isLocked(journal.file.number)) return std::nullopt;
    journal.readBeginning();
    if (journal.size == 0) return std::nullopt;
    journal.file = JournalDescriptor(-1);
    return journal;
}

bool LeftJournal::isEmpty(const fs::path &path) {
    LeftJournal journal(path, openedFile(path, O_RDONLY));
    if (journal.file.number < 0) return false;
    journal.readBeginning();
    return journal.size == 0;
}

// All but the size stays as it is where the file is empty or as good as deleted.
void LeftJournal::readBeginning() {
    struct stat status {};
    if (fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode))
        refuseToRead(path, "not a journal");
    size = static_cast<std::uint64_t>(status.st_size);
    lastChange = status.st_mtime;
    if (size == 0) return;
    Head head;
    const bool hasMark = readAll(file.number, &head, offsetof(Head, sum), 0);
    if (hasMark && head.mark == deleted) {
        size = 0;
        return;
    }
    if (!hasMark || head.mark != magic) refuseToRead(path, "not a journal");
    if (head.version != version) {
        throw Refusal(path.string() + ": written by another Plotwerk (version " +
                      std::to_string(head.version) + " of the format)");
    }
    if (!readAll(file.number, &head, sizeof head, 0)) refuseToRead(path, "damaged: cut off");
    if (head.sum != head.sumOfState()) refuseToRead(path, "damaged at its beginning");
    state = head.state;
    position = sizeof head;
    const auto description = nextRecord();
    if (!description) refuseToRead(path, "damaged: cut off");
    ByteReader reader(*description);
    hasUnsavedChanges = reader.number<std::uint8_t>() != 0;
    name = reader.text();
    documentPath = std::string(reader.text());
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

static std::uint32_t dayOf(std::time_t time) {
    return static_cast<std::uint32_t>(time / day);
}

void LeftJournal::beginAttempt(std::time_t now) {
    if (state.dayOfAttempt != dayOf(now)) {
        state.dayOfAttempt = dayOf(now);
        state.attempts = 0;
    }
    if (state.attempts >= mostAttempts) {
        throw Refusal(
            path.string() + ": " + std::to_string(state.attempts) +
            " attempts to bring it back have ended the process; tomorrow it is tried again");
    }
    ++state.attempts;
    noteState();
}

void LeftJournal::endAttempt() {
    --state.attempts;
    noteState();
}

// Of what the document is, nothing has changed, so the file is no younger.
void LeftJournal::noteState() const {
    writeState(file.number, state);
    const timespec times[] = {{0, UTIME_OMIT}, {lastChange, 0}};
    futimens(file.number, times);
}

void LeftJournal::setStamp(std::int64_t latest) {
    state.stamp = latest;
    noteState();
}

void LeftJournal::setIncomplete() {
    state.incomplete = 1;
    noteState();
}

void LeftJournal::setFound(std::uint32_t dayOfThat) {
    state.dayFound = dayOfThat;
    noteState();
}

void LeftJournal::remove() {
    removeFile(path, file);
}

std::string descriptionOf(const LeftJournal &journal) {
    std::string text = '"' + journal.name + '"';
    if (!journal.documentPath.empty()) text += " of " + journal.documentPath.string();
    char time[64] = "";
    std::tm local{};
    if (localtime_r(&journal.lastChange, &local))
        std::strftime(time, sizeof time, " as it was on %Y-%m-%d at %H:%M:%S", &local);
    text += time;
    if (journal.state.incomplete) text += ", without its last changes";
    return text;
}

static std::vector<fs::path> pathsWithSuffix(const fs::path &directory, std::string_view ending) {
    std::vector<fs::path> paths = pathsIn(directory);
    std::erase_if(paths, [&](const fs::path &path) { return !path.native().ends_with(ending); });
    return paths;
}

std::vector<fs::path> journalPaths(const fs::path &directory) {
    return pathsWithSuffix(directory, suffix);
}

static bool isOlder(const fs::path &path, std::time_t limit) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 && status.st_mtime < limit;
}

// Somebody may bring it back just now. False when it stays.
static bool removeUnused(const fs::path &path) {
    const JournalDescriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    return file.number >= 0 && takeLock(file.number) && !isDeleted(file.number) &&
           unlink(path.c_str()) == 0;
}

// What a process has just left may be about to be brought back.
static void noteFound(const LeftJournal &found, std::time_t now) {
    if (found.lastChange > now - day) return;
    try {
        if (auto journal = LeftJournal::lock(found.path)) journal->setFound(dayOf(now));
    } catch (const Refusal &) { // a later start may be let to
    }
}

void removeOldJournals(const fs::path &directory, std::time_t now) {
    constexpr std::time_t longest = 30 * day;
    constexpr std::uint64_t mostBytes = 1'000'000'000;

    // A younger one can be about to be locked.
    for (const fs::path &path : pathsWithSuffix(directory, unfinishedSuffix))
        if (isOlder(path, now - day)) removeUnused(path);

    std::vector<LeftJournal> left;
    for (const fs::path &path : journalPaths(directory)) {
        try {
            if (auto journal = LeftJournal::look(path))
                left.push_back(std::move(*journal));
            else if (LeftJournal::isEmpty(path))
                removeUnused(path);
        } catch (const Refusal &refusal) {
            if (!isOlder(path, now - longest) || !removeUnused(path)) continue;
            logDone(LogLevel::warning, [&] { return std::string("removed ") + refusal.what(); });
        }
    }
    std::sort(left.begin(), left.end(), [](const LeftJournal &a, const LeftJournal &b) {
        return a.lastChange > b.lastChange;
    });
    std::uint64_t bytes = 0;
    for (const LeftJournal &journal : left) {
        bytes += journal.size;
        const std::uint32_t found = journal.state.dayFound;
        if (found == 0) {
            noteFound(journal, now);
            continue;
        }
        if (dayOf(now) <= found + longest / day && (bytes <= mostBytes || found == dayOf(now)))
            continue;
        if (!removeUnused(journal.path)) continue;
        logDone(LogLevel::warning,
                [&] { return "removed what was left behind of " + descriptionOf(journal); });
    }
}

} // namespace plotwerk
