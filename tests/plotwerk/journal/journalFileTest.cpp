#include "plotwerk/journal/journalFile.h"

#include "plotwerk/journal/journal.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/structure.h"
#include "tests/plotwerk/base/refusalOf.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/plotwerk/server/serverTest.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace plotwerk;
using namespace std::chrono_literals;

// The system that journals meet here, in place of what the C library makes of it.
static std::optional<std::chrono::nanoseconds> clockIsAt; // and goes on by that much
static std::chrono::nanoseconds eachLook{0};              // whenever it is looked at
static std::size_t mostAtOnce = SIZE_MAX; // bytes; below, every other call is interrupted

static bool isInterrupted() {
    static bool last = false;
    last = !last && mostAtOnce != SIZE_MAX;
    if (last) errno = EINTR;
    return last;
}

extern "C" {

int clock_gettime(clockid_t clock, timespec *time) noexcept {
    if (!clockIsAt) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    *time = {clockIsAt->count() / 1'000'000'000, clockIsAt->count() % 1'000'000'000};
    *clockIsAt += eachLook;
    return 0;
}

ssize_t pread(int file, void *bytes, std::size_t count, off_t position) {
    if (isInterrupted()) return -1;
    return syscall(SYS_pread64, file, bytes, std::min(count, mostAtOnce), position);
}

ssize_t pwrite(int file, const void *bytes, std::size_t count, off_t position) {
    if (isInterrupted()) return -1;
    return syscall(SYS_pwrite64, file, bytes, std::min(count, mostAtOnce), position);
}

ssize_t pwritev(int file, const iovec *parts, int count, off_t position) {
    if (mostAtOnce == SIZE_MAX) return syscall(SYS_pwritev, file, parts, count, position, 0);
    return pwrite(file, parts->iov_base, parts->iov_len, position);
}
}

class JournalFileTest : public testing::Test {
  protected:
    ~JournalFileTest() override {
        clockIsAt.reset();
        mostAtOnce = SIZE_MAX;
    }

    void write(const std::vector<std::string> &messages) const {
        JournalFile file(path, document, 1);
        for (const std::string &message : messages) file.append({message});
    }

    void putBytes(const std::string &all) const { std::ofstream(path, std::ios::binary) << all; }

    // The messages in the file at path; throws what reading it throws.
    std::vector<std::string> messages() const {
        auto left = LeftJournal::lock(path);
        if (!left) throw std::runtime_error("not left");
        EXPECT_EQ(left->document().sources.size(), document.sources.size());
        std::vector<std::string> all;
        while (auto message = left->nextMessage()) all.push_back(std::move(*message));
        return all;
    }

    // A journal in use, as one would find it whose process ended now.
    std::optional<LeftJournal> asLeft(const fs::path &used) const {
        const fs::path copy = directory / "copy";
        fs::copy_file(used, copy, fs::copy_options::overwrite_existing);
        return LeftJournal::lock(copy);
    }

    // How many files of the directory the process has open; none goes on to programs it starts.
    int openFiles() const {
        int count = 0;
        for (const auto &each : fs::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const std::string file = fs::read_symlink(each.path(), gone).string();
            if (!file.starts_with(directory.string() + '/')) continue;
            EXPECT_EQ(fcntl(std::stoi(each.path().filename()), F_GETFD), FD_CLOEXEC) << file;
            ++count;
        }
        return count;
    }

