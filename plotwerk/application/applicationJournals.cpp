// The journals of the open documents, and what was left behind by a process that has ended.
#include "plotwerk/application/application.h"
#include "plotwerk/base/bounds.h"
#include "plotwerk/base/ending.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/memoryReserve.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/stateDirectory.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/names.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <exception>
#include <unistd.h>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

void Application::keepJournals() {
    try {
        journals = stateDirectory("journal");
    } catch (const Refusal &refusal) {
        log(LogLevel::warning,
            std::string("no journals are kept, and a crash would lose unsaved changes: ") +
                refusal.what());
    }
}

// None that wasn't tried, since the process is to end; nor is it worth an end for lack of memory.
void Application::removeOldJournals() const {
    if (journals.empty() || endIsAskedFor()) return;
    try {
        plotwerk::removeOldJournals(journals, std::time(nullptr));
    } catch (const std::exception &exception) {
        logDone(LogLevel::warning,
                [&] { return std::string("old journals stay: ") + reasonOf(exception); });
    }
}

// Those in the directory that nobody uses, the one whose document was in front last at the end.
static std::vector<LeftJournal> leftJournals(const fs::path &directory) {
    if (access((directory / "").c_str(), R_OK | X_OK) != 0)
        logDone(LogLevel::warning, [&, error = errno] {
            return "can't look for documents in " + directory.string() + ": " +
                   std::strerror(error);
        });
    std::vector<LeftJournal> left;
    for (const fs::path &path : journalPaths(directory)) {
        try {
            if (auto journal = LeftJournal::look(path)) left.push_back(std::move(*journal));
        } catch (const std::exception &exception) {
            logDone(LogLevel::error, [&] {
                return std::string("can't bring back a document: ") + reasonOf(exception);
            });
        }
    }
    const auto byStamp = [](const LeftJournal &a, const LeftJournal &b) {
        return a.state.stamp < b.state.stamp;
    };
    std::sort(left.begin(), left.end(), byStamp);
    return left;
}

std::vector<std::string> Application::leftDocuments() const {
    constexpr std::size_t described = 10; // more would hide what else is to be read
    if (journals.empty()) return {};
    const std::vector<LeftJournal> left = leftJournals(journals);
    const std::size_t older = left.size() > described ? left.size() - described : 0;
    std::vector<std::string> lines;
    if (older == 1) lines.emplace_back("one older document");
    if (older > 1) lines.push_back(std::to_string(older) + " older documents");
    for (std::size_t i = older; i < left.size(); ++i) lines.push_back(descriptionOf(left[i]));
    return lines;
}

void Application::tellLeftJournals() const {
    for (const std::string &document : leftDocuments())
        log(LogLevel::info, document + " can be brought back by plotwerkd --recover");
}

// The document of the journal. While it is made it is the only one, under the name by which its
// messages call it, and no desktop knows of it.
Document Application::broughtBack(LeftJournal &journal, const Repeat &repeat,
                                  const GoesOn &goesOn) {
    bytesOfOthers = bytesOfDocuments();
    auto others = std::exchange(documents, {});
    Desktop *const theirDesktop = std::exchange(desktop, nullptr);
    const char separator = decimalSeparator;
    const auto restore = [&] {
        documents = std::move(others);
        bytesOfOthers = 0;
        desktop = theirDesktop;
        decimalSeparator = separator;
        lastError.clear();
    };
    try {
        {
            const WithMemoryOfDocuments asBefore;
            documents.push_back(std::make_unique<OpenDocument>(OpenDocument{journal.document()}));
        }
        lastError.clear();
        while (const auto message = journal.nextMessage()) {
            if (!goesOn()) throw Refusal("the process is to end");
            if (isRestoration(*message)) {
                const WithMemoryOfDocuments asBefore;
                restoreBy(*message, documents.front()->document);
                continue;
            }
            repeat(*message);
            if (!lastError.empty()) throw Refusal("can't be repeated: " + lastError);
        }
        Document document = std::move(documents.front()->document);
        restore();
        return document;
    } catch (...) {
        restore();
        throw;
    }
}

// By freeName, to a name that is taken already; in bytes, at most.
static constexpr std::size_t addedToTaken = 32;

// None of this may take the memory that is set aside for messages.
void Application::recoverFrom(LeftJournal &journal, const Repeat &repeat, const GoesOn &goesOn) {
    const WithoutReserve withoutReserve;
    Document document = broughtBack(journal, repeat, goesOn);
    const WithMemoryOfDocuments asBefore;
    const auto hasItsName = [&](const auto &open) { return open->document.name == document.name; };
    if (std::any_of(documents.begin(), documents.end(), hasItsName))
        document.name.resize(plw::prefixOfCharacters(document.name, longestName - addedToTaken));
    const Document &added = add(std::move(document));
    logDone(LogLevel::info, [&] { return "brought back " + descriptionOf(journal); });
    documents.back()->journal->takeOver(added, std::move(journal));
}

// The newest first: where the limits leave no room for all, it is the old ones that stay behind.
// Their order is that of the stamps, which they keep, and so it outlives an end in the middle.
void Application::recover(const Repeat &repeat, const GoesOn &goesOn) {
    if (journals.empty()) return;
    const std::size_t others = documents.size();
    const auto mayGoOn = [&] { return !endIsAskedFor() && goesOn(); };
    for (auto left = leftJournals(journals); !left.empty() && mayGoOn(); left.pop_back()) {
        std::optional<LeftJournal> journal;
        bool attempted = false;
        try {
            journal = LeftJournal::lock(left.back().path);
            if (!journal) continue; // somebody else has brought it back
            journal->beginAttempt(std::time(nullptr));
            attempted = true;
            recoverFrom(*journal, repeat, mayGoOn);
            std::rotate(documents.begin() + static_cast<std::ptrdiff_t>(others),
                        documents.end() - 1, documents.end());
        } catch (const std::exception &exception) {
            logDone(LogLevel::error, [&] {
                return "can't bring back " + descriptionOf(left.back()) + ": " +
                       reasonOf(exception);
            });
            if (attempted) journal->endAttempt();
        }
    }
    if (documents.size() > others) activate(documents.back()->document);
}

void Application::record(const Document &document, std::chrono::duration<double> time,
                         const Journal::MessageAsData &message) {
    auto &journal = openOf(document).journal;
    if (journal) journal->add(document, time, message);
}

// That may be asked to take no longer than a second, however many documents are open.
void Application::leave() {
    constexpr int mostRemoved = 500; // 50 ms
    int removed = 0;
    for (const auto &open : documents) {
        const bool unsaved = hasUnsavedChanges(open->document);
        if (unsaved) {
            const bool left = open->journal && open->journal->holdsAll();
            const char *fate = desktop ? "will be offered when plotwerk starts again"
                                       : "can be brought back by plotwerkd --recover";
            logDone(LogLevel::warning, [&] {
                return "unsaved changes of \"" + open->document.name + "\" " +
                       (left ? fate : "are lost");
            });
        } else if (open->journal) {
            ++removed <= mostRemoved ? open->journal->remove() : open->journal->setDeleted();
        }
    }
}

} // namespace plotwerk
