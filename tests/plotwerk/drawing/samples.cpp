#include "tests/plotwerk/drawing/samples.h"

#include "plotwerk/drawing/picture.h"
#include "tests/support/process.h"

#include <algorithm>
#include <cairo-svg.h>
#include <cmath>
#include <complex>
#include <cstring>
#include <sstream>

using namespace plotwerk;

Document documentWith(const std::vector<double> &x, const std::vector<double> &y) {
    return documentOf(table(x, {column("y", y)}));
}

Document centimetres() {
    Document document = documentWith({2, 4, 6}, {2, 6, 2});
    onlyCurve(document).look.fillColour = {1, 0, 0, 1};
    std::vector<Column> &columns = document.sources[0].tables[0].y;
    columns.push_back({"y error", {0, 1, 0}, {}});
    columns.push_back({"x error", {0, 0.5, 0}, {}});
    for (int code = 0; code < axisCount; ++code) {
        const double most = isHorizontal(static_cast<AxisCode>(code)) ? 12 : 8;
        document.axes[code] = {
            .range = {0, most}, .increment = 2, .ticks = 1, .insideTicks = false};
    }
    return document;
}

Column &onlyCurve(Document &document) {
    return document.sources[0].tables[0].y[0];
}

Document sineDocument() {
    std::vector<double> x(200);
    std::vector<double> y(200);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i) * 10 / 199;
        y[i] = std::sin(x[i]);
    }
    return documentWith(x, y);
}

Placed::Placed(const Document &of)
    : document(of), curves(drawnCurvesOf(of)), frame(scaledFrameOf(of, curves)) {
}

void Placed::draw(cairo_t *cr, double resolution) const {
    drawCurve(cr, curves[0], frame, document, resolution);
}

double distanceFrom(const Path &path, const Point &p) {
    double nearest = INFINITY;
    for (std::size_t i = 0; i < path.size(); ++i) {
        nearest = std::fmin(nearest, std::hypot(p.x - path[i].x, p.y - path[i].y));
        if (i == 0) continue;
        const std::complex<double> line(path[i].x - path[i - 1].x, path[i].y - path[i - 1].y);
        const std::complex<double> way(p.x - path[i - 1].x, p.y - path[i - 1].y);
        const double part = std::clamp((way * std::conj(line)).real() / std::norm(line), 0.0, 1.0);
        nearest = std::fmin(nearest, std::abs(way - part * line));
    }
    return nearest;
}

std::string described(const Path &path) {
    std::string text;
    for (const Point &p : path) {
        char point[64];
        std::snprintf(point, sizeof point, "%g,%g", p.x, p.y);
        text += (text.empty() ? "" : " ") + std::string(isBreak(p) ? "|" : point);
    }
    return text;
}

void expectNear(const Box &got, const Box &want, double tolerance) {
    EXPECT_NEAR(got.left, want.left, tolerance);
    EXPECT_NEAR(got.top, want.top, tolerance);
    EXPECT_NEAR(got.right, want.right, tolerance);
    EXPECT_NEAR(got.bottom, want.bottom, tolerance);
}

void expectApart(const std::vector<Box> &boxes) {
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_TRUE(boxes[i].left >= boxes[k].right || boxes[k].left >= boxes[i].right ||
                        boxes[i].top >= boxes[k].bottom || boxes[k].top >= boxes[i].bottom)
                << i << " and " << k;
}

static Point originOf(const Document &document, const Box &page) {
    return {-page.left, document.frame.yAxisLength * pointsPerCm - page.top};
}

Pixels::Pixels(const Document &document) : perPoint(2) {
    const Picture picture(document);
    const Box &page = picture.page();
    origin = originOf(document, page);
    surface.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                             static_cast<int>(page.width() * perPoint),
                                             static_cast<int>(page.height() * perPoint)));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    cairo_scale(cr.get(), perPoint, perPoint);
    picture.drawOn(cr.get());
    cairo_surface_flush(surface.get());
}

Pixels::Pixels(const Document &document, const std::string &file)
    : origin(originOf(document, Picture(document).page())), perPoint(300.0 / 72) {
    std::istringstream png(file);
    const auto read = [](void *from, unsigned char *bytes, unsigned length) {
        static_cast<std::istream *>(from)->read(reinterpret_cast<char *>(bytes), length);
        return CAIRO_STATUS_SUCCESS;
    };
    surface.reset(
        cairo_image_surface_create_from_png_stream(read, static_cast<std::istream *>(&png)));
}

char Pixels::at(double x, double y) const {
    const int row = static_cast<int>((origin.y - y * pointsPerCm) * perPoint);
    const int column = static_cast<int>((origin.x + x * pointsPerCm) * perPoint);
    unsigned value = 0;
    std::memcpy(&value,
                cairo_image_surface_get_data(surface.get()) +
                    std::ptrdiff_t{row} * cairo_image_surface_get_stride(surface.get()) +
                    4 * column,
                sizeof value);
    const int red = value >> 16 & 255;
    const int green = value >> 8 & 255;
    const int blue = value & 255;
    if (red + green + blue == 3 * 255) return '_';
    if (red > std::max(green, blue) + 60) return 'r';
    if (green > std::max(red, blue) + 60) return 'g';
    if (blue > std::max(red, green) + 60) return 'b';
    return std::max({red, green, blue}) < 128 ? '#' : '.';
}

