#include "plotwerk/data/dataText.h"

#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/commas.h"
#include "plotwerk/data/encoding.h"
#include "plotwerk/data/lines.h"
#include "plotwerk/data/readingTime.h"
#include "plotwerk/data/tableReader.h"

#include <algorithm>
#include <utility>

namespace plotwerk {

// The text has its lines ended by NUL then.
static std::vector<DataTable> readLines(std::string &text, TableReader &reader, ReadingTime &time) {
    Lines lines(text, time);
    while (const char *line = lines.next()) reader.readLine(line, lines.number(), lines.textEnd());
    return reader.takeTables();
}

static std::vector<DataTable> readTables(std::string text, Commas commas, ReadingTime &time) {
    TableReader reader(commas, false, time);
    std::vector<DataTable> tables = readLines(text, reader, time);
    reader.remarks.write();
    if (!tables.empty()) return tables;

    std::replace(text.begin(), text.end(), '\0', '\n');
    TableReader secondReader(commas, true, time);
    tables = readLines(text, secondReader, time);
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
    ReadingTime time(text.size());
    const Commas commas = commaUseOf(text, decimalSeparator, time).commas;
    return readTables(std::move(text), commas, time);
}

std::vector<DataTable> readDataFile(std::string bytes, char decimalSeparator) {
    ReadingTime time(bytes.size());
    std::string text = textOfFile(std::move(bytes), time);
    unifyLineEnds(text);
    const CommaUse use = commaUseOfFile(text, decimalSeparator, time);
    std::vector<DataTable> tables = readTables(std::move(text), use.commas, time);
    if (!use.remark.empty()) log(LogLevel::info, "data text: " + std::string(use.remark));
    return tables;
}

} // namespace plotwerk
