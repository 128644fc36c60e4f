// parser.h - formula text to tape; the language is described in formula.h.
#ifndef PLOTWERK_FORMULA_PARSER_H
#define PLOTWERK_FORMULA_PARSER_H

#include "plotwerk/formula/formula.h"
#include "plotwerk/formula/tape.h"

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plotwerk {

// A recursive descent that writes the tape as it reads. Used once: construct, parse().
class Parser {
  public:
    Parser(std::string_view formulaText, std::span<const Variable> formulaVariables)
        : text(formulaText), variables(formulaVariables) {}

    // Throws a Refusal with the position.
    Tape parse();

    // In order of appearance; after parse().
    const std::vector<std::string> &parameterNames() const { return names; }
    const std::vector<int> &columns() const { return columnsRead; }

  private:
    class Nested; // counts the depth while it lives

    void line();
    int expression();
    int conjunction();
    int comparison();
    int sum();
    int product();
    int signedValue();
    int power();
    int primary();
    int number();
    int named();
    int call(std::string_view name, std::size_t at);
    int quoted();
    const Variable *variableNamed(std::string_view name) const;
    int variable(const Variable &which);
    int parameter(std::string_view name);

    char peek(std::size_t ahead = 0) const {
        return position + ahead < text.size() ? text[position + ahead] : '\0';
    }
    bool atLineEnd() const { return position == text.size() || peek() == '\n'; }
    void skipBlanks();
    bool take(std::string_view symbol);
    void expect(std::string_view symbol);
    std::string_view name();
    void checkLength() const;
    int apply(Operation operation, int a, int b = -1, int c = -1);
    [[noreturn]] void refuse(const std::string &what, std::size_t at) const;

    std::string_view text;
    std::span<const Variable> variables;
    std::size_t position = 0;
    int depth = 0;
    int result = -1;    // of the last line so far
    std::string target; // what the last line so far assigned to; empty: nothing
    std::size_t targetAt = 0;
    TapeBuilder builder;
    std::map<std::string, int, std::less<>> helpers;
    std::map<std::string, int, std::less<>> parameters;
    std::vector<std::string> names;
    std::vector<int> columnsRead;
};

} // namespace plotwerk

#endif
