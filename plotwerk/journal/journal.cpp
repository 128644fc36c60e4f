#include "plotwerk/journal/journal.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/model/change.h"

#include <exception>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

// Messages that took longer than this in all are not to be repeated one by one.
static constexpr std::chrono::seconds longestReplay{10};

Journal::Journal(fs::path place) : directory(std::move(place)) {
}

static void tellEnd(const std::string &name, const char *reason) noexcept {
    try {
        log(LogLevel::warning,
            "the journal of \"" + name +
                "\" ends, and a crash would lose what changes from here on: " + reason);
    } catch (const std::exception &) { // no memory for the line
    }
}

// Work on the file; a failure ends it.
template<class Work> void Journal::attempt(const Document &document, Work work) {
    try {
        work();
    } catch (const std::exception &exception) {
        failed = true;
        if (file) file->setIncomplete();
        tellEnd(document.name, reasonOf(exception));
    }
}

// The old file stays ours until the new one has taken its place.
void Journal::writeFile(const fs::path &path, const Document &document) {
    file = JournalFile(path, document, stamp);
    replayTime = {};
}

void Journal::write(const Document &document) {
    if (failed) return;
    attempt(document,
            [&] { writeFile(file ? file->path() : JournalFile::freePath(directory), document); });
}

void Journal::write(const Document &document, const fs::path &path) {
    attempt(document, [&] { writeFile(path, document); });
}

void Journal::add(const Document &document, std::chrono::duration<double> time,
                  const MessageAsData &message) {
    if (failed) return;
    if (!file) {
        // Until then a file holds all that anybody would save.
        if (hasUnsavedChanges(document)) write(document);
        return;
    }
    replayTime += time;
    attempt(document, [&] {
        std::optional<GatheredBytes> record;
        if (!file->isOutgrown(document) && replayTime <= longestReplay) record = message();
        if (record)
            file->append(record->pieces());
        else
            writeFile(fs::path(file->path()), document);
    });
}

void Journal::setFront() {
    using namespace std::chrono;
    stamp = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    if (file) file->setStamp(stamp);
}

void Journal::remove() {
    if (file) file->remove();
    file.reset();
    failed = false;
}

} // namespace plotwerk
