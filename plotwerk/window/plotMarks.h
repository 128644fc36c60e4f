// plotMarks.h - what is drawn over a picture and is no part of it: cursor, rubber band, fit range.
#ifndef PLOTWERK_WINDOW_PLOTMARKS_H
#define PLOTWERK_WINDOW_PLOTMARKS_H

#include "plotwerk/window/pageView.h"

#include <cairomm/cairomm.h>
#include <optional>

namespace plotwerk {

// Places are those on paper, so that the marks stay where they are when the window's size changes.
struct PlotMarks {
    std::optional<Box> selection;      // what the mouse has selected last
    std::optional<Box> band;           // what is being dragged
    std::optional<Point> nearestPoint; // to the mouse
    std::optional<Box> fitRange;       // its left and right edge are handles
};

void drawMarks(const Cairo::RefPtr<Cairo::Context> &cr, const PlotMarks &marks,
               const PageView &view);

} // namespace plotwerk

#endif
