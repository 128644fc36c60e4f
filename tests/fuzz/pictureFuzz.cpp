#include "plotwerk/drawing/pages.h"
#include "plotwerk/files/documentFields.h"
#include "tests/fuzz/fuzz.h"

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

// A file may hold any numbers: every document can be drawn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Document document;
    Fill fill{data, data + size};
    fields(fill, document);
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y) column.values.resize(table.x.values.size(), 1);
    require(pdfOfDocument(document).starts_with("%PDF"));
    return 0;
}
