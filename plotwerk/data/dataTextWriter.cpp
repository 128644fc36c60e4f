#include "plotwerk/data/dataTextWriter.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/encoding.h"
#include "plotwerk/data/fields.h"
#include "util/number/format.h"
#include "util/text/scanline.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace plotwerk {

// A name that is a word where it stands needs no quotes.
static bool needsQuotes(const std::string &name) {
    if (name.empty() || name.starts_with(byteOrderMark) || commentOf(name.c_str()) != nullptr ||
        name.find_first_of(" \t;,#\"'") != std::string::npos)
        return true;
    double number;
    int count;
    if (plw::scanline(name.c_str(), &number, 1, &count) != name.c_str()) return true;
    std::vector<Field> fields;
    readFields(name.c_str(), '\t', Commas::separate, fields);
    return fields.front().kind != FieldKind::word;
}

static void writeName(std::string name, std::string &text) {
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    if (!needsQuotes(name)) {
        text += name;
        return;
    }
    const char quote = name.find('"') == std::string::npos ? '"' : '\'';
    text += quote;
    for (const char c : name) {
        if (c == quote) text += '\\';
        text += c;
    }
    if (name.ends_with('\\')) text += ' '; // the quote would belong to the name
    text += quote;
}

static void writeNumber(double value, char decimalSeparator, std::string &text) {
    const std::size_t begin = text.size();
    const char *digits = plw::stringOfDouble(value);
    if (std::isnan(value) || std::strtod(digits, nullptr) == value) {
        text += digits;
    } else {
        char exact[32];
        text.append(exact, std::to_chars(exact, exact + sizeof exact, value).ptr);
    }
    if (decimalSeparator == '.') return;
    const std::size_t point = text.find('.', begin);
    if (point != std::string::npos) text[point] = decimalSeparator;
}

static double bytesWhileGrowing(double length) {
    return 4 * length; // there are two then
}

double timeOfWriting(double numbers, double length) {
    return 130 * numbers + 20 * length;
}

// Of many rows, by some that are spread over them; 0 for few, which are written soon.
static double estimatedLength(const std::vector<const Column *> &columns) {
    constexpr std::size_t looks = 1000;
    const std::size_t rows = columns.front()->values.size();
    if (rows < 100 * looks) return 0;
    std::string text;
    for (const Column *column : columns) {
        for (std::size_t i = 0; i < looks; ++i)
            writeNumber(column->values[i * rows / looks], '.', text);
    }
    const double ofLooks = static_cast<double>(text.size() + looks * columns.size()); // separators
    return ofLooks / looks * static_cast<double>(rows);
}

void writeDataText(const std::vector<const Column *> &columns, char decimalSeparator,
                   std::string &text, double longest) {
    if (columns.empty()) return;
    const auto requireLength = [longest](double bytes) {
        if (bytes > longest) throw Refusal("the data are too long as text");
    };
    const auto width = static_cast<double>(columns.size());
    const auto rows = static_cast<double>(columns.front()->values.size());
    requireLength(static_cast<double>(text.size()) + 2 * width * rows);
    // Of what is much too long all needn't be written to see it; what is close to it is measured.
    const double estimate = estimatedLength(columns) / 1.2;
    requireLength(static_cast<double>(text.size()) + estimate);
    requireMemory(bytesWhileGrowing(static_cast<double>(text.size()) + estimate));
    requireTime(timeOfWriting(width * rows, static_cast<double>(text.size()) + estimate));
    if (!text.empty()) text += '\n';
    const auto writeLine = [&](auto writeField) {
        for (const Column *column : columns) {
            if (column != columns.front()) text += '\t';
            writeField(*column);
            requireLength(static_cast<double>(text.size()) + 1); // what ends it
        }
        text += '\n';
    };
    writeLine([&](const Column &column) { writeName(column.name, text); });
    for (std::size_t row = 0; row < columns.front()->values.size(); ++row) {
        writeLine(
            [&](const Column &column) { writeNumber(column.values[row], decimalSeparator, text); });
        const auto length = static_cast<double>(text.size());
        requireMemory(bytesWhileGrowing(length));
        requireTime(timeOfWriting(width * static_cast<double>(row), length));
    }
}

} // namespace plotwerk
