#include "plotwerk/drawing/placedTexts.h"

#include <algorithm>
#include <cmath>

namespace plotwerk {

static constexpr double textSize = 10; // in points
static constexpr double gap = 3;       // between ticks and texts at the frame's edges
static constexpr int mostLines = 20;

// The middle of a text of that length along an axis; NaN if it isn't shown.
static double middleAlong(double position, bool floating, double textLength, const Scale &scale,
                          double inset) {
    if (floating) return scale.shows(position) ? scale.position(position) : unset;
    const double part = std::clamp(position, -1.0, 2.0);
    const double room = scale.length - textLength - 2 * inset;
    const double inner = std::clamp(part, 0.0, 1.0);
    return inset + textLength / 2 + inner * room + (part - inner) * scale.length;
}

void drawTexts(cairo_t *cr, const std::vector<PlacedText> &texts, const PlacedFrame &frame,
               const Typesetter &typesetter) {
    cairo_set_source_rgb(cr, 0, 0, 0);
    const double inset = frame.tickLength + gap;
    for (const PlacedText &placed : texts) {
        const RichText text = richTextOf(placed.text);
        if (text.empty()) continue;
        const double angle = std::remainder(placed.angle, 360);
        const SetText set =
            typesetter.paragraph(text, textSize, std::max(frame.width, frame.height), mostLines);

        const double c = std::abs(std::cos(angle * G_PI / 180));
        const double s = std::abs(std::sin(angle * G_PI / 180));
        const double width = set.ink().width() * c + set.ink().height() * s;
        const double height = set.ink().width() * s + set.ink().height() * c;
        const Point middle{
            middleAlong(placed.x, placed.xFloating, width, frame.scales[xAxis], inset),
            frame.height -
                middleAlong(placed.y, placed.yFloating, height, frame.scales[yAxis], inset)};
        if (!isBreak(middle)) set.draw(cr, middle, angle, set.middleOfInk());
    }
}

} // namespace plotwerk
