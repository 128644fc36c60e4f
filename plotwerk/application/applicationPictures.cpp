// What the application does with pictures of its documents.
#include "plotwerk/application/application.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/programs.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/files/atomicFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace plotwerk {

namespace fs = std::filesystem;

static constexpr struct {
    std::string (*bytesOf)(const Document &);
    const char *clipboardFile;
} kinds[] = {{pdfOfDocument, "clipboard.pdf"},
             {epsOfDocument, "clipboard.eps"},
             {tiffOfDocument, "clipboard.tiff"}};

static std::string bytesOf(const Document &document, PictureKind kind) {
    return kinds[static_cast<size_t>(kind)].bytesOf(document);
}

static void writeBytes(const fs::path &path, const std::string &bytes) {
    writeWholeFile(path, [&](std::ostream &stream) { stream << bytes; });
}

void Application::savePicture(const Document &document, const fs::path &file, PictureKind kind) {
    bool &succeeded = openOf(document).lastSaveSucceeded;
    succeeded = false;
    const fs::path path = given(file);
    writeBytes(path, bytesOf(document, kind));
    succeeded = true;
    log(LogLevel::info, "saved the picture of \"" + document.name + "\" in " + path.string());
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

void Application::copyPicture(const Document &document, PictureKind kind) {
    const std::string bytes = bytesOf(document, kind);
    const fs::path path = runtimeDirectory() / kinds[static_cast<size_t>(kind)].clipboardFile;
    writeBytes(path, bytes);
    clipboard = {"", '.', path};
}

void Application::print(const Document &document) {
    startProgram({"lp", "-t", document.name}, pdfOfDocument(document));
    log(LogLevel::info, "printed \"" + document.name + '"');
}

void Application::newComposition(double width, double height) {
    composition.emplace(width, height);
}

static Composition &required(std::optional<Composition> &composition) {
    if (!composition) throw Refusal("there is no composition");
    return *composition;
}

void Application::addToComposition(const Document &document, const PageRectangle &rectangle,
                                   double angle, double shear) {
    required(composition).add(document, rectangle, angle, shear);
}

void Application::saveComposition(const fs::path &file, const std::string &opener) {
    const fs::path path = given(file);
    writeBytes(path, required(composition).pdf());
    log(LogLevel::info, "saved the composition in " + path.string());
    if (!opener.empty() && opener != "none") startProgram({opener, path.string()});
}

} // namespace plotwerk
