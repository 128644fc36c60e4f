// journals.h - the journals of the open documents.
//
// A document has one as soon as it holds what no file does: written as it is after the first
// message that changed it, and continued by the messages after that.
#ifndef PLOTWERK_JOURNAL_JOURNALS_H
#define PLOTWERK_JOURNAL_JOURNALS_H

#include "plotwerk/journal/journalFile.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

namespace plotwerk {

// Where a journal can't be written, the log says so once, and the document has none until it is
// saved: what was done stays done. Documents are known by their addresses.
class Journals {
  public:
    // Of files in this directory, which is there.
    explicit Journals(std::filesystem::path directory);

    // To be called for a document before anything else is, and as the last for one that goes, whose
    // journal is removed.
    void open(const Document &document);
    void close(const Document &document);

    // Begins the document's journal, or begins it anew, with the document as it is.
    void write(const Document &document);

    // The same in the file that the document was brought back from.
    void write(const Document &document, const std::filesystem::path &path);

    // A message has changed the document, and took so long. `message` gives it as data, or nothing
    // when it can't be repeated: its result is written then.
    void add(const Document &document, std::chrono::duration<double> time,
             const std::function<std::optional<std::string>()> &message);

    void setFront(const Document &document);

    // The document was saved: removes its journal.
    void remove(const Document &document);

    // False after a failure.
    bool holds(const Document &document) const;

    const std::filesystem::path directory;

  private:
    struct Journal {
        std::optional<JournalFile> file;
        std::int64_t stamp = 0;
        std::chrono::duration<double> replayTime{};
        bool failed = false;
    };
    Journal *of(const Document &document);
    static void writeFile(Journal &journal, std::filesystem::path path, const Document &document);

    std::unordered_map<const Document *, Journal> journals;
};

} // namespace plotwerk

#endif
