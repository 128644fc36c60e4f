#include "plotwerk/drawing/pages.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/drawing/picture.h"
#include "plotwerk/drawing/png.h"
#include "plotwerk/drawing/tiff.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>
#include <cmath>
#include <deque>
#include <limits>
#include <numbers>

namespace plotwerk {

static constexpr double around = 10;         // what is on a page without a size, in points
static constexpr double largestPage = 14400; // that PDF readers show

static cairo_status_t appendBytes(void *bytes, const unsigned char *data, unsigned int length) {
    static_cast<std::string *>(bytes)->append(reinterpret_cast<const char *>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

static void finish(const Surface &surface, const Context &cr) {
    cairo_show_page(cr.get());
    requireDrawn(cairo_status(cr.get()));
    cairo_surface_finish(surface.get());
    requireDrawn(cairo_surface_status(surface.get()));
}

// When the file was made, as an entry of the PDF's information. Blanks take its place, since the
// objects behind it are found by their distance from the beginning of the file.
static void blankCreationDate(std::string &pdf) {
    const std::size_t begin = pdf.rfind("/CreationDate (D:");
    if (begin == std::string::npos) return;
    const std::size_t end = pdf.find(')', begin);
    if (end != std::string::npos) pdf.replace(begin, end + 1 - begin, end + 1 - begin, ' ');
}

static std::string pdfOf(const Page &page) {
    std::string bytes;
    const Surface surface(
        cairo_pdf_surface_create_for_stream(appendBytes, &bytes, page.width, page.height));
    const Context cr(cairo_create(surface.get()));
    page.draw(cr.get());
    finish(surface, cr);
    blankCreationDate(bytes);
    return bytes;
}

std::string pdfOfDocument(const Document &document) {
    return pdfOf(pageOf(Picture(document)));
}

// The ids NAME12 of parts count all surfaces that the process has ever made: here those of the
// file.
static void numberAnew(std::string &svg, const std::string &name) {
    std::vector<std::string> numbers; // by first appearance
    for (std::size_t at = 0; (at = svg.find(name, at)) != std::string::npos;) {
        const bool isId = at > 0 && (svg[at - 1] == '"' || svg[at - 1] == '#');
        at += name.size();
        const std::size_t end = svg.find_first_not_of("0123456789", at);
        if (!isId || end == at || end == std::string::npos) continue;
        const std::string number = svg.substr(at, end - at);
        const auto known = std::find(numbers.begin(), numbers.end(), number);
        const std::string anew = std::to_string(known - numbers.begin());
        if (known == numbers.end()) numbers.push_back(number);
        svg.replace(at, number.size(), anew);
    }
}

static std::string svgOf(const Page &page) {
    std::string bytes;
    const Surface surface(
        cairo_svg_surface_create_for_stream(appendBytes, &bytes, page.width, page.height));
    const Context cr(cairo_create(surface.get()));
    cairo_set_source_rgb(cr.get(), 1, 1, 1);
    cairo_paint(cr.get());
    page.draw(cr.get());
    finish(surface, cr);
    for (const char *name : {"surface", "image"}) numberAnew(bytes, name);
    return bytes;
}

std::string svgOfDocument(const Document &document) {
    return svgOf(pageOf(Picture(document)));
}

// Replaces the line of the header that begins with the key; without a text it goes.
static void replaceLine(std::string &eps, const std::string &key, const std::string &text) {
    const std::size_t begin = eps.find("\n" + key);
    if (begin == std::string::npos) return;
    eps.replace(begin + 1, eps.find('\n', begin + 1) - begin, text);
}

std::string epsOfDocument(const Document &document) {
    const Picture picture(document);
    std::string bytes;
    const Surface surface(cairo_ps_surface_create_for_stream(
        appendBytes, &bytes, picture.page().width(), picture.page().height()));
    cairo_ps_surface_set_eps(surface.get(), 1);
    const Context cr(cairo_create(surface.get()));
    picture.drawOn(cr.get());
    finish(surface, cr);
    replaceLine(bytes, "%%CreationDate:", "");
    // the drawing library's own boxes don't quite hold the images that stand for opacity
    const std::string box = " 0 0 " + std::to_string(std::lround(picture.page().width())) + ' ' +
                            std::to_string(std::lround(picture.page().height())) + '\n';
    replaceLine(bytes, "%%BoundingBox:", "%%BoundingBox:" + box);
    replaceLine(bytes, "%%PageBoundingBox:", "%%PageBoundingBox:" + box);
    return bytes;
}

std::string tiffOfDocument(const Document &document) {
    return tiffOfPage(pageOf(Picture(document)));
}

std::string pngOfDocument(const Document &document) {
    return pngOfPage(pageOf(Picture(document)));
}

static double pageLength(double length) {
    return length > 0 ? std::min(length, largestPage) : 0;
}

Composition::Composition(double width_, double height_)
    : width(pageLength(width_)), height(pageLength(height_)) {
}

void Composition::add(const Document &document, const PageRectangle &rectangle, double angle,
                      double shear) {
    const auto place = [](double length) { return limited(length, -largestPage, largestPage, 0); };
    requireRoom(bytesOf(document));
    Placed placed;
    placed.document = document;
    placed.rectangle = {place(rectangle.x), place(rectangle.y), std::abs(place(rectangle.width)),
                        std::abs(place(rectangle.height))};
    placed.angle = std::isfinite(angle) ? std::remainder(angle, 360) : 0;
    placed.shear = limited(shear, -10, 10, 0);
    pictures.push_back(std::move(placed));
}

// The scale at which a picture of that size fits into the rectangle.
static double fittingScale(const PageRectangle &rectangle, double width, double height) {
    const double ofWidth = rectangle.width / width;
    const double ofHeight = rectangle.height / height;
    if (ofWidth > 0 && ofHeight > 0) return std::min(ofWidth, ofHeight);
    return ofWidth > 0 ? ofWidth : ofHeight;
}

// From the picture, its upper left corner at (0, 0), to the place for it: x from the left edge of
// the rectangle, y upwards (so negative here, where y runs downwards) from the lower one.
static cairo_matrix_t fitted(const PageRectangle &rectangle, const Picture &picture) {
    const double width = picture.page().width();
    const double height = picture.page().height();
    const double scale = fittingScale(rectangle, width, height);
    if (scale == 0) return {1, 0, 0, 1, -picture.frameCorner().x, -picture.frameCorner().y};
    const auto spare = [](double room, double length) { return std::max(room - length, 0.0) / 2; };
    return {scale,
            0,
            0,
            scale,
            spare(rectangle.width, scale * width),
            -spare(rectangle.height, scale * height) - scale * height};
}

// From the picture to the page, whose lower left corner is at (0, 0) here.
static cairo_matrix_t placeOf(const PageRectangle &rectangle, double angle, double shear,
                              const Picture &picture) {
    cairo_matrix_t place;
    cairo_matrix_init_translate(&place, rectangle.x, -rectangle.y);
    cairo_matrix_rotate(&place, -angle * std::numbers::pi / 180);
    const cairo_matrix_t sheared{1, 0, -shear, 1, 0, 0}; // what is above has a negative y
    cairo_matrix_multiply(&place, &sheared, &place);
    const cairo_matrix_t inRectangle = fitted(rectangle, picture);
    cairo_matrix_multiply(&place, &inRectangle, &place);
    return place;
}

// Where the picture's marks lie, its margin left out.
static Box marksOf(const Picture &picture, const cairo_matrix_t &place) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    Box marks{infinite, infinite, -infinite, -infinite};
    const double margin = Picture::margin;
    for (const double cornerX : {margin, picture.page().width() - margin})
        for (const double cornerY : {margin, picture.page().height() - margin}) {
            double x = cornerX;
            double y = cornerY;
            cairo_matrix_transform_point(&place, &x, &y);
            marks = united(marks, {x, y, x, y});
        }
    return marks;
}

double Composition::bytes() const {
    double bytes = 0;
    for (const Placed &placed : pictures) bytes += bytesOf(placed.document);
    return bytes;
}

namespace {

// The pictures on a page, at their places.
struct LaidOut {
    std::deque<Picture> pictures;
    std::vector<cairo_matrix_t> places;
    Box box;
};

} // namespace

static void drawOn(cairo_t *cr, const LaidOut &laidOut) {
    cairo_translate(cr, -laidOut.box.left, -laidOut.box.top);
    for (std::size_t i = 0; i < laidOut.pictures.size(); ++i) {
        cairo_save(cr);
        cairo_transform(cr, &laidOut.places[i]);
        laidOut.pictures[i].drawOn(cr);
        cairo_restore(cr);
    }
}

std::string Composition::drawn(std::string (*fileOf)(const Page &)) const {
    LaidOut laidOut;
    Box marks;
    for (const Placed &placed : pictures) {
        const Picture &picture = laidOut.pictures.emplace_back(placed.document);
        const cairo_matrix_t place = placeOf(placed.rectangle, placed.angle, placed.shear, picture);
        laidOut.places.push_back(place);
        const Box own = marksOf(picture, place);
        marks = laidOut.places.size() == 1 ? own : united(marks, own);
    }
    const Box fitting = marks.grownBy(around);
    laidOut.box = {width > 0 ? 0 : fitting.left, height > 0 ? -height : fitting.top,
                   width > 0 ? width : fitting.right, height > 0 ? 0 : fitting.bottom};

    return fileOf({std::min(laidOut.box.width(), largestPage),
                   std::min(laidOut.box.height(), largestPage),
                   [&](cairo_t *cr) { drawOn(cr, laidOut); }});
}

std::string Composition::pdf() const {
    return drawn(pdfOf);
}

std::string Composition::svg() const {
    return drawn(svgOf);
}

std::string Composition::png() const {
    return drawn(pngOfPage);
}

} // namespace plotwerk
