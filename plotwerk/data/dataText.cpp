#include "plotwerk/data/dataText.h"

#include "plotwerk/base/bounds.h"
#include "plotwerk/base/log.h"
#include "plotwerk/base/refusal.h"
#include "plotwerk/data/commas.h"
#include "plotwerk/data/encoding.h"
#include "plotwerk/data/fields.h"
#include "plotwerk/model/names.h"
#include "util/number/format.h"
#include "util/text/charclass.h"
#include "util/text/scanline.h"
#include "util/text/word.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <string_view>
#include <utility>

namespace plotwerk {

static constexpr std::size_t mostValues = 100'000'000;

static constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

// True when two tabs of a line have nothing but blanks between them.
static bool hasEmptyField(const char *line) {
    for (const char *tab = std::strchr(line, '\t'); tab != nullptr; tab = std::strchr(tab, '\t')) {
        do ++tab;
        while (*tab == ' ');
        if (*tab == '\t') return true;
    }
    return false;
}

static bool isNumeric(FieldKind kind) {
    return kind == FieldKind::number || kind == FieldKind::time;
}

// Whether a line begins a table wherever it stands: it has a number, and no words, quotes aside.
static bool isPlainRow(const std::vector<Field> &fields) {
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

// Names of columns in which a date and its time have a name each get one for both.
static void joinNames(Names &names, const std::vector<bool> &joined) {
    const auto count = static_cast<std::size_t>(std::count(joined.begin(), joined.end(), true));
    if (count == 0 || names.size() != joined.size() + count) return;
    for (std::size_t i = 0; i < joined.size(); ++i) {
        if (!joined[i]) continue;
        if (names[i] && names[i + 1]) *names[i] += ' ' + *names[i + 1];
        names.erase(names.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    }
}

// Names with a unit behind a blank, as in "Time (s)  U [V]", made one each.
static Names withUnits(Names names) {
    Names joined;
    for (auto &name : names) {
        const bool isBracket = name && name->size() > 1 &&
                               ((name->front() == '(' && name->back() == ')') ||
                                (name->front() == '[' && name->back() == ']'));
        if (isBracket && !joined.empty() && joined.back())
            joined.back()->append(" ").append(*name);
        else
            joined.push_back(std::move(name));
    }
    return joined;
}

static bool areUnits(const Names &names) {
    bool any = false;
    for (const auto &name : names) {
        if (!name || name->empty() || meansMissing(*name)) continue;
        if (!isUnit(*name)) return false;
        any = true;
    }
    return any;
}

static void addUnits(const Names &units, Names &names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!names[i] || i >= units.size() || !units[i] || meansMissing(*units[i])) continue;
        const std::string &unit = *units[i];
        if (names[i]->ends_with(')') || names[i]->ends_with(']')) continue;
        const bool hasBrackets = unit.front() == '(' || unit.front() == '[';
        *names[i] += hasBrackets ? ' ' + unit : " (" + unit + ')';
    }
}

static std::string inQuotes(std::string_view text) {
    std::string result(1, '"');
    return result.append(text).append("\"");
}

namespace {

// What is told on the log when a text has been read.
class Remarks {
  public:
    void addLeftOut(const std::string &column) { addTo(leftOut, column); }
    void addMixed(const std::string &column) { addTo(mixed, column); }
    void addWords(std::size_t count, const std::string &first) {
        if (words == 0) firstWord = first;
        words += count;
    }

    void write() const {
        if (leftOut.count > 0)
            log(LogLevel::warning,
                "data text: left out, since they hold words: " + textOf(leftOut));
        if (mixed.count > 0)
            log(LogLevel::warning, "data text: both times and numbers in " + textOf(mixed));
        if (words > 0)
            log(LogLevel::warning, "data text: " + std::to_string(words) +
                                       (words == 1 ? " word" : " words") +
                                       " read as missing values, the first is " + firstWord);
    }

