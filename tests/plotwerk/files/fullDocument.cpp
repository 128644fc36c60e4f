#include "tests/plotwerk/files/fullDocument.h"

#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/limits.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <sstream>
#include <type_traits>

using namespace plotwerk;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double subnormal = std::numeric_limits<double>::denorm_min();
constexpr double numbers[] = {0.1,       -0.0,  subnormal,          1.7976931348623157e308,
                              -infinity, unset, 9007199254740993.0, 1e300 / 3,
                              infinity,  5e-5F, -123456789.0};

// An archive that hands each plain value of a record, and of the records in it, to `leaf`.
template<class Leaf> struct Walk {
    Leaf leaf;
    size_t elements = 0; // that lists of records are given; 0: they stay as they are

    template<class T> void operator()(const char *key, T &value, Version = {}) {
        if constexpr (std::is_invocable_v<Leaf &, const char *, T &>) {
            leaf(key, value);
        } else if constexpr (requires { value.begin(); }) {
            if constexpr (requires { value.resize(elements); })
                if (elements > 0) value.resize(elements);
            for (auto &each : value) (*this)(key, each);
        } else {
            fields(*this, value);
        }
    }
};

// Gives each field a value of its own.
struct Fill {
    int count = 0;
    void operator()(const char *, bool &value) { value = !value; }
    void operator()(const char *, int &value) { value = ++count; }
    void operator()(const char *, double &value) {
        value = numbers[static_cast<size_t>(++count) % std::size(numbers)];
    }
    void operator()(const char *, std::string &value) {
        value = "n\u00e4me \"\\/ \t\n\x01 \U0001F600 " + std::to_string(++count);
    }
    void operator()(const char *, std::vector<double> &values) {
        values.assign(std::begin(numbers), std::end(numbers));
    }
};

struct List {
    std::vector<std::string> lines;
    void operator()(const char *key, int &value) { add(key, std::to_string(value)); }
    void operator()(const char *key, bool &value) { add(key, std::to_string(value)); }
    void operator()(const char *key, std::string &value) { add(key, value); }
    void operator()(const char *key, double &value) {
        add(key, std::isnan(value) ? "nan" : std::to_string(std::bit_cast<uint64_t>(value)));
    }
    void add(const std::string &key, const std::string &value) {
        lines.push_back(key + ' ' + value);
    }
};

Document filled(size_t elements) {
    Document document;
    Walk<Fill> fill{{}, elements};
    fields(fill, document);

    // Numbers beyond their limits go to different places within.
    int count = 0;
    const auto intoLimits = [&](const char *, auto &value, const Limits &limits) {
        if (value >= limits.least && value <= limits.most) return;
        if (limits.mayBeUnset && std::isnan(static_cast<double>(value))) return;
        const double width = std::min(limits.most - limits.least, 9.0);
        const double inside = limits.least + width * (++count % 97) / 97;
        value = static_cast<std::remove_reference_t<decltype(value)>>(inside);
    };
    limits(intoLimits, document);
    const auto order = [](Range &range) {
        if (range.min > range.max) std::swap(range.min, range.max);
    };
    for (Axis &axis : document.axes) order(axis.range);
    order(document.fitRange);

    // Only one curve of a document is its fit data, and one the fit's.
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y) column.fitData = column.drawnByFit = false;
    Column &last = document.sources.back().tables.back().y.back();
    last.fitData = last.drawnByFit = true;

    document.formula = "x";
    for (FitParameter &parameter : document.parameters) {
        parameter.name = "p" + std::to_string(document.formula.size());
        document.formula += " + " + parameter.name;
    }
    return document;
}

} // namespace

Document fullDocument() {
    Document document = filled(3);
    document.fit.iterations = INT_MAX;
    document.axes[0].ticks = -1;
    document.axes[0].range = {1, 1};
    document.sources[0].name = "";
    document.sources[1].tables.clear();
    document.sources[2].tables[0].y.clear();
    for (Column &y : document.sources[2].tables[1].y) y.values.clear();
    document.sources[2].tables[1].x.values.clear();
    return document;
}

Document smallDocument() {
    return filled(1);
}

