// picture.h - a document drawn: the one routine behind every kind of picture.
//
// All of drawing trusts that the settings of a document are within the limits that limits.h gives,
// which messages and loaded files are held to. Data may be any double, and ranges and positions of
// axes any finite one: they are drawn as far as paper allows.
#ifndef PLOTWERK_DRAWING_PICTURE_H
#define PLOTWERK_DRAWING_PICTURE_H

#include "plotwerk/drawing/drawnCurves.h"
#include "plotwerk/drawing/frame.h"
#include "plotwerk/drawing/placedTexts.h"
#include "plotwerk/drawing/surface.h"

#include <vector>

namespace plotwerk {

// The picture of a document, laid out: grid, curves, axes, titles and texts. Lengths are in points.
// Refers to the document, which must not change as long as the picture is used.
class Picture {
  public:
    explicit Picture(const Document &drawn) : Picture(drawn, frameSizeOf(drawn)) {}

    // With a frame of another size than the document's.
    Picture(const Document &drawn, const FrameSize &size);

    static constexpr double margin = 3; // around what is drawn, in points

    // What the picture marks, and the margin around it; (0, 0) is the frame's upper left corner.
    // Reaches 1500 points beyond the frame at most.
    const Box &page() const { return pageBox; }

    // The frame's lower left corner, from the page's upper left one.
    Point frameCorner() const { return {-pageBox.left, frame.height - pageBox.top}; }

    // The frame on it, with the scales of its axes.
    const ScaledFrame &scaledFrame() const { return frame; }

    // Draws with the context's transformation, the page's upper left corner at (0, 0). What lies
    // beyond the page is cut.
    //
    // A screen is drawn on in less time when its resolution is given: the size on paper, in points,
    // of what is too fine to be seen. Files are drawn without one, as fine as any printer can show.
    void drawOn(cairo_t *cr, double resolution = 0) const;

  private:
    void drawAnnotations(cairo_t *cr) const;

    const Document &document;
    std::vector<DrawnCurve> curves;
    Typesetter typesetter;
    PlacedFrame frame;
    std::vector<LaidText> texts;
    Box pageBox;
};

} // namespace plotwerk

#endif