  private:
    struct List {
        std::string text;
        std::size_t count = 0;
    };
    static constexpr std::size_t mostNamed = 8;

    List leftOut, mixed;
    std::size_t words = 0;
    std::string firstWord;

    static void addTo(List &list, const std::string &column) {
        if (list.count++ >= mostNamed) return;
        list.text.append(list.text.empty() ? "" : ", ").append(column);
    }
    static std::string textOf(const List &list) {
        if (list.count <= mostNamed) return list.text;
        return list.text + " and " + std::to_string(list.count - mostNamed) + " more";
    }
};

// Reads the lines of a text, one by one, into tables.
class TableReader {
  public:
    // With wordsEverywhere even lines that all have words in them, and a column of numbers, are
    // rows.
    TableReader(Commas ofText, bool everywhere) : commas(ofText), wordsEverywhere(everywhere) {}

    // Lines stay where they are, as they are, until the tables are taken.
    void readLine(const char *line, std::size_t number) {
        lineNumber = number;
        if (rows > 0 && unusualRows < mostUnusualRows) {
            if (readPlainRow(line)) {
                unusualRows = 0;
                appendRow();
                return;
            }
            ++unusualRows;
        }
        const char *comment = commentOf(line);
        if (*plw::skipSpaces(line) == '\0') {
            endGroup();
        } else if (comment != nullptr) {
            if (rows == 0) addHead({comment, number, true});
        } else if (rows > 0) {
            readRow(line);
        } else {
            readHead(line);
        }
    }

    std::vector<DataTable> takeTables() {
        endGroup();
        return std::move(tables);
    }

    Remarks remarks;

    // Where the first field stands that is no number, in the first line that can't be names.
    std::string whereReadingStopped;

  private:
    // A line before the first row of a table.
    struct Line {
        const char *text;
        std::size_t number;
        bool isComment;
        bool beginsGroup = false; // behind an empty line
    };
    struct ColumnFacts {
        std::size_t words = 0;
        std::size_t times = 0;
        std::size_t firstLine = 0; // with a word
        std::string_view firstWord;
    };

    // Head lines that are looked at together; a text of nothing else is looked at in such pieces.
    static constexpr std::size_t mostHeadLines = 256;

    // After so many readPlainRow isn't tried any more.
    static constexpr int mostUnusualRows = 8;

    Commas commas;
    bool wordsEverywhere;
    std::vector<DataTable> tables;
    std::size_t values = 0; // of the tables that are finished
    std::size_t columnsInUse = 0;
    std::size_t lineNumber = 0;

    // the table that is being read
    std::vector<Line> head;
    bool headEnded = false; // by an empty line
    char separator = ' ';
    Names names;
    std::vector<std::vector<double>> columns; // up to the last row that has a value there
    std::vector<ColumnFacts> facts;
    std::size_t rows = 0;
    std::size_t emptyRows = 0; // of them without any number
    int unusualRows = 0;       // one after the other that readPlainRow didn't read

    std::vector<Field> fields;
    std::vector<double> row;
    std::string scratch;

    // --- before the first row ---

    void addHead(Line line) {
        line.beginsGroup = line.beginsGroup || headEnded;
        headEnded = false;
        if (head.size() >= 2 * mostHeadLines)
            head.erase(head.begin(), head.begin() + mostHeadLines);
        head.push_back(line);
    }

    std::size_t beginOfGroup() const {
        std::size_t begin = head.size();
        while (begin > 0 && !head[begin - 1].beginsGroup) --begin;
        return begin > 0 ? begin - 1 : 0;
    }

    bool hasHeadLine() const {
        return std::any_of(head.begin(), head.end(),
                           [](const Line &line) { return !line.isComment; });
    }

