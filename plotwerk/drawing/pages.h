// pages.h - pictures of documents, and pages composed of them, as files.
//
// The functions return the file's bytes; the same document gives the same bytes. They throw Refusal
// if the drawing library gives up.
#ifndef PLOTWERK_DRAWING_PAGES_H
#define PLOTWERK_DRAWING_PAGES_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

namespace plotwerk {

// Vectors, with fonts embedded, on a page cut to the plot.
std::string pdfOfDocument(const Document &document);

// Vectors on white, type as outlines, as large as the PDF.
std::string svgOfDocument(const Document &document);

// One page with a bounding box that holds the plot.
std::string epsOfDocument(const Document &document);

// 300 dpi on white, compressed.
std::string tiffOfDocument(const Document &document);
std::string pngOfDocument(const Document &document);

struct Page;

// In points, from the lower left corner of the page, y upwards.
struct PageRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// A page onto which pictures are placed, the later above the earlier.
class Composition {
  public:
    // In points. 0, NaN and what is negative makes the page as wide, or high, as what is on it, and
    // 10 points beyond on either side; more than 14400 gives that.
    Composition(double width, double height);

    // Places the picture of the document as it is now (its data are copied): as large as fits into
    // the rectangle without changing its proportions, in the rectangle's middle; a width or height
    // of 0 doesn't limit it. With both 0 it has its own size, and its frame's lower left corner
    // lies at (x, y): so the frames of several pictures align. Then all is sheared (x grows by
    // `shear` times the height above the rectangle's lower edge) and turned counter-clockwise by
    // the angle in degrees, both about the rectangle's lower left corner. Lengths are limited to
    // 14400 points, the shear to 10; NaN counts as 0. Refused for want of room (requireRoom).
    void add(const Document &document, const PageRectangle &rectangle, double angle, double shear);

    bool empty() const { return pictures.empty(); }

    // As those of documents, of one page.
    std::string pdf() const;
    std::string svg() const;
    std::string png() const;

    double bytes() const; // about the memory that it takes

  private:
    struct Placed {
        Document document; // not a recording: PDF surfaces of cairo 1.16 leak those

        PageRectangle rectangle;
        double angle = 0;
        double shear = 0;
    };

    double width; // 0: as what is on it
    double height;
    std::vector<Placed> pictures;

    std::string drawn(std::string (*fileOf)(const Page &)) const;
};

} // namespace plotwerk

#endif
