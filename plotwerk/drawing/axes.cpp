#include "plotwerk/drawing/axes.h"

#include "plotwerk/drawing/textFields.h"
#include "plotwerk/model/names.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace plotwerk {

static constexpr double titleGap = 7; // from the numbers to the title: about a digit's height
static constexpr int titleLines = 3;  // a longer one would squeeze the plot on a page

static void strokeLine(cairo_t *cr, Point from, Point to) {
    cairo_move_to(cr, from.x, from.y);
    cairo_line_to(cr, to.x, to.y);
}

static void setGrey(cairo_t *cr, double grey) {
    cairo_set_source_rgb(cr, grey, grey, grey);
}

// Lines across the frame at the values, but none on the frame itself.
static void drawGridLines(cairo_t *cr, const PlacedFrame &frame, const PlacedAxis &axis,
                          const std::vector<double> &values, double grey, double thickness) {
    for (const double value : values) {
        const double position = frame.scales[axis.code].position(value);
        if (position < 0.5 || position > frame.scales[axis.code].length - 0.5) continue;
        if (axis.horizontal())
            strokeLine(cr, {position, 0}, {position, frame.height});
        else
            strokeLine(cr, {0, frame.height - position}, {frame.width, frame.height - position});
    }
    setGrey(cr, grey);
    cairo_set_line_width(cr, thickness);
    cairo_stroke(cr);
}

void drawGrid(cairo_t *cr, const PlacedFrame &frame) {
    // light, and thinner than the thinnest axis, so that curves stand out; the fine grid below
    for (const PlacedAxis &axis : frame.axes)
        if (frame.own[axis.code] && axis.settings->minorGrid)
            drawGridLines(cr, frame, axis, axis.marks.smallTicks, 0.9, 0.35);
    for (const PlacedAxis &axis : frame.axes)
        if (frame.own[axis.code] && axis.settings->majorGrid)
            drawGridLines(cr, frame, axis, axis.marks.ticks, 0.8, 0.5);
}

static void addTicks(cairo_t *cr, const PlacedFrame &frame, const PlacedAxis &axis,
                     const std::vector<double> &values, double length) {
    const double inner = axis.settings->insideTicks ? axis.inwards() * length : 0;
    const double outer = axis.settings->outsideTicks ? -axis.inwards() * length : 0;
    if (inner == outer) return;
    const double line = frame.line[axis.code];
    const double end = frame.scales[axis.code].length;
    for (const double value : values) {
        const double position = frame.scales[axis.code].position(value);
        // beside a side of the frame it would only thicken that
        const double distance = std::min(std::abs(position), std::abs(end - position));
        if (frame.closed && distance > 1e-6 && distance < frame.thickness) continue;
        if (axis.horizontal()) {
            strokeLine(cr, {position, line + inner}, {position, line + outer});
        } else {
            const double y = frame.height - position;
            strokeLine(cr, {line + inner, y}, {line + outer, y});
        }
    }
}

static void drawTicks(cairo_t *cr, const PlacedFrame &frame, const PlacedAxis &axis) {
    addTicks(cr, frame, axis, axis.marks.ticks, frame.tickLength);
    addTicks(cr, frame, axis, axis.marks.smallTicks, 0.5 * frame.tickLength);
    cairo_stroke(cr);
}

// Grows with the line, which must not hide the head.
static double arrowHeadLength(const PlacedFrame &frame) {
    return 6 + 3 * frame.thickness;
}

// A line beyond the end of ascending values, with a filled head.
static void drawArrow(cairo_t *cr, const PlacedFrame &frame, const PlacedAxis &axis) {
    const double headLength = arrowHeadLength(frame);
    const double halfWidth = 2 + frame.thickness;
    const bool reversed = frame.scales[axis.code].reversed;
    const double line = frame.line[axis.code];

    cairo_save(cr);
    if (axis.horizontal()) {
        cairo_translate(cr, reversed ? 0 : frame.width, line);
        cairo_rotate(cr, reversed ? G_PI : 0);
    } else {
        cairo_translate(cr, line, reversed ? frame.height : 0);
        cairo_rotate(cr, reversed ? G_PI / 2 : -G_PI / 2);
    }
    strokeLine(cr, {0, 0}, {headLength, 0});
    cairo_stroke(cr);
    cairo_move_to(cr, 2 * headLength, 0);
    cairo_line_to(cr, headLength, -halfWidth);
    cairo_line_to(cr, headLength, halfWidth);
    cairo_close_path(cr);
    cairo_fill(cr);
    cairo_restore(cr);
}

static void drawLines(cairo_t *cr, const PlacedFrame &frame) {
    const bool whole = std::all_of(frame.axes.begin(), frame.axes.end(),
                                   [](const PlacedAxis &axis) { return axis.drawn; });
    if (frame.closed && whole) {
        cairo_rectangle(cr, 0, 0, frame.width, frame.height);
    } else {
        for (const PlacedAxis &axis : frame.axes) {
            if (!axis.drawn) continue;
            const double line = frame.line[axis.code];
            if (axis.horizontal())
                strokeLine(cr, {0, line}, {frame.width, line});
            else
                strokeLine(cr, {line, 0}, {line, frame.height});
        }
    }
    cairo_save(cr);
    cairo_set_line_cap(cr, CAIRO_LINE_CAP_SQUARE);
    cairo_stroke(cr);
    cairo_restore(cr);
}

