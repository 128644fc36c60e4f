#include "plotwerk/journal/journals.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"

#include <exception>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

// Messages that took longer than this in all are not to be repeated one by one.
static constexpr std::chrono::seconds longestReplay{10};

Journals::Journals(fs::path place) : directory(std::move(place)) {
}

void Journals::open(const Document &document) {
    journals[&document];
}

// Does the work on the journal's file; a failure ends the journal.
template<class Journal, class Work>
static void attempt(Journal &journal, const Document &document, Work work) {
    try {
        work();
    } catch (const std::exception &exception) {
        journal.failed = true;
        log(LogLevel::warning,
            "the journal of \"" + document.name +
                "\" ends, and a crash would lose what changes from here on: " + exception.what());
        if (journal.file) journal.file->setIncomplete();
    }
}

// The path's old file, if there is one, stays ours until the new one has taken its place.
void Journals::writeFile(Journal &journal, fs::path path, const Document &document) {
    journal.file = JournalFile(std::move(path), document, journal.stamp);
    journal.replayTime = {};
}

Journals::Journal *Journals::of(const Document &document) {
    const auto found = journals.find(&document);
    return found == journals.end() ? nullptr : &found->second;
}

void Journals::write(const Document &document) {
    Journal *journal = of(document);
    if (!journal || journal->failed) return;
    attempt(*journal, document, [&] {
        writeFile(*journal,
                  journal->file ? journal->file->path() : JournalFile::freePath(directory),
                  document);
    });
}

void Journals::write(const Document &document, const fs::path &path) {
    if (Journal *journal = of(document))
        attempt(*journal, document, [&] { writeFile(*journal, path, document); });
}

void Journals::add(const Document &document, std::chrono::duration<double> time,
                   const std::function<std::optional<std::string>()> &message) {
    Journal *journal = of(document);
    if (!journal || journal->failed) return;
    if (!journal->file) {
        // Until then a file holds all that anybody would save.
        if (document.changed) write(document);
        return;
    }
    journal->replayTime += time;
    if (journal->file->isOutgrown() || journal->replayTime > longestReplay) {
        write(document);
        return;
    }
    attempt(*journal, document, [&] {
        if (const auto record = message())
            journal->file->append(*record);
        else
            writeFile(*journal, journal->file->path(), document);
    });
}

void Journals::setFront(const Document &document) {
    using namespace std::chrono;
    Journal *journal = of(document);
    if (!journal) return;
    journal->stamp = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    if (journal->file) journal->file->setStamp(journal->stamp);
}

void Journals::remove(const Document &document) {
    Journal *journal = of(document);
    if (!journal) return;
    if (journal->file) journal->file->remove();
    journal->file.reset();
    journal->failed = false;
}

void Journals::close(const Document &document) {
    remove(document);
    journals.erase(&document);
}

bool Journals::holds(const Document &document) const {
    const auto found = journals.find(&document);
    return found != journals.end() && found->second.file && !found->second.failed;
}

} // namespace plotwerk
