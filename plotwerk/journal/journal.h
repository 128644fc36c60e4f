// journal.h - how an open document keeps its journal.
//
// It gets one as soon as it holds what no file does: written as it is after the first message that
// changed it, and continued by the messages after that. Where the file can't be written, the log
// says so once, and changes from time to time try to begin it anew: what was done stays done, and
// none of the functions throws.
#ifndef PLOTWERK_JOURNAL_JOURNAL_H
#define PLOTWERK_JOURNAL_JOURNAL_H

#include "plotwerk/journal/bytes.h"
#include "plotwerk/journal/journalFile.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace plotwerk {

class Journal {
  public:
    // In a file of this directory, which is there.
    explicit Journal(std::filesystem::path directory);

    // Begins the file, or begins it anew, with the document as it is.
    void write(const Document &document);

    // The same in the place of the file that the document was brought back from, with its stamp.
    // Where that fails the old file stays, as this journal's own.
    void takeOver(const Document &document, LeftJournal left);

    // Sets memory aside by which what is changed next can be written though it has left none.
    // Throws std::bad_alloc.
    static void setRoomAside();

    // A message has changed the document, in the given time. `message` gives it as data, or nothing
    // when it can't be repeated: its result is written then.
    using MessageAsData = std::function<std::optional<GatheredBytes>()>;
    void add(const Document &document, std::chrono::duration<double> time,
             const MessageAsData &message);

    // The document has come to the front.
    void setFront();

    // Removes the file: the document was saved, or is closed. Otherwise it is left behind.
    void remove();

    // The same, much faster; the file goes at a later start.
    void setDeleted();

    // Whether all of the document could be brought back. False also before it has been changed.
    bool holdsAll() const { return (file ? !file->isGone() : old.has_value()) && !lacksChanges; }

  private:
    using Clock = std::chrono::steady_clock;

    template<class Work> void attempt(const Document &document, Work work);
    void writeFile(const std::filesystem::path &path, const Document &document);
    void tryToBegin(const Document &document);
    bool isGone();
    void setIncomplete();

    std::filesystem::path directory;
    std::optional<JournalFile> file;
    std::optional<LeftJournal> old; // which no file has taken the place of
    std::int64_t stamp = 0;         // when it came to the front
    bool lacksChanges = false;      // that were made since
    std::chrono::duration<double> replayTime{};
    std::optional<Clock::time_point> nextTry; // since it failed
    Clock::time_point nextLook;               // whether somebody has deleted the file
};

} // namespace plotwerk

#endif
