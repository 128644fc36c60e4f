#include "plotwerk/drawing/placedTexts.h"

#include "plotwerk/drawing/coveredCurves.h"
#include "plotwerk/drawing/textFields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace plotwerk {

static constexpr double gap = 3; // between ticks and texts at the frame's edges
static constexpr int mostLines = 20;
static constexpr double groundPadding = 2; // around a text, in points
static constexpr double framePadding = 4.5;
static constexpr double frameThickness = 0.5;
static constexpr double groundOpacity = 0.85;

// The middle of a text of that length along an axis; NaN if it isn't shown.
static double middleAlong(double position, bool floating, double textLength, const Scale &scale,
                          double inset) {
    if (floating) return scale.shows(position) ? scale.position(position) : unset;
    const double part = std::clamp(position, -1.0, 2.0);
    const double room = scale.length - textLength - 2 * inset;
    const double inner = std::clamp(part, 0.0, 1.0);
    return inset + textLength / 2 + inner * room + (part - inner) * scale.length;
}

// The upright box of the text, with what is around it, about the origin.
static Box sizeOf(const LaidText &laid) {
    const Box &ink = laid.text.ink();
    const double c = std::abs(std::cos(laid.angle * G_PI / 180));
    const double s = std::abs(std::sin(laid.angle * G_PI / 180));
    const double width = ink.width() + 2 * laid.padding;
    const double height = ink.height() + 2 * laid.padding;
    const double halfWidth = (width * c + height * s) / 2;
    const double halfHeight = (width * s + height * c) / 2;
    return {-halfWidth, -halfHeight, halfWidth, halfHeight};
}

static Box boxOf(const LaidText &laid, const Point &middle) {
    const Box size = sizeOf(laid);
    return {middle.x + size.left, middle.y + size.top, middle.x + size.right,
            middle.y + size.bottom};
}

// Where the middle of the text goes; a break if it isn't shown.
static Point middleOf(const LaidText &laid, const PlacedText &placed, const PlacedFrame &frame) {
    const double inset = frame.tickLength + gap;
    const Box size = sizeOf(laid);
    return {middleAlong(placed.x, placed.xFloating, size.width(), frame.scales[xAxis], inset),
            frame.height -
                middleAlong(placed.y, placed.yFloating, size.height(), frame.scales[yAxis], inset)};
}

static bool hasNoPlace(const PlacedText &placed) {
    return placed.x == 0.5 && placed.y == 0.5 && !placed.xFloating && !placed.yFloating;
}

static PangoAlignment alignmentOf(const PlacedText &placed, const RichText &text) {
    if (hasLegend(text) || placed.text.find("<parameters>") != std::string::npos)
        return PANGO_ALIGN_LEFT;
    if (placed.xFloating || (placed.x > 0 && placed.x < 1)) return PANGO_ALIGN_CENTER;
    return placed.x <= 0 ? PANGO_ALIGN_LEFT : PANGO_ALIGN_RIGHT;
}

static double sharedArea(const Box &a, const Box &b) {
    const double width = std::min(a.right, b.right) - std::max(a.left, b.left);
    const double height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
    return width > 0 && height > 0 ? width * height : 0;
}

// Into the upper right corner, or another one where it hides less.
static void placeInCorner(LaidText &laid, const std::vector<LaidText> &others,
                          const std::vector<CurveInk> &inks, const PlacedFrame &frame) {
    constexpr Point corners[] = {{1, 1}, {0, 1}, {1, 0}, {0, 0}};
    double leastHidden = std::numeric_limits<double>::infinity();
    Point best;
    for (const Point &corner : corners) {
        const Point middle = middleOf(laid, {.x = corner.x, .y = corner.y}, frame);
        const Box box = boxOf(laid, middle);
        double hidden = coveredBy(box, inks);
        for (const LaidText &other : others) hidden += sharedArea(box, boxOf(other, other.middle));
        if (hidden < leastHidden) {
            leastHidden = hidden;
            best = middle;
        }
    }
    laid.middle = best;
}

