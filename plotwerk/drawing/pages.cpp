#include "plotwerk/drawing/pages.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/drawing/picture.h"
#include "plotwerk/drawing/tiff.h"
#include "plotwerk/model/structure.h"

#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cmath>
#include <numbers>

namespace plotwerk {

static constexpr double a4Width = 595;
static constexpr double a4Height = 842;
static constexpr double largestPage = 14400; // that PDF readers show

static cairo_status_t appendBytes(void *bytes, const unsigned char *data, unsigned int length) {
    static_cast<std::string *>(bytes)->append(reinterpret_cast<const char *>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

static Surface newPdf(std::string &bytes, double width, double height) {
    return Surface(cairo_pdf_surface_create_for_stream(appendBytes, &bytes, width, height));
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

std::string pdfOfDocument(const Document &document) {
    const Picture picture(document);
    std::string bytes;
    const Surface surface = newPdf(bytes, picture.page().width(), picture.page().height());
    const Context cr(cairo_create(surface.get()));
    picture.drawOn(cr.get());
    finish(surface, cr);
    blankCreationDate(bytes);
    return bytes;
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
    return tiffOfPicture(Picture(document));
}

static double pageLength(double length, double standard) {
    return length > 0 ? std::min(length, largestPage) : standard;
}

Composition::Composition(double width_, double height_)
    : width(pageLength(width_, a4Width)), height(pageLength(height_, a4Height)) {
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
    if (ofWidth > 0) return ofWidth;
    return ofHeight > 0 ? ofHeight : 1;
}

// Moves the context's origin to the upper left corner of a picture of that size, in its place.
static void moveTo(cairo_t *cr, double pageHeight, const PageRectangle &rectangle, double angle,
                   double shear, double pictureWidth, double pictureHeight) {
    cairo_translate(cr, rectangle.x, pageHeight - rectangle.y);
    cairo_rotate(cr, -angle * std::numbers::pi / 180);
    // y runs downwards here: what is above the lower edge has a negative y
    const cairo_matrix_t sheared{1, 0, -shear, 1, 0, 0};
    cairo_transform(cr, &sheared);

    const double scale = fittingScale(rectangle, pictureWidth, pictureHeight);
    const auto spare = [](double room, double length) { return std::max(room - length, 0.0) / 2; };
    cairo_translate(cr, spare(rectangle.width, scale * pictureWidth),
                    -spare(rectangle.height, scale * pictureHeight) - scale * pictureHeight);
    cairo_scale(cr, scale, scale);
}

double Composition::bytes() const {
    double bytes = 0;
    for (const Placed &placed : pictures) bytes += bytesOf(placed.document);
    return bytes;
}

std::string Composition::pdf() const {
    std::string bytes;
    const Surface surface = newPdf(bytes, width, height);
    const Context cr(cairo_create(surface.get()));
    for (const Placed &placed : pictures) {
        const Picture picture(placed.document);
        cairo_save(cr.get());
        moveTo(cr.get(), height, placed.rectangle, placed.angle, placed.shear,
               picture.page().width(), picture.page().height());
        picture.drawOn(cr.get());
        cairo_restore(cr.get());
    }
    finish(surface, cr);
    blankCreationDate(bytes);
    return bytes;
}

} // namespace plotwerk
