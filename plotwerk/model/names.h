// names.h - the names of columns, sources and documents: those that mean something, and free ones.
#ifndef PLOTWERK_MODEL_NAMES_H
#define PLOTWERK_MODEL_NAMES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// The most bytes of a name, of a document, a source, a column or a parameter.
inline constexpr std::size_t longestName = 1000;

// Refused when the text can't be a name: too long, or with a control character, line end or turn of
// direction in it (characters.h), which would forge a line where the name is printed.
void requireName(std::string_view text);

// The text with a space for each character that a name can't have; its length isn't looked at.
std::string nameOf(std::string text);

// Likewise of a formula, which may have line feeds and tabs.
std::string formulaOf(std::string text);

// How the names of curves of extremes end.
inline constexpr std::string_view maximaSuffix = " maxima";
inline constexpr std::string_view minimaSuffix = " minima";

// The name itself when it isn't among the taken ones, otherwise one that uniqueName makes of it
// ("NAME 14:03:09", "NAME 14:03:09#1", ...). Throws Refusal when that is too long.
std::string freeName(const std::string &name, const std::vector<std::string> &taken);

// How many names freeName has made of the time. What has made one has another effect next time.
int namesOfTheTime();

} // namespace plotwerk

#endif
