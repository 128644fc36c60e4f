// restoration.h - what a step of undo or redo has made of a document, as data for its journal: all
// but the values of its columns, and of these only what it didn't have just before.
#ifndef PLOTWERK_JOURNAL_RESTORATION_H
#define PLOTWERK_JOURNAL_RESTORATION_H

#include "plotwerk/journal/bytes.h"
#include "plotwerk/model/columnValues.h"

#include <optional>
#include <string_view>

namespace plotwerk {

// The document as it is now. The values are referred to. Nothing where so many columns have values
// of their own that the whole document is written as quickly.
std::optional<GatheredBytes> encodedRestoration(Document &document, const ColumnOrigins &origins);

// Whether the record of a journal is one, and no message.
bool isRestoration(std::string_view record);

// What the document became; path and revisions stay. Throws Refusal "damaged: REASON" with the
// document as it was.
void restoreBy(std::string_view record, Document &document);

} // namespace plotwerk

#endif