    static void setTime(const fs::path &file, std::time_t time) {
        const timespec times[] = {{time, 0}, {time, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    }

    // While it does that, files can have so many bytes.
    static void withFilesOf(rlim_t bytes, const std::function<void()> &work) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit unlimited{};
        getrlimit(RLIMIT_FSIZE, &unlimited);
        const rlimit limit{bytes, unlimited.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        work();
        setrlimit(RLIMIT_FSIZE, &unlimited);
    }

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
    fs::path path = directory / "one.journal";
    Document document = smallDocument();
};

TEST_F(JournalFileTest, HoldsTheDocumentAndItsMessagesForOneProcessAtATime) {
    setenv("TZ", "UTC", 1);
    document = fullDocument();
    document.path = "/some where/else";
    document.revision = 1;
    // what is gathered before it is written, and what isn't
    document.sources.at(0).tables.assign(9, {});
    for (Table &table : document.sources.at(0).tables)
        for (int i = 0; i < 3000; ++i) table.x.values.push_back(i / 7.0);
    document.sources.at(0).tables[7].x.values.resize(20'000, 0.1);
    const std::vector<std::string> sent{"a", std::string("\0\xff\n", 3), "",
                                        std::string(3 << 20, 'm'), std::string(5000, 'p')};
    path = JournalFile::freePath(directory);
    EXPECT_NE(path, JournalFile::freePath(directory));
    std::ofstream(path.string() + ".new") << "left by a process that was killed";
    {
        JournalFile file(path, document, 17);
        EXPECT_EQ(file.path(), path);
        for (const std::string &message : sent) {
            std::vector<std::string_view> pieces{message};
            if (message.starts_with('p'))
                pieces.assign(message.size(), "p"); // of more than a write
            file.append(pieces);
        }
        EXPECT_FALSE(LeftJournal::lock(path)) << "while it is written";
        EXPECT_FALSE(LeftJournal::look(path)) << "while it is written";
        EXPECT_EQ(asLeft(path)->state.stamp, 17);
        file.setStamp(18);
        file.setIncomplete();
        EXPECT_EQ(openFiles(), 1);
    }
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    const auto seen = LeftJournal::look(path);
    EXPECT_EQ(openFiles(), 0);
    EXPECT_TRUE(seen && LeftJournal::lock(path)) << "who looks keeps nobody from it";
    EXPECT_EQ(journalPaths(directory), std::vector<fs::path>{path});
    EXPECT_EQ(bytesOf(path).substr(0, 20), std::string("plotwerk journal\2\0\0\0", 20))
        << "its version, for later ones";
    {
        auto left = LeftJournal::lock(path);
        ASSERT_TRUE(left);
        EXPECT_EQ(left->state.stamp, 18);
        EXPECT_EQ(left->size, fs::file_size(path));
        EXPECT_EQ(left->lastChange, status.st_mtime);
        left->lastChange = 1'000'000'000;
        EXPECT_EQ(descriptionOf(*left), '"' + document.name +
                                            "\" of /some where/else as it was on 2001-09-09 at "
                                            "01:46:40, without its last changes");
        const Document back = left->document();
        EXPECT_EQ(linesOf(back), linesOf(document));
        EXPECT_EQ(back.path, document.path);
        EXPECT_TRUE(hasUnsavedChanges(back));
        EXPECT_FALSE(LeftJournal::lock(path)) << "while it is read";
        EXPECT_EQ(openFiles(), 1);
    }
    EXPECT_EQ(messages(), sent);

    // A new file in the old one's place, which a reader may have open, is locked from the
    // beginning.
    const auto left = LeftJournal::lock(path);
    document.revision = document.savedRevision;
    {
        const JournalFile next(path, document, 0);
        EXPECT_FALSE(LeftJournal::lock(path));
    }
    EXPECT_FALSE(hasUnsavedChanges(LeftJournal::lock(path)->document()));
    EXPECT_FALSE(LeftJournal::lock(directory / "none.journal"));
}

TEST_F(JournalFileTest, IsWholeHoweverLittleTheSystemTakesAndGivesAtOnce) {
    const std::vector<std::string> sent{"first", std::string(1008, 's'), std::string(1009, 't')};
    for (const std::size_t most : {1U, 7U, 21U, 1000U}) {
        mostAtOnce = most;
        {
            JournalFile file(path, document, 1);
            for (const std::string_view message : sent)
                file.append({message.substr(0, 3), "", message.substr(3)});
        }
        EXPECT_EQ(messages(), sent) << most;
        EXPECT_EQ(linesOf(LeftJournal::lock(path)->document()), linesOf(document));
    }
}

TEST_F(JournalFileTest, DropsWhatWasNotWrittenToItsEndAndRefusesAllOtherDamage) {
    const std::string one = path.string() + ": ";
    write({});
    const std::size_t beginning = fs::file_size(path);
    const std::vector<std::string> sent{"first", "second", "third"};
    write(sent);
    const std::string whole = bytesOf(path);
    constexpr std::size_t headSize = 48, recordHeadSize = 16;
    const std::size_t documentAt = headSize + recordHeadSize + 1 + 8 + document.name.size() + 8 +
                                   document.path.native().size();
    for (std::size_t length = beginning; length <= whole.size(); ++length) {
        putBytes(whole.substr(0, length));
        std::vector<std::string> wanted;
        std::size_t end = beginning;
        for (const std::string &message : sent) {
            end += recordHeadSize + message.size();
            if (end <= length) wanted.push_back(message);
        }
        EXPECT_EQ(messages(), wanted) << length;
    }
    for (std::size_t length = 1; length < beginning; length += 1 + length / 50) {
        putBytes(whole.substr(0, length));
        EXPECT_EQ(refusalOf([&] { messages(); }),
                  one + (length < 20 ? "not a journal" : "damaged: cut off"))
            << length;
    }
    for (std::size_t i = 0; i<whole.size(); i += i> 150 && i + 150 < whole.size() ? 37 : 1) {
        std::string damaged = whole;
        damaged[i] ^= 0x10;
        putBytes(damaged);
        const std::string why = i < 16         ? "not a journal"
                                : i < 20       ? "written by another Plotwerk (version "
                                : i < headSize ? "damaged at its beginning"
                                               : "damaged at byte ";
        EXPECT_TRUE(refusalOf([&] { messages(); }).starts_with(one + why)) << i << why;
    }
    putBytes(std::string(whole).replace(16, 1, "\3"));
    EXPECT_EQ(refusalOf([&] { messages(); }),
              one + "written by another Plotwerk (version 3 of the format)");
    putBytes(std::string(whole).erase(documentAt, beginning - documentAt)); // then a message is it
    EXPECT_EQ(refusalOf([&] { messages(); }), one + "damaged at byte 2");

    putBytes("");
    EXPECT_FALSE(LeftJournal::lock(path)) << "what couldn't be deleted is emptied";
    EXPECT_FALSE(LeftJournal::look(path));
    putBytes(whole);
    const fs::path link = directory / "link", folderOfThatName = directory / "d",
                   pipe = directory / "p";
    fs::create_symlink(path, link);
    fs::create_directory(folderOfThatName);
    mkfifo(pipe.c_str(), 0600);
    for (const auto &[wrong, reason] : {std::pair(link, "Too many levels of symbolic links"),
                                        {folderOfThatName, "Is a directory"},
                                        {pipe, "not a journal"}}) {
        const fs::path &name = wrong; // for clang
        EXPECT_EQ(refusalOf([&] { LeftJournal::lock(name); }), name.string() + ": " + reason);
    }
    EXPECT_EQ(refusalOf([&] { LeftJournal::look(pipe); }), pipe.string() + ": not a journal");
}

TEST_F(JournalFileTest, KeepsWhatItHasWhereItCannotBeWritten) {
    const std::string refusal = "can't write " + path.string() + ": ";
    document.sources.at(0).tables.at(0) = {};
    document.sources.at(0).tables.at(0).x.values.assign(20'000, 0.1);
    JournalFile file(path, document, 0);
    file.append({"first"});
    const std::uintmax_t size = fs::file_size(path);
    withFilesOf(size + 10, [&] {
        EXPECT_EQ(refusalOf([&] { file.append({"second"}); }), refusal + "File too large");
    });
    EXPECT_EQ(fs::file_size(path), size);
    file.append({"third"});
    for (const rlim_t room : {10, 100, 100'000, 160'500}) // in the head, in what is gathered, ...
        withFilesOf(room, [&] {
            EXPECT_EQ(refusalOf([&] { JournalFile(path, document, 0); }),
                      refusal + "File too large");
        });
    EXPECT_EQ(openFiles(), 1);
    const fs::path place = std::exchange(path, directory / "moved");
    fs::copy_file(place, directory / "copy");
    fs::rename(place, path);
    fs::create_directory(place); // which can't be replaced, nor deleted as a file
    EXPECT_EQ(refusalOf([&] { JournalFile(place, document, 0); }), refusal + "Is a directory");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), {}), 3);
    file.remove();
    EXPECT_EQ(fs::file_size(path), 0U);
    path = directory / "copy";
    EXPECT_EQ(messages(), (std::vector<std::string>{"first", "third"}));
}

// So that documents can be saved.
TEST_F(JournalFileTest, LeavesTheLastSixteenDescriptorsForOthers) {
    rlimit descriptors{};
    getrlimit(RLIMIT_NOFILE, &descriptors);
    const int next = dup(0);
    close(next);
    write({});
    for (const bool are : {false, true}) {
        const rlimit few{static_cast<rlim_t>(next + 16 + are), descriptors.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        const std::string locking = refusalOf([&] { LeftJournal::lock(path); });
        const std::string writing = refusalOf([&] { write({}); });
        EXPECT_NO_THROW(removeOldJournals(directory, std::time(nullptr) + 100'000));
        setrlimit(RLIMIT_NOFILE, &descriptors);
        const std::string reason = path.string() + ": Too many open files";
        EXPECT_EQ(locking, are ? "" : reason);
        EXPECT_EQ(writing, are ? "" : "can't write " + reason);
    }
}

// The log says so once; changes try to begin it anew, and take a twentieth of the time for that.
TEST_F(JournalFileTest, GoesOnOnceItCanBeWrittenAgain) {
    const fs::path place = path;
    const auto message = [] { return GatheredBytes(); };
    const auto begin = 1'000'000s;
    Journal journal(place);
    document.name = "doc";
    document.revision = 1;
    const auto addAt = [&](std::chrono::nanoseconds time) {
        clockIsAt = begin + time;
        journal.add(document, {}, message);
        return journal.holdsAll();
    };
    testing::internal::CaptureStderr();
    putBytes("in the way of the directory");
    eachLook = 10ms;
    EXPECT_FALSE(addAt(0s));
    EXPECT_FALSE(addAt(0s));
    fs::remove(place);
    EXPECT_FALSE(addAt(1410ms - 1ns)) << "a second after it had failed, and twenty times 20 ms";
    EXPECT_TRUE(addAt(1410ms));
    eachLook = 0ms;
    EXPECT_EQ(openFiles(), 1);

    // one that lacks a message says so
    path = journalPaths(place).at(0);
    withFilesOf(fs::file_size(path) + 5, [&] { EXPECT_FALSE(addAt(2s)); });
    EXPECT_TRUE(asLeft(path)->state.incomplete);
    EXPECT_FALSE(addAt(3s - 1ns));
    EXPECT_TRUE(addAt(3s));
    EXPECT_FALSE(asLeft(path)->state.incomplete);
    const std::string name = "plotwerkd: warning: the journal of \"doc\" ";
    const std::string ends = name + "ends, and a crash would lose what changes from here on: ";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              ends + "can't create " + place.string() + '\n' + name + "goes on\n" + ends +
                  "can't write " + path.string() + ": File too large\n" + name + "goes on\n");

    // whether somebody has deleted it is looked at once a second
    EXPECT_TRUE(addAt(5s));
    fs::remove(path);
    EXPECT_FALSE(addAt(6s - 1ns));
    EXPECT_TRUE(addAt(6s));
    EXPECT_TRUE(fs::exists(path));
    withFilesOf(fs::file_size(path) + 5, [&] { EXPECT_FALSE(addAt(6s)); });
    journal.remove();
    EXPECT_FALSE(journal.holdsAll());
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(openFiles(), 0);
    EXPECT_TRUE(addAt(6s)) << "for what is changed later";
}

// That of a document that was brought back stays until there is a new one in its place.
TEST_F(JournalFileTest, TakesThePlaceOfTheOneThatItsDocumentWasBroughtBackFrom) {
    const auto message = [] { return GatheredBytes(); };
    document.revision = 1;
    constexpr auto latest = std::chrono::nanoseconds(6'000'000'000s);
    for (const auto &[room, wasIncomplete] :
         {std::pair(false, false), std::pair(false, true), std::pair(true, true)}) {
        write({"first"});
        const std::uintmax_t size = fs::file_size(path);
        Journal journal(directory);
        if (wasIncomplete) LeftJournal::lock(path)->setIncomplete();
        clockIsAt = latest;
        withFilesOf(100, [&] {
            auto left = LeftJournal::lock(path);
            left->setStamp(7);
            left->beginAttempt(0);
            journal.takeOver(document, std::move(*left));
        });
        EXPECT_FALSE(LeftJournal::lock(path)) << "nobody else's";
        const JournalState state = asLeft(path)->state;
        EXPECT_EQ(std::tuple(state.incomplete, state.attempts, state.stamp),
                  std::tuple(wasIncomplete, 0, 7));
        EXPECT_TRUE(journal.holdsAll()) << "what it was brought back from";
        journal.setFront();
        EXPECT_GE(asLeft(path)->state.stamp, latest.count());
        clockIsAt = latest - 1h;
        journal.add(document, {}, message);
        EXPECT_TRUE(asLeft(path)->state.incomplete);
        EXPECT_FALSE(journal.holdsAll());
        clockIsAt = latest + 1h;
        if (room) journal.add(document, {}, message);
        EXPECT_EQ(journal.holdsAll(), room);
        EXPECT_EQ(asLeft(path)->state.incomplete, !room);
        EXPECT_EQ(fs::file_size(path) == size, !room);
        EXPECT_EQ(openFiles(), 1);
        journal.remove();
        EXPECT_FALSE(journal.holdsAll());
        EXPECT_FALSE(fs::exists(path));
        EXPECT_EQ(openFiles(), 0);
    }

    // whose stamp is later than the clock, which was set back
    clockIsAt = latest;
    write({});
    LeftJournal::lock(path)->setStamp(latest.count() + 5);
    Journal journal(directory), other(directory);
    journal.takeOver(document, std::move(*LeftJournal::lock(path)));
    EXPECT_EQ(asLeft(path)->state.stamp, latest.count() + 5);
    other.setFront();
    journal.setFront();
    other.write(document);
    std::set<std::int64_t> stamps;
    for (const fs::path &each : journalPaths(directory)) stamps.insert(asLeft(each)->state.stamp);
    EXPECT_EQ(stamps.size(), 2U);
    EXPECT_GT(*stamps.begin(), latest.count() + 5);
    EXPECT_EQ(*stamps.rbegin(), asLeft(path)->state.stamp);
}

TEST_F(JournalFileTest, IsBroughtBackThreeTimesADayWhenThatEndsTheProcess) {
    constexpr std::time_t day = 24 * 3600, midnight = 20'000 * day;
    write({});
    setTime(path, 1'000'000'000);
    for (int i = 0; i < 5; ++i) {
        auto left = LeftJournal::lock(path);
        left->beginAttempt(midnight);
        left->endAttempt();
    }
    for (const std::time_t now : {midnight, midnight + day, midnight - 1}) {
        for (int i = 0; i < 3; ++i) LeftJournal::lock(path)->beginAttempt(now);
        const std::time_t later = now == midnight ? midnight + day - 1 : now;
        EXPECT_EQ(refusalOf([&] { LeftJournal::lock(path)->beginAttempt(later); }),
                  path.string() +
                      ": 3 attempts to bring it back have ended the process; tomorrow it is "
                      "tried again");
    }
    LeftJournal::lock(path)->setStamp(9);
    LeftJournal::lock(path)->setIncomplete();
    LeftJournal::lock(path)->setFound(8);
    EXPECT_EQ(LeftJournal::lock(path)->lastChange, 1'000'000'000) << "it is no younger for that";
    EXPECT_EQ(LeftJournal::lock(path)->state.dayFound, 8U);
}

// The age of what was left is known only from where it was found so; the document may have been
// open unchanged for long.
TEST_F(JournalFileTest, GoesAMonthAfterItWasFoundOrBeyondAGigabyteUnlessInUse) {
    constexpr std::time_t day = 24 * 3600;
    const std::time_t now = std::time(nullptr);
    const JournalFile used(directory / "used.journal", document, 0);
    const JournalFile begun(directory / "begun.journal", document, 0);
    fs::rename(directory / "begun.journal", directory / "begun.journal.new");
    JournalFile(directory / "deleted.journal", document, 0).setDeleted();
    EXPECT_FALSE(LeftJournal::lock(directory / "deleted.journal"));
    const std::tuple<const char *, bool, std::time_t, uintmax_t, int> files[] = {
        // days to stay
        {"used.journal", false, 40 * day, 0, 99},
        {"begun.journal.new", false, 40 * day, 0, 99},
        {"young.journal", true, day - 1, 2'000'000, 31},
        {"large.journal", true, day, 598'000'000, 30},
        {"larger.journal", true, 20 * day, 300'000'000, 30},
        {"last.journal", true, 29 * day, 100'000'000, 30}, // 1 GB in all
        {"beyond.journal", true, 30 * day, 0, 0},
        {"old.journal", true, 99 * day, 0, 0},
        {"other.journal", false, 30 * day, 1, 0},
        {"no.journal", false, 30 * day + 1, 1, -1},
        {"emptied.journal", false, 0, 0, -1},
        {"deleted.journal", false, 0, 0, -1},
        {"young.journal.new", false, day, 0, 0},
        {"unfinished.journal.new", false, day + 1, 0, -1},
        {"other.json", false, 99 * day, 0, 99}};
    for (const auto &[name, isJournal, age, size, daysToStay] : files) {
        const fs::path file = directory / name;
        if (isJournal) const JournalFile written(file, document, 0);
        std::ofstream(file, std::ios::app);
        if (size > 0) fs::resize_file(file, size);
        setTime(file, now - age);
    }
    for (const int later : {0, 0, 1, 2, 29, 30, 31, 32}) {
        testing::internal::CaptureStderr();
        removeOldJournals(directory, now + later * day);
        const std::string log = testing::internal::GetCapturedStderr();
        for (const auto &[name, isJournal, age, size, daysToStay] : files)
            EXPECT_EQ(fs::exists(directory / name), later <= daysToStay) << name << later;
        const bool tells = log.find("removed what was left behind of \"") != std::string::npos;
        EXPECT_EQ(tells, later == 1 || later >= 31) << log;
        EXPECT_EQ(log.find("other.journal: not a journal\n") != log.npos, later == 1) << log;
    }
}

TEST_F(JournalFileTest, IsOutgrownByMoreThan16MBAndFourTimesItsDocument) {
    for (const std::size_t values : {1U, 700'000U}) {
        document.sources.at(0).tables.at(0) = {};
        document.sources.at(0).tables.at(0).x.values.resize(values);
        JournalFile file(path, document, 0);
        const auto most =
            std::max<std::size_t>(16 << 20, 4 * static_cast<std::size_t>(bytesOf(document)));
        EXPECT_EQ(most > 16 << 20, values > 1);
        file.append({std::string(most - 32, 'm')});
        for (const bool isMore : {false, true}) {
            file.append({""});
            EXPECT_EQ(file.isOutgrown(document), isMore) << values;
        }
    }
}

// What a message leaves in the document here is its number.
TEST_F(JournalFileTest, IsBegunAnewWithTheDocumentWhereMessagesAreNotToBeRepeated) {
    document.savedRevision = document.revision;
    Journal journal(directory);
    int number = 0, asked = 0;
    const auto add = [&](std::chrono::duration<double> time, std::size_t size = 1,
                         bool isData = true) {
        document.fit.chiSquare = ++number;
        journal.add(document, time, [&]() -> std::optional<GatheredBytes> {
            ++asked;
            if (!isData) return std::nullopt;
            GatheredBytes bytes;
            bytes.putCopy(std::string(size, 'm'));
            return bytes;
        });
        if (journalPaths(directory).empty()) return std::pair(0, 0);
        auto left = asLeft(journalPaths(directory).at(0));
        const int written = static_cast<int>(left->document().fit.chiSquare);
        int repeated = 0;
        while (left->nextMessage()) ++repeated;
        return std::pair(written, repeated);
    };
    const auto none = std::pair(0, 0);
    EXPECT_EQ(add(0s), none) << "its file has it all";
    document.revision = 1;
    EXPECT_EQ(add(99s), std::pair(2, 0)) << "with what made it differ from that";
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(add(4s), std::pair(2, 1));
    EXPECT_EQ(add(6s), std::pair(2, 2)) << "10 s in all";
    EXPECT_EQ(add(1ns), std::pair(5, 0));
    EXPECT_EQ(add(10s), std::pair(5, 1));
    EXPECT_EQ(add(0s, 1, false), std::pair(7, 0)) << "one that can't be repeated";
    EXPECT_EQ(add(0s, 17 << 20), std::pair(7, 1));
    EXPECT_EQ(add(0s), std::pair(9, 0)) << "outgrown";
    EXPECT_EQ(asked, 5);

    // with memory that was set aside, where none is left
    for (const bool aside : {true, false}) {
        if (aside) Journal::setRoomAside();
        bool first = true;
        journal.add(document, {}, [&] {
            if (std::exchange(first, false)) throw std::bad_alloc();
            return GatheredBytes();
        });
        EXPECT_EQ(journal.holdsAll(), aside);
        EXPECT_EQ(add(0s), std::pair(9, 2));
    }
}
