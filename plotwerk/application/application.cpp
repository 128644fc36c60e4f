#include "plotwerk/application/application.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/programs.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/exchange.h"
#include "plotwerk/files/atomicFile.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/files/keptFile.h"
#include "plotwerk/fit/documentFit.h"
#include "plotwerk/model/change.h"
#include "plotwerk/model/names.h"
#include "plotwerk/model/ranges.h"
#include "plotwerk/model/structure.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace plotwerk {

namespace fs = std::filesystem;

static std::string inQuotes(std::string_view name) {
    return '"' + std::string(name) + '"';
}

Application::Application() {
    setBytesHeld([this] { return bytesHeld(); });
}

Application::~Application() {
    setBytesHeld(nullptr);
}

double Application::bytesOfDocuments() {
    double bytes = 0;
    for (const auto &open : documents) {
        if (open->countedAt != open->document.revision) {
            open->bytes = bytesOf(open->document);
            open->countedAt = open->document.revision;
        }
        bytes += open->bytes;
    }
    return bytes;
}

double Application::bytesHeld() {
    const double page = composition ? composition->bytes() : 0;
    return bytesOfOthers + bytesOfDocuments() + page +
           static_cast<double>(clipboard.dataText.size());
}

Document *Application::front() {
    return documents.empty() ? nullptr : &documents.back()->document;
}

Document &Application::document(std::string_view name) {
    for (const auto &open : documents) {
        if (open->document.name == name) return open->document;
    }
    throw Refusal("no document " + inQuotes(name));
}

void Application::requireRead(const Document &document) const {
    if (openOf(document).unread)
        throw Refusal("the document stands for a file that couldn't be opened");
}

void Application::activate(const Document &document) {
    const auto isIt = [&](const auto &open) { return &open->document == &document; };
    const auto found = std::find_if(documents.begin(), documents.end(), isIt);
    std::rotate(found, found + 1, documents.end());
    if (auto &journal = documents.back()->journal) journal->setFront();
    if (desktop) desktop->activated(documents.back()->document);
}

std::unique_ptr<Application::OpenDocument>
Application::made(Document document, const std::vector<std::string> &taken) {
    if (document.name.empty()) document.name = "Untitled";
    document.name = freeName(document.name, taken);
    auto open = std::make_unique<OpenDocument>(OpenDocument{.document = std::move(document)});
    if (!journals.empty()) {
        open->journal.emplace(journals);
        open->journal->setFront();
    }
    return open;
}

void Application::putInFront(std::unique_ptr<OpenDocument> open) {
    documents.push_back(std::move(open));
    try {
        if (desktop) desktop->opened(documents.back()->document);
    } catch (...) {
        documents.pop_back();
        throw;
    }
}

Document &Application::add(Document document) {
    requireRoom(bytesOf(document));
    std::vector<std::string> taken;
    for (const auto &open : documents) taken.push_back(open->document.name);
    putInFront(made(std::move(document), taken));
    return documents.back()->document;
}

Document &Application::create(Document document) {
    Journal::setRoomAside();
    Document &created = add(std::move(document));
    if (auto &journal = openOf(created).journal) journal->write(created);
    return created;
}

static std::string nameAfter(const fs::path &path) {
    return nameOf(plw::utf8Of(path.filename().string()));
}

// The document in a file of any kind. Its name may be taken.
static Document documentIn(const fs::path &path, char decimalSeparator) {
    std::string bytes = readWholeFile(path);
    Document document;
    try {
        if (beginsAsDocument(bytes)) {
            document = documentOf(std::move(bytes));
            document.path = path;
        } else {
            addDataFile(document, nameAfter(path), std::move(bytes), decimalSeparator);
        }
    } catch (const Refusal &refusal) {
        throw Refusal("can't open " + path.string() + ": " + refusal.what());
    }
    if (document.name.empty()) document.name = nameAfter(path);
    return document;
}

fs::path Application::given(const fs::path &path) {
    if (path.empty()) throw Refusal("no path is given");
    return fs::absolute(path);
}

void Application::takeIn(const fs::path &file) {
    try {
        const fs::path path = given(file);
        add(documentIn(path, decimalSeparator));
        logDone(LogLevel::info,
                [&] { return "opened " + path.string() + " as " + inQuotes(front()->name); });
    } catch (...) {
        Document empty;
        if (file.filename().native().size() <= NAME_MAX) empty.name = nameAfter(file);
        add(std::move(empty));
        documents.back()->unread = true;
        throw;
    }
}

// Whether the path, which may be empty, leads to that file, however it is spelled.
static bool isFile(const fs::path &path, const fs::path &file) {
    std::error_code none;
    return !path.empty() && fs::equivalent(path, file, none);
}

Document &Application::open(const fs::path &file, bool rangeOverAll) {
    Journal::setRoomAside();
    const auto isIt = [&](const auto &open) { return isFile(open->document.path, file); };
    const auto found = std::find_if(documents.begin(), documents.end(), isIt);
    if (found != documents.end())
        activate((*found)->document);
    else
        takeIn(file);
    Document &document = *front();
    if (rangeOverAll) {
        changeView(document, plotwerk::rangeOverAll);
        record(document, {}, [] { return std::nullopt; });
    }
    return document;
}

