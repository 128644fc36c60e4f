// errorColumns.h - which columns of a table hold the errors of which.
//
// The name of a column of errors has the name of what it belongs to, NAME, in one of these forms:
//   NAME error   NAME err   NAME_error   NAME_err   NAME ±   ±NAME   dNAME   sigma NAME   σ NAME
// or two columns, NAME + and NAME -, hold the errors upwards and downwards. NAME is another column
// of the table, x, or a plain X for x. Where NAME ends in a unit, in brackets, the unit may stand
// at the end of all instead, or be left out: "U (V)" has its errors in "U (V) error", "U error (V)"
// or "U error", but not in "U error (mV)".
//
// A column that is called err, error, ±, sigma, σ or dy and no more, a unit aside, belongs to the
// nearest column before it that holds no errors, dx to x. That is x only for the first y columns,
// and not for dy. A table without a column that holds no errors has only curves.
#ifndef PLOTWERK_MODEL_ERRORCOLUMNS_H
#define PLOTWERK_MODEL_ERRORCOLUMNS_H

#include "plotwerk/model/document.h"

#include <optional>
#include <string>
#include <vector>

namespace plotwerk {

// The columns with the errors of one curve, or of x: one for both directions, or a pair. Both null
// without any.
struct Errors {
    const Column *above = nullptr;
    const Column *below = nullptr;

    explicit operator bool() const { return above != nullptr; }
    bool isPair() const { return above != below; }
    bool operator==(const Errors &) const = default;
};

// All columns of a table are decided on at once, in a time that goes with their number; what the
// table becomes later doesn't change it. Of several columns for the same errors the leftmost
// counts, one that names its curve before one that stands behind it, and a single one before a
// pair. The others hold errors all the same.
class ErrorColumns {
  public:
    explicit ErrorColumns(const Table &table);

    bool holdsErrors(std::size_t column) const { return owners[column] != noOwner; }

    const Errors &ofX() const {
        if (named.front()) return named.front();
        return named.back() ? named.back() : behind.front();
    }
    const Errors &ofY(std::size_t column) const {
        const Errors &byName = named[first[column]];
        return byName ? byName : behind[column + 1];
    }

    // The first column with the name of that one, by which errors name it: 0 for x, y columns count
    // from 1.
    std::size_t firstNamed(std::size_t column) const { return first[column]; }

    // That of the column which a column of errors names; nothing where its place tells it.
    std::optional<std::size_t> namedOwner(std::size_t column) const {
        return owners[column] < 0 ? std::nullopt : std::optional<std::size_t>(owners[column]);
    }

  private:
    static constexpr int noOwner = -1;
    static constexpr int ownerInFront = -2; // that is told by the place

    void findNamed(const Table &table);
    void findBehind(const Table &table);

    // x is column 0 here, y columns count from 1, a plain X comes after the last.
    std::vector<std::size_t> first; // of each y column the first column with its name
    std::vector<int> owners;        // of each y column
    std::vector<Errors> named;
    std::vector<Errors> behind;
};

// The name that a column of errors gets with what it belongs to: in the same form.
//   "U error (V)", "U (V)", "I (A)" -> "I error (A)"
std::string errorNameAlong(const std::string &errorName, const std::string &oldName,
                           const std::string &newName);

} // namespace plotwerk

#endif
