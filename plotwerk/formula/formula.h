// formula.h - the text of a formula, compiled.
//
// One expression for y in x, or several lines: helper values first, each "name = expression", and
// the value of the last line is y ("y = expression" and "f = expression" will do there as well).
//
//   amplitude * exp(-(x - centre)^2 / (2 * width^2)) + ground
//
//   arg = (x - x0) / w
//   a / (1 + arg^2) + b
//
// Names are letters, digits and _, and begin with no digit; letters are those of the Latin, Greek
// and Cyrillic alphabets in UTF-8; case counts. `x` and `y` are the point's, `pi` is a constant.
// Every other name that is neither a helper nor a function is a parameter, or one of the variables
// that the formula is given beside; such a name may stand in quotes, 'T (K)', and must if it is
// none of these names. Numbers are 1, 1.5, .5,
// 1e-3, with a point whatever the decimal separator.
//
// Operators, the tightest first:
//   ^            to the power of; from the right: 2^3^2 = 2^9; 2^-x needs no parentheses
//   - + !        before a value, looser than ^: -x^2 = -(x^2); !a is 1 where a is 0, else 0
//   * /          from the left
//   + -          from the left
//   < <= > >= == !=   1 or 0; they do not chain
//   &&           1 or 0
//   ||           1 or 0
//
// Functions:
//   exp expm1 log ln (both natural) log1p log2 log10 sqrt
//   sin cos tan asin acos atan sinh cosh tanh (radians)
//   abs sign floor ceil round erf erfc gamma lgamma (natural logarithm of |gamma|)
//   of two: pow atan2 (ordinate first) min max
//   of three: if(condition, value where it is not 0, value elsewhere)
#ifndef PLOTWERK_FORMULA_FORMULA_H
#define PLOTWERK_FORMULA_FORMULA_H

#include "plotwerk/formula/evaluator.h"
#include "plotwerk/formula/tape.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// Another name of x or y, or that of a column.
struct Variable {
    std::string name;
    Operation operation; // variableX, variableY or variableColumn
    int column = -1;
};

class Formula {
  public:
    // Of variables with the same name the first counts. Throws a Refusal that says what is wrong
    // and where, lines and characters counted from 1:
    //   "a*(x" -> `formula, line 1, column 5: expected ')'`
    // Refused as well: no expression at all, nesting deeper than 200, more than 10000 operations.
    explicit Formula(std::string_view text, std::span<const Variable> variables = {});

    // In the order in which they first appear in the text.
    const std::vector<std::string> &parameterNames() const { return names; }

    bool usesY() const { return compiled.y >= 0; }

    // The columns that it reads, by their numbers: those of Inputs, in that order.
    const std::vector<int> &columns() const { return columnsRead; }

    // The formula at the points; NaN where it has no value. out is as long as x and may be x or y.
    // The parameters are in the order of parameterNames().
    void evaluate(const Inputs &inputs, std::span<const double> parameters,
                  std::span<double> out) const;

    // Its derivatives by y there, all 0 when it doesn't use y.
    void differentiateByY(const Inputs &inputs, std::span<const double> parameters,
                          std::span<double> out) const;

    const Tape &tape() const { return compiled; }

  private:
    std::vector<std::string> names;
    std::vector<int> columnsRead;
    Tape compiled;
};

} // namespace plotwerk

#endif
