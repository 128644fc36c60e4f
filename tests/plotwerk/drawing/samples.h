// samples.h - documents to draw, and what can be read back out of their pictures.
#ifndef TESTS_PLOTWERK_DRAWING_SAMPLES_H
#define TESTS_PLOTWERK_DRAWING_SAMPLES_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/curves.h"
#include "plotwerk/drawing/surface.h"
#include "tests/plotwerk/model/documents.h"

#include <cairo.h>
#include <functional>

// A document of the curve "y" over "x".
plotwerk::Document documentWith(const std::vector<double> &x, const std::vector<double> &y);

// A sine from 0 to 10 in 200 points.
plotwerk::Document sineDocument();

// A frame in which a value of 1 is 1 cm, with a curve from (2, 2) over (4, 6) to (6, 2), whose
// errors are 1 and 0.5, and axes without ticks. Areas would be red.
plotwerk::Document centimetres();

plotwerk::Column &onlyCurve(plotwerk::Document &document);

// The curves of a document, which must outlive it, and the frame that they stand in.
struct Placed {
    explicit Placed(const plotwerk::Document &document);

    // The first curve.
    void draw(cairo_t *cr, double resolution = 0) const;

    const plotwerk::Document &document;
    std::vector<plotwerk::DrawnCurve> curves;
    plotwerk::ScaledFrame frame;
};

// From the nearest point or line of the path.
double distanceFrom(const plotwerk::Path &path, const plotwerk::Point &p);

// "X,Y X,Y | X,Y", with | at breaks.
std::string described(const plotwerk::Path &path);

// Each side, to within a point or what is given.
void expectNear(const plotwerk::Box &got, const plotwerk::Box &want, double tolerance = 1);

// Fails for every two boxes that overlap.
void expectApart(const std::vector<plotwerk::Box> &boxes);

// A picture on white.
class Pixels {
  public:
    // Two pixels per point.
    explicit Pixels(const plotwerk::Document &document);

    // Those of its picture in a PNG file of 300 dpi.
    Pixels(const plotwerk::Document &document, const std::string &png);

    // What is seen at a place, in cm from the frame's lower left corner: '_' white, '#' dark, 'r',
    // 'g' or 'b' where that colour stands out, '.' anything else.
    char at(double x, double y) const;

    // That of each place in a list such as "#3,4 _5,0.5" must be what stands before it.
    void expect(const std::string &list) const;

  private:
    plotwerk::Surface surface;
    plotwerk::Point origin; // that corner, in points
    double perPoint;
};

// Vectors as they are drawn, in points from the upper left corner of the frame.
struct Drawn {
    plotwerk::Path path;  // with a break before each part but the first
    double thickness = 0; // 0: filled
    bool dashed = false;
};

std::vector<Drawn> drawnBy(const std::function<void(cairo_t *)> &draw);

// The first curve of a document.
std::vector<Drawn> drawnCurve(const plotwerk::Document &document);

// The box of all ink, in points from there, too.
plotwerk::Box inkOf(const std::function<void(cairo_t *)> &draw);

// What a shell command prints, given the bytes as the file $f. A failure fails the test.
std::string outputOf(const std::string &command, const std::string &bytes);

bool contains(const std::string &text, const std::string &part);

// The numbers after the key on its line.
std::vector<double> numbersAfter(const std::string &text, const std::string &key);

std::vector<double> pageSizeOf(const std::string &pdf);

// What ghostscript finds drawn: left, bottom, right, top.
std::vector<double> inkBoxOf(const std::string &file);

// Of 300 dpi, by somebody else's program.
std::string pngOfSvg(const std::string &svg);

#endif
