#include "plotwerk/model/limits.h"

#include "plotwerk/base/refusal.h"
#include "plotwerk/model/fitResult.h"
#include "plotwerk/model/names.h"

#include <cmath>
#include <cstdio>

namespace plotwerk {

static void require(const char *name, double value, bool isUnset, const Limits &limits) {
    if (isUnset && limits.mayBeUnset) return;
    if (value >= limits.least && value <= limits.most) return;
    char text[120];
    const int length = std::snprintf(text, sizeof text, "%s can't be %g", name, value);
    const bool isUnbounded = limits.least <= -mostCounted || limits.most >= mostCounted;
    if (!isUnbounded)
        std::snprintf(text + length, sizeof text - length, ", only %g to %g", limits.least,
                      limits.most);
    throw Refusal(text);
}

void requireWithin(const char *name, int value, const Limits &limits) {
    require(name, value, value == -1, limits);
}

void requireWithin(const char *name, double value, const Limits &limits) {
    require(name, value, std::isnan(value), limits);
}

void requireLength(const char *what, const std::string &text, std::size_t most) {
    if (text.size() > most)
        throw Refusal(std::string(what) + " can't have more than " + std::to_string(most) +
                      " bytes");
}

template<class Record> static void requireAll(const Record &record) {
    const auto check = [](const char *name, auto value, const Limits &each) {
        requireWithin(name, value, each);
    };
    limits(check, record);
}

static void requireOrder(const Range &range) {
    if (!(range.min > range.max)) return;
    char text[80];
    std::snprintf(text, sizeof text, "a range can't go from %g to %g", range.min, range.max);
    throw Refusal(text);
}

// Between the names of a formula's parameters stands at least one other character.
static void requireRoomInFormula(const std::vector<FitParameter> &parameters) {
    std::size_t bytes = 0;
    for (const FitParameter &parameter : parameters) bytes += parameter.name.size() + 1;
    if (bytes > longestText + 1) throw Refusal("more parameters than a formula has room for");
}

void requireWithinLimits(const CurveLook &look) {
    requireAll(look);
}

void requireWithinLimits(const Frame &frame) {
    requireAll(frame);
}

void requireWithinLimits(const Axis &axis) {
    requireAll(axis);
}

void requireWithinLimits(const PlacedText &placed) {
    requireAll(placed);
    requireLength("a text", placed.text, longestText);
}

void requireWithinLimits(const Document &document) {
    requireAll(document);
    visitNames(document, requireName);
    for (const Axis &axis : document.axes) {
        requireOrder(axis.range);
        requireLength("a title", axis.title, longestText);
    }
    requireLength("a title", document.title, longestText);
    for (const PlacedText &placed : document.texts)
        requireLength("a text", placed.text, longestText);
    requireLength("a formula", document.formula, longestText);
    requireLength("a formula", document.fit.formula, longestText);
    requireRoomInFormula(document.parameters);
    requireRoomInFormula(document.fit.parameters);
    if (variedParameters(document.fit).size() > mostVaried)
        throw Refusal("a fit can't have varied more than " + std::to_string(mostVaried) +
                      " parameters");
    requireOrder(document.fitRange);
    for (const FitParameter &parameter : document.parameters) requireOrder(parameter.bounds);
    for (const FitParameter &parameter : document.fit.parameters) requireOrder(parameter.bounds);
}

} // namespace plotwerk
