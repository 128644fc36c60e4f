#include "plotwerk/journal/journalFile.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/journal/journal.h"
#include "tests/plotwerk/files/fullDocument.h"
#include "tests/support/temporaryFolder.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace plotwerk;

class JournalFileTest : public testing::Test {
  protected:
    void write(const std::vector<std::string> &messages) const {
        JournalFile file(path, document, 1);
        for (const std::string &message : messages) file.append({message});
    }

    std::string bytes() const {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
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

    const TemporaryFolder folder;
    const fs::path &directory = folder.path;
    fs::path path = directory / "one.journal";
    Document document = smallDocument();
};

TEST_F(JournalFileTest, HoldsTheDocumentAndItsMessagesForOneProcessAtATime) {
    document = fullDocument();
    document.path = "/some where/else";
    document.revision = 1;
    const std::vector<std::string> sent{"a", std::string("\0\xff\n", 3), "",
                                        std::string(3 << 20, 'm'), std::string(5000, 'p')};
    {
        JournalFile file(JournalFile::freePath(directory), document, 17);
        path = file.path();
        for (const std::string &message : sent) {
            std::vector<std::string_view> pieces{message};
            if (message.starts_with('p'))
                pieces.assign(message.size(), "p"); // of more than a write
            file.append(pieces);
        }
        file.setStamp(18);
        file.setIncomplete();
        EXPECT_FALSE(LeftJournal::lock(path)) << "while it is written";
        EXPECT_FALSE(LeftJournal::look(path)) << "while it is written";
    }
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    const auto seen = LeftJournal::look(path);
    EXPECT_TRUE(seen && LeftJournal::lock(path)) << "who looks keeps nobody from it";
    EXPECT_EQ(journalPaths(directory), std::vector<fs::path>{path});
    std::string head(20, '\0');
    std::ifstream(path).read(head.data(), 20);
    EXPECT_EQ(head, std::string("plotwerk journal\2\0\0\0", 20)) << "its version, for later ones";
    {
        const auto left = LeftJournal::lock(path);
        ASSERT_TRUE(left);
        EXPECT_EQ(left->name, document.name);
        EXPECT_EQ(left->documentPath, document.path);
        EXPECT_TRUE(left->hasUnsavedChanges);
        EXPECT_TRUE(left->state.incomplete);
        EXPECT_EQ(left->state.stamp, 18);
        EXPECT_EQ(left->lastChange, status.st_mtime);
        EXPECT_FALSE(LeftJournal::lock(path)) << "while it is read";
    }
    EXPECT_EQ(messages(), sent);
    EXPECT_EQ(linesOf(LeftJournal::lock(path)->document()), linesOf(document));

    // A new file in the old one's place, which a reader may have open, is locked from the
    // beginning.
    const auto left = LeftJournal::lock(path);
    const JournalFile next(path, smallDocument(), 0);
    EXPECT_FALSE(LeftJournal::lock(path));
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), {}), 1);
}

TEST_F(JournalFileTest, DropsWhatWasNotWrittenToItsEndAndRefusesAllOtherDamage) {
    write({});
    const std::size_t beginning = bytes().size();
    const std::vector<std::string> sent{"first", "second", "third"};
    write(sent);
    const std::string whole = bytes();
    constexpr std::size_t recordHeadSize = 16;
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
        EXPECT_THROW(messages(), Refusal) << length;
    }
    for (std::size_t i = 0; i<whole.size(); i += i> 150 && i + 150 < whole.size() ? 37 : 1) {
        std::string damaged = whole;
        damaged[i] ^= 0x10;
        putBytes(damaged);
        EXPECT_THROW(messages(), Refusal) << i;
    }
    putBytes("");
    EXPECT_FALSE(LeftJournal::lock(path)) << "what couldn't be deleted is emptied";
    putBytes(whole);
    const fs::path link = directory / "link.journal", folderOfThatName = directory / "d.journal";
    fs::create_symlink(path, link);
    fs::create_directory(folderOfThatName);
    for (const fs::path &wrong : {link, folderOfThatName}) {
        EXPECT_THROW(LeftJournal::lock(wrong), Refusal) << wrong;
        EXPECT_THROW(LeftJournal::look(wrong), Refusal) << wrong;
    }
}

