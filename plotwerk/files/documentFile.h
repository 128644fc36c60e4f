// documentFile.h - a document as a file: JSON, or CBOR when binary.
//
// docs/documentFormat.md describes both.
#ifndef PLOTWERK_FILES_DOCUMENTFILE_H
#define PLOTWERK_FILES_DOCUMENTFILE_H

#include "plotwerk/model/document.h"

#include <ostream>
#include <string>
#include <string_view>

namespace plotwerk {

// Whether the bytes begin as a saved document of either kind does: with CBOR's own mark, or with
// the brace of a JSON object, which no data text begins with. Says nothing about the rest.
bool beginsAsDocument(std::string_view bytes);

// The document that was saved as these bytes. Every field comes back as it was saved, numbers bit
// for bit (a NaN as a NaN); path and revisions are those of a new document. Of a later minor
// version what isn't known here is left out, with a line on the log. Throws Refusal, of one line:
// cut or damaged bytes, a later major version, a missing field or one of the wrong type, a number
// beyond the limits of limits.h, columns of unequal length.
Document documentOf(std::string bytes);

// Writes what documentOf reads. Names that aren't UTF-8 are written as utf8Of makes them. Refused:
// a document whose text would take too long (requireTime).
void writeDocument(std::ostream &stream, const Document &document, bool binary);

} // namespace plotwerk

#endif
