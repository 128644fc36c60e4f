// application.h - the open documents, and what they share. Whoever serves messages or shows a
// window asks this one place.
#ifndef PLOTWERK_APPLICATION_APPLICATION_H
#define PLOTWERK_APPLICATION_APPLICATION_H

#include "plotwerk/application/desktop.h"
#include "plotwerk/application/pictureFiles.h"
#include "plotwerk/drawing/pages.h"
#include "plotwerk/fit/fit.h"
#include "plotwerk/fit/fitProgress.h"
#include "plotwerk/journal/journal.h"
#include "plotwerk/journal/restoration.h"
#include "plotwerk/model/document.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// What was copied last: data text, with the decimal separator that it is written with, or the file
// with a picture.
struct Clipboard {
    std::string dataText;
    char decimalSeparator = '.';
    std::filesystem::path picture;
};

// The corners, in values of the x and y axis, at which the last drag of the mouse on a document
// began and ended, and the keys held: shift 1, control 2, alt 4, added. Unset: there was none, or a
// click on nothing since.
struct MouseSelection {
    double x1 = unset;
    double y1 = unset;
    double x2 = unset;
    double y2 = unset;
    int keys = 0;
};

// A name is never empty and never that of two documents: a taken one is made unique by adding the
// time. The front document is the one opened, created or activated last. Whatever throws a Refusal
// has changed nothing.
class Application {
  public:
    Application();
    ~Application();
    Application(const Application &) = delete;
    Application &operator=(const Application &) = delete;

    char decimalSeparator = '.'; // or ',': of data text and parameter lists
    Clipboard clipboard;
    Desktop *desktop = nullptr; // null: there is none

    // As FitRunner, for a fit of the document; none: where it is asked for.
    std::function<void(const Document &document, FitProgress &progress,
                       const std::function<void()> &solve)>
        runFit;
    std::string lastError; // the reason of the last message that was refused, empty after a success

    // Null only before the first document: closing the last one leaves an empty "Untitled".
    Document *front();

    // Throws Refusal `no document "NAME"`.
    Document &document(std::string_view name);

    // Throws Refusal when the document stands for a file that couldn't be read: there is nothing to
    // be done with it but closing it.
    void requireRead(const Document &document) const;

    void activate(const Document &document);

    // Takes a document in, in front. An empty name becomes "Untitled".
    Document &add(Document document);

    // As add, of a document that is in no file: its journal begins at once.
    Document &create(Document document);

    // Opens a saved document of either kind, or data text: then as a new document with one source,
    // both named after the file, and without a path of its own, so that saving never overwrites the
    // data. A saved document that is open already is not read again but comes to the front. With
    // rangeOverAll the ranges become those of all data.
    // Throws Refusal: a file that can't be read, is damaged, or is neither. Then an empty document
    // comes to the front that is named after the file and stands for it (requireRead): what is
    // asked of the document in front next must not hit another one.
    Document &open(const std::filesystem::path &file, bool rangeOverAll);

    // The document becomes as `version` is, but for its path. With isSaved that is what its file
    // holds. `origins` are those of the version's columns in the document as it was before.
    void restore(Document &document, Document version, const ColumnOrigins &origins, bool isSaved);

    // Saves as JSON or, when binary, as CBOR; an empty path stands for the document's own. With
    // ownPath the path becomes the document's own; its name stays, since clients address it by
    // that. What is saved in the document's own file counts as changed no more, and another one of
    // that file as changed; so does a document over whose file a picture or a page is saved. Throws
    // Refusal: no path, or a file that can't be written.
    void save(const Document &document, const std::filesystem::path &path, bool binary,
              bool ownPath);

    // Of the document itself or of its picture; false before the first.
    bool lastSaveSucceeded(const Document &document) const;

    // With keepChanges the desktop is left to ask what becomes of unsaved changes, or, without one,
    // they are first kept under $XDG_STATE_HOME/plotwerk/, and the log says where. Throws Refusal
    // when that can't be done.
    void close(const Document &document, bool keepChanges);

