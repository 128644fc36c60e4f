#include "plotwerk/data/columnNames.h"

#include "util/text/charclass.h"
#include "util/text/word.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace plotwerk {

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

// Names with single blanks in them, between two or more: "Elapsed time   Output voltage".
static Names atWideGaps(const char *line) {
    Names names;
    const std::string_view text = line;
    for (std::size_t at = text.find_first_not_of(' '); at < text.size();) {
        const std::size_t end = std::min(text.find("  ", at), text.size());
        names.emplace_back(text.substr(at, end - at));
        at = text.find_first_not_of(' ', end);
    }
    return names;
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

// Of as many columns.
static void addUnits(const Names &units, Names &names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!names[i] || !units[i] || meansMissing(*units[i])) continue;
        const std::string &unit = *units[i];
        if (names[i]->ends_with(')') || names[i]->ends_with(']')) continue;
        const bool hasBrackets = unit.front() == '(' || unit.front() == '[';
        *names[i] += hasBrackets ? ' ' + unit : " (" + unit + ')';
    }
}

// Whether a comment has a number in it: rather a remark, or a row that doesn't count, than names.
static bool hasNumber(const HeadLine &line, char separator, Commas commas) {
    std::vector<Field> fields;
    readFields(line.text, separator, commas, fields);
    return std::any_of(fields.begin(), fields.end(),
                       [](const Field &field) { return isNumeric(field.kind); });
}

// The names in one line of the head.
static Names namesIn(const HeadLine &line, const TableLayout &layout, Commas commas) {
    const char separator = layout.separator;
    const std::size_t width = layout.width;
    const auto split = [&](char by) {
        Names found = readNames(line.text, by, commas);
        joinNames(found, layout.joined);
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
        other = atWideGaps(line.text);
        if (width > 1 && other.size() == width) return other;
    }
    // a title of several words names nothing
    if (!isSplit && width > 1 && std::strchr(plw::skipSpaces(line.text), ' ') != nullptr) return {};
    return found;
}

// Names, and the line of the head that has them; none for no names.
static std::pair<Names, std::size_t> lastNames(const std::vector<HeadLine> &head,
                                               const TableLayout &layout, Commas commas) {
    constexpr std::size_t farthestComment = 2; // names stand close above their columns
    for (std::size_t at = layout.firstRow; at-- > 0;) {
        Names found = namesIn(head[at], layout, commas);
        const bool isClose = layout.firstRow - at <= farthestComment;
        const bool names = head[at].isComment ? isClose && found.size() == layout.width &&
                                                    !hasNumber(head[at], layout.separator, commas)
                                              : !found.empty();
        if (names) return {std::move(found), at};
    }
    return {};
}

Names columnNames(const std::vector<HeadLine> &head, const TableLayout &layout, Commas commas) {
    const auto [last, at] = lastNames(head, layout, commas);

    // above them there may be the names, and these the units or what was noted below the units
    constexpr std::size_t mostBelowNames = 4;
    Names below = last;
    for (std::size_t i = at; i > 0 && at - i < mostBelowNames; --i) {
        if (head[i - 1].isComment != head[at].isComment || head[i].beginsGroup) break;
        Names above = namesIn(head[i - 1], layout, commas);
        if (above.size() != last.size()) break;
        if (areUnits(below) && !areUnits(above)) {
            addUnits(below, above);
            return above;
        }
        below = std::move(above);
    }
    return last;
}

} // namespace plotwerk
