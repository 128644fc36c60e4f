#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace plotwerk {

enum class Shape { circle, square, triangle, diamond, triangleDown, strokes, dot };

static void polygon(cairo_t *cr, const Point &at, double radius, int corners, double firstAngle) {
    for (int i = 0; i < corners; ++i) {
        const double angle = firstAngle + 2 * std::numbers::pi * i / corners;
        cairo_line_to(cr, at.x + radius * std::cos(angle), at.y + radius * std::sin(angle));
    }
    cairo_close_path(cr);
}

// Radii that give all shapes about the same weight at the same size.
static void closedShape(cairo_t *cr, Shape shape, const Point &at, double size) {
    constexpr double up = -std::numbers::pi / 2;
    cairo_new_path(cr);
    switch (shape) {
    case Shape::square: polygon(cr, at, 0.64 * size, 4, up / 2); break;
    case Shape::triangle: polygon(cr, at, 0.68 * size, 3, up); break;
    case Shape::triangleDown: polygon(cr, at, 0.68 * size, 3, -up); break;
    case Shape::diamond: polygon(cr, at, 0.68 * size, 4, up); break;
    case Shape::dot: cairo_arc(cr, at.x, at.y, 0.2 * size, 0, 2 * std::numbers::pi); break;
    default: cairo_arc(cr, at.x, at.y, 0.5 * size, 0, 2 * std::numbers::pi); cairo_close_path(cr);
    }
}

static void stroke(cairo_t *cr, const Point &at, double x, double y) {
    cairo_move_to(cr, at.x - x, at.y - y);
    cairo_line_to(cr, at.x + x, at.y + y);
}

static void strokesOf(cairo_t *cr, int code, const Point &at, double size) {
    const double radius = 0.6 * size;
    const double diagonal = 0.48 * size;
    cairo_new_path(cr);
    if (code == 10 || code == 12 || code == 13) stroke(cr, at, 0, radius);
    if (code == 10 || code == 12 || code == 14) stroke(cr, at, radius, 0);
    if (code == 11 || code == 12) {
        stroke(cr, at, diagonal, diagonal);
        stroke(cr, at, diagonal, -diagonal);
    }
}

static Shape shapeOf(int code) {
    switch (code) {
    case 0:
    case 1: return Shape::circle;
    case 2:
    case 3: return Shape::square;
    case 4:
    case 5: return Shape::triangle;
    case 6:
    case 7: return Shape::diamond;
    case 8:
    case 9: return Shape::triangleDown;
    case 15: return Shape::dot;
    default: return Shape::strokes;
    }
}

double halfWidthOfSymbol(int code, double size) {
    switch (shapeOf(code)) {
    case Shape::square: return std::sqrt(0.5) * 0.64 * size;
    case Shape::triangle:
    case Shape::triangleDown: return std::sqrt(0.75) * 0.68 * size;
    case Shape::diamond: return 0.68 * size;
    case Shape::dot: return 0.2 * size;
    case Shape::strokes: return code == 11 ? 0.48 * size : code == 13 ? 0 : 0.6 * size;
    default: return 0.5 * size;
    }
}

void setColour(cairo_t *cr, const Colour &colour) {
    cairo_set_source_rgba(cr, colour.red, colour.green, colour.blue, colour.opacity);
}

void drawSymbol(cairo_t *cr, int code, const Point &at, double size, double lineThickness,
                const Colour &colour, bool whiteInside) {
    const Shape shape = shapeOf(code);
    cairo_set_line_width(cr, std::min(lineThickness, size / 4));
    if (shape == Shape::strokes) {
        strokesOf(cr, code, at, size);
        setColour(cr, colour);
        cairo_stroke(cr);
        return;
    }
    closedShape(cr, shape, at, size);
    const bool open = code % 2 == 1 && shape != Shape::dot;
    if (!open) {
        setColour(cr, colour);
        cairo_fill(cr);
        return;
    }
    if (whiteInside) {
        setColour(cr, {1, 1, 1, colour.opacity});
        cairo_fill_preserve(cr);
    }
    setColour(cr, colour);
    cairo_stroke(cr);
}

} // namespace plotwerk
