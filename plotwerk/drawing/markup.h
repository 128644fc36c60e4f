// markup.h - signs, scripts and emphasis that a text spells out in plain characters.
#ifndef PLOTWERK_DRAWING_MARKUP_H
#define PLOTWERK_DRAWING_MARKUP_H

#include "plotwerk/drawing/richText.h"

#include <functional>
#include <optional>
#include <string_view>

namespace plotwerk {

// What takes the place of "<name>"; nothing where that is no field.
using FieldText = std::function<std::optional<RichText>(std::string_view name)>;

// The text with its markup carried out, over the looks that its runs have already.
//   \alpha ... \Omega, \pm, \degree, ...   the sign; a "{}" behind it goes, so that "\mu{}m" works
//   \_ \^ \* \{ \} \< \>                   the character itself
//   \, \\                                  a thin space, a new line
//   ^{...} _{...}                          super- and subscript, one within another
//   ^ before a number, with its sign, before a letter that ends its word, + - * or a sign
//   _ before one or two digits or a sign, and before a letter that ends its word behind a single
//     letter or sign. In a word in which one plain _ is no subscript none is.
//   *italic* **bold**                      not behind a letter or digit, and within one line
// What is none of this stays as it is: "my_column", "2*x*y", "a_{b", "\foo".
//   "T_c" "x_12" "H_2O" "10^-6" "*T*_c" have scripts; "pos_x" "run_2024" "2^nd" have none
// Nested deeper than 20 it stays as it is, too.
RichText readMarkup(const RichText &text, const FieldText &field = {});

} // namespace plotwerk

#endif