    // From here on the documents have journals (journal.h), under
    // $XDG_STATE_HOME/plotwerk/journal/. To be called before there are documents.
    void keepJournals();

    // As that of journalFile.h, of those that are kept.
    void removeOldJournals() const;

    // What recover would bring back: the last ten documents that changed, a line for each, behind
    // one that counts the older ones; and logs it.
    std::vector<std::string> leftDocuments() const;
    void tellLeftJournals() const;

    // Brings back the documents of the journals that nobody uses, as they were when their process
    // ended, and logs them. The last one that was in front comes to the front, and is the first to
    // be brought back, the others behind it in their order. `repeat` does a message of a journal
    // again, within the limits of messages. What can't be brought back is logged, and its journal
    // stays. Gives up when the process is asked to end, or goesOn, which is asked between any two
    // records, answers no.
    using Repeat = std::function<void(std::string_view message)>;
    using GoesOn = std::function<bool()>;
    void recover(
        const Repeat &repeat, const GoesOn &goesOn = [] { return true; });

    // Adds what has changed the document to its journal, if it has one.
    void record(const Document &document, std::chrono::duration<double> time,
                const Journal::MessageAsData &message);

    // At the end: logs what becomes of unsaved changes, and removes the journals of documents
    // without any.
    void leave();

    // Counts as the document's last save.
    void savePicture(const Document &document, const std::filesystem::path &file, PictureKind kind);

    // The clipboard's file (writeClipboardPicture) is its content from now on.
    void copyPicture(const Document &document, PictureKind kind);

    // Becomes the clipboard's content.
    void copyText(const std::string &text);

    // The clipboard's content, which another program may have put there.
    Clipboard pasted() const;

    // Of an open document. Without a mouse it stays unset.
    MouseSelection &mouseSelection(const Document &document);

    // As fitDocument, by runFit.
    FitOutcome fit(Document &document) const;

    // As printPicture.
    void print(const Document &document);

    // There is one composition at a time; a new one replaces it, and saving ends it. It has copies
    // of its documents. The others throw Refusal when there is none, saving also when it is empty.
    void newComposition(double width, double height);
    void addToComposition(const Document &document, const PageRectangle &rectangle, double angle,
                          double shear);

    // Saves it as PDF, and starts the program `opener` with the file's path unless that is "none"
    // or empty. Throws Refusal, with nothing saved, when there is no such program.
    void saveComposition(const std::filesystem::path &file, const std::string &opener);

  private:
    struct OpenDocument {
        Document document;
        bool lastSaveSucceeded = false;
        bool unread = false; // its file couldn't be
        std::optional<Journal> journal{};
        MouseSelection mouseSelection{};
        double bytes = 0;                // that it takes, counted
        std::uint64_t countedAt = ~0ULL; // at that revision
    };

    // A document to be added. An empty name becomes "Untitled", and a taken one is made unique.
    std::unique_ptr<OpenDocument> made(Document document, const std::vector<std::string> &taken);
    void putInFront(std::unique_ptr<OpenDocument> open);

    // Of memory, what the documents in the list take, and what is held in all.
    double bytesOfDocuments();
    double bytesHeld();

    Document broughtBack(LeftJournal &journal, const Repeat &repeat, const GoesOn &goesOn);
    void recoverFrom(LeftJournal &journal, const Repeat &repeat, const GoesOn &goesOn);

    // The document in the file, or the one that stands for it, comes to the front.
    void takeIn(const std::filesystem::path &file);

    // The documents of this file count as changed: something else has taken its place.
    void forgetReplaced(const std::filesystem::path &file, const Document *except = nullptr);

    // A path as a message gives it, made absolute. Throws Refusal for an empty one.
    static std::filesystem::path given(const std::filesystem::path &path);

    const OpenDocument &openOf(const Document &document) const;
    OpenDocument &openOf(const Document &document);

    // in order of activation, the front one last
    std::vector<std::unique_ptr<OpenDocument>> documents;
    double bytesOfOthers = 0;       // that aren't in the list while one is brought back
    std::filesystem::path journals; // their directory; empty: none are kept
    std::optional<Composition> composition;
};

} // namespace plotwerk

#endif
