// clipboard.h - documents on the desktop's clipboard.
#ifndef PLOTWERK_WINDOW_CLIPBOARD_H
#define PLOTWERK_WINDOW_CLIPBOARD_H

#include "plotwerk/model/document.h"

#include <gtkmm.h>
#include <optional>
#include <string>

namespace plotwerk {

void copyTextTo(const Glib::RefPtr<Gdk::Clipboard> &clipboard, const std::string &text);

// Its picture as PDF, SVG, PNG and TIFF: whoever pastes takes what he can. Throws Refusal as
// pages.h does.
void copyPictureTo(const Glib::RefPtr<Gdk::Clipboard> &clipboard, const Document &document);

// The text that another program has put there; empty where that is none. It waits for that program
// a few seconds at most, and lets the main loop run meanwhile. Nothing while the clipboard holds
// what this process has put there.
std::optional<std::string> foreignTextOf(const Glib::RefPtr<Gdk::Clipboard> &clipboard);

} // namespace plotwerk

#endif
