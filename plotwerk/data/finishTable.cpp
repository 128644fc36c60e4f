#include "plotwerk/data/finishTable.h"

#include "plotwerk/model/names.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace plotwerk {

static std::size_t numbersIn(const std::vector<double> &column) {
    return static_cast<std::size_t>(std::count_if(column.begin(), column.end(),
                                                  [](double value) { return !std::isnan(value); }));
}

// How the log calls a column.
static std::string labelOf(std::size_t column, const Names &names) {
    if (column < names.size() && names[column]) return inQuotes(*names[column]);
    return "column " + std::to_string(column + 1);
}

// Which columns hold words and hardly ever a number. The words of the others are told.
static std::vector<bool> columnsOfWords(const TableRows &rows, const Names &names,
                                        Remarks &remarks) {
    std::vector<bool> ofWords(rows.facts.size());
    for (std::size_t i = 0; i < ofWords.size(); ++i) {
        const ColumnFacts &facts = rows.facts[i];
        if (facts.words == 0) continue;
        const std::size_t numbers = i < rows.columns.size() ? numbersIn(rows.columns[i]) : 0;
        ofWords[i] = numbers == 0 || (facts.wordsBesideNumbers > 0 && numbers * 10 < rows.count);
        if (ofWords[i])
            remarks.addLeftOut(labelOf(i, names));
        else
            remarks.addWords(facts.words, inQuotes(facts.firstWord) + " in line " +
                                              std::to_string(facts.firstLine) + ", " +
                                              labelOf(i, names));
    }
    return ofWords;
}

// Takes away the columns of words, and with them what is empty in front.
static void leaveOutWords(TableRows &rows, Names &names, Remarks &remarks) {
    std::vector<bool> leave = columnsOfWords(rows, names, remarks);
    if (std::find(leave.begin(), leave.end(), true) == leave.end()) return;
    const std::size_t width = std::max(rows.columns.size(), names.size());
    leave.resize(width);
    names.resize(width);
    rows.columns.resize(width);
    rows.facts.resize(width);
    for (std::size_t i = 0; i < width; ++i) {
        if (!leave[i] && (names[i] || numbersIn(rows.columns[i]) > 0)) break;
        leave[i] = true;
    }

    std::size_t kept = 0;
    for (std::size_t i = 0; i < width; ++i) {
        if (leave[i]) continue;
        if (kept != i) {
            names[kept] = std::move(names[i]);
            rows.columns[kept] = std::move(rows.columns[i]);
            rows.facts[kept] = rows.facts[i];
        }
        ++kept;
    }
    names.resize(kept);
    rows.columns.resize(kept);
    rows.facts.resize(kept);
}

// Makes the names no more than the columns, of which one alone may have its x named, too. Words
// between blanks that are more than the columns are a title, or names with blanks in them.
static void fitNames(const TableRows &rows, char separator, Names &names, Remarks &remarks) {
    if (!names.empty())
        for (std::size_t i = names.size(); i < rows.columns.size(); ++i)
            remarks.addUnnamed(labelOf(i, names));
    const std::size_t most = std::max({rows.columns.size(), rows.facts.size(), std::size_t{2}});
    if (names.size() <= most) return;
    const std::size_t used = separator == ' ' ? 0 : most;
    for (std::size_t i = used; i < names.size(); ++i)
        if (names[i]) remarks.addUnusedName(inQuotes(*names[i]));
    names.resize(used);
}

// Puts an x in front that counts the rows. Of two or more names the first is its.
static void countRows(TableRows &rows, Names &names) {
    std::vector<double> x(rows.count);
    std::iota(x.begin(), x.end(), 0.0);
    rows.columns.insert(rows.columns.begin(), std::move(x));
    rows.facts.emplace(rows.facts.begin());
    if (names.size() == 1) names.insert(names.begin(), std::nullopt);
    names.resize(2);
}

static bool isTime(std::size_t column, const TableRows &rows, const Names &names,
                   Remarks &remarks) {
    if (column >= rows.facts.size() || rows.facts[column].times == 0) return false;
    const std::size_t times = rows.facts[column].times;
    const std::size_t numbers = numbersIn(rows.columns[column]); // times are among them
    if (numbers > times) remarks.addMixed(labelOf(column, names));
    return 2 * times >= numbers;
}

std::optional<DataTable> finishTable(TableRows rows, char separator, Names names,
                                     TableSizes &finished, Remarks &remarks) {
    remarks.linesOfWords.add(rows.linesOfWords);
    fitNames(rows, separator, names, remarks);
    leaveOutWords(rows, names, remarks);
    if (rows.columns.empty()) return std::nullopt;
    DataTable result;
    result.countedX = rows.columns.size() == 1;
    if (result.countedX) countRows(rows, names);

    const std::size_t width = std::max(rows.columns.size(), names.size());
    requireRoom(finished, width, rows.count);
    rows.columns.resize(width);
    names.resize(width);
    result.table.y.resize(width - 1);
    for (std::size_t i = 0; i < width; ++i) {
        Column &column = i == 0 ? result.table.x : result.table.y[i - 1];
        column.isTime = isTime(i, rows, names, remarks);
        column.name =
            nameOf(names[i].value_or(i == 0 ? "X" : std::string("Y").append(std::to_string(i))));
        requireName(column.name);
        std::vector<double> &values = rows.columns[i];
        values.resize(rows.count, unset);
        if (values.capacity() / 2 > rows.count) values.shrink_to_fit();
        column.values = std::move(values);
    }
    finished.columns += width;
    finished.values += width * rows.count;
    return result;
}

} // namespace plotwerk
