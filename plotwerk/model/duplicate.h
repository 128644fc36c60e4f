// duplicate.h - copies of a document.
#ifndef PLOTWERK_MODEL_DUPLICATE_H
#define PLOTWERK_MODEL_DUPLICATE_H

#include "plotwerk/model/document.h"

namespace plotwerk {

// A new document "NAME copy", never saved: the visible curves with the points inside the x range of
// their axis, everything else as it is. Columns of errors stay with them. A row stays as long as
// one of its table's visible curves needs it; the others have NaN there.
Document duplicateAsPlotted(const Document &document);

} // namespace plotwerk

#endif
