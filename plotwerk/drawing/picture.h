// picture.h - a document drawn: the one routine behind every kind of picture.
#ifndef PLOTWERK_DRAWING_PICTURE_H
#define PLOTWERK_DRAWING_PICTURE_H

#include "plotwerk/drawing/geometry.h"
#include "plotwerk/model/document.h"

#include <cairo.h>
#include <memory>

namespace plotwerk {

struct SurfaceDestroy {
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
    void operator()(cairo_t *cr) const { cairo_destroy(cr); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;
using Context = std::unique_ptr<cairo_t, ContextDestroy>;

// Drawing commands that can be replayed.
struct Picture {
    Surface recording;
    Box page; // what they mark and a small margin, in the recording's coordinates, in points

    double width() const { return page.width(); }
    double height() const { return page.height(); }

    // Replays on the context, with its transformation, the page's upper left corner at (0, 0).
    void drawOn(cairo_t *cr) const;
};

// Draws grid, curves, axes, titles and texts of the document. The picture keeps no tie to it.
// Throws Refusal if the drawing library gives up.
Picture pictureOf(const Document &document);

// Throws Refusal unless the surface or context is without error.
void requireDrawn(cairo_status_t status);

} // namespace plotwerk

#endif
