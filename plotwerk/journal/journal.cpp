#include "plotwerk/journal/journal.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/stateDirectory.h"
#include "plotwerk/model/change.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

// Messages that took longer than this in all are not to be repeated one by one.
static constexpr std::chrono::seconds longestReplay{10};

static std::int64_t latestStamp = 0;

Journal::Journal(fs::path place) : directory(std::move(place)) {
}

static void tell(const std::string &name, const char *what, const char *reason = "") noexcept {
    logDone(LogLevel::warning, [&] { return "the journal of \"" + name + "\" " + what + reason; });
}

// What writing takes: of a document only a part at a time is held.
static constexpr std::size_t roomToWrite = 1 << 20;
static std::unique_ptr<char[]> room;

void Journal::setRoomAside() {
    if (!room) room = std::make_unique_for_overwrite<char[]>(roomToWrite);
}

template<class Work> static void withRoom(Work work) {
    try {
        work();
    } catch (const std::bad_alloc &) {
        if (!room) throw;
        room.reset();
        work();
    }
}

// Work on the file. A failure ends it, and what is written next must be the whole document.
template<class Work> void Journal::attempt(const Document &document, Work work) {
    try {
        withRoom(work);
        if (nextTry) tell(document.name, "goes on");
        nextTry.reset();
    } catch (const std::exception &exception) {
        const bool isFirst = !nextTry;
        nextTry = Clock::now() + std::chrono::seconds(1);
        if (isFirst)
            tell(document.name,
                 "ends, and a crash would lose what changes from here on: ", reasonOf(exception));
    }
}

// The old file stays ours until the new one has taken its place. Somebody may have deleted the
// directory, too.
void Journal::writeFile(const fs::path &path, const Document &document) {
    createPrivately(directory);
    file = JournalFile(path, document, stamp);
    old.reset();
    lacksChanges = false;
    replayTime = {};
}

void Journal::write(const Document &document) {
    attempt(document, [&] {
        writeFile(file  ? file->path()
                  : old ? old->path
                        : JournalFile::freePath(directory),
                  document);
    });
}

void Journal::takeOver(const Document &document, LeftJournal left) {
    stamp = left.state.stamp;
    latestStamp = std::max(latestStamp, stamp);
    old = std::move(left);
    write(document);
    if (old) old->endAttempt();
}

// Attempts that fail take a twentieth of the time.
void Journal::tryToBegin(const Document &document) {
    const auto begin = Clock::now();
    if (nextTry && begin < *nextTry) return;
    write(document);
    if (nextTry) *nextTry += 20 * (Clock::now() - begin);
}

// Looked at once a second: it takes as long as writing a message.
bool Journal::isGone() {
    const auto now = Clock::now();
    if (now < nextLook) return false;
    nextLook = now + std::chrono::seconds(1);
    return file->isGone();
}

void Journal::add(const Document &document, std::chrono::duration<double> time,
                  const MessageAsData &message) {
    if (!file || nextTry) {
        // Until then a file holds all that anybody would save.
        if (!hasUnsavedChanges(document)) return;
        tryToBegin(document);
        if (nextTry) setIncomplete();
        return;
    }
    replayTime += time;
    const bool gone = isGone();
    attempt(document, [&] {
        const bool isDue = gone || file->isOutgrown(document) || replayTime > longestReplay;
        const auto record = isDue ? std::nullopt : message();
        if (record)
            file->append(record->pieces());
        else
            writeFile(fs::path(file->path()), document);
    });
    if (nextTry) setIncomplete();
}

// Of what was written before it failed.
void Journal::setIncomplete() {
    lacksChanges = true;
    if (file) file->setIncomplete();
    if (old) old->setIncomplete();
}

// Later than all others, also where the clock was set back.
void Journal::setFront() {
    using namespace std::chrono;
    const auto now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    stamp = latestStamp = std::max<std::int64_t>(now, latestStamp + 1);
    if (file) file->setStamp(stamp);
    if (old) old->setStamp(stamp);
}

void Journal::setDeleted() {
    if (file) file->setDeleted();
    if (old) old->remove();
}

void Journal::remove() {
    if (file) file->remove();
    if (old) old->remove();
    file.reset();
    old.reset();
    nextTry.reset();
}

} // namespace plotwerk
