// documentFields.h - under which key each field of a document is saved.
//
// One list serves both ways: fields(archive, record) calls archive(key, member) for every member
// that is saved, or archive(key, member, {major, minor}) for one that came with that version of the
// format. From an older file such a member keeps what a new record has. How to add one, and what
// the two numbers mean, is told in docs/documentFormat.md.
#ifndef PLOTWERK_FILES_DOCUMENTFIELDS_H
#define PLOTWERK_FILES_DOCUMENTFIELDS_H

#include "plotwerk/model/document.h"

#include <cstdint>

namespace plotwerk {

// Of the format: files of a later major version can't be read, of a later minor one they can.
struct Version {
    std::uint64_t major = 1;
    std::uint64_t minor = 0;
};

constexpr bool operator>(const Version &a, const Version &b) {
    return a.major != b.major ? a.major > b.major : a.minor > b.minor;
}

constexpr Version currentVersion{2, 2};

template<class Archive> void fields(Archive &archive, Colour &colour) {
    archive("red", colour.red);
    archive("green", colour.green);
    archive("blue", colour.blue);
    archive("opacity", colour.opacity);
}

template<class Archive> void fields(Archive &archive, CurveLook &look) {
    archive("visible", look.visible);
    archive("layer", look.layer);
    archive("line", look.line);
    archive("stepped", look.stepped);
    archive("yError", look.yError);
    archive("xError", look.xError);
    archive("dashed", look.dashed);
    archive("filled", look.filled);
    archive("upperX", look.upperX);
    archive("rightY", look.rightY);
    archive("marker", look.marker);
    archive("symbols", look.symbols);
    archive("sum", look.sum);
    archive("interpolationPoints", look.interpolationPoints);
    archive("interpolationType", look.interpolationType);
    archive("symbolSize", look.symbolSize);
    archive("symbolInc", look.symbolInc);
    archive("symbol", look.symbol);
    archive("lineThickness", look.lineThickness);
    archive("dashLength", look.dashLength);
    archive("lineColour", look.lineColour);
    archive("fillColour", look.fillColour);
}

template<class Archive> void fields(Archive &archive, Column &column) {
    archive("name", column.name);
    archive("values", column.values);
    archive("isTime", column.isTime, {2, 1});
    archive("look", column.look);
    archive("marked", column.marked);
    archive("fitData", column.fitData);
    archive("drawnByFit", column.drawnByFit);
    archive("residuals", column.residuals, {2, 1});
    archive("place", column.rank);
}

// An x column is no curve: it has nothing but a name, values and what they are.
struct XColumn {
    Column &column;
};

template<class Archive> void fields(Archive &archive, XColumn &x) {
    archive("name", x.column.name);
    archive("values", x.column.values);
    archive("isTime", x.column.isTime, {2, 1});
}

template<class Archive> void fields(Archive &archive, Table &table) {
    XColumn x{table.x};
    archive("x", x);
    archive("y", table.y);
}

template<class Archive> void fields(Archive &archive, Source &source) {
    archive("name", source.name);
    archive("tables", source.tables);
}

template<class Archive> void fields(Archive &archive, Range &range) {
    archive("min", range.min);
    archive("max", range.max);
}

template<class Archive> void fields(Archive &archive, Axis &axis) {
    archive("range", axis.range);
    archive("title", axis.title);
    archive("increment", axis.increment);
    archive("ticks", axis.ticks);
    archive("precision", axis.precision);
    archive("logarithmic", axis.logarithmic);
    archive("insideTicks", axis.insideTicks);
    archive("outsideTicks", axis.outsideTicks);
    archive("majorGrid", axis.majorGrid);
    archive("minorGrid", axis.minorGrid);
    archive("exponents", axis.exponents);
    archive("labelAngle", axis.labelAngle);
    archive("noLine", axis.noLine);
    archive("numbersInside", axis.numbersInside);
    archive("noNumbers", axis.noNumbers);
    archive("arrow", axis.arrow);
    archive("logTicksAt", axis.logTicksAt);
    archive("logNumbersAt", axis.logNumbersAt);
    archive("reversed", axis.reversed);
    archive("labelDensity", axis.labelDensity);
}

template<class Archive> void fields(Archive &archive, PlacedText &placed) {
    archive("text", placed.text);
    archive("x", placed.x);
    archive("y", placed.y);
    archive("angle", placed.angle);
    archive("xFloating", placed.xFloating);
    archive("yFloating", placed.yFloating);
}

template<class Archive> void fields(Archive &archive, Frame &frame) {
    archive("xAxisLength", frame.xAxisLength);
    archive("yAxisLength", frame.yAxisLength);
    archive("tickLength", frame.tickLength);
    archive("axisThickness", frame.axisThickness);
    archive("yAxisPos", frame.yAxisPos);
    archive("xAxisPos", frame.xAxisPos);
    archive("multiDimFit", frame.multiDimFit);
    archive("noLineOnReverse", frame.noLineOnReverse);
}

template<class Archive> void fields(Archive &archive, FitParameter &parameter) {
    archive("name", parameter.name);
    archive("value", parameter.value);
    archive("error", parameter.error);
    archive("fixed", parameter.fixed);
    archive("bounds", parameter.bounds, {2, 1});
    archive("atBound", parameter.atBound, {2, 1});
}

template<class Archive> void fields(Archive &archive, CovarianceMatrix &covariance) {
    archive("values", covariance.values);
}

template<class Archive> void fields(Archive &archive, FitResult &fit) {
    archive("done", fit.done);
    archive("iterations", fit.iterations);
    archive("lambda", fit.lambda);
    archive("chiSquare", fit.chiSquare);
    archive("points", fit.points);
    archive("withoutError", fit.withoutError, {2, 2});
    archive("withoutValue", fit.withoutValue, {2, 2});
    archive("formula", fit.formula, {2, 1});
    archive("parameters", fit.parameters, {2, 1});
    archive("weighted", fit.weighted, {2, 1});
    archive("absoluteErrors", fit.absoluteErrors, {2, 1});
    archive("freedom", fit.freedom, {2, 1});
    archive("rSquared", fit.rSquared, {2, 1});
    archive("covariance", fit.covariance, {2, 1});
}

// Its path, and what belongs to this run (revisions, the status of the last fit), stay out.
template<class Archive> void fields(Archive &archive, Document &document) {
    archive("name", document.name);
    archive("sources", document.sources);
    archive("frame", document.frame);
    archive("axes", document.axes);
    archive("title", document.title, {2, 1});
    archive("texts", document.texts);
    archive("formula", document.formula);
    archive("parameters", document.parameters);
    archive("absoluteErrors", document.absoluteErrors, {2, 1});
    archive("fitRange", document.fitRange);
    archive("fit", document.fit);
    archive("markWalk", document.markWalk);
}

} // namespace plotwerk

#endif
