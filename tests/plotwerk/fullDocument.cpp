#include "tests/plotwerk/fullDocument.h"

#include "plotwerk/files/documentFields.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>

using namespace plotwerk;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double numbers[] = {0.1,
                              -0.0,
                              std::numeric_limits<double>::denorm_min(),
                              std::numeric_limits<double>::max(),
                              -infinity,
                              1e300 / 3,
                              unset,
                              9007199254740993.0,
                              infinity,
                              -123456789.0,
                              5e-5F};

// Gives each field a value of its own.
class Filler {
  public:
    explicit Filler(size_t elements) : size(elements) {}

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
    template<class T> void operator()(const char *key, std::vector<T> &records) {
        records.resize(size);
        for (T &record : records) (*this)(key, record);
    }
    template<class T, size_t n> void operator()(const char *key, std::array<T, n> &records) {
        for (T &record : records) (*this)(key, record);
    }
    template<class T> void operator()(const char *, T &record) { fields(*this, record); }

  private:
    size_t size;
    int count = 0;
};

class Lister {
  public:
    std::vector<std::string> lines;

    void operator()(const char *key, bool &value) { add(key, std::to_string(value)); }
    void operator()(const char *key, int &value) { add(key, std::to_string(value)); }
    void operator()(const char *key, double &value) {
        add(key, std::isnan(value) ? "nan" : std::to_string(std::bit_cast<uint64_t>(value)));
    }
    void operator()(const char *key, std::string &value) { add(key, value); }
    template<class T> void operator()(const char *key, std::vector<T> &records) {
        add(key, "of " + std::to_string(records.size()));
        for (T &record : records) (*this)(key, record);
    }
    template<class T, size_t n> void operator()(const char *key, std::array<T, n> &records) {
        for (T &record : records) (*this)(key, record);
    }
    template<class T> void operator()(const char *, T &record) { fields(*this, record); }

  private:
    void add(const std::string &key, const std::string &value) {
        lines.push_back(key + ' ' + value);
    }
};

Document filled(size_t elements) {
    Document document;
    Filler filler(elements);
    fields(filler, document);

    // Only one curve of a document is its fit data, and one is drawn by the fit.
    for (Source &source : document.sources) {
        for (Table &table : source.tables) {
            for (Column &column : table.y) column.fitData = column.drawnByFit = false;
        }
    }
    document.sources.back().tables.back().y.back().fitData = true;
    document.sources.front().tables.front().y.front().drawnByFit = true;

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
    document.axes[0].ticks = INT_MAX;
    document.axes[0].precision = INT_MIN;
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
    Lister lister;
    fields(lister, document);
    return lister.lines;
}
