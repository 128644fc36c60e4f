// columnValues.h - the values of all columns of a document, apart from the rest of it.
#ifndef PLOTWERK_MODEL_COLUMNVALUES_H
#define PLOTWERK_MODEL_COLUMNVALUES_H

#include "plotwerk/model/document.h"

#include <cstdint>
#include <vector>

namespace plotwerk {

// Calls work(column) for each column, those of x too, in the order of sources, tables and columns.
template<class AnyDocument, class Work> void forColumns(AnyDocument &document, Work work) {
    for (auto &source : document.sources)
        for (auto &table : source.tables) {
            work(table.x);
            for (auto &column : table.y) work(column);
        }
}

// Of each column of a version of a document, in that order, which column of the document before has
// had its values; negative: none.
using ColumnOrigins = std::vector<std::int32_t>;

// While it lives the columns are empty. The document has the same columns at the end.
class ValuesAside {
  public:
    explicit ValuesAside(Document &whole) : document(whole) {
        forColumns(document, [&](Column &) { values.emplace_back(); });
        exchange();
    }
    ~ValuesAside() { exchange(); }
    ValuesAside(const ValuesAside &) = delete;
    ValuesAside &operator=(const ValuesAside &) = delete;

  private:
    void exchange() {
        auto place = values.begin();
        forColumns(document, [&](Column &column) { column.values.swap(*place++); });
    }

    Document &document;
    std::vector<std::vector<double>> values;
};

} // namespace plotwerk

#endif
