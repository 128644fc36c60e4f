// change.h - how an open document is changed: every change counts a revision.
//
// Nothing else writes a document's revision. The functions that do the work don't count: whoever
// asks for them on an open document does so through change or changeView.
#ifndef PLOTWERK_MODEL_CHANGE_H
#define PLOTWERK_MODEL_CHANGE_H

#include "plotwerk/model/document.h"

#include <cstdint>
#include <limits>
#include <utility>

namespace plotwerk {

// Runs work(document) and counts it. Work that throws has changed nothing, and isn't counted.
template<class Work> void change(Document &document, Work &&work) {
    std::forward<Work>(work)(document);
    ++document.revision;
}

inline bool hasUnsavedChanges(const Document &document) {
    return document.revision != document.savedRevision;
}

// The document is now as it is in its file.
inline void setSaved(Document &document) {
    document.savedRevision = document.revision;
}

// Its file holds no version of it any more.
inline void forgetSaved(Document &document) {
    document.savedRevision = std::numeric_limits<std::uint64_t>::max();
}

// As change, of what nobody would save a document for: the selection, the walk of marks.
template<class Work> void changeView(Document &document, Work &&work) {
    const bool unsaved = hasUnsavedChanges(document);
    change(document, std::forward<Work>(work));
    if (!unsaved) setSaved(document);
}

// The document becomes that version of it, path aside. With isSaved that is what its file holds.
inline void become(Document &document, Document version, bool isSaved) {
    change(document, [&](Document &changed) {
        version.path.swap(changed.path);
        version.revision = changed.revision;
        version.savedRevision = changed.savedRevision;
        changed = std::move(version);
    });
    if (isSaved) setSaved(document);
}

} // namespace plotwerk

#endif