    void readHead(const char *line) {
        const char lineSeparator = separatorOf(line, commas);
        readFields(line, lineSeparator, commas, fields);
        if (fields.empty()) return;
        if (!isPlainRow(fields)) {
            noteStop(fields);
            addHead({line, lineNumber, false});
            if (head.size() >= mostHeadLines && !beginTableOfWords())
                head.erase(head.begin(), head.begin() + mostHeadLines / 2);
            return;
        }
        const bool isEmpty = std::none_of(fields.begin(), fields.end(), [](const Field &field) {
            return field.kind == FieldKind::number;
        });
        if (isEmpty && hasHeadLine()) return; // an empty line of a spreadsheet
        separator = lineSeparator;
        std::vector<FieldKind> kinds;
        for (const Field &field : fields) kinds.push_back(field.kind);
        const std::vector<bool> joined = joinedFields();
        const std::size_t width = fields.size();
        const std::size_t first = firstFitting(headEnded ? head.size() : beginOfGroup(), kinds);
        beginTable(first, width, joined);
        readRow(line);
    }

    std::vector<bool> joinedFields() const {
        std::vector<bool> joined;
        for (const Field &field : fields) joined.push_back(field.joined);
        return joined;
    }

    // The first line of the head, from that one on, that is a row of the columns. Numbers that are
    // all in quotes are one below names or others of their kind; a single line of them are names.
    std::size_t firstFitting(std::size_t begin, const std::vector<FieldKind> &kinds) {
        bool lastWasQuoted = false, hasNames = false;
        for (std::size_t i = begin; i < head.size(); ++i) {
            if (head[i].isComment) continue;
            readFields(head[i].text, separator, commas, fields);
            if (fits(fields, kinds, separator)) return lastWasQuoted ? i - 1 : i;
            const bool isQuoted = isAllQuotedNumbers(fields);
            if (isQuoted && lastWasQuoted) return i - 1;
            if (isQuoted && hasNames) return i;
            lastWasQuoted = isQuoted;
            hasNames = hasNames || areWords(fields, kinds.size());
        }
        return head.size();
    }

    // Begins a table with the last group of head lines if they, words and all, are rows. False if
    // they aren't.
    bool beginTableOfWords() {
        std::vector<std::size_t> lines;
        for (std::size_t i = beginOfGroup(); i < head.size(); ++i)
            if (!head[i].isComment) lines.push_back(i);
        if (lines.empty()) return false;
        separator = separatorOf(head[lines.back()].text, commas);

        // the lower half says what the columns are
        std::vector<int> balance; // numbers less words
        std::vector<bool> joined;
        std::size_t width = 0;
        for (std::size_t i = lines.size() / 2; i < lines.size(); ++i) {
            readFields(head[lines[i]].text, separator, commas, fields);
            if (fields.size() > balance.size()) balance.resize(fields.size());
            for (std::size_t k = 0; k < fields.size(); ++k)
                balance[k] += isNumeric(fields[k].kind) - (fields[k].kind == FieldKind::word);
            width = fields.size();
            joined = joinedFields();
        }
        std::vector<FieldKind> kinds;
        for (const int each : balance)
            kinds.push_back(each > 0 ? FieldKind::number : FieldKind::missing);
        const auto numeric = std::count(kinds.begin(), kinds.end(), FieldKind::number);

        std::size_t first = head.size(), fitting = 0, others = 0;
        for (const std::size_t i : lines) {
            readFields(head[i].text, separator, commas, fields);
            const bool fit = (fits(fields, kinds, separator) || isAllQuotedNumbers(fields) ||
                              hasTimesAlone(fields)) &&
                             (separator != ' ' || fields.size() == width);
            if (fit && first == head.size()) first = i;
            if (first != head.size()) ++(fit ? fitting : others);
        }
        const bool isTable = numeric >= (wordsEverywhere ? 1 : 2) && fitting > others &&
                             (fitting > 1 || (wordsEverywhere && separator != ' '));
        if (!isTable || (separator == ' ' && others > 0)) return false;
        beginTable(first, width, joined);
        return true;
    }