Document keptDocument() {
    const auto coloured = [](double red, double green, double blue) {
        return CurveLook{.lineColour = {red, green, blue, 1},
                         .fillColour = {red, green, blue, 0.3}};
    };
    const CurveLook first{.layer = 2, .line = false, .yError = true, .symbols = true};
    const CurveLook allChanged{.layer = 1,
                               .line = false,
                               .stepped = true,
                               .yError = true,
                               .xError = true,
                               .dashed = true,
                               .filled = true,
                               .upperX = true,
                               .rightY = true,
                               .marker = true,
                               .symbols = true,
                               .sum = 5,
                               .interpolationPoints = 7.5,
                               .interpolationType = 1,
                               .symbolSize = 6.5,
                               .symbolInc = 2,
                               .symbol = {3, 4, 1, 2},
                               .lineThickness = 0.25,
                               .dashLength = {9, 8, 7, 6},
                               .lineColour = {0.1, 0.2, 0.3, 0.4},
                               .fillColour = {0.5, 0.6, 0.7, 0.9}};
    CurveLook hidden = coloured(0.8, 0.475, 0.655);
    hidden.visible = false;
    CurveLook fitted = coloured(0.902, 0.624, 0);
    fitted.layer = 2;

    const Table measured{
        .x = {.name = "t", .values = {2, 2, 2}},
        .y = {{.name = "a",
               .values = {1, 2, 3},
               .look = first,
               .marked = true,
               .fitData = true,
               .rank = 3},
              {.name = "a error", .values = {0.5, 0.25, 0.5}, .look = coloured(0, 0.447, 0.698)}}};
    const Table strange{
        .x = {.name = "x", .values = {unset, infinity, -infinity}},
        .y = {{.name = "u", .values = {0.1, subnormal, unset}, .look = allChanged, .marked = true},
              {.name = "v",
               .values = {-0.0, 1.7976931348623157e308, 123456789.125},
               .look = coloured(0, 0.62, 0.451),
               .rank = 1}}};
    const Table single{.x = {.name = "k", .values = {1}},
                       .y = {{.name = "w", .values = {-infinity}, .look = hidden}}};
    const Table fit{
        .x = {.name = "t", .values = {2}},
        .y = {{.name = "Fit", .values = {2}, .look = fitted, .drawnByFit = true, .rank = 2}}};

    const Axis allSet{.range = {1e-3, 1e3},
                      .title = "{\\rtf1 t in {\\i s}}",
                      .increment = 0.5,
                      .ticks = 4,
                      .precision = 2,
                      .logarithmic = true,
                      .insideTicks = false,
                      .outsideTicks = true,
                      .majorGrid = true,
                      .minorGrid = true,
                      .exponents = true,
                      .labelAngle = 45,
                      .noLine = true,
                      .numbersInside = true,
                      .noNumbers = true,
                      .arrow = true,
                      .logTicksAt = 2,
                      .logNumbersAt = 3,
                      .reversed = true,
                      .labelDensity = 2};
    const Axis y{.range = {unset, 5},
                 .title = "plain \"\\ title",
                 .increment = 25,
                 .ticks = 9,
                 .precision = 3,
                 .labelAngle = -30,
                 .logTicksAt = 4,
                 .logNumbersAt = 5,
                 .labelDensity = 0.5};
    const Axis upperX{.range = {0.1, 0.7},
                      .title = "upper",
                      .logarithmic = true,
                      .outsideTicks = true,
                      .logTicksAt = 1,
                      .logNumbersAt = 1,
                      .reversed = true,
                      .labelDensity = 1.5};
    const Axis rightY{.range = {-1e300, unset},
                      .title = "right",
                      .increment = 1e-3,
                      .ticks = 0,
                      .precision = 16,
                      .insideTicks = false,
                      .majorGrid = true,
                      .minorGrid = true,
                      .exponents = true,
                      .labelAngle = 360,
                      .noLine = true,
                      .noNumbers = true,
                      .logTicksAt = 600,
                      .logNumbersAt = 600,
                      .labelDensity = 10};
    return {
        .name = "kept \u00e4",
        .sources = {{"Messung \u00e4", {measured}}, {"Values", {strange, single}}, {"Fit", {fit}}},
        .frame = {.xAxisLength = 10.5,
                  .yAxisLength = 7.25,
                  .tickLength = 0.3,
                  .axisThickness = 1.5,
                  .yAxisPos = -2,
                  .xAxisPos = 4e-3,
                  .multiDimFit = true,
                  .noLineOnReverse = true},
        .axes = {allSet, y, upperX, rightY},
        .texts = {{"{\\rtf1 floating}", 2, -3.5, 90, true, true}, {"plain text", 0.25, 0.75}},
        .formula = "u = a + b\nu + 0 * x",
        .parameters = {{"a", 1, 0.408248290463863}, {"b", 1, unset, true}},
        .fitRange = {0.5, 2.5},
        .fit = {.done = true,
                .iterations = 3,
                .lambda = 0.00011111111111111112,
                .chiSquare = 8,
                .points = 3},
        .markWalk = 1};
}

std::vector<std::string> linesOf(Document document) {
    Walk<List> list;
    fields(list, document);
    return list.leaf.lines;
}

std::string saved(const Document &document, bool binary) {
    std::ostringstream stream;
    writeDocument(stream, document, binary);
    return stream.str();
}
