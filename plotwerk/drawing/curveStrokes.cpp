#include "plotwerk/drawing/curveStrokes.h"

#include "plotwerk/drawing/symbols.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <numeric>
#include <vector>

namespace plotwerk {

static constexpr double sizeOfDot = 3; // of a lone point, in thicknesses of the line

// The line's dashes, from that distance after their beginning on.
static void setDash(cairo_t *cr, const CurveLook &look, double distance) {
    const std::array<double, 4> &dash = look.dashLength;
    const double sum = std::accumulate(dash.begin(), dash.end(), 0.0);
    // shorter dashes can't be told from a line
    if (sum >= 0.2) cairo_set_dash(cr, dash.data(), static_cast<int>(dash.size()), distance);
}

void tracePath(cairo_t *cr, const Path &path, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = i > begin && !isBreak(path[i - 1]);
        if (joins)
            cairo_line_to(cr, path[i].x, path[i].y);
        else
            cairo_move_to(cr, path[i].x, path[i].y);
    }
}

static bool isAlone(const Path &path, std::size_t i) {
    return !isBreak(path[i]) && (i == 0 || isBreak(path[i - 1])) &&
           (i + 1 == path.size() || isBreak(path[i + 1]));
}

// Points between two breaks: a line can't show them, but a dot can.
static void traceDots(cairo_t *cr, const Path &path, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
        if (!isAlone(path, i)) continue;
        cairo_move_to(cr, path[i].x, path[i].y);
        cairo_line_to(cr, path[i].x, path[i].y);
    }
}

static void strokeDots(cairo_t *cr, const Path &path, std::size_t begin, std::size_t end) {
    traceDots(cr, path, begin, end);
    cairo_save(cr);
    cairo_set_dash(cr, nullptr, 0, 0);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, sizeOfDot * cairo_get_line_width(cr));
    cairo_stroke(cr);
    cairo_restore(cr);
}

void strokeInParts(cairo_t *cr, const Path &path, const CurveLook &look, bool dashed,
                   std::size_t atOnce) {
    std::size_t from = 0;
    double distance = 0; // of that point from the beginning of its line
    for (std::size_t begin = 0; begin < path.size();) {
        std::size_t end = std::min(begin + atOnce, path.size());
        if (dashed) { // up to a break, after which dashes begin anew
            const auto part = path.begin() + static_cast<std::ptrdiff_t>(begin);
            const auto last =
                std::find_if(part, path.begin() + static_cast<std::ptrdiff_t>(end - 1), isBreak);
            end = static_cast<std::size_t>(last - path.begin()) + 1;
            setDash(cr, look, distance);
        }
        tracePath(cr, path, from, end);
        cairo_stroke(cr);
        strokeDots(cr, path, begin, end);

        // the next part begins with the last line of this one, so that they are joined
        const std::size_t next =
            isBreak(path[end - 1]) ? end : end - std::min<std::size_t>(end - from, 2);
        distance = next == end ? 0 : distance + lengthOf({path.data() + from, next - from + 1});
        from = next;
        begin = end;
    }
    cairo_set_dash(cr, nullptr, 0, 0);
}

Box withRoomForDots(const Box &box, const Path &path, const CurveLook &look) {
    for (std::size_t i = 0; i < path.size(); ++i)
        if (isAlone(path, i)) return box.grownBy(sizeOfDot / 2 * look.lineThickness + 10);
    return box;
}

void strokeAsImage(cairo_t *cr, const Path &path, double thickness, DenseImage image) {
    std::vector<Point> alone;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (isBreak(path[i])) continue;
        const bool joins = i > 0 && !isBreak(path[i - 1]);
        if (joins) image.addLine(path[i - 1], path[i], thickness);
        if (isAlone(path, i)) alone.push_back(path[i]);
    }
    const double radius = sizeOfDot / 2 * thickness;
    image.stamp(alone, radius, [&](cairo_t *dot) {
        cairo_arc(dot, 0, 0, radius, 0, 2 * std::numbers::pi);
        cairo_fill(dot);
    });
    image.paintOn(cr);
}

void setPen(cairo_t *cr, const CurveLook &look) {
    cairo_set_line_width(cr, look.lineThickness);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
}

void strokePath(cairo_t *cr, const Path &path, const CurveLook &look, bool dashed, const Box &box) {
    setColour(cr, look.lineColour);
    // a colour that is not opaque would be painted twice where parts meet
    const bool whole = look.lineColour.opacity < 1;
    if (path.size() > (whole ? mostAtOnce : mostVectors)) {
        strokeAsImage(cr, path, look.lineThickness,
                      DenseImage(withRoomForDots(box, path, look), dpiFor(lengthOf(path))));
        return;
    }
    setPen(cr, look);
    strokeInParts(cr, path, look, dashed, whole ? path.size() : 200);
}

} // namespace plotwerk
