// pageView.h - where the page of a picture lies in a widget, and which values lie under the mouse.
//
// Places in the widget are in its own pixels, of which a fine screen has several dots; places on
// paper are those of geometry.h.
#ifndef PLOTWERK_WINDOW_PAGEVIEW_H
#define PLOTWERK_WINDOW_PAGEVIEW_H

#include "plotwerk/drawing/picture.h"

namespace plotwerk {

struct PageView {
    ScaledFrame frame;
    Box page;
    double scale = 1; // pixels per point
    Point corner;     // the page's upper left one, in the widget

    Point onPaper(const Point &place) const {
        return {(place.x - corner.x) / scale + page.left, (place.y - corner.y) / scale + page.top};
    }
    Point inWidget(const Point &onPaper) const {
        return {(onPaper.x - page.left) * scale + corner.x,
                (onPaper.y - page.top) * scale + corner.y};
    }
};

// The page as large as fits into a widget of that size, in its middle.
PageView fittedView(const Picture &picture, int width, int height);

// The size of a frame with which the page leaves no room beside it there, with type of the same
// size on the screen.
FrameSize fillingSize(const Picture &picture, int width, int height);

} // namespace plotwerk

#endif
