// typesetter.h - texts set in type: measured, and drawn with cairo.
#ifndef PLOTWERK_DRAWING_TYPESETTER_H
#define PLOTWERK_DRAWING_TYPESETTER_H

#include "plotwerk/drawing/geometry.h"
#include "plotwerk/drawing/richText.h"

#include <memory>
#include <pango/pangocairo.h>

namespace plotwerk {

constexpr double textSize = 9; // of all texts of a picture, in points

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

// The height of a line of text, from base line to base line.
constexpr double lineHeight = 1.2 * textSize;

// One text, ready to be drawn. Characters that no font has are named on the log, each once. Its box
// is that of the ink, relative to the beginning of its first base line; empty for a text that shows
// nothing.
class SetText {
  public:
    SetText(PangoContext *context, const RichText &text, double size, double wrapWidth, int lines,
            PangoAlignment alignment = PANGO_ALIGN_LEFT);

    const Box &ink() const { return inkBox; }

    Point middleOfInk() const;

    // Draws in cairo's current colour, turned counter-clockwise by an angle in degrees, with the
    // anchor, a point of the text's own coordinates, at the given place.
    void draw(cairo_t *cr, Point place, double angle, Point anchor) const;

  private:
    std::unique_ptr<PangoLayout, GObjectUnref> layout;
    Box inkBox;
};

// For whoever will need fonts: throws std::bad_alloc where there is too little memory for them.
// Their libraries would end the process.
void requireRoomForFonts();

// Begins to read the list of installed fonts, in a thread that ends by itself, so that the first
// picture needn't wait for it. Where there is no memory for that, or no thread can be started, the
// first picture does wait.
void beginToReadFonts();

// The font of pictures, in which glyphs keep their exact widths on every device.
class Typesetter {
  public:
    Typesetter();

    // On one line, size in points.
    SetText line(const RichText &text, double size) const;

    // Lines broken at the width; a paragraph that needs more than that number of lines ends in an
    // ellipsis.
    SetText paragraph(const RichText &text, double size, double width, int lines,
                      PangoAlignment alignment = PANGO_ALIGN_CENTER) const;

  private:
    std::unique_ptr<PangoContext, GObjectUnref> context;
};

} // namespace plotwerk

#endif
