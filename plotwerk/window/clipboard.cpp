#include "plotwerk/window/clipboard.h"

#include "plotwerk/drawing/pages.h"
#include "plotwerk/drawing/picture.h"

#include <cairo-svg.h>
#include <cmath>
#include <memory>

namespace plotwerk {

static constexpr double dotsPerPoint = 300 / 72.0;
static constexpr unsigned int patience = 3; // s

static cairo_status_t appendBytes(void *bytes, const unsigned char *data, unsigned int length) {
    static_cast<std::string *>(bytes)->append(reinterpret_cast<const char *>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

static std::string svgOf(const Picture &picture) {
    std::string bytes;
    const Surface surface(cairo_svg_surface_create_for_stream(
        appendBytes, &bytes, picture.page().width(), picture.page().height()));
    const Context cr(cairo_create(surface.get()));
    picture.drawOn(cr.get());
    requireDrawn(cairo_status(cr.get()));
    cairo_surface_finish(surface.get());
    requireDrawn(cairo_surface_status(surface.get()));
    return bytes;
}

static std::string pngOf(const Picture &picture) {
    const auto dots = [](double length) {
        return static_cast<int>(std::ceil(length * dotsPerPoint));
    };
    const Surface surface(cairo_image_surface_create(
        CAIRO_FORMAT_RGB24, dots(picture.page().width()), dots(picture.page().height())));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_set_source_rgb(cr.get(), 0, 0, 0);
    cairo_scale(cr.get(), dotsPerPoint, dotsPerPoint);
    picture.drawOn(cr.get());
    requireDrawn(cairo_status(cr.get()));
    std::string bytes;
    requireDrawn(cairo_surface_write_to_png_stream(surface.get(), appendBytes, &bytes));
    return bytes;
}

void copyTextTo(const Glib::RefPtr<Gdk::Clipboard> &clipboard, const std::string &text) {
    clipboard->set_text(text);
}

void copyPictureTo(const Glib::RefPtr<Gdk::Clipboard> &clipboard, const Document &document) {
    const auto as = [](const char *type, const std::string &bytes) {
        return Gdk::ContentProvider::create(type, Glib::Bytes::create(bytes.data(), bytes.size()));
    };
    const Picture picture(document);
    const std::vector<Glib::RefPtr<Gdk::ContentProvider>> formats{
        as("application/pdf", pdfOfDocument(document)), as("image/svg+xml", svgOf(picture)),
        as("image/png", pngOf(picture)), as("image/tiff", tiffOfDocument(document))};
    clipboard->set_content(Gdk::ContentProvider::create(formats));
}

// Another program may have taken the clipboard just now: what the display tells of that is read.
static void readDisplay(const Glib::RefPtr<Gdk::Clipboard> &clipboard) {
    constexpr int enough = 50; // turns of the loop; something may be ready for ever
    clipboard->get_display()->sync();
    for (int i = 0; i < enough && g_main_context_iteration(nullptr, FALSE); ++i) {
    }
}

std::optional<std::string> foreignTextOf(const Glib::RefPtr<Gdk::Clipboard> &clipboard) {
    readDisplay(clipboard);
    if (clipboard->is_local()) return std::nullopt;

    struct Reading {
        std::string text;
        bool ended = false;
    };
    // The answer may come when nobody waits for it any more.
    const auto reading = std::make_shared<Reading>();
    clipboard->read_text_async([clipboard, reading](Glib::RefPtr<Gio::AsyncResult> &result) {
        try {
            reading->text = clipboard->read_text_finish(result);
        } catch (const Glib::Error &) { // there is no text
        }
        reading->ended = true;
    });
    sigc::connection timer = Glib::signal_timeout().connect_seconds(
        [reading] {
            reading->ended = true;
            return false;
        },
        patience);
    while (!reading->ended) g_main_context_iteration(nullptr, TRUE);
    timer.disconnect();
    return reading->text;
}

} // namespace plotwerk