    static bool hasTimesAlone(const std::vector<Field> &line) {
        return !line.empty() && std::all_of(line.begin(), line.end(), [](const Field &field) {
            return field.kind == FieldKind::time;
        });
    }

    // Takes the names from the head lines before `first`, and reads those from there on as rows.
    void beginTable(std::size_t first, std::size_t width, const std::vector<bool> &joined) {
        names = namesFrom(first, width, joined);
        const std::vector<Line> lines(head.begin() + static_cast<std::ptrdiff_t>(first),
                                      head.end());
        head.clear();
        headEnded = false;
        const std::size_t current = lineNumber;
        for (const Line &line : lines) {
            lineNumber = line.number;
            if (!line.isComment) readRow(line.text);
        }
        lineNumber = current;
    }

    // The names in a head line, where there are so many columns below it.
    Names namesIn(const Line &line, std::size_t width, const std::vector<bool> &joined) const {
        const auto split = [&](char by) {
            Names found = readNames(line.text, by, commas);
            joinNames(found, joined);
            return found;
        };
        if (*plw::skipSpaces(line.text) == ';' && separator != ';') return {}; // others' comment
        const bool isSplit = separator == ' ' || std::strchr(line.text, separator) != nullptr;
        Names found = split(separator);
        // the row labels of a table have no name
        if (separator == '\t' && found.size() > width && !found.front()) found.erase(found.begin());
        if (found.size() == width) return found;
        for (const char by : {'\t', ';', ',', ' '}) {
            const bool isUsed = std::strchr(line.text, by) != nullptr;
            if (!isUsed || by == separator || (isSplit && separator != ' ')) continue;
            Names other = split(by);
            if (other.size() == width) return other;
        }
        if (separator == ' ' || !isSplit) {
            Names other = withUnits(split(' '));
            if (other.size() == width) return other;
        }
        // a title of several words names nothing
        if (!isSplit && width > 1 && std::strchr(plw::skipSpaces(line.text), ' ') != nullptr)
            return {};
        return found;
    }

    Names namesFrom(std::size_t first, std::size_t width, const std::vector<bool> &joined) const {
        const auto read = [&](std::size_t i) { return namesIn(head[i], width, joined); };
        std::size_t at = first;
        Names found;
        while (at-- > 0) {
            found = read(at);
            if (head[at].isComment) {
                const bool isTried = first - at > 2; // names stand close above their columns
                const bool fit = found.size() == width && !isTried && !hasNumber(head[at].text);
                if (fit) break;
                found.clear();
            } else if (!found.empty()) {
                break;
            }
        }
        if (found.empty()) return found;

        // above them there may be the names, and these the units or what was noted below the units
        constexpr std::size_t mostBelowNames = 4;
        Names below = found;
        for (std::size_t i = at; i > 0 && at - i < mostBelowNames; --i) {
            if (head[i - 1].isComment != head[at].isComment || head[i].beginsGroup) break;
            Names above = read(i - 1);
            if (above.size() != found.size() || areUnits(above) == areUnits(below)) {
                if (above.size() != found.size()) break;
                below = std::move(above);
                continue;
            }
            if (areUnits(below)) {
                addUnits(below, above);
                return above;
            }
            below = std::move(above);
        }
        return found;
    }

    // Whether a comment has a number in it: rather a remark, or a row that doesn't count, than
    // names.
    bool hasNumber(const char *text) const {
        std::vector<Field> found;
        readFields(text, separator, commas, found);
        return std::any_of(found.begin(), found.end(),
                           [](const Field &field) { return isNumeric(field.kind); });
    }

