#include "plotwerk/data/dataText.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/commas.h"
#include "plotwerk/data/encoding.h"
#include "plotwerk/data/lines.h"
#include "plotwerk/data/tableReader.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

// The text has its lines ended by NUL then.
static std::vector<DataTable> readLines(std::string &text, TableReader &reader) {
    Lines lines(text);
    while (const char *line = lines.next()) reader.readLine(line, lines.number(), lines.textEnd());
    return reader.takeTables();
}

static std::vector<DataTable> readTables(std::string text, Commas commas) {
    TableReader reader(commas, false);
    std::vector<DataTable> tables = readLines(text, reader);
    reader.remarks.write();
    if (!tables.empty()) return tables;

    std::replace(text.begin(), text.end(), '\0', '\n');
    TableReader secondReader(commas, true);
    tables = readLines(text, secondReader);
    if (tables.empty())
        throw Refusal("data text has no numbers" + (reader.whereReadingStopped.empty()
                                                        ? ", nothing but empty lines and comments"
                                                        : ": " + reader.whereReadingStopped));
    secondReader.remarks.write();
    return tables;
}

std::vector<DataTable> readDataText(std::string text, char decimalSeparator) {
    if (text.find('\0') != std::string::npos) throw Refusal("data text has a NUL byte");
    if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
    unifyLineEnds(text);
    const Commas commas = commaUseOf(text, decimalSeparator).commas;
    return readTables(std::move(text), commas);
}

std::vector<DataTable> readDataFile(std::string bytes, char decimalSeparator) {
    std::string text = textOfFile(std::move(bytes));
    unifyLineEnds(text);
    const CommaUse use = commaUseOfFile(text, decimalSeparator);
    std::vector<DataTable> tables = readTables(std::move(text), use.commas);
    if (!use.remark.empty()) log(LogLevel::info, "data text: " + std::string(use.remark));
    return tables;
}

} // namespace plotwerk
