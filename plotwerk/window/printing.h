// printing.h - printing a document by the desktop's own dialog.
#ifndef PLOTWERK_WINDOW_PRINTING_H
#define PLOTWERK_WINDOW_PRINTING_H

#include "plotwerk/model/document.h"

#include <gtkmm.h>

namespace plotwerk {

// Asks where to, and prints the picture as it is now, in its own size or as large as fits, in the
// middle of the page. Returns at once; `failed` hears later why nothing could be printed.
void printByDialog(Gtk::Window &window, const Document &document,
                   const sigc::slot<void(const Glib::ustring &reason)> &failed);

} // namespace plotwerk

#endif