void drawAxes(cairo_t *cr, const PlacedFrame &frame) {
    setGrey(cr, 0);
    if (frame.thickness > 0) {
        cairo_set_line_width(cr, frame.thickness);
        for (const PlacedAxis &axis : frame.axes) {
            if (!axis.drawn) continue;
            drawTicks(cr, frame, axis);
            if (axis.settings->arrow) drawArrow(cr, frame, axis);
        }
        drawLines(cr, frame);
    }
    for (const PlacedAxis &axis : frame.axes) {
        for (const PlacedNumber &number : axis.numbers) number.draw(cr);
        if (axis.common) axis.common->draw(cr);
    }
}

// The name of what a column shows: the extremes of a curve show what the curve does.
static std::string_view shownBy(std::string_view column) {
    for (const std::string_view suffix : {maximaSuffix, minimaSuffix})
        if (column.ends_with(suffix)) return column.substr(0, column.size() - suffix.size());
    return column;
}

// The only name of what the columns show; empty if there are several, or none, and for an x axis
// without numbers: the panel below has both.
static std::string commonName(const PlacedAxis &axis, const std::vector<DrawnCurve> &curves) {
    if (axis.horizontal() && axis.settings->noNumbers) return {};
    std::optional<std::string_view> common;
    for (const DrawnCurve &curve : curves) {
        if (curve.horizontalAxis() != axis.code && curve.verticalAxis() != axis.code) continue;
        // A fit is drawn over the data, whose name the axis bears.
        if (curve.column->drawnByFit && !axis.horizontal()) continue;
        const std::string_view name =
            axis.horizontal() ? std::string_view(curve.table->x.name) : shownBy(curve.column->name);
        if (common.value_or(name) != name) return {};
        common = name;
    }
    return std::string(common.value_or(""));
}

// A title beside the numbers, along its axis.
static void drawTitleBeside(cairo_t *cr, const PlacedFrame &frame, AxisCode code,
                            const SetText &title) {
    const double away = titleGap + title.ink().height() / 2;
    Point middle{frame.width / 2, frame.height / 2};
    double bottom = frame.outside.bottom;
    if (const auto &common = frame.axes[xAxis].common) {
        const bool besideTitle =
            common->bounds().left > middle.x + title.ink().width() / 2 + titleGap;
        if (!besideTitle) bottom = std::max(bottom, common->bounds().bottom);
    }
    switch (code) {
    case xAxis: middle.y = bottom + away; break;
    case upperXAxis: middle.y = frame.outside.top - away; break;
    case yAxis: middle.x = frame.outside.left - away; break;
    default: middle.x = frame.outside.right + away; break;
    }
    const bool upright = code == xAxis || code == upperXAxis;
    title.draw(cr, middle, upright ? 0 : 90, title.middleOfInk());
}

// A title beyond the right or upper end of an axis that stands inside the frame. Gives how far up
// it reaches.
static double drawTitleAtEnd(cairo_t *cr, const PlacedFrame &frame, const PlacedAxis &axis,
                             const SetText &title) {
    const double away = 2 * arrowHeadLength(frame) + titleGap / 2;
    const double line = frame.line[axis.code];
    const Point middle = axis.horizontal()
                             ? Point{frame.width + away + title.ink().width() / 2, line}
                             : Point{line, -away - title.ink().height() / 2};
    title.draw(cr, middle, 0, title.middleOfInk());
    return middle.y - title.ink().height() / 2;
}

static void drawDocumentTitle(cairo_t *cr, const PlacedFrame &frame, const RichText &text,
                              double top, const Typesetter &typesetter) {
    const SetText title = typesetter.paragraph(text, textSize, frame.width, titleLines);
    const Point middle{frame.width / 2, top - titleGap - title.ink().height() / 2};
    title.draw(cr, middle, 0, title.middleOfInk());
}

void drawTitles(cairo_t *cr, const PlacedFrame &frame, const Document &document,
                const std::vector<DrawnCurve> &curves, const Typesetter &typesetter) {
    setGrey(cr, 0);
    const auto filled = [&](const std::string &text) {
        return filledText(text, document, curves, titleLines);
    };
    double top = frame.outside.top;
    for (const PlacedAxis &axis : frame.axes) {
        const std::string &given = axis.settings->title;
        const RichText text = given.empty() ? nameText(commonName(axis, curves)) : filled(given);
        if (text.empty()) continue;
        const double width = axis.horizontal() ? frame.width : frame.height;
        const SetText title = typesetter.paragraph(text, textSize, width, titleLines);
        const double line = frame.line[axis.code];
        const bool inside = line > 0 && line < (axis.horizontal() ? frame.height : frame.width);
        if (inside) {
            top = std::min(top, drawTitleAtEnd(cr, frame, axis, title));
            continue;
        }
        drawTitleBeside(cr, frame, axis.code, title);
        if (axis.code == upperXAxis)
            top = std::min(top, frame.outside.top - titleGap - title.ink().height());
    }
    const RichText text = filled(document.title);
    if (!text.empty()) drawDocumentTitle(cr, frame, text, top, typesetter);
}

} // namespace plotwerk
