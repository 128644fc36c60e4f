#include "plotwerk/data/head.h"

#include <algorithm>

namespace plotwerk {

bool isPlainRow(const std::vector<Field> &fields) {
    bool number = false, empty = true;
    for (const Field &field : fields) {
        if (field.kind == FieldKind::word) return false;
        number = number || (field.kind == FieldKind::number && !field.quoted);
        empty = empty && field.kind == FieldKind::missing && field.text.empty() && !field.quoted;
    }
    return !fields.empty() && (number || empty);
}

static bool isAllQuotedNumbers(const std::vector<Field> &fields) {
    bool any = false;
    for (const Field &field : fields) {
        if (isNumeric(field.kind) ? !field.quoted : field.kind == FieldKind::word) return false;
        any = any || isNumeric(field.kind);
    }
    return any;
}

static bool areWords(const std::vector<Field> &fields, std::size_t wanted) {
    return fields.size() == wanted &&
           std::all_of(fields.begin(), fields.end(),
                       [](const Field &field) { return field.kind == FieldKind::word; });
}

static bool isAllTimes(const std::vector<Field> &fields) {
    return !fields.empty() && std::all_of(fields.begin(), fields.end(), [](const Field &field) {
        return field.kind == FieldKind::time;
    });
}

// Whether a line is a row of the columns that have these kinds: it has a number, and words only
// where there are none below.
static bool fits(const std::vector<Field> &fields, const std::vector<FieldKind> &columns,
                 char separator) {
    bool number = false;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const bool known = i < columns.size();
        if (fields[i].kind == FieldKind::word && (known ? isNumeric(columns[i]) : separator == ' '))
            return false;
        number = number || (isNumeric(fields[i].kind) && !fields[i].quoted);
    }
    return number;
}

static std::vector<bool> joinedFields(const std::vector<Field> &fields) {
    std::vector<bool> joined;
    joined.reserve(fields.size());
    for (const Field &field : fields) joined.push_back(field.joined);
    return joined;
}

std::size_t beginOfGroup(const std::vector<HeadLine> &head) {
    std::size_t begin = head.size();
    while (begin > 0 && !head[begin - 1].beginsGroup) --begin;
    return begin > 0 ? begin - 1 : 0;
}

TableLayout layoutOfPlainRow(const std::vector<HeadLine> &head, std::size_t begin,
                             const std::vector<Field> &fields, char separator, Commas commas) {
    TableLayout layout{head.size(), separator, fields.size(), joinedFields(fields)};
    std::vector<FieldKind> kinds;
    kinds.reserve(fields.size());
    for (const Field &field : fields) kinds.push_back(field.kind);

    std::vector<Field> above;
    std::optional<std::size_t> quotedRow; // the line before, if all its numbers are in quotes
    bool hasNames = false;
    for (std::size_t i = begin; i < head.size(); ++i) {
        if (head[i].isComment) continue;
        readFields(head[i].text, separator, commas, above);
        const bool beginsAsRow = hasNames && separator != ' ' && above.size() == fields.size() &&
                                 isNumeric(above.front().kind) && !above.front().quoted;
        if (beginsAsRow || fits(above, kinds, separator)) { // a word in a row: a missing value
            layout.firstRow = i;
            break;
        }
        const bool isQuoted = isAllQuotedNumbers(above);
        if (isQuoted && (quotedRow || hasNames)) { // one alone may be names
            layout.firstRow = quotedRow.value_or(i);
            break;
        }
        quotedRow = isQuoted ? std::optional(i) : std::nullopt;
        hasNames = hasNames || areWords(above, fields.size());
    }
    return layout;
}

namespace {

// What the lines of a head are as rows.
struct WordRows {
    std::vector<FieldKind> columns; // number where more rows have numbers than words, else missing
    std::size_t width = 0;          // of the last row
    std::vector<bool> joined;       // in the last row
};

} // namespace

// The lower half says what the columns are.
static WordRows columnsBelow(const std::vector<HeadLine> &head,
                             const std::vector<std::size_t> &lines, char separator, Commas commas) {
    WordRows rows;
    std::vector<int> balance; // numbers less words
    std::vector<Field> fields;
    for (std::size_t i = lines.size() / 2; i < lines.size(); ++i) {
        readFields(head[lines[i]].text, separator, commas, fields);
        if (fields.size() > balance.size()) balance.resize(fields.size());
        for (std::size_t k = 0; k < fields.size(); ++k)
            balance[k] += isNumeric(fields[k].kind) - (fields[k].kind == FieldKind::word);
    }
    rows.width = fields.size();
    rows.joined = joinedFields(fields);
    rows.columns.reserve(balance.size());
    for (const int each : balance)
        rows.columns.push_back(each > 0 ? FieldKind::number : FieldKind::missing);
    return rows;
}

std::optional<TableLayout> layoutOfWords(const std::vector<HeadLine> &head, Commas commas,
                                         bool wordsEverywhere) {
    std::vector<std::size_t> lines;
    for (std::size_t i = beginOfGroup(head); i < head.size(); ++i)
        if (!head[i].isComment) lines.push_back(i);
    if (lines.empty()) return std::nullopt;
    const char separator = separatorOf(head[lines.back()].text, commas);
    WordRows rows = columnsBelow(head, lines, separator, commas);

    std::vector<Field> fields;
    std::size_t first = head.size(), fitting = 0, others = 0;
    for (const std::size_t i : lines) {
        readFields(head[i].text, separator, commas, fields);
        const bool fit = (fits(fields, rows.columns, separator) || isAllQuotedNumbers(fields) ||
                          isAllTimes(fields)) &&
                         (separator != ' ' || fields.size() == rows.width);
        if (fit && first == head.size()) first = i;
        if (first != head.size()) ++(fit ? fitting : others);
    }
    const auto numeric = std::count(rows.columns.begin(), rows.columns.end(), FieldKind::number);
    const bool isTable = numeric >= (wordsEverywhere ? 1 : 2) && fitting > others &&
                         (fitting > 1 || (wordsEverywhere && separator != ' '));
    if (!isTable || (separator == ' ' && others > 0)) return std::nullopt;
    return TableLayout{first, separator, rows.width, std::move(rows.joined)};
}

} // namespace plotwerk
