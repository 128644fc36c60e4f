// samples.h - documents to draw, and what can be read back out of their pictures.
#ifndef TESTS_PLOTWERK_DRAWING_SAMPLES_H
#define TESTS_PLOTWERK_DRAWING_SAMPLES_H

#include "plotwerk/model/document.h"

#include <string>
#include <vector>

// A document with one source, one table and the curve "y" over "x".
plotwerk::Document documentWith(const std::vector<double> &x, const std::vector<double> &y);

// A sine from 0 to 10 in 200 points.
plotwerk::Document sineDocument();

plotwerk::Column &onlyCurve(plotwerk::Document &document);

// So many points in no order.
plotwerk::Document cloudDocument(size_t points);

// The part (0..1) of the frame's inside that isn't white.
double inkedPart(const plotwerk::Document &document);

// What a shell command prints, given the bytes as the file $f. A failure fails the test.
std::string outputOf(const std::string &command, const std::string &bytes);

#endif
