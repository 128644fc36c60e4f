#include "plotwerk/drawing/picture.h"

#include "plotwerk/drawing/axes.h"
#include "plotwerk/drawing/curves.h"

#include <cmath>

namespace plotwerk {

static constexpr double farthest = 1500; // from the frame that a page reaches

Picture::Picture(const Document &document_, const FrameSize &size)
    : document(document_),
      curves(drawnCurvesOf(document)),
      frame(frameOf(document, curves, typesetter, size)),
      texts(laidTextsOf(document, curves, frame, typesetter)) {
    const Surface recording(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
    const Context cr(cairo_create(recording.get()));
    drawAnnotations(cr.get());
    requireDrawn(cairo_status(cr.get()));
    cairo_rectangle_t ink{};
    cairo_recording_surface_ink_extents(recording.get(), &ink.x, &ink.y, &ink.width, &ink.height);

    double around = 0; // how far curves reach beyond the frame
    for (const DrawnCurve &curve : curves) around = std::max(around, reachOf(curve));
    const Box plot = frame.box().grownBy(around);
    const Box reach = frame.box().grownBy(farthest);
    pageBox.left = std::floor(std::max(std::min(ink.x, plot.left), reach.left) - margin);
    pageBox.top = std::floor(std::max(std::min(ink.y, plot.top), reach.top) - margin);
    pageBox.right =
        std::ceil(std::min(std::max(ink.x + ink.width, plot.right), reach.right) + margin);
    pageBox.bottom =
        std::ceil(std::min(std::max(ink.y + ink.height, plot.bottom), reach.bottom) + margin);
}

void Picture::drawAnnotations(cairo_t *cr) const {
    drawAxes(cr, frame);
    drawTitles(cr, frame, document, curves, typesetter);
    drawTexts(cr, texts);
}

// The shades at the edges of very many lines on one another take most of the time, and nobody sees
// them in the pixels of a print.
static void leaveShadesOut(cairo_t *cr, std::size_t curves) {
    constexpr std::size_t mostShaded = 5000;
    if (curves > mostShaded) cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
}

void Picture::drawOn(cairo_t *cr, double resolution) const {
    cairo_save(cr);
    cairo_translate(cr, -pageBox.left, -pageBox.top);
    cairo_rectangle(cr, pageBox.left, pageBox.top, pageBox.width(), pageBox.height());
    cairo_clip(cr);
    drawGrid(cr, frame);
    cairo_save(cr);
    if (resolution == 0) leaveShadesOut(cr, curves.size());
    for (const DrawnCurve &curve : curves) drawBand(cr, curve, frame, document, resolution);
    for (const DrawnCurve &curve : curves) drawCurve(cr, curve, frame, document, resolution);
    cairo_restore(cr);
    drawGrounds(cr, texts, frame);
    drawAnnotations(cr);
    cairo_restore(cr);
}

} // namespace plotwerk
