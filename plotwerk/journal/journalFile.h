// journalFile.h - the file in which an open document outlives its process.
//
// It holds the document as it was at one time and, in order, the messages that have changed it
// since. It belongs to the process that has it locked; a file that nobody has locked was left
// behind. Nothing is synced: it survives the end of its process, not that of the machine.
//
// Layout, in this machine's byte order: a Head, which holds a JournalState; then records, each the
// length of its payload (8 bytes), the payload's CRC-32 and the CRC-32 of these 12 bytes (4 each),
// and the payload. The first record tells what document it is, the second is the document in CBOR,
// the others are one message or one restoration (restoration.h) each.
#ifndef PLOTWERK_JOURNAL_JOURNALFILE_H
#define PLOTWERK_JOURNAL_JOURNALFILE_H

#include "plotwerk/model/document.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Owns an open file, and with it the lock.
class JournalDescriptor {
  public:
    explicit JournalDescriptor(int descriptor) : number(descriptor) {}
    JournalDescriptor(JournalDescriptor &&other) noexcept;
    JournalDescriptor &operator=(JournalDescriptor &&other) noexcept;
    ~JournalDescriptor();

    int number; // negative: none
};

// What is written anew while the file is in use.
struct JournalState {
    std::int64_t stamp = 0;         // orders the documents by when they were last in front
    std::uint32_t dayFound = 0;     // since 1970, when it was found left behind; 0: not yet
    std::uint32_t dayOfAttempt = 0; // the last one to bring it back
    std::uint32_t attempts = 0;     // of that day, which haven't come to an end
    std::uint32_t incomplete = 0;   // 1: changes are missing at the end
};

// A journal that is being written. Its file stays when this ends, unless it is removed.
class JournalFile {
  public:
    // Writes the document as it is now and takes the path's place, whatever was there.
    // Throws Refusal "can't write PATH: REASON", and then the path is as it was.
    JournalFile(std::filesystem::path path, const Document &document, std::int64_t stamp);

    // A path in the directory, by a name of 64 random bits.
    static std::filesystem::path freePath(const std::filesystem::path &directory);

    // Adds a message, given in pieces, in one write where the system takes it so. Throws Refusal as
    // above; nothing may be added after that.
    void append(const std::vector<std::string_view> &message);

    // The messages take more than four times the room of the document, and more than 16 MB: it is
    // time for a new file. More often, writing documents would cost more than writing messages.
    bool isOutgrown(const Document &document);

    // Somebody has deleted it: what is added is lost.
    bool isGone() const;

    void setStamp(std::int64_t stamp);

    // Notes that changes are missing from here on.
    void setIncomplete();

    void remove();

    // As good as removed: whoever finds the file does that. Takes a twentieth of the time.
    void setDeleted();

    const std::filesystem::path &path() const { return place; }

  private:
    std::filesystem::path place;
    JournalDescriptor file;
    JournalState state;
    std::uint64_t size = 0;     // of the whole file, in bytes
    std::uint64_t messages = 0; // where they begin
    double roomOfDocument = 0;  // when it was last counted
};

// A journal that was left behind.
class LeftJournal {
  public:
    // Locked while this lives. None when the file is gone, in use or empty. Throws Refusal "PATH:
    // REASON": can't be read, not a journal, of another version, damaged.
    static std::optional<LeftJournal> lock(const std::filesystem::path &path);

    // The same to be looked at only: nobody is kept from locking it, no file stays open.
    static std::optional<LeftJournal> look(const std::filesystem::path &path);

    // The file is there and holds nothing, or nothing that anybody would need.
    static bool isEmpty(const std::filesystem::path &path);

    std::filesystem::path path;         // of the journal
    std::string name;                   // of the document
    std::filesystem::path documentPath; // where it had been opened from or saved as; may be empty
    bool hasUnsavedChanges = false;     // when the file was begun
    std::time_t lastChange = 0;
    std::uint64_t size = 0; // of the file, in bytes
    JournalState state;

    // Both throw Refusal "PATH: REASON" where the file is damaged. What a process had not finished
    // to write when it ended is no damage: it was never answered.
    Document document();
    std::optional<std::string> nextMessage(); // after document()

    // Around an attempt to bring it back, however that goes, so that one which ends the process
    // isn't repeated for ever. beginAttempt throws Refusal "PATH: REASON" when three have, that
    // day.
    void beginAttempt(std::time_t now);
    void endAttempt();

    void setStamp(std::int64_t latest);
    void setIncomplete();
    void setFound(std::uint32_t day);
    void remove();

  private:
    LeftJournal(std::filesystem::path place, int descriptor);
    void readBeginning();
    std::optional<std::string> nextRecord();
    void noteState() const;

    JournalDescriptor file;
    std::uint64_t position = 0; // of the next record
};

// "NAME" of PATH as it was at TIME, for the log.
std::string descriptionOf(const LeftJournal &journal);

// The journals in the directory, those in use too.
std::vector<std::filesystem::path> journalPaths(const std::filesystem::path &directory);

// Removes what was left behind in the directory, and logs it: journals that were found so, by this,
// more than 30 days ago, and the oldest of the others beyond 1 GB in all; what is no journal after
// 30 days, files that were never finished, and empty ones, which couldn't be deleted. None goes on
// the day on which it is found, nor within a day after its last change.
void removeOldJournals(const std::filesystem::path &directory, std::time_t now);

} // namespace plotwerk

#endif
