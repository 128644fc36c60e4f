// fields.h - the fields of one line of data text.
#ifndef PLOTWERK_DATA_FIELDS_H
#define PLOTWERK_DATA_FIELDS_H

#include "plotwerk/data/cellText.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

enum class FieldKind : char { number, time, missing, word };

inline bool isNumeric(FieldKind kind) {
    return kind == FieldKind::number || kind == FieldKind::time;
}

struct Field {
    FieldKind kind = FieldKind::missing;
    bool quoted = false;
    bool joined = false; // a date and its time of day, with blanks or a separator between them
    double value = 0;    // NaN of a missing value and a word
    std::string_view text{};
};

// A line may not have more fields: Refusal.
inline constexpr std::size_t mostColumns = 1'000'000;

// The separator of cells that a line uses: ';', ',' where commas separate, a tab, or else ' '.
// Nothing within double quotes counts.
char separatorOf(std::string_view line, Commas commas);

// The fields of a row, as dataText.h tells. In a line whose cells a tab, semicolon or comma
// separates a word goes up to the next one, in others (' ') to the next blank or separator. The
// texts refer to the line.
void readFields(const char *line, char separator, Commas commas, std::vector<Field> &fields);

// The cells of a line of names, none for an empty one: split at each separator, with ' ' where
// readFields finds fields. No more than mostColumns.
using Names = std::vector<std::optional<std::string>>;
Names readNames(const char *line, char separator, Commas commas);

// Whether the rest of a line at p is nothing or a comment.
bool endsLine(const char *p);

// The comment that a line is, behind its mark (# % ! or //); null for any other line.
const char *commentOf(const char *line);

} // namespace plotwerk

#endif