    void noteStop(const std::vector<Field> &line) {
        if (stops == 2) return;
        ++stops;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i].kind != FieldKind::word && !line[i].quoted) continue;
            whereReadingStopped = "line " + std::to_string(lineNumber) + ", cell " +
                                  std::to_string(i + 1) + ": " + inQuotes(line[i].text) +
                                  " is no number";
            return;
        }
    }
    int stops = 0; // lines so far that reading stopped at; of two the first may be names

    // --- rows ---

    void readRow(const char *line) {
        readFields(line, separator, commas, fields);
        takeFields(line);
    }

    // Makes the fields a row, and notes what isn't a number. A line of words behind rows without
    // any number begins the table anew, as its names.
    void takeFields(const char *line) {
        std::size_t width = 0;
        bool number = false, word = false;
        row.clear();
        if (facts.size() < fields.size()) facts.resize(fields.size());
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const Field &field = fields[i];
            if (field.kind == FieldKind::word) {
                word = true;
            } else {
                width = i + 1;
                number = number || isNumeric(field.kind);
            }
            row.push_back(isNumeric(field.kind) ? field.value : unset);
        }
        if (word && !number && emptyRows == rows) {
            columns.clear();
            rows = emptyRows = 0;
            addHead({line, lineNumber, false});
            return;
        }
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].kind == FieldKind::time) ++facts[i].times;
            if (fields[i].kind != FieldKind::word || !number) continue;
            if (facts[i].words++ > 0) continue;
            facts[i].firstLine = lineNumber;
            facts[i].firstWord = fields[i].text;
        }
        row.resize(width); // without words at the end
        if (!number) ++emptyRows;
        appendRow();
    }

    // The usual row: as many numbers as there are columns, and nothing else but separators. False
    // for any other row.
    bool readPlainRow(const char *line) {
        row.resize(columns.size());
        if (commas == Commas::decimal) line = withDecimalPoints(line);
        const bool usesCells = separator == ';' || separator == ',';
        return usesCells
                   ? readPlainCells(line)
                   : !hasEmptyField(line) && readNumbers(line, row.data(), row.size()) == '\0';
    }

    bool readPlainCells(const char *line) {
        const std::size_t last = row.size() - 1;
        for (std::size_t i = 0; i < last; ++i)
            if (readNumbers(line, &row[i], 1) != separator || *line++ != separator) return false;
        return readNumbers(line, &row[last], 1) == '\0';
    }

    // Reads so many numbers and moves p behind them and the blanks that follow. What stands there,
    // and a line end where there were fewer.
    static char readNumbers(const char *&p, double *to, std::size_t wanted) {
        int count;
        p = plw::scanline(p, to, static_cast<int>(wanted), &count);
        return static_cast<std::size_t>(count) == wanted ? *p : '\n';
    }

    const char *withDecimalPoints(const char *line) {
        scratch = line;
        std::replace(scratch.begin(), scratch.end(), ',', '.');
        return scratch.c_str();
    }

    void appendRow() {
        if (row.empty()) return;
        if (row.size() > columns.size()) columns.resize(row.size());
        requireRoom(columns.size(), rows + 1);
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::vector<double> &column = columns[i];
            if (column.size() < rows) column.resize(rows, unset);
            column.push_back(stored(row[i]));
        }
        ++rows;
    }

    void requireRoom(std::size_t width, std::size_t height) const {
        if (columnsInUse + width > mostColumns) throw Refusal("data text has too many columns");
        if (values + width * height > mostValues) throw Refusal("data text has too many values");
        requireMemory(16.0 * static_cast<double>(values + width * height)); // as they grow
    }

    // --- behind the last row ---

    void endGroup() {
        if (rows == 0 && !head.empty() && !headEnded) beginTableOfWords();
        if (rows == 0) {
            headEnded = !head.empty();
            return;
        }
        finishTable();
    }

    std::string nameOf(std::size_t column) const {
        if (column < names.size() && names[column]) return inQuotes(*names[column]);
        return "column " + std::to_string(column + 1);
    }

    // Takes away the columns of words, those that hardly ever hold a number, and with them what is
    // empty in front.
    void leaveOutWords() {
        const std::size_t width = std::max(columns.size(), names.size());
        std::vector<bool> leave(facts.size());
        for (std::size_t i = 0; i < facts.size(); ++i) {
            const ColumnFacts &each = facts[i];
            if (each.words == 0) continue;
            std::size_t numbers = 0;
            if (i < columns.size())
                for (const double value : columns[i]) numbers += !std::isnan(value);
            leave[i] = numbers * 10 < rows;
            if (leave[i])
                remarks.addLeftOut(nameOf(i));
            else
                remarks.addWords(each.words, inQuotes(each.firstWord) + " in line " +
                                                 std::to_string(each.firstLine) + ", " + nameOf(i));
        }
        if (std::find(leave.begin(), leave.end(), true) == leave.end()) return;
        leave.resize(width);
        const auto isEmpty = [&](std::size_t i) {
            if (i < names.size() && names[i]) return false;
            return i >= columns.size() ||
                   std::all_of(columns[i].begin(), columns[i].end(),
                               [](double value) { return std::isnan(value); });
        };
        for (std::size_t i = 0; i < width && (leave[i] || isEmpty(i)); ++i) leave[i] = true;

        names.resize(width);
        columns.resize(width);
        facts.resize(width);
        std::size_t kept = 0;
        for (std::size_t i = 0; i < width; ++i) {
            if (leave[i]) continue;
            if (kept != i) {
                names[kept] = std::move(names[i]);
                columns[kept] = std::move(columns[i]);
                facts[kept] = facts[i];
            }
            ++kept;
        }
        names.resize(kept);
        columns.resize(kept);
        facts.resize(kept);
    }

    bool isTime(std::size_t column) {
        if (column >= facts.size() || facts[column].times == 0) return false;
        std::size_t numbers = 0;
        for (const double value : columns[column]) numbers += !std::isnan(value);
        if (numbers > facts[column].times) remarks.addMixed(nameOf(column));
        return 2 * facts[column].times >= numbers;
    }

    void finishTable() {
        leaveOutWords();
        if (!columns.empty()) addTable();
        names.clear();
        columns.clear();
        facts.clear();
        rows = emptyRows = 0;
        unusualRows = 0;
    }

    void addTable() {
        DataTable result;
        result.countedX = columns.size() == 1;
        if (result.countedX) {
            columns.emplace(columns.begin(), rows);
            std::iota(columns.front().begin(), columns.front().end(), 0.0);
            facts.emplace(facts.begin());
            if (names.size() == 1) names.insert(names.begin(), std::nullopt);
            names.resize(2);
        }
        const std::size_t width = std::max(columns.size(), names.size());
        requireRoom(width, rows);
        columns.resize(width);
        names.resize(width);

        result.table.y.resize(width - 1);
        for (std::size_t i = 0; i < width; ++i) {
            Column &column = i == 0 ? result.table.x : result.table.y[i - 1];
            column.isTime = isTime(i);
            column.name = plotwerk::nameOf(
                names[i].value_or(i == 0 ? "X" : std::string("Y").append(std::to_string(i))));
            requireName(column.name);
            columns[i].resize(rows, unset);
            column.values = std::move(columns[i]);
        }
        tables.push_back(std::move(result));
        values += width * rows;
        columnsInUse += width;
    }
};

} // namespace

