#include "fct/table.h"

#include "util/files/output.h"

#include <charconv>
#include <iterator>

namespace plw {

// "-1.23457e+308", the longest that "%g" gives, and two blanks fit into 15 characters.
static constexpr std::size_t longestRow = 16 * 16;

static void flush(Table *table) {
    std::fwrite(table->text, 1, table->used, table->file);
    table->used = 0;
}

void openTable(Table *table, const char *path) {
    table->file = openOutput(path);
    table->path = path;
    table->used = 0;
}

void addRow(Table *table, const double *numbers, int count) {
    if (table->used + longestRow > sizeof table->text) flush(table);

    char *end = table->text + table->used;
    for (int i = 0; i < count; ++i) {
        if (i > 0) {
            *end++ = ' ';
            *end++ = ' ';
        }
        end = std::to_chars(end, std::end(table->text), numbers[i], std::chars_format::general, 6)
                  .ptr;
    }
    *end++ = '\n';
    table->used = static_cast<std::size_t>(end - table->text);
}

void closeTable(Table *table) {
    flush(table);
    closeOutput(table->file, table->path);
}

} // namespace plw
