// pictureFiles.h - where pictures of documents go: into files, the clipboard's file, the printer.
#ifndef PLOTWERK_APPLICATION_PICTUREFILES_H
#define PLOTWERK_APPLICATION_PICTUREFILES_H

#include "plotwerk/drawing/pages.h"
#include "plotwerk/model/document.h"

#include <filesystem>

namespace plotwerk {

enum class PictureKind { pdf, svg, eps, tiff, png };

// Loads what each picture needs; the first one does where this hasn't been called. Throws
// std::bad_alloc or Refusal where there is no memory; the next call tries again.
void loadFonts();

// SVG instead of PDF, and PNG instead of TIFF, for a path that ends in .svg or .png (or .SVG).
PictureKind kindFor(const std::filesystem::path &path, PictureKind wanted);

// The file is replaced as a whole or not at all. Throw Refusal: a picture that can't be drawn, a
// file that can't be written.
void writePicture(const std::filesystem::path &path, const Document &document, PictureKind kind);

// Likewise, as PDF, or as SVG or PNG for a path that ends so.
void writePage(const std::filesystem::path &path, const Composition &composition);

// Writes $XDG_RUNTIME_DIR/plotwerk/clipboard.pdf or, for TIFF, clipboard.tiff, and gives its path.
// Throws Refusal also when there is no such directory for the user.
std::filesystem::path writeClipboardPicture(const Document &document, PictureKind kind);

// Hands a PDF to lp, and doesn't wait. Throws Refusal when that can't be started.
void printPicture(const Document &document);

} // namespace plotwerk

#endif