const Application::OpenDocument &Application::openOf(const Document &document) const {
    const auto isIt = [&](const auto &open) { return &open->document == &document; };
    return **std::find_if(documents.begin(), documents.end(), isIt);
}

Application::OpenDocument &Application::openOf(const Document &document) {
    return const_cast<OpenDocument &>(std::as_const(*this).openOf(document));
}

void Application::restore(Document &document, Document version, const ColumnOrigins &origins,
                          bool isSaved) {
    become(document, std::move(version), isSaved);
    record(document, {}, [&] { return encodedRestoration(document, origins); });
}

void Application::forgetReplaced(const fs::path &file, const Document *except) {
    for (const auto &open : documents) {
        if (&open->document == except || !isFile(open->document.path, file)) continue;
        forgetSaved(open->document);
        record(open->document, {}, [] { return std::nullopt; });
    }
}

void Application::save(const Document &saved, const fs::path &path, bool binary, bool ownPath) {
    OpenDocument &open = openOf(saved);
    Document &document = open.document;
    open.lastSaveSucceeded = false;
    if (path.empty() && document.path.empty()) throw Refusal("no path of its own");
    const fs::path target = path.empty() ? document.path : given(path);
    fs::path own = ownPath ? target : document.path; // what may fail comes first
    writeWholeFile(target, [&](std::ostream &stream) { writeDocument(stream, saved, binary); });
    open.lastSaveSucceeded = true;
    document.path.swap(own);
    if (document.path == target || isFile(document.path, target)) {
        setSaved(document);
        if (open.journal) open.journal->remove();
    }
    forgetReplaced(target, &saved);
    logDone(LogLevel::info,
            [&] { return "saved " + inQuotes(saved.name) + " in " + target.string(); });
}

bool Application::lastSaveSucceeded(const Document &document) const {
    return openOf(document).lastSaveSucceeded;
}

void Application::close(const Document &document, bool keepChanges) {
    auto next = documents.size() == 1 ? made({}, {}) : nullptr; // what may fail comes first
    if (keepChanges && hasUnsavedChanges(document)) {
        if (desktop && desktop->asksToSave(document)) return;
        const fs::path kept = keepDocument(document);
        logDone(LogLevel::info, [&] {
            return "unsaved changes of " + inQuotes(document.name) + " kept in " + kept.string();
        });
    }
    if (desktop) desktop->closing(document);
    if (auto &journal = openOf(document).journal) journal->remove();
    std::erase_if(documents, [&](const auto &open) { return &open->document == &document; });
    if (next) putInFront(std::move(next));
}

void Application::savePicture(const Document &document, const fs::path &file, PictureKind kind) {
    bool &succeeded = openOf(document).lastSaveSucceeded;
    succeeded = false;
    const fs::path path = given(file);
    writePicture(path, document, kindFor(path, kind));
    succeeded = true;
    forgetReplaced(path);
    logDone(LogLevel::info, [&] {
        return "saved the picture of " + inQuotes(document.name) + " in " + path.string();
    });
}

void Application::copyPicture(const Document &document, PictureKind kind) {
    clipboard = {"", '.', writeClipboardPicture(document, kind)};
    if (desktop) desktop->copyPicture(document);
}

void Application::copyText(const std::string &text) {
    clipboard = {text, decimalSeparator, {}};
    if (desktop) desktop->copyText(text);
}

Clipboard Application::pasted() const {
    if (desktop) {
        if (auto text = desktop->foreignText()) return {std::move(*text), decimalSeparator, {}};
    }
    return clipboard;
}

MouseSelection &Application::mouseSelection(const Document &document) {
    return openOf(document).mouseSelection;
}

FitOutcome Application::fit(Document &document) const {
    if (!runFit) return fitDocument(document);
    return fitDocument(document, [&](FitProgress &progress, const std::function<void()> &solve) {
        runFit(document, progress, solve);
    });
}

void Application::print(const Document &document) {
    printPicture(document);
    logDone(LogLevel::info, [&] { return "printed " + inQuotes(document.name); });
}

void Application::newComposition(double width, double height) {
    composition.emplace(width, height);
}

static Composition &required(std::optional<Composition> &composition) {
    if (!composition) throw Refusal("there is no composition: newComposition begins one");
    return *composition;
}

void Application::addToComposition(const Document &document, const PageRectangle &rectangle,
                                   double angle, double shear) {
    required(composition).add(document, rectangle, angle, shear);
}

void Application::saveComposition(const fs::path &file, const std::string &opener) {
    const fs::path path = given(file);
    const bool opens = !opener.empty() && opener != "none";
    if (required(composition).empty()) throw Refusal("there is nothing in the composition");
    if (opens) requireProgram(opener);
    writePage(path, *composition);
    if (opens) startProgram({opener, path.string()});
    composition.reset();
    forgetReplaced(path);
    logDone(LogLevel::info, [&] { return "saved the composition in " + path.string(); });
}

} // namespace plotwerk
