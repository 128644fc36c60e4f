// limits.h - the least and the most of every bounded number that a document keeps, and the lengths
// of its texts.
//
// One list for all: messages are refused beyond these limits, a file with a number or a text beyond
// them is damaged, and drawing relies on them. What isn't listed may be any number: the values of
// columns, and what a fit has found. The limit of names is longestName (names.h).
#ifndef PLOTWERK_MODEL_LIMITS_H
#define PLOTWERK_MODEL_LIMITS_H

#include "plotwerk/model/document.h"

#include <climits>
#include <concepts>
#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>

namespace plotwerk {

struct Limits {
    double least;
    double most;
    bool mayBeUnset = false; // NaN, or -1 of a whole number: automatic
};

constexpr bool orUnset = true;
constexpr double mostFinite = std::numeric_limits<double>::max();

// Of layers and of ranks in the selection: far from where counting on would overflow.
constexpr int mostCounted = 1'000'000'000;

template<class T, class Record>
concept IsRecord = std::same_as<std::remove_const_t<T>, Record>;

// Each calls visit(name, number, limits) for every bounded number of a record, and of the records
// in it. The names are those that messages have for them.

template<class Visit, IsRecord<Colour> Record> void limits(Visit &visit, Record &colour) {
    visit("a part of a colour", colour.red, Limits{0, 1});
    visit("a part of a colour", colour.green, Limits{0, 1});
    visit("a part of a colour", colour.blue, Limits{0, 1});
    visit("a part of a colour", colour.opacity, Limits{0, 1});
}

template<class Visit, IsRecord<CurveLook> Record> void limits(Visit &visit, Record &look) {
    visit("layer", look.layer, Limits{-mostCounted, mostCounted});
    visit("sum", look.sum, Limits{0, INT_MAX});
    visit("interpolationPoints", look.interpolationPoints, Limits{0, 1e6});
    visit("interpolationType", look.interpolationType, Limits{0, 1});
    visit("symbolSize", look.symbolSize, Limits{0, 200});
    visit("symbolInc", look.symbolInc, Limits{1, INT_MAX});
    visit("lineThickness", look.lineThickness, Limits{0, 50});
    for (auto &symbol : look.symbol) visit("a symbol", symbol, Limits{0, symbolCount - 1});
    for (auto &length : look.dashLength) visit("a dash length", length, Limits{0, 1000});
    limits(visit, look.lineColour);
    limits(visit, look.fillColour);
}

template<class Visit, IsRecord<Range> Record> void limits(Visit &visit, Record &range) {
    visit("a limit of a range", range.min, Limits{-mostFinite, mostFinite, orUnset});
    visit("a limit of a range", range.max, Limits{-mostFinite, mostFinite, orUnset});
}

template<class Visit, IsRecord<Axis> Record> void limits(Visit &visit, Record &axis) {
    limits(visit, axis.range);
    visit("inc", axis.increment, Limits{0, mostFinite, orUnset});
    visit("ticks", axis.ticks, Limits{0, 100, orUnset});
    visit("prec", axis.precision, Limits{0, 16, orUnset});
    visit("labelAngle", axis.labelAngle, Limits{-360, 360});
    visit("logticksAt", axis.logTicksAt, Limits{1, 600, orUnset});
    visit("lognumberAt", axis.logNumbersAt, Limits{1, 600, orUnset});
    visit("labelDensity", axis.labelDensity, Limits{0.1, 10});
}

template<class Visit, IsRecord<PlacedText> Record> void limits(Visit &visit, Record &placed) {
    visit("at_X", placed.x, Limits{-mostFinite, mostFinite});
    visit("at_Y", placed.y, Limits{-mostFinite, mostFinite});
    visit("angle", placed.angle, Limits{-mostFinite, mostFinite});
}

template<class Visit, IsRecord<Frame> Record> void limits(Visit &visit, Record &frame) {
    visit("xAxisLength", frame.xAxisLength, Limits{1, 100});
    visit("yAxisLength", frame.yAxisLength, Limits{1, 100});
    visit("tickLength", frame.tickLength, Limits{0, 100});
    visit("axisThickness", frame.axisThickness, Limits{0, 20});
    visit("yAxisPos", frame.yAxisPos, Limits{-mostFinite, mostFinite, orUnset});
    visit("xAxisPos", frame.xAxisPos, Limits{-mostFinite, mostFinite, orUnset});
}

// An x column has neither look nor rank.
template<class Visit, IsRecord<Column> Record> void limits(Visit &visit, Record &column) {
    visit("place", column.rank, Limits{0, mostCounted});
    limits(visit, column.look);
}

template<class Visit, IsRecord<Document> Record> void limits(Visit &visit, Record &document) {
    for (auto &source : document.sources)
        for (auto &table : source.tables)
            for (auto &column : table.y) limits(visit, column);
    limits(visit, document.frame);
    for (auto &axis : document.axes) limits(visit, axis);
    for (auto &text : document.texts) limits(visit, text);
    for (auto &parameter : document.parameters) limits(visit, parameter.bounds);
    for (auto &parameter : document.fit.parameters) limits(visit, parameter.bounds);
    limits(visit, document.fitRange);
    visit("iterations", document.fit.iterations, Limits{0, INT_MAX});
    visit("points", document.fit.points, Limits{0, INT_MAX});
    visit("withoutError", document.fit.withoutError, Limits{0, INT_MAX});
    visit("withoutValue", document.fit.withoutValue, Limits{0, INT_MAX});
    visit("freedom", document.fit.freedom, Limits{0, INT_MAX});
    visit("markWalk", document.markWalk, Limits{0, INT_MAX});
}

// The most bytes of a formula, and of a title or text on paper, RTF included.
constexpr std::size_t longestText = 100'000;

// The most bytes of a list of parameters.
constexpr std::size_t longestList = 1'000'000;

// The most parameters that a fit may vary: a step costs their third power, most of a second then.
constexpr std::size_t mostVaried = 500;

// Calls visit(name) for every name in a document: its own, those of its sources, columns and
// parameters.
template<IsRecord<Document> Record, class Visit> void visitNames(Record &document, Visit visit) {
    visit(document.name);
    for (auto &source : document.sources) {
        visit(source.name);
        for (auto &table : source.tables) {
            visit(table.x.name);
            for (auto &column : table.y) visit(column.name);
        }
    }
    for (auto &parameter : document.parameters) visit(parameter.name);
    for (auto &parameter : document.fit.parameters) visit(parameter.name);
}

// Refused: "WHAT can't have more than MOST bytes".
void requireLength(const char *what, const std::string &text, std::size_t most);

// Refused: "NAME can't be VALUE, only LEAST to MOST"; without the limits where one is far away.
void requireWithin(const char *name, int value, const Limits &limits);
void requireWithin(const char *name, double value, const Limits &limits);

// As requireWithin, of the first number or text beyond its limits. A document is refused also for a
// range whose minimum is above its maximum, for a name that can't be one, and for more parameters
// than a formula has room for or a fit varies.
void requireWithinLimits(const CurveLook &look);
void requireWithinLimits(const Frame &frame);
void requireWithinLimits(const Axis &axis);
void requireWithinLimits(const PlacedText &placed);
void requireWithinLimits(const Document &document);

} // namespace plotwerk

#endif
