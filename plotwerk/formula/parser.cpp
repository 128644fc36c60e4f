#include "plotwerk/formula/parser.h"

#include "plotwerk/base/refusal.h"
#include "util/text/charclass.h"
#include "util/text/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

namespace plotwerk {

static constexpr int deepest = 200;   // signs, parentheses and exponents inside each other
static constexpr int longest = 10000; // instructions

namespace {

struct Function {
    std::string_view name;
    Operation operation;
    std::size_t arguments;
};

} // namespace

static constexpr Function functions[] = {
    {"exp", Operation::exp, 1},     {"expm1", Operation::expm1, 1},
    {"log", Operation::log, 1},     {"ln", Operation::log, 1},
    {"log1p", Operation::log1p, 1}, {"log2", Operation::log2, 1},
    {"log10", Operation::log10, 1}, {"sqrt", Operation::sqrt, 1},
    {"sin", Operation::sin, 1},     {"cos", Operation::cos, 1},
    {"tan", Operation::tan, 1},     {"asin", Operation::asin, 1},
    {"acos", Operation::acos, 1},   {"atan", Operation::atan, 1},
    {"sinh", Operation::sinh, 1},   {"cosh", Operation::cosh, 1},
    {"tanh", Operation::tanh, 1},   {"abs", Operation::abs, 1},
    {"sign", Operation::sign, 1},   {"floor", Operation::floor, 1},
    {"ceil", Operation::ceil, 1},   {"round", Operation::round, 1},
    {"erf", Operation::erf, 1},     {"erfc", Operation::erfc, 1},
    {"gamma", Operation::gamma, 1}, {"lgamma", Operation::lgamma, 1},
    {"pow", Operation::power, 2},   {"atan2", Operation::atan2, 2},
    {"min", Operation::minimum, 2}, {"max", Operation::maximum, 2},
    {"if", Operation::choose, 3},
};

static const Function *functionNamed(std::string_view name) {
    const Function *found = std::ranges::find(functions, name, &Function::name);
    return found == std::end(functions) ? nullptr : found;
}

static unsigned char byteAt(std::string_view text, std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// Bytes of the letter (or _) at a position, 0 when there is none. Of what UTF-8 writes in two
// bytes: U+00B5 (micro) and U+00C0..U+052F but for the signs of multiplication and division.
static std::size_t letterLength(std::string_view text, std::size_t at) {
    std::size_t length;
    const std::uint32_t code = plw::firstCodePoint(text.substr(std::min(at, text.size())), &length);
    if (length == 1) return code == '_' || plw::isLetter(static_cast<int>(code)) ? 1 : 0;
    const bool letter = code == 0xB5 || (code >= 0xC0 && code <= 0x52F);
    return length == 2 && letter && code != 0xD7 && code != 0xF7 ? 2 : 0;
}

// The character at a position as a message shows it.
static std::string shown(std::string_view text, std::size_t at) {
    if (byteAt(text, at) < ' ' || byteAt(text, at) == 127) return "a control character";
    return "'" + std::string(plw::firstCharacter(text.substr(at))) + "'";
}

class Parser::Nested {
  public:
    explicit Nested(Parser &p) : parser(p) {
        if (++parser.depth > deepest) parser.refuse("nested too deeply", parser.position);
    }
    ~Nested() { --parser.depth; }
    Nested(const Nested &) = delete;
    Nested &operator=(const Nested &) = delete;

  private:
    Parser &parser;
};

void Parser::refuse(const std::string &what, std::size_t at) const {
    at = std::min(at, text.size());
    const std::string_view before = text.substr(0, at);
    const auto line = std::ranges::count(before, '\n') + 1;
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    const auto column = std::ranges::count_if(before.substr(lineStart),
                                              [](char c) { return !plw::isContinuation(c); }) +
                        1;
    throw Refusal("formula, line " + std::to_string(line) + ", column " + std::to_string(column) +
                  ": " + what);
}

void Parser::skipBlanks() {
    while (peek() == ' ' || peek() == '\t' || peek() == '\r') ++position;
}

bool Parser::take(std::string_view symbol) {
    skipBlanks();
    if (!text.substr(position).starts_with(symbol)) return false;
    position += symbol.size();
    return true;
}

void Parser::expect(std::string_view symbol) {
    if (!take(symbol)) refuse("expected '" + std::string(symbol) + "'", position);
}

// Empty when no name begins here.
std::string_view Parser::name() {
    const std::size_t start = position;
    while (std::size_t length = letterLength(text, position)) {
        position += length;
        while (plw::isDigit(peek())) ++position;
    }
    return text.substr(start, position - start);
}

void Parser::checkLength() const {
    if (builder.size() >= longest) refuse("formula too long", position);
}

int Parser::apply(Operation operation, int a, int b, int c) {
    checkLength();
    return builder.apply(operation, {a, b, c});
}

Tape Parser::parse() {
    while (position < text.size()) {
        line();
        if (position < text.size()) ++position;
    }
    if (result < 0) refuse("no expression", position);
    return builder.finish(result);
}

// [name =] expression. The value of the line before becomes a helper now that it isn't the last.
void Parser::line() {
    skipBlanks();
    if (atLineEnd()) return;

    if (result >= 0) {
        if (target.empty()) refuse("only the last line may do without \"name =\"", targetAt);
        if (target == "y") refuse("only the last line may assign to y", targetAt);
        helpers.emplace(target, result);
    }

    targetAt = position;
    target = name();
    skipBlanks();
    if (target.empty() || peek() != '=' || peek(1) == '=') {
        position = targetAt;
        target.clear();
    } else {
        if (target == "x" || target == "pi" || functionNamed(target))
            refuse(target + " cannot be assigned to", targetAt);
        if (helpers.contains(target)) refuse(target + " has a value already", targetAt);
        ++position;
    }

    result = expression();
    if (!atLineEnd()) refuse("expected an operator, not " + shown(text, position), position);
    if (parameters.contains(target)) refuse(target + " is used before it is assigned", targetAt);
}

int Parser::expression() {
    int value = conjunction();
    while (take("||")) value = apply(Operation::logicalOr, value, conjunction());
    return value;
}

int Parser::conjunction() {
    int value = comparison();
    while (take("&&")) value = apply(Operation::logicalAnd, value, comparison());
    return value;
}

int Parser::comparison() {
    static constexpr struct {
        std::string_view symbol;
        Operation operation;
    } comparisons[] = {{"<=", Operation::lessEqual}, {">=", Operation::greaterEqual},
                       {"==", Operation::equal},     {"!=", Operation::notEqual},
                       {"<", Operation::less},       {">", Operation::greater}};

    const int value = sum();
    for (const auto &[symbol, operation] : comparisons)
        if (take(symbol)) return apply(operation, value, sum());
    return value;
}

int Parser::sum() {
    int value = product();
    for (;;) {
        if (take("+"))
            value = apply(Operation::add, value, product());
        else if (take("-"))
            value = apply(Operation::subtract, value, product());
        else
            return value;
    }
}

int Parser::product() {
    int value = signedValue();
    for (;;) {
        if (take("*"))
            value = apply(Operation::multiply, value, signedValue());
        else if (take("/"))
            value = apply(Operation::divide, value, signedValue());
        else
            return value;
    }
}

// Whatever nests passes through here.
int Parser::signedValue() {
    const Nested nested(*this);
    if (take("-")) return apply(Operation::negate, signedValue());
    if (take("+")) return signedValue();
    if (take("!")) return apply(Operation::logicalNot, signedValue());
    return power();
}

int Parser::power() {
    const int base = primary();
    return take("^") ? apply(Operation::power, base, signedValue()) : base;
}

int Parser::primary() {
    if (take("(")) {
        const int value = expression();
        expect(")");
        return value;
    }
    if (plw::isDigit(peek()) || (peek() == '.' && plw::isDigit(peek(1)))) return number();
    if (letterLength(text, position) > 0) return named();
    if (peek() == '\'') {
        if (variables.empty())
            refuse("names in quotes are other columns' (setDocAttributes -m yes)", position);
        return quoted();
    }
    if (atLineEnd()) refuse("expected a value", position);
    refuse("expected a value, not " + shown(text, position), position);
}

int Parser::number() {
    long double value = 0;
    const char *start = text.data() + position;
    const auto [end, error] = std::from_chars(start, text.data() + text.size(), value);
    if (error != std::errc() || value > std::numeric_limits<double>::max())
        refuse("number out of range", position);
    position += static_cast<std::size_t>(end - start);
    checkLength();
    return builder.constant(value);
}

int Parser::named() {
    const std::size_t at = position;
    const std::string_view word = name();
    if (take("(")) return call(word, at);

    if (word == "x") return builder.variable(Operation::variableX);
    if (word == "y") return builder.variable(Operation::variableY);
    if (word == "pi") return builder.constant(std::numbers::pi_v<long double>);
    if (const auto helper = helpers.find(word); helper != helpers.end()) return helper->second;
    if (functionNamed(word)) refuse(std::string(word) + " needs its arguments in parentheses", at);
    if (const Variable *which = variableNamed(word)) return variable(*which);
    return parameter(word);
}

// 'a name with any signs'
int Parser::quoted() {
    const std::size_t at = position++;
    const std::size_t end = text.find_first_of("'\n", position);
    if (end == std::string_view::npos || text[end] == '\n') refuse("expected \"'\"", end);
    const std::string_view word = text.substr(position, end - position);
    position = end + 1;
    const Variable *which = variableNamed(word);
    if (which == nullptr) refuse("no column '" + std::string(word) + "'", at);
    return variable(*which);
}

const Variable *Parser::variableNamed(std::string_view word) const {
    const auto found = std::ranges::find(variables, word, &Variable::name);
    return found == variables.end() ? nullptr : &*found;
}

int Parser::variable(const Variable &which) {
    checkLength();
    if (which.operation != Operation::variableColumn) return builder.variable(which.operation);
    auto read = std::ranges::find(columnsRead, which.column);
    if (read == columnsRead.end()) read = columnsRead.insert(read, which.column);
    return builder.variable(which.operation, static_cast<int>(read - columnsRead.begin()));
}

// The arguments, from behind the opening parenthesis.
int Parser::call(std::string_view word, std::size_t at) {
    const Function *function = functionNamed(word);
    if (function == nullptr) refuse("no function " + std::string(word), at);

    Operands operands{-1, -1, -1};
    for (std::size_t k = 0; k < function->arguments; ++k) {
        if (k > 0) expect(",");
        operands[k] = expression();
    }
    expect(")");
    return apply(function->operation, operands[0], operands[1], operands[2]);
}

int Parser::parameter(std::string_view word) {
    if (const auto known = parameters.find(word); known != parameters.end()) return known->second;
    checkLength();
    names.emplace_back(word);
    return parameters.emplace(word, builder.newParameter()).first->second;
}

} // namespace plotwerk
