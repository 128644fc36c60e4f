// keptFile.h - documents that are closed with unsaved changes, when there is nobody to ask.
#ifndef PLOTWERK_FILES_KEPTFILE_H
#define PLOTWERK_FILES_KEPTFILE_H

#include "plotwerk/model/document.h"

#include <filesystem>

namespace plotwerk {

// Saves the document as JSON under $XDG_STATE_HOME/plotwerk/ (~/.local/state/plotwerk/ where that
// isn't an absolute path), in a file named after it that wasn't there before, and returns its path.
// A missing directory is created, for the user alone.
//   "a/b" -> "a_b.json", then "a_b 2.json", "a_b 3.json", ...
// Throws Refusal.
std::filesystem::path keepDocument(const Document &document);

} // namespace plotwerk

#endif
