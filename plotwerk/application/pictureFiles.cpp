#include "plotwerk/application/pictureFiles.h"

#include "plotwerk/base/programs.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/atomicFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/stat.h>

namespace plotwerk {

namespace fs = std::filesystem;

static std::string bytesOf(const Document &document, PictureKind kind) {
    switch (kind) {
    case PictureKind::eps: return epsOfDocument(document);
    case PictureKind::tiff: return tiffOfDocument(document);
    default: return pdfOfDocument(document);
    }
}

static void writeBytes(const fs::path &path, const std::string &bytes) {
    writeWholeFile(path, [&](std::ostream &stream) { stream << bytes; });
}

void writePicture(const fs::path &path, const Document &document, PictureKind kind) {
    writeBytes(path, bytesOf(document, kind));
}

void writePage(const fs::path &path, const Composition &composition) {
    writeBytes(path, composition.pdf());
}

static fs::path runtimeDirectory() {
    const char *runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || *runtime != '/')
        throw Refusal("no place for a copy: XDG_RUNTIME_DIR is not set");
    fs::path directory = fs::path(runtime) / "plotwerk";
    if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST)
        throw Refusal("can't create " + directory.string() + ": " + std::strerror(errno));
    return directory;
}

fs::path writeClipboardPicture(const Document &document, PictureKind kind) {
    const std::string bytes = bytesOf(document, kind);
    const bool tiff = kind == PictureKind::tiff;
    fs::path path = runtimeDirectory() / (tiff ? "clipboard.tiff" : "clipboard.pdf");
    writeBytes(path, bytes);
    return path;
}

void printPicture(const Document &document) {
    startProgram({"lp", "-t", document.name}, pdfOfDocument(document));
}

} // namespace plotwerk
