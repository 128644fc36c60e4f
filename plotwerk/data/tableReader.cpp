#include "plotwerk/data/tableReader.h"

#include "plotwerk/data/columnNames.h"
#include "plotwerk/data/finishTable.h"
#include "util/text/word.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace plotwerk {

// Head lines that are looked at together; a text of nothing else is looked at in such pieces.
static constexpr std::size_t mostHeadLines = 256;

// How often one of them is read, at most: by itself, and as one of a group.
static constexpr int readingsOfHead = 4;

void TableReader::readLine(const char *line, std::size_t number, const char *textEnd) {
    if (rows.appendPlain(line, textEnd)) return;
    const bool isHead = rows.rows().count == 0;
    time.addLine(std::strlen(line), isHead ? readingsOfHead : 1);
    const char *comment = commentOf(line);
    if (*plw::skipSpaces(line) == '\0') {
        endGroup();
    } else if (comment != nullptr) {
        if (isHead) addHead({comment, number, true});
    } else if (isHead) {
        readHead(line, number);
    } else {
        readRow(line, number);
    }
}

std::vector<DataTable> TableReader::takeTables() {
    endGroup();
    dropFromHead(head.size());
    return std::move(tables);
}

void TableReader::addHead(HeadLine line) {
    line.beginsGroup = headEnded;
    headEnded = false;
    if (head.size() >= 2 * mostHeadLines) dropFromHead(mostHeadLines);
    head.push_back(line);
}

// The first lines of it, which name nothing. What stands above the first table needn't be told.
void TableReader::dropFromHead(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (!tables.empty() && !head[i].isComment) remarks.linesOfWords.add(head[i].number);
    head.erase(head.begin(), head.begin() + static_cast<std::ptrdiff_t>(count));
}

void TableReader::readHead(const char *line, std::size_t number) {
    const char separator = separatorOf(line, commas);
    readFields(line, separator, commas, fields);
    time.addFields(fields, readingsOfHead);
    if (fields.empty()) return;
    if (!isPlainRow(fields)) {
        noteStop(number);
        addHead({line, number, false});
        if (head.size() >= mostHeadLines && !beginTableOfWords()) dropFromHead(mostHeadLines / 2);
        return;
    }
    const bool isEmpty = std::none_of(fields.begin(), fields.end(), [](const Field &field) {
        return field.kind == FieldKind::number;
    });
    const bool hasHead =
        std::any_of(head.begin(), head.end(), [](const HeadLine &each) { return !each.isComment; });
    if (isEmpty && hasHead) return; // an empty line of a spreadsheet
    const std::size_t begin = headEnded ? head.size() : beginOfGroup(head);
    beginTable(layoutOfPlainRow(head, begin, fields, separator, commas));
    readRow(line, number);
}

void TableReader::noteStop(std::size_t lineNumber) {
    if (stops == 2) return;
    ++stops;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].kind != FieldKind::word && !fields[i].quoted) continue;
        whereReadingStopped = "line " + std::to_string(lineNumber) + ", cell " +
                              std::to_string(i + 1) + ": " + inQuotes(fields[i].text) +
                              " is no number";
        return;
    }
}

bool TableReader::beginsWithNumber(const char *line) {
    readFields(line, tableSeparator, commas, fields);
    return !fields.empty() && isNumeric(fields.front().kind) && !fields.front().quoted;
}

// Begins a table with the last group of head lines if they, words and all, are rows. False if they
// aren't.
bool TableReader::beginTableOfWords() {
    const auto layout = layoutOfWords(head, commas, wordsEverywhere);
    if (layout) beginTable(*layout);
    return layout.has_value();
}

// Takes the names from the head, and reads those lines of it that are rows.
void TableReader::beginTable(const TableLayout &layout) {
    for (const HeadLine &line : head) time.addNames(std::strlen(line.text));
    names = columnNames(head, layout, commas);
    tableSeparator = layout.separator;
    rows = RowReader(tableSeparator, commas, finished, time);
    const std::vector<HeadLine> lines = std::exchange(head, {});
    headEnded = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].isComment) continue;
        if (i >= layout.firstRow)
            readRow(lines[i].text, lines[i].number);
        else if (beginsWithNumber(lines[i].text))
            remarks.unreadRows.add(lines[i].number);
    }
}

void TableReader::readRow(const char *line, std::size_t number) {
    if (!rows.append(line, number)) addHead({line, number, false});
}

void TableReader::endGroup() {
    if (rows.rows().count == 0 && !head.empty() && !headEnded) beginTableOfWords();
    if (rows.rows().count == 0) {
        headEnded = !head.empty();
        return;
    }
    std::optional<DataTable> table =
        finishTable(rows.take(), tableSeparator, std::move(names), finished, remarks);
    if (table) tables.push_back(std::move(*table));
    names.clear();
}

} // namespace plotwerk
