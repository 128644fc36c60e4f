// Documents and texts in them: read from any bytes, or with any numbers in them.
#include "plotwerk/base/refusal.h"
#include "plotwerk/drawing/hitTest.h"
#include "plotwerk/drawing/markup.h"
#include "plotwerk/drawing/pages.h"
#include "plotwerk/files/documentFields.h"
#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/editing.h"
#include "plotwerk/model/limits.h"
#include "plotwerk/model/selection.h"
#include "tests/fuzz/fuzz.h"

#include <bit>
#include <fuzzer/FuzzedDataProvider.h>
#include <glib.h>
#include <sstream>

using namespace plotwerk;

static std::string saved(const Document &document, bool binary) {
    std::ostringstream stream;
    writeDocument(stream, document, binary);
    return stream.str();
}

namespace {

// An archive that fills a document's fields from the input, whatever values that gives.
struct Fill {
    FuzzedDataProvider &input;

    void operator()(const char *, bool &value) { value = input.ConsumeBool(); }
    void operator()(const char *, int &value) {
        value = input.ConsumeBool() ? input.ConsumeIntegral<int>()
                                    : input.ConsumeIntegral<std::int8_t>();
    }
    // short numbers, the default, or any bits
    void operator()(const char *, double &value) {
        switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0: break;
        case 1: value = input.ConsumeIntegral<std::int8_t>(); break;
        case 2: value = std::bit_cast<float>(input.ConsumeIntegral<std::uint32_t>()); break;
        default: value = std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
        }
    }
    void operator()(const char *, std::string &text) {
        text.resize(input.ConsumeIntegralInRange(0, 15));
        for (char &c : text) c = input.ConsumeIntegralInRange(' ', '~');
    }
    template<class T> void operator()(const char *key, std::vector<T> &values) {
        values.resize(input.ConsumeIntegralInRange(0, std::is_same_v<T, double> ? 31 : 3));
        for (T &value : values) (*this)(key, value);
    }
    template<class T, std::size_t n> void operator()(const char *key, std::array<T, n> &values) {
        for (T &value : values) (*this)(key, value);
    }
    template<class T> void operator()(const char *, T &record) { fields(*this, record); }
    template<class T> void operator()(const char *key, T &value, Version) { (*this)(key, value); }
};

} // namespace

namespace fuzz {

// Whatever the bytes, what is read from them can be drawn, and saved so that it comes back.
void document(const std::string &input) {
    Document document;
    try {
        document = documentOf(input);
    } catch (const Refusal &) {
        return;
    }
    const std::string json = saved(document, false);
    require(saved(documentOf(json), false) == json);
    require(saved(documentOf(saved(document, true)), false) == json);
    require(pdfOfDocument(document).starts_with("%PDF"));

    // what counts on from the numbers in it keeps within the limits of a file
    if (numberOfCurves(document) == 0) return;
    selectByIndex(document, {}, true);
    showSelection(document);
    documentOf(saved(document, true));
}

// Data may be any numbers: every document within the limits can be drawn, and pointed at.
void picture(const std::string &input) {
    Document document;
    FuzzedDataProvider bytes(reinterpret_cast<const std::uint8_t *>(input.data()), input.size());
    Fill fill{bytes};
    fields(fill, document);
    for (Source &source : document.sources)
        for (Table &table : source.tables)
            for (Column &column : table.y) column.values.resize(table.x.values.size(), 1);
    const auto limit = []<class T>(const char *, T &number, const Limits &limits) {
        const bool isUnset = std::is_integral_v<T> ? number == -1 : number != number;
        if (limits.mayBeUnset && isUnset) return;
        if (!(number >= limits.least && number <= limits.most))
            number = static_cast<T>(limits.least);
    };
    limits(limit, document);
    require(pdfOfDocument(document).starts_with("%PDF"));
    nearestPoint(document, 1, 1);
}

// Whatever the text, each run is UTF-8 that can be set in type.
void richText(const std::string &input) {
    for (const std::string &text : {input, "{\\rtf1 " + input}) {
        const std::vector<char> block(text.begin(), text.end());
        const RichText runs = richTextOf({block.data(), block.size()});
        const RichText marked = readMarkup(runs);
        for (const RichText &each : {runs, marked}) {
            for (const TextRun &run : each) {
                require(!run.text.empty());
                require(g_utf8_validate(run.text.data(), static_cast<gssize>(run.text.size()),
                                        nullptr));
                for (const unsigned char c : run.text) require(c >= 0x20 || c == '\n' || c == '\t');
            }
        }
        require(plainTextOf(runs).size() <= 3 * 4096 + 16);
        require(plainTextOf(marked).size() <= 3 * 4096 + 16);
    }
}

} // namespace fuzz