// So that every line ends in LF, and blanks may stand before it.
static void unifyLineEnds(std::string &text) {
    for (std::size_t at = 0; (at = text.find('\r', at)) != std::string::npos; ++at)
        text[at] = text[at + 1] == '\n' ? ' ' : '\n';
}

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

// The end of the text where there is none.
static char *nextLineFeed(char *p, char *end) {
    auto *found = static_cast<char *>(std::memchr(p, '\n', end - p));
    return found == nullptr ? end : found;
}

// Where the line ends that begins there: a cell in quotes may hold line ends, which become blanks.
// Quotes that nothing closes soon belong to a line of their own. *lines becomes how many were
// joined.
static char *endOfLine(char *line, char *const end, std::size_t *lines) {
    constexpr std::ptrdiff_t longestCell = 4096;
    char *lineEnd = nextLineFeed(line, end);
    const auto *quote = static_cast<char *>(std::memchr(line, '"', lineEnd - line));
    if (quote == nullptr) return lineEnd;

    char *open = nullptr; // the quote that begins the cell, while it isn't closed
    char *const last = end - lineEnd > longestCell ? lineEnd + longestCell : end;
    char before = ',';
    char *breaks[32];
    int count = 0;
    const auto join = [&](char *joinedEnd) {
        for (int i = 0; i < count; ++i) *breaks[i] = ' ';
        *lines += static_cast<std::size_t>(count);
        return joinedEnd;
    };
    for (char *p = line; p < last; ++p) {
        if (*p == '\n') {
            if (open == nullptr) {
                return join(p);
            }
            if (count == 32) break;
            breaks[count++] = p;
        } else if (*p == '"') {
            if (open == nullptr) {
                if (std::strchr(",;\t", before) != nullptr) open = p;
            } else if (p[1] == '"') {
                ++p;
            } else if (p[-1] != '\\') {
                open = nullptr;
            }
        }
        if (*p != ' ' && open == nullptr) before = *p;
    }
    if (open != nullptr || last != end) return lineEnd;
    return join(end);
}

