#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/drawing/pages.h"
#include "plotwerk/files/documentFields.h"
#include "tests/fuzz/fuzz.h"

#include <cfloat>
#include <climits>
#include <cstring>

using namespace plotwerk;

namespace {

// An archive that fills a document's fields from the input, whatever values that gives.
struct Fill {
    const std::uint8_t *next, *end;

    template<class T> T take() {
        T value{};
        const std::size_t n = std::min(sizeof value, static_cast<std::size_t>(end - next));
        std::memcpy(&value, next, n);
        next += n;
        return value;
    }
    std::size_t below(std::size_t n) { return take<std::uint8_t>() % n; }

    void operator()(const char *, bool &value) { value = below(2) == 1; }
    void operator()(const char *, int &value) {
        value = below(3) == 0 ? take<int>() : take<std::int8_t>();
    }
    // short numbers, the default, or any bits
    void operator()(const char *, double &value) {
        switch (below(4)) {
        case 0: break;
        case 1: value = take<std::int8_t>(); break;
        case 2: value = take<float>(); break;
        default: value = take<double>();
        }
    }
    void operator()(const char *, std::string &text) {
        text.resize(below(16));
        for (char &c : text) c = static_cast<char>(' ' + below(95));
    }
    template<class T> void operator()(const char *key, std::vector<T> &values) {
        values.resize(below(std::is_same_v<T, double> ? 32 : 4));
        for (T &value : values) (*this)(key, value);
    }
    template<class T, std::size_t n> void operator()(const char *key, std::array<T, n> &values) {
        for (T &value : values) (*this)(key, value);
    }
    template<class T> void operator()(const char *, T &record) { fields(*this, record); }
};

} // namespace

template<class T> static void limit(T &setting, T low, T high) {
    setting = setting >= low && setting <= high ? setting : low;
}

// What the model keeps within limits, before anything is drawn.
static void limit(CurveLook &look) {
    limit(look.sum, 0, INT_MAX);
    limit(look.interpolationPoints, 0.0, 1e6);
    limit(look.interpolationType, 0, 1);
    limit(look.symbolSize, 0.0, 200.0);
    limit(look.symbolInc, 1, INT_MAX);
    for (int &symbol : look.symbol) limit(symbol, 0, INT_MAX);
    limit(look.lineThickness, 0.0, 50.0);
    for (double &length : look.dashLength) limit(length, 0.0, 1000.0);
    for (Colour *colour : {&look.lineColour, &look.fillColour})
        for (double *part : {&colour->red, &colour->green, &colour->blue, &colour->opacity})
            limit(*part, 0.0, 1.0);
}

static void limit(Axis &axis) {
    limit(axis.increment, 0.0, DBL_MAX);
    limit(axis.ticks, -1, 100);
    limit(axis.precision, -1, 16);
    limit(axis.labelAngle, -360.0, 360.0);
    for (int *decades : {&axis.logTicksAt, &axis.logNumbersAt})
        if (*decades != -1) limit(*decades, 1, 600);
    limit(axis.labelDensity, 0.1, 10.0);
}

static void limit(Document &document) {
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y) limit(column.look);
    for (Axis &axis : document.axes) limit(axis);
    limit(document.frame.xAxisLength, 1.0, 100.0);
    limit(document.frame.yAxisLength, 1.0, 100.0);
    limit(document.frame.tickLength, 0.0, 100.0);
    limit(document.frame.axisThickness, 0.0, 20.0);
    for (PlacedText &text : document.texts)
        for (double *number : {&text.x, &text.y, &text.angle}) limit(*number, -DBL_MAX, DBL_MAX);
}

// Data, ranges and axis positions may be any numbers: every document can be drawn, and pointed at.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Document document;
    Fill fill{data, data + size};
    fields(fill, document);
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y) column.values.resize(table.x.values.size(), 1);
    limit(document);
    require(pdfOfDocument(document).starts_with("%PDF"));
    nearestPoint(document, 1, 1);
    return 0;
}
