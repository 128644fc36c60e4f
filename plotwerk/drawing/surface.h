// surface.h - owned cairo objects, and their errors.
#ifndef PLOTWERK_DRAWING_SURFACE_H
#define PLOTWERK_DRAWING_SURFACE_H

#include "plotwerk/base/refusal.h"

#include <cairo.h>
#include <memory>
#include <string>

namespace plotwerk {

struct SurfaceDestroy {
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
struct ContextDestroy {
    void operator()(cairo_t *cr) const { cairo_destroy(cr); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;
using Context = std::unique_ptr<cairo_t, ContextDestroy>;

// Throws Refusal for the status of a surface or context with an error.
inline void requireDrawn(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS)
        throw Refusal(std::string("the picture can't be drawn: ") + cairo_status_to_string(status));
}

} // namespace plotwerk

#endif
