// samples.h - documents to draw, and what can be read back out of their pictures.
#ifndef TESTS_PLOTWERK_DRAWING_SAMPLES_H
#define TESTS_PLOTWERK_DRAWING_SAMPLES_H

#include "plotwerk/drawing/curvePath.h"
#include "plotwerk/drawing/picture.h"

#include <string>
#include <vector>

// A document with one source, one table and the curve "y" over "x".
plotwerk::Document documentWith(const std::vector<double> &x, const std::vector<double> &y);

// A sine from 0 to 10 in 200 points.
plotwerk::Document sineDocument();

plotwerk::Column &onlyCurve(plotwerk::Document &document);

// So many points in no order.
plotwerk::Document cloudDocument(size_t points);

// "X,Y X,Y | X,Y", with | at breaks.
std::string described(const plotwerk::Path &path);

// A picture on white, two pixels per point.
class Pixels {
  public:
    explicit Pixels(const plotwerk::Document &document);

    // What is seen at a place, in cm from the frame's lower left corner: ' ' white, '#' dark, 'r',
    // 'g' or 'b' where that colour stands out, '.' anything else.
    char at(double x, double y) const;

    // The part (0..1) of the frame's inside that isn't white.
    double inkedPart() const;

  private:
    unsigned pixel(int x, int y) const;

    plotwerk::Surface surface;
    plotwerk::Point corner; // the frame's upper left one
    double width;           // of the frame, in points
    double height;
};

// What a shell command prints, given the bytes as the file $f. A failure fails the test.
std::string outputOf(const std::string &command, const std::string &bytes);

#endif