// The text has its lines ended by NUL then.
static void readLines(std::string &text, TableReader &reader) {
    const bool hasQuotes = text.find('"') != std::string::npos;
    std::size_t number = 1;
    char *const end = text.data() + text.size();
    for (char *line = text.data(); line < end;) {
        std::size_t lines = 1;
        char *lineEnd = hasQuotes ? endOfLine(line, end, &lines) : nextLineFeed(line, end);
        *lineEnd = '\0';
        reader.readLine(line, number);
        number += lines;
        line = lineEnd + 1;
    }
}

static std::vector<DataTable> readTables(std::string text, Commas commas) {
    TableReader reader(commas, false);
    readLines(text, reader);
    std::vector<DataTable> tables = reader.takeTables();
    reader.remarks.write();
    if (!tables.empty()) return tables;

    std::replace(text.begin(), text.end(), '\0', '\n');
    TableReader secondReader(commas, true);
    readLines(text, secondReader);
    tables = secondReader.takeTables();
    if (tables.empty())
        throw Refusal("data text has no numbers" + (reader.whereReadingStopped.empty()
                                                        ? ", nothing but empty lines and comments"
                                                        : ": " + reader.whereReadingStopped));
    secondReader.remarks.write();
    return tables;
}

std::vector<DataTable> readDataText(std::string text, char decimalSeparator) {
    if (text.find('\0') != std::string::npos) throw Refusal("data text has a NUL byte");
    if (text.starts_with(byteOrderMark)) text.erase(0, std::strlen(byteOrderMark));
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

void writeDataText(const std::vector<const Column *> &columns, char decimalSeparator,
                   std::string &text, double longest) {
    if (columns.empty()) return;
    const auto requireLength = [longest](double bytes) {
        if (bytes > longest) throw Refusal("the data are too long as text");
    };
    const auto width = static_cast<double>(columns.size());
    const auto rows = static_cast<double>(columns.front()->values.size());
    requireLength(static_cast<double>(text.size()) + 2 * width * rows);
    if (!text.empty()) text += '\n';
    const auto writeLine = [&](auto writeField) {
        for (const Column *column : columns) {
            if (column != columns.front()) text += '\t';
            writeField(*column);
            requireLength(static_cast<double>(text.size()));
        }
        text += '\n';
    };
    writeLine([&](const Column &column) { writeName(column.name, text); });
    for (std::size_t row = 0; row < columns.front()->values.size(); ++row) {
        writeLine(
            [&](const Column &column) { writeNumber(column.values[row], decimalSeparator, text); });
        requireMemory(4.0 * static_cast<double>(text.size())); // while it grows there are two
    }
}

} // namespace plotwerk