TEST_F(JournalFileTest, KeepsWhatItHasWhenTheDiskIsFull) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const auto limitTo = [&](rlim_t size) {
        const rlimit limit{size, unlimited.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    {
        JournalFile file(path, document, 0);
        file.append({"first"});
        limitTo(fs::file_size(path) + 10);
        EXPECT_THROW(file.append({"second"}), Refusal);
        limitTo(fs::file_size(path) + 100);
        file.append({"third"});
        EXPECT_THROW(JournalFile(path, fullDocument(), 0), Refusal);
        EXPECT_THROW(JournalFile(directory / "two.journal", fullDocument(), 0), Refusal);

        // who keeps the journals goes on without one
        Journal journal(directory);
        document.revision = 1;
        limitTo(100);
        const auto message = [] { return GatheredBytes(); };
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < 2; ++i) journal.add(document, {}, message);
        EXPECT_FALSE(journal.holdsAll());
        limitTo(unlimited.rlim_cur);
        journal.add(document, {}, message);
        const bool atOnce = std::chrono::steady_clock::now() - begin < std::chrono::seconds(1);
        EXPECT_FALSE(atOnce && journal.holdsAll()) << "not tried at once";
        journal.remove();
        journal.add(document, {}, message);
        EXPECT_TRUE(journal.holdsAll());
        journal.remove();
    }
    EXPECT_EQ(messages(), (std::vector<std::string>{"first", "third"}));
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), {}), 1);

    // That of a document that was brought back stays until there is a new one, which comes once
    // there is room.
    const auto leftAt = [&] {
        limitTo(unlimited.rlim_cur);
        fs::copy_file(path, directory / "copy", fs::copy_options::overwrite_existing);
        return LeftJournal::lock(directory / "copy");
    };
    const auto message = [] { return GatheredBytes(); };
    for (const auto &[room, wasIncomplete] :
         {std::pair(false, false), std::pair(false, true), std::pair(true, true)}) {
        write({"first"});
        Journal journal(directory);
        if (wasIncomplete) LeftJournal::lock(path)->setIncomplete();
        limitTo(100);
        journal.takeOver(document, std::move(*LeftJournal::lock(path)));
        EXPECT_FALSE(LeftJournal::lock(path)) << "nobody else's";
        EXPECT_EQ(leftAt()->state.incomplete, wasIncomplete);
        EXPECT_TRUE(journal.holdsAll()) << "what it was brought back from";
        journal.setFront();
        EXPECT_GT(leftAt()->state.stamp, 1);
        limitTo(100);
        journal.add(document, {}, message);
        EXPECT_TRUE(leftAt()->state.incomplete);
        EXPECT_FALSE(journal.holdsAll());
        for (int i = 0; room && i < 100 && !journal.holdsAll(); ++i) {
            usleep(50'000);
            journal.add(document, {}, message);
        }
        EXPECT_EQ(journal.holdsAll(), room);
        EXPECT_EQ(leftAt()->state.incomplete, !room);
        journal.remove();
        EXPECT_FALSE(fs::exists(path));
    }
}