void Pixels::expect(const std::string &list) const {
    std::istringstream places(list);
    std::string seen;
    for (std::string place; places >> place;) {
        place[0] = at(std::stod(place.substr(1)), std::stod(place.substr(place.find(',') + 1)));
        seen += (seen.empty() ? "" : " ") + place;
    }
    EXPECT_EQ(seen, list);
}

std::vector<Drawn> drawnBy(const std::function<void(cairo_t *)> &draw) {
    std::string svg;
    const auto append = [](void *to, const unsigned char *bytes, unsigned length) {
        static_cast<std::string *>(to)->append(reinterpret_cast<const char *>(bytes), length);
        return CAIRO_STATUS_SUCCESS;
    };
    const Surface surface(cairo_svg_surface_create_for_stream(append, &svg, 2000, 2000));
    constexpr double around = 500; // the frame's corner, so that what is outside is seen, too
    {
        const Context cr(cairo_create(surface.get()));
        cairo_translate(cr.get(), around, around);
        draw(cr.get());
    }
    cairo_surface_finish(surface.get());
    std::vector<Drawn> all;
    const std::string key = "<path style=\"";
    for (std::size_t at = svg.find(key); at != std::string::npos; at = svg.find(key, at + 1)) {
        const std::string element = svg.substr(at, svg.find("/>", at) - at);
        cairo_matrix_t matrix;
        cairo_matrix_init_identity(&matrix);
        if (const std::size_t turned = element.find("matrix("); turned != std::string::npos)
            std::sscanf(element.c_str() + turned, "matrix(%lf,%lf,%lf,%lf,%lf,%lf)", &matrix.xx,
                        &matrix.yx, &matrix.xy, &matrix.yy, &matrix.x0, &matrix.y0);
        Drawn drawn;
        if (const std::size_t width = element.find("stroke-width:"); width != std::string::npos)
            drawn.thickness = std::stod(element.substr(width + 13));
        drawn.dashed = element.find("stroke-dasharray:") != std::string::npos;
        std::istringstream data(element.substr(element.find(" d=\"") + 4));
        double x = 0;
        double y = 0;
        for (std::string command; data >> command && command != "\"";) {
            if (command == "C") data >> x >> y >> x >> y; // the ends of curves are enough
            if (command == "Z" || !(data >> x >> y)) break;
            if (command == "M" && !drawn.path.empty()) drawn.path.push_back(pathBreak);
            double left = x, top = y;
            cairo_matrix_transform_point(&matrix, &left, &top);
            drawn.path.push_back({left - around, top - around});
        }
        all.push_back(drawn);
    }
    return all;
}

std::vector<Drawn> drawnCurve(const Document &document) {
    const Placed placed(document);
    return drawnBy([&](cairo_t *cr) { placed.draw(cr); });
}

Box inkOf(const std::function<void(cairo_t *)> &draw) {
    const Surface surface(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
    draw(Context(cairo_create(surface.get())).get());
    Box ink;
    double width = 0;
    double height = 0;
    cairo_recording_surface_ink_extents(surface.get(), &ink.left, &ink.top, &width, &height);
    ink.right = ink.left + width;
    ink.bottom = ink.top + height;
    return ink;
}

std::string outputOf(const std::string &command, const std::string &bytes) {
    const std::string script = "f=$(mktemp) && cat >$f && " + command + "; s=$?; rm $f; exit $s";
    const Output output = runProgram({"sh", "-c", script}, bytes);
    EXPECT_EQ(output.status, 0) << command << ": " << output.err;
    return output.out + output.err;
}

std::vector<double> numbersAfter(const std::string &text, const std::string &key) {
    std::vector<double> numbers;
    const std::size_t at = text.find(key);
    if (at == std::string::npos) return numbers;
    std::istringstream line(text.substr(at + key.size(), text.find('\n', at) - at - key.size()));
    for (std::string word; line >> word;)
        if (std::isdigit(static_cast<unsigned char>(word[0]))) numbers.push_back(std::stod(word));
    return numbers;
}

std::vector<double> pageSizeOf(const std::string &pdf) {
    return numbersAfter(outputOf("pdfinfo $f", pdf), "Page size:");
}

std::vector<double> inkBoxOf(const std::string &file) {
    return numbersAfter(outputOf("gs -q -dNOPAUSE -dBATCH -sDEVICE=bbox $f", file),
                        "%%HiResBoundingBox:");
}

bool contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

std::string pngOfSvg(const std::string &svg) {
    return outputOf("rsvg-convert --dpi-x 300 --dpi-y 300 $f", svg);
}
