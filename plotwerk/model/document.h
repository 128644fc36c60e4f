// document.h - what a document holds: sources of tables of columns, and how they are drawn.
//
// Sources, tables and columns count from 1 in messages and on paper; curves and points count from
// 0. A curve is a y column over the x column of its table; the curves of a document are numbered in
// the order of sources, tables and columns. NaN marks a missing value.
//
// Every member begins with a value, also where that is {}: so designated initialisers may leave any
// out.
#ifndef PLOTWERK_MODEL_DOCUMENT_H
#define PLOTWERK_MODEL_DOCUMENT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace plotwerk {

constexpr double unset = std::numeric_limits<double>::quiet_NaN();

// The value as columns hold it: their NaN has no minus sign, whatever arithmetic made of it.
inline double stored(double value) {
    return value == value ? value : unset;
}

// Each part of a colour lies in 0..1.
struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;
};

constexpr int symbolCount = 16;

struct CurveLook {
    bool visible = true;
    int layer = 0; // drawn from the lowest layer up, within a layer in the curves' order
    bool line = true;
    bool stepped = false; // a value holds until the next point
    bool yError = false;  // bars from the columns of its errors (errorColumns.h)
    bool xError = false;  // bars from those of x
    bool dashed = false;
    bool filled = false;
    bool upperX = false; // drawn against the upper x axis
    bool rightY = false; // drawn against the right y axis
    bool marker = false; // a drop line from every point, as for peaks
    bool symbols = false;
    int sum = 0;                    // points that are averaged into one; 0 and 1: none
    double interpolationPoints = 0; // points drawn between two data points
    int interpolationType = 0;      // 0 straight, 1 cubic spline
    double symbolSize = 4;          // in points of 1/72 inch
    int symbolInc = 1;              // every n-th point has a symbol
    // codes of drawSymbol, below symbolCount; others than the first, above 0, are drawn over it
    std::array<int, 4> symbol{0, 0, 0, 0};
    double lineThickness = 1; // in points
    std::array<double, 4> dashLength{4, 2, 0, 0};
    Colour lineColour{};
    Colour fillColour{0.8, 0.8, 0.8, 1};
};

struct Column {
    std::string name{};
    std::vector<double> values{};
    bool isTime = false; // the values are points in time: seconds since 1970-01-01 UTC
    CurveLook look{};
    bool marked = false;
    bool fitData = false;    // at most one column of a document
    bool drawnByFit = false; // the next fit replaces it; at most one column of a document
    bool residuals = false;  // of the last fit: the next one replaces them, too
    int rank = 0;            // in the selection: 1 for the first selected curve, 0 for none
};

// What the rows of a table looked at so far say about its x. Not a part of the document: it is
// found out when it is needed (orderOfX), goes on by itself with rows that are added below, and is
// reset where x values that are there change or move (setX).
struct XOrder {
    std::size_t rows = 0;  // looked at so far
    bool ascending = true; // no x is less than one before it, NaN aside
    bool gaps = false;     // at least one x is NaN
    int first = -1;        // first and last row whose x isn't NaN
    int last = -1;
    int found = 0; // where the last search ended: the next one's hint
};

// All columns have the same number of rows. x is a column like the others but never a curve.
struct Table {
    Column x{};
    std::vector<Column> y{};
    mutable XOrder xOrder{};
};

struct Source {
    std::string name{};
    std::vector<Table> tables{};
};

// An unset limit follows the data.
struct Range {
    double min = unset;
    double max = unset;
};

struct Axis {
    Range range{};
    std::string title{}; // RTF or plain text
    double increment = unset;
    int ticks = -1;     // small ticks between two numbers; -1 automatic
    int precision = -1; // decimals of the numbers, at least; -1 automatic
    bool logarithmic = false;
    bool insideTicks = true;
    bool outsideTicks = false;
    bool majorGrid = false;
    bool minorGrid = false;
    bool exponents = false; // numbers as powers of ten
    double labelAngle = 0;  // of the numbers, in degrees
    bool noLine = false;
    bool numbersInside = false;
    bool noNumbers = false;
    bool arrow = false;
    int logTicksAt = -1;   // a tick at every n-th decade; -1 automatic
    int logNumbersAt = -1; // a number at every n-th decade; -1 automatic
    bool reversed = false;
    double labelDensity = 1;
};

// Messages number the axes from 1 in this order.
enum AxisCode { xAxis, yAxis, upperXAxis, rightYAxis, axisCount };

// Position as a part (0..1) of the frame, or in the axis's values where floating.
struct PlacedText {
    std::string text{}; // RTF or plain text
    double x = 0.5;
    double y = 0.5;
    double angle = 0; // in degrees, counter-clockwise
    bool xFloating = false;
    bool yFloating = false;
};

struct Frame {
    double xAxisLength = 12; // in cm
    double yAxisLength = 8;
    double tickLength = 0.2;
    double axisThickness = 0.75; // in points
    double yAxisPos = unset;     // x value at which the y axis stands; unset: at the left
    double xAxisPos = unset;     // y value at which the x axis stands; unset: at the bottom
    bool multiDimFit = false;
    bool noLineOnReverse = false; // no line where x runs backwards
};

struct FitParameter {
    std::string name{};
    double value = 1;
    double error = unset; // unset before a fit, for a fixed parameter and for one at its bound
    bool fixed = false;
    Range bounds{};       // an unset limit is none
    bool atBound = false; // the last fit ended there
};

// Of the parameters that a fit has varied, in their order: the lower triangle, row by row.
struct CovarianceMatrix {
    std::vector<double> values{};
};

// The last fit that converged. It describes the curve that it has drawn, whatever has become of the
// document's formula and parameters since.
struct FitResult {
    bool done = false; // and the document has that formula still
    int iterations = 0;
    double lambda = unset;
    double chiSquare = unset;
    int points = 0;
    int withoutError = 0; // points of its range that were left out: no finite error above 0
    int withoutValue = 0; // the same: x, y or another column of the formula isn't finite
    std::string formula{};
    std::vector<FitParameter> parameters{};
    bool weighted = false;       // the data had errors
    bool absoluteErrors = false; // which were taken for standard deviations
    int freedom = 0;             // points less varied parameters
    double rSquared = unset;
    CovarianceMatrix covariance{}; // empty where the scatter of the data isn't known
};

struct CurveRef {
    int source = 0;
    int table = 0;  // within the source
    int column = 0; // among the y columns of the table
    int index = 0;  // among all curves of the document

    bool operator==(const CurveRef &) const = default;
};

struct Document {
    std::string name{};
    std::filesystem::path path{}; // where it was opened from or saved as; empty when new
    std::vector<Source> sources{};
    Frame frame{};
    std::array<Axis, axisCount> axes{};
    std::string title{}; // above the frame; RTF or plain text
    std::vector<PlacedText> texts{};
    std::string formula{};
    std::vector<FitParameter> parameters{}; // in order of appearance in the formula
    bool absoluteErrors = false; // errors of data are standard deviations, else relative weights
    Range fitRange{};
    FitResult fit{};
    int markWalk = 0;    // the curve at which the next marked one is looked for
    CurveRef markHint{}; // that curve or one before it: where the search for it begins

    // Of the last attempt in this run, -1 before: not saved, and no change of the document.
    int fitStatus = -1;

    // See change.h.
    std::uint64_t revision = 0;
    std::uint64_t savedRevision = 0;
};

} // namespace plotwerk

#endif
