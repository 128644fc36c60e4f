#include "plotwerk/application/pictureFiles.h"

#include "plotwerk/base/child.h"
#include "plotwerk/base/programs.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/typesetter.h"
#include "plotwerk/files/atomicFile.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace plotwerk {

namespace fs = std::filesystem;

static std::string endOf(const fs::path &path) {
    std::string end = path.extension().string();
    for (char &letter : end)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return end;
}

PictureKind kindFor(const fs::path &path, PictureKind wanted) {
    const std::string end = endOf(path);
    if (wanted == PictureKind::pdf && end == ".svg") return PictureKind::svg;
    if (wanted == PictureKind::tiff && end == ".png") return PictureKind::png;
    return wanted;
}

static std::string bytesOf(const Document &document, PictureKind kind) {
    switch (kind) {
    case PictureKind::eps: return epsOfDocument(document);
    case PictureKind::svg: return svgOfDocument(document);
    case PictureKind::tiff: return tiffOfDocument(document);
    case PictureKind::png: return pngOfDocument(document);
    default: return pdfOfDocument(document);
    }
}

static std::string emptyPicture() {
    requireRoomForFonts();
    return pdfOfDocument({});
}

// Children share what is loaded before they begin, and don't load it anew for each picture.
void loadFonts() {
    static const std::string loaded = emptyPicture();
}

// What a picture costs can't be told beforehand, so a child process draws it. `target` is for the
// refusal of a stream that can't be written.
static void drawInChild(std::ostream &stream, const std::function<std::string()> &bytes,
                        const std::string &target) {
    inChild([&] {
        stream << bytes() << std::flush;
        if (!stream) throw Refusal("can't write " + target + ": " + std::strerror(errno));
    });
}

static void writeFromChild(const fs::path &path, const std::function<std::string()> &bytes,
                           mode_t ofNew = 0666) {
    loadFonts();
    writeWholeFile(
        path, [&](std::ostream &stream) { drawInChild(stream, bytes, path.string()); }, ofNew);
}

void writePicture(const fs::path &path, const Document &document, PictureKind kind) {
    writeFromChild(path, [&] { return bytesOf(document, kind); });
}

void writePage(const fs::path &path, const Composition &composition) {
    const std::string end = endOf(path);
    writeFromChild(path, [&] {
        return end == ".svg"   ? composition.svg()
               : end == ".png" ? composition.png()
                               : composition.pdf();
    });
}

static fs::path runtimeDirectory() {
    const char *runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || *runtime != '/')
        throw Refusal("no place for a copy: XDG_RUNTIME_DIR is not set");
    fs::path directory = fs::path(runtime) / "plotwerk";
    if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST)
        throw Refusal("can't create " + directory.string() + ": " + std::strerror(errno));
    struct stat status {};
    if (lstat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != geteuid() || (status.st_mode & 077) != 0)
        throw Refusal(directory.string() + " is not the user's own");
    return directory;
}

fs::path writeClipboardPicture(const Document &document, PictureKind kind) {
    const bool tiff = kind == PictureKind::tiff;
    fs::path path = runtimeDirectory() / (tiff ? "clipboard.tiff" : "clipboard.pdf");
    writeFromChild(
        path, [&] { return bytesOf(document, kind); }, userOnly);
    return path;
}

void printPicture(const Document &document) {
    loadFonts();
    startProgram({"lp", "-t", document.name}, [&](std::ostream &stream) {
        drawInChild(
            stream, [&] { return pdfOfDocument(document); }, "what is to be printed");
    });
}

} // namespace plotwerk
