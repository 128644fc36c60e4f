#include "plotwerk/journal/restoration.h"

#include "plotwerk/files/documentFile.h"
#include "plotwerk/model/change.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <sstream>
#include <string>
#include <utility>

namespace plotwerk {

static constexpr char mark = 'v'; // messages begin with a decimal separator

static std::string_view rawBytes(const std::vector<double> &values) {
    return {reinterpret_cast<const char *>(values.data()), values.size() * sizeof(double)};
}

static std::string withoutValues(Document &document) {
    const ValuesAside aside(document);
    std::ostringstream stream;
    writeDocument(stream, document, true);
    if (!stream) throw std::bad_alloc(); // which the stream has kept to itself
    return std::move(stream).str();
}

std::optional<GatheredBytes> encodedRestoration(Document &document, const ColumnOrigins &origins) {
    constexpr std::ptrdiff_t mostOwn = 100; // beyond, the whole document is written as quickly
    const auto isOwn = [](std::int32_t origin) { return origin < 0; };
    if (std::count_if(origins.begin(), origins.end(), isOwn) > mostOwn) return std::nullopt;

    GatheredBytes bytes;
    bytes.putNumber(mark);
    bytes.putNumber(static_cast<std::uint8_t>(hasUnsavedChanges(document)));
    bytes.putCopy(withoutValues(document));
    auto origin = origins.begin();
    forColumns(document, [&](const Column &column) {
        bytes.putNumber(*origin);
        if (isOwn(*origin++)) bytes.putText(rawBytes(column.values));
    });
    return bytes;
}

bool isRestoration(std::string_view record) {
    return record.starts_with(mark);
}

static std::vector<double> valuesOf(std::string_view bytes) {
    if (bytes.size() % sizeof(double) != 0) throw Refusal("damaged: half a value");
    std::vector<double> values(bytes.size() / sizeof(double));
    if (!values.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
    return values;
}

static bool fillsTables(const Document &document, const std::vector<std::size_t> &rows) {
    auto row = rows.begin();
    for (const Source &source : document.sources)
        for (const Table &table : source.tables) {
            const auto end = row + 1 + static_cast<std::ptrdiff_t>(table.y.size());
            if (std::count(row, end, *row) != end - row) return false;
            row = end;
        }
    return true;
}

// A column gives its values to one at most.
void restoreBy(std::string_view record, Document &document) {
    ByteReader reader(record);
    reader.number<char>();
    const bool unsaved = reader.number<std::uint8_t>() != 0;
    Document version = documentOf(std::string(reader.text()));

    std::vector<std::vector<double> *> before;
    forColumns(document, [&](Column &column) { before.push_back(&column.values); });
    std::vector<std::pair<std::vector<double> *, std::vector<double> *>> moves;
    std::vector<std::size_t> rows;
    forColumns(version, [&](Column &column) {
        const auto origin = reader.number<std::int32_t>();
        if (origin < 0) {
            column.values = valuesOf(reader.text());
            rows.push_back(column.values.size());
            return;
        }
        const auto place = static_cast<std::size_t>(origin);
        if (place >= before.size() || !before[place])
            throw Refusal("damaged: a column from nowhere");
        rows.push_back(before[place]->size());
        moves.emplace_back(&column.values, std::exchange(before[place], nullptr));
    });
    if (!reader.rest().empty() || !fillsTables(version, rows))
        throw Refusal("damaged: not the values of its columns");
    for (const auto &[to, from] : moves) to->swap(*from);
    become(document, std::move(version), !unsaved);
}

} // namespace plotwerk