static std::optional<LaidText> laidText(const PlacedText &placed, const Document &document,
                                        const std::vector<DrawnCurve> &curves,
                                        const PlacedFrame &frame, const Typesetter &typesetter) {
    const bool alone = isLegendAlone(placed.text);
    const double room = frame.height - 2 * (frame.tickLength + gap + (alone ? framePadding : 0));
    const auto lines = static_cast<std::size_t>(std::max(room / lineHeight, 1.0));
    const RichText text = filledText(placed.text, document, curves, lines);
    if (plainTextOf(text).empty()) return std::nullopt;
    // a curve's name that is too long ends in an ellipsis
    const double width = alone ? frame.width - 2 * (frame.tickLength + gap + framePadding)
                               : std::max(frame.width, frame.height);
    LaidText laid{typesetter.paragraph(text, textSize, std::max(width, 10.0), alone ? 1 : mostLines,
                                       alignmentOf(placed, text))};
    laid.angle = std::remainder(placed.angle, 360);
    laid.padding = alone ? framePadding : 0;
    laid.framed = alone;
    laid.cornered = hasNoPlace(placed) && hasLegend(text);
    if (!laid.cornered) laid.middle = middleOf(laid, placed, frame);
    return laid;
}

std::vector<LaidText> laidTextsOf(const Document &document, const std::vector<DrawnCurve> &curves,
                                  const PlacedFrame &frame, const Typesetter &typesetter) {
    std::vector<LaidText> laid;
    for (const PlacedText &placed : document.texts) {
        std::optional<LaidText> text = laidText(placed, document, curves, frame, typesetter);
        if (text && (text->cornered || !isBreak(text->middle))) laid.push_back(std::move(*text));
    }
    if (laid.empty()) return laid;
    const std::vector<CurveInk> inks = inkOf(curves, frame);
    for (LaidText &text : laid)
        if (text.cornered) placeInCorner(text, laid, inks, frame);
    for (LaidText &text : laid)
        text.overData = coveredBy(boxOf(text, text.middle).grownBy(groundPadding), inks) > 0;
    return laid;
}

static void traceAround(cairo_t *cr, const LaidText &laid, double padding) {
    const Box &ink = laid.text.ink();
    cairo_save(cr);
    cairo_translate(cr, laid.middle.x, laid.middle.y);
    cairo_rotate(cr, -laid.angle * G_PI / 180);
    cairo_rectangle(cr, -ink.width() / 2 - padding, -ink.height() / 2 - padding,
                    ink.width() + 2 * padding, ink.height() + 2 * padding);
    cairo_restore(cr);
}

void drawGrounds(cairo_t *cr, const std::vector<LaidText> &texts, const PlacedFrame &frame) {
    cairo_save(cr);
    cairo_rectangle(cr, 0, 0, frame.width, frame.height);
    cairo_clip(cr);
    // PostScript knows no opacity: the drawing library would make an image of all that is below
    const bool clear = cairo_surface_get_type(cairo_get_target(cr)) != CAIRO_SURFACE_TYPE_PS;
    cairo_set_source_rgba(cr, 1, 1, 1, clear ? groundOpacity : 1);
    for (const LaidText &laid : texts) {
        if (!laid.framed && !laid.overData) continue;
        traceAround(cr, laid, laid.framed ? laid.padding : groundPadding);
        cairo_fill(cr);
    }
    cairo_restore(cr);
}

void drawTexts(cairo_t *cr, const std::vector<LaidText> &texts) {
    for (const LaidText &laid : texts) {
        cairo_set_source_rgb(cr, 0, 0, 0);
        if (laid.framed) {
            cairo_set_line_width(cr, frameThickness);
            traceAround(cr, laid, laid.padding);
            cairo_stroke(cr);
        }
        laid.text.draw(cr, laid.middle, laid.angle, laid.text.middleOfInk());
    }
}

} // namespace plotwerk
