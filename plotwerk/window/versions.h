// versions.h - the versions of a document, to go back and forth between.
//
// Columns that are the same in several versions are kept once.
#ifndef PLOTWERK_WINDOW_VERSIONS_H
#define PLOTWERK_WINDOW_VERSIONS_H

#include "plotwerk/model/columnValues.h"
#include "plotwerk/model/document.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace plotwerk {

class Versions {
  public:
    // Begins with the document as it is. It stays so, here and in keep.
    explicit Versions(Document &document);

    // What has changed the document since: what belongs to the version that is there, such as the
    // selection; a setting, which together with those just before it is one step; anything else but
    // the values of columns; or those, too.
    enum class Change { none, ofView, ofSetting, ofLook, ofData };

    // The document is a new version now, with that number of lines in its journal. What could be
    // redone is forgotten, but not after a change of the view. Nothing happens when its revision is
    // that of the version.
    void keep(Document &document, Change change, std::size_t lines);

    bool canUndo() const { return present > 0; }
    bool canRedo() const { return present + 1 < versions.size(); }

    struct Version {
        Document document;
        ColumnOrigins origins; // of its columns, in the document as it was when it was given
        bool isSaved = false;  // it is what the document's file holds
        std::size_t lines = 0; // of the journal
    };

    // The version before the present one, or after it, which is the present one from now on. The
    // document is as it was kept last; the columns that stay as they are leave it for the version,
    // which it has to become.
    Version undo(Document &document);
    Version redo(Document &document);

    // The document has become the version that was given last, saved as that was.
    void setRestored(const Document &document) {
        revision = document.revision;
        savedRevision = document.savedRevision;
    }

    // The present version, or the one before it, has that number of lines in its journal.
    void setLines(std::size_t lines) { versions[present].version.lines = lines; }
    void setEarlierLines(std::size_t lines) { versions[present - 1].version.lines = lines; }

  private:
    using Values = std::shared_ptr<const std::vector<double>>;
    struct Kept {
        Version version;            // its columns are empty
        std::vector<Values> values; // theirs, in the order of the document
        Change change = Change::ofData;
    };

    Kept keptFrom(Document &document, Change change) const;
    Version restored(const Kept &kept, Document &document) const;
    void noteSave(const Document &document);

    std::vector<Kept> versions;
    std::size_t present = 0;
    std::uint64_t revision;      // of the document when it was kept last
    std::uint64_t savedRevision; // likewise
};

} // namespace plotwerk

#endif
