#include "plotwerk/base/refusal.h"
#include "plotwerk/data/dataText.h"
#include "tests/fuzz/fuzz.h"

#include <bit>
#include <cmath>

using namespace plotwerk;

namespace {

std::vector<const Column *> columnsOf(const Table &table) {
    std::vector<const Column *> columns{&table.x};
    for (const Column &column : table.y) columns.push_back(&column);
    return columns;
}

bool isSame(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

} // namespace

// The tables of a text are rectangular, and written they are read as they were.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const char separator = size > 0 && (data[0] & 1) != 0 ? ',' : '.';
    std::vector<DataTable> tables;
    try {
        tables = readDataText(afterFirstByte(data, size), separator);
    } catch (const Refusal &) {
        return 0;
    }
    for (const DataTable &read : tables) {
        std::string text;
        writeDataText(columnsOf(read.table), separator, text);
        const std::vector<DataTable> again = readDataText(text, separator);
        require(again.size() == 1);
        const std::vector<const Column *> before = columnsOf(read.table);
        const std::vector<const Column *> after = columnsOf(again[0].table);
        require(before.size() == after.size() && before.size() > 1);
        for (std::size_t k = 0; k < before.size(); ++k) {
            const std::vector<double> &values = before[k]->values;
            require(!values.empty() && values.size() == before[0]->values.size());
            require(values.size() == after[k]->values.size());
            for (std::size_t i = 0; i < values.size(); ++i)
                require(isSame(values[i], after[k]->values[i]));
        }
    }
    return 0;
}
