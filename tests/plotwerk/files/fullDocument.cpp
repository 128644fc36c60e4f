#include "tests/plotwerk/files/fullDocument.h"

#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/fitResult.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/names.h"

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
    std::size_t elements = 0; // that lists of records are given; 0: they stay as they are

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
        value = numbers[static_cast<std::size_t>(++count) % std::size(numbers)];
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
        add(key, std::isnan(value) ? "nan" : std::to_string(std::bit_cast<std::uint64_t>(value)));
    }
    void add(const std::string &key, const std::string &value) {
        lines.push_back(key + ' ' + value);
    }
};

Document filled(std::size_t elements) {
    Document document;
    Walk<Fill> fill{{}, elements};
    fields(fill, document);

    visitNames(document, [](std::string &name) { name = nameOf(name); });
    document.fit.formula = formulaOf(document.fit.formula);

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
    for (std::vector<FitParameter> *list : {&document.parameters, &document.fit.parameters})
        for (FitParameter &parameter : *list) order(parameter.bounds);
    const std::size_t varied = variedParameters(document.fit).size();
    document.fit.covariance.values.assign(varied * (varied + 1) / 2, 0.1);

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
