// page.h - what is drawn on a page: the picture of a document, or several of them.
#ifndef PLOTWERK_DRAWING_PAGE_H
#define PLOTWERK_DRAWING_PAGE_H

#include "plotwerk/drawing/picture.h"

#include <functional>

namespace plotwerk {

struct Page {
    double width; // in points
    double height;
    std::function<void(cairo_t *cr)> draw; // the page's upper left corner is at (0, 0)
};

// The page of the picture, to which it refers.
inline Page pageOf(const Picture &picture) {
    return {picture.page().width(), picture.page().height(),
            [&picture](cairo_t *cr) { picture.drawOn(cr); }};
}

} // namespace plotwerk

#endif