TEST_F(JournalFileTest, IsBroughtBackThreeTimesADayWhenThatEndsTheProcess) {
    constexpr std::time_t day = 24 * 3600, now = 2'000'000'000;
    write({});
    for (int i = 0; i < 5; ++i) {
        auto left = LeftJournal::lock(path);
        left->beginAttempt(now);
        left->endAttempt();
    }
    const timespec then{1'000'000'000, 0};
    const timespec times[] = {then, then};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    for (int i = 0; i < 3; ++i) LeftJournal::lock(path)->beginAttempt(now);
    EXPECT_THROW(LeftJournal::lock(path)->beginAttempt(now), Refusal);
    LeftJournal::lock(path)->beginAttempt(now + day);
    EXPECT_EQ(LeftJournal::lock(path)->lastChange, then.tv_sec) << "it is no younger for that";
}

// The age of what was left is known only from where it was found so; the document may have been
// open unchanged for long.
TEST_F(JournalFileTest, GoesAMonthAfterItWasFoundOrBeyondAGigabyteUnlessInUse) {
    constexpr std::time_t hour = 3600, day = 24 * hour;
    const std::time_t now = std::time(nullptr);
    const JournalFile used(directory / "used.journal", document, 0);
    const struct {
        const char *name;
        bool isJournal;
        std::time_t age;
        uintmax_t size;
        int daysToStay;
    } files[] = {{"used.journal", false, 40 * day, 0, 99},
                 {"large.journal", true, 10 * day, 600'000'000, 30},
                 {"larger.journal", true, 20 * day, 300'000'000, 30},
                 {"small.journal", true, 30 * day - 2 * hour, 100'000'000, 0},
                 {"old.journal", true, 99 * day, 0, 0},
                 {"young.journal", true, day - hour, 2'000'000, 31},
                 {"other.journal", false, 30 * day - hour, 1, 0},
                 {"no.journal", false, 30 * day + hour, 1, -1},
                 {"emptied.journal", false, 0, 0, -1},
                 {"young.journal.new", false, day - hour, 0, 0},
                 {"unfinished.journal.new", false, day + hour, 0, -1},
                 {"other.json", false, 99 * day, 0, 99}};
    for (const auto &each : files) {
        const fs::path name = directory / each.name;
        if (each.isJournal) const JournalFile written(name, document, 0);
        std::ofstream(name, std::ios::app);
        if (each.size > 0) fs::resize_file(name, each.size);
        const timespec then{now - each.age, 0};
        const timespec times[] = {then, then};
        ASSERT_EQ(utimensat(AT_FDCWD, name.c_str(), times, 0), 0);
    }
    rlimit descriptors{};
    getrlimit(RLIMIT_NOFILE, &descriptors);
    const rlimit few{18, descriptors.rlim_max}; // 16 of which are left for others
    setrlimit(RLIMIT_NOFILE, &few);
    EXPECT_NO_THROW(removeOldJournals(directory, now));
    setrlimit(RLIMIT_NOFILE, &descriptors);
    for (const int later : {0, 0, 1, 2, 29, 30, 31, 32}) {
        testing::internal::CaptureStderr();
        removeOldJournals(directory, now + later * day);
        const std::string log = testing::internal::GetCapturedStderr();
        for (const auto &each : files) {
            EXPECT_EQ(fs::exists(directory / each.name), later <= each.daysToStay)
                << each.name << " after " << later << " days";
        }
        const bool tells = log.find("removed what was left behind of \"") != std::string::npos;
        EXPECT_EQ(tells, later == 1 || later >= 31) << log;
    }
}

// What a message leaves in the document here is its number.
TEST_F(JournalFileTest, IsBegunAnewWithTheDocumentWhenItsMessagesOutgrowIt) {
    const auto valueIn = [&](const fs::path &file) {
        auto left = LeftJournal::lock(file);
        double value = left->document().fit.chiSquare;
        while (left->nextMessage()) ++value;
        return value;
    };
    const std::string text(10'000, 'm');
    const auto message = [&] {
        GatheredBytes bytes;
        bytes.putText(text);
        return bytes;
    };
    Journal journal(directory);
    journal.setFront();
    document.fit.chiSquare = 5;
    document.savedRevision = document.revision;
    journal.add(document, {}, message);
    EXPECT_TRUE(journalPaths(directory).empty()) << "the file has it all";

    document.revision = 1;
    uintmax_t largest = 0;
    std::size_t repeated = 0;
    for (int i = 0; i < 3000; ++i) {
        ++document.fit.chiSquare;
        journal.add(document, {}, [&]() -> std::optional<GatheredBytes> {
            if (i % 2000 == 7) return std::nullopt;
            ++repeated;
            return message();
        });
        largest = std::max(largest, fs::file_size(journalPaths(directory).at(0)));
    }
    EXPECT_GT(repeated, 2900U);
    EXPECT_GT(largest, 16U << 20);
    EXPECT_LT(largest, 17U << 20);
    path = journalPaths(directory).at(0);
    ++document.fit.chiSquare;
    journal.add(document, std::chrono::seconds(11), message);
    ++document.fit.chiSquare;
    journal.add(document, {}, message);

    const fs::path copy = directory / "copy.journal";
    fs::copy_file(path, copy);
    EXPECT_EQ(valueIn(copy), 3007);
    auto left = LeftJournal::lock(copy);
    EXPECT_GT(left->state.stamp, 0);
    EXPECT_TRUE(left->document().fit.chiSquare == 3006 && left->nextMessage());
    journal.remove();
    fs::remove(copy);

    // A document that has grown with its messages is not written anew as soon as a small one.
    journal.write(document);
    document.sources.at(0).tables.at(0).x.values.resize(1 << 20);
    path = journalPaths(directory).at(0);
    for (int i = 0; i < 2000; ++i) journal.add(document, {}, message);
    EXPECT_GT(fs::file_size(path), 18'000'000U);
    journal.remove();
    EXPECT_TRUE(journalPaths(directory).empty());
}
