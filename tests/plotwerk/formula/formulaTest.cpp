#include "plotwerk/formula/formula.h"

#include "plotwerk/formula/evaluator.h"
#include "plotwerk/refusal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

using namespace plotwerk;

using Names = std::vector<std::string>;

static const double nan_ = std::numeric_limits<double>::quiet_NaN();

static double valueAt(const Formula &formula, double x, double y,
                      const std::vector<double> &parameters) {
    double value = 0;
    formula.evaluate({&x, 1}, {&y, 1}, parameters, {&value, 1});
    return value;
}

TEST(Formula, FollowsThePrecedenceOfItsOperators) {
    const double x = 3;
    const struct {
        const char *text;
        double want;
    } cases[] = {{"1+2*x", 7},      {"-x^2", -9},
                 {"(-x)^2", 9},     {"2^-x", 0.125},
                 {"2^3^2", 512},    {"2^-x^2", std::pow(2, -9)},
                 {"-2^-1", -0.5},   {"2*-x", -6},
                 {"8/4/2", 1},      {"8-4-2", 2},
                 {"1 - -x", 4},     {"+x", 3},
                 {"12/2*x", 18},    {".5+1.e0+1e-1", 1.6},
                 {"x>2 && x<4", 1}, {"x>=3||y", 1},
                 {"1+1==2", 1},     {"!x + 1", 1},
                 {"!0^2", 1},       {"x != 3 || x <= 2", 0},
                 {"1||0&&0", 1},    {"2*pi", 2 * std::numbers::pi},
                 {"x*y", 21}};
    for (const auto &c : cases) EXPECT_EQ(valueAt(Formula(c.text), x, 7, {}), c.want) << c.text;
}

TEST(Formula, KnowsItsFunctions) {
    const double x = 0.375;
    const struct {
        const char *text;
        double want;
    } cases[] = {{"exp(x)", std::exp(x)},
                 {"expm1(x)", std::expm1(x)},
                 {"log(x)", std::log(x)},
                 {"ln(x)", std::log(x)},
                 {"log1p(x)", std::log1p(x)},
                 {"log2(x)", std::log2(x)},
                 {"log10(x)", std::log10(x)},
                 {"sqrt(x)", std::sqrt(x)},
                 {"sin(x)", std::sin(x)},
                 {"cos(x)", std::cos(x)},
                 {"tan(x)", std::tan(x)},
                 {"asin(x)", std::asin(x)},
                 {"acos(x)", std::acos(x)},
                 {"atan(x)", std::atan(x)},
                 {"sinh(x)", std::sinh(x)},
                 {"cosh(x)", std::cosh(x)},
                 {"tanh(x)", std::tanh(x)},
                 {"abs(-x)", x},
                 {"sign(-x)+sign(x-x)", -1},
                 {"floor(-x)", -1},
                 {"ceil(x)", 1},
                 {"round(x+1/4)", 1},
                 {"erf(x)", std::erf(x)},
                 {"erfc(x)", std::erfc(x)},
                 {"gamma(x)", std::tgamma(x)},
                 {"lgamma(x)", std::lgamma(x)},
                 {"pow(x,5)", std::pow(x, 5)},
                 {"atan2(x,-1)", std::atan2(x, -1)},
                 {"min(x,1)+max(x,1)", 1 + x},
                 {"if(x<1,2,3)+if(x>1,20,30)", 32}};
    for (const auto &c : cases) EXPECT_EQ(valueAt(Formula(c.text), x, 0, {}), c.want) << c.text;
}

TEST(Formula, MissingValuesStayMissing) {
    for (const char *text : {"x+1", "min(x,1)", "min(1,x)", "max(x,1)", "max(1,x)", "if(x,1,2)",
                             "sign(x)", "floor(x)", "log(-1)+0*x"})
        EXPECT_TRUE(std::isnan(valueAt(Formula(text), nan_, 0, {}))) << text;
}

TEST(Formula, NamesItsParametersInOrderOfAppearance) {
    const struct {
        const char *text;
        Names want;
    } cases[] = {{"b*x+a*x+b", {"b", "a"}},
                 {"x*y+pi", {}},
                 {"A*x+a", {"A", "a"}},
                 {"_1*b2_x", {"_1", "b2_x"}},
                 {"τ*exp(-x/Größe)+µ", {"τ", "Größe", "µ"}},
                 {"k = 2*a\nb*k + c", {"a", "b", "c"}},
                 {"unused = q\nx", {"q"}}};
    for (const auto &c : cases) EXPECT_EQ(Formula(c.text).parameterNames(), c.want) << c.text;
}

TEST(Formula, LinesNameHelpersAndTheLastOneIsTheValue) {
    for (const char *text : {"s = a*x\nt = s^2\ns+t", "\n  s = a*x\r\n\r\n\tt = s^2\r\ns+t\r\n\n",
                             "s=a*x\nt=s*s\ny = s+t", "s=a*x\nt=s*s\nresult = s+t"})
        EXPECT_EQ(valueAt(Formula(text), 2, 0, {3}), 42) << text;
    EXPECT_TRUE(Formula("y+x").usesY());
    EXPECT_FALSE(Formula("y = x").usesY());
}

TEST(Formula, RefusesWithThePosition) {
    const std::string deep(500, '(');
    const std::string minuses(500, '-');
    std::string powers = "x";
    std::string sum = "x";
    for (int k = 0; k < 500; k++) powers += "^x";
    for (int k = 0; k < 11000; k++) sum += "+x*" + std::to_string(k + 2);
    const struct {
        std::string text, want;
    } cases[] = {
        {"", "line 1, column 1: no expression"},
        {" \n\t\n", "line 3, column 1: no expression"},
        {"a*(x", "line 1, column 5: expected ')'"},
        {"a*x)", "line 1, column 4: expected an operator, not ')'"},
        {"a*", "line 1, column 3: expected a value"},
        {"a*/x", "line 1, column 3: expected a value, not '/'"},
        {"2x", "line 1, column 2: expected an operator, not 'x'"},
        {"1.2.3", "line 1, column 4: expected an operator, not '.'"},
        {"1e", "line 1, column 2: expected an operator, not 'e'"},
        {"a b", "line 1, column 3: expected an operator, not 'b'"},
        {"1e999", "line 1, column 1: number out of range"},
        {"x = 2", "line 1, column 1: x cannot be assigned to"},
        {"sin = 2", "line 1, column 1: sin cannot be assigned to"},
        {"a*x = 2", "line 1, column 5: expected an operator, not '='"},
        {"a < x < b", "line 1, column 7: expected an operator, not '<'"},
        {"expo(x)", "line 1, column 1: no function expo"},
        {"1+sin*x", "line 1, column 3: sin needs its arguments in parentheses"},
        {"atan2(x)", "line 1, column 8: expected ','"},
        {"exp(x,x)", "line 1, column 6: expected ')'"},
        {"exp()", "line 1, column 5: expected a value, not ')'"},
        {"k=a\n  k=b\nk", "line 2, column 3: k has a value already"},
        {"b*x\nb", "line 1, column 1: only the last line may do without \"name =\""},
        {"y=2\nb", "line 1, column 1: only the last line may assign to y"},
        {"k=b*j\nj=2\nk*j", "line 2, column 1: j is used before it is assigned"},
        {"k=k+1", "line 1, column 1: k is used before it is assigned"},
        {"ä*x−1", "line 1, column 4: expected an operator, not '−'"},
        {"a*x×2", "line 1, column 4: expected an operator, not '×'"},
        {"a\x01", "line 1, column 2: expected an operator, not a control character"},
        {std::string("a\0x", 3), "line 1, column 2: expected an operator, not a control character"},
        {"\xff\xfe", "line 1, column 1: expected a value, not '\xff'"},
        {"sin(x", "line 1, column 6: expected ')'"},
        {"(a\n+b)", "line 1, column 3: expected ')'"},
        {deep, "line 1, column 201: nested too deeply"},
        {minuses + "x", "line 1, column 201: nested too deeply"},
        {powers, "line 1, column 401: nested too deeply"},
        {sum, "formula too long"}};
    for (const auto &c : cases) {
        try {
            const Formula formula(c.text);
            ADD_FAILURE() << "taken: " << c.text.substr(0, 40);
        } catch (const Refusal &refusal) {
            const std::string what = refusal.what();
            EXPECT_TRUE(what.starts_with("formula, line ") && what.ends_with(c.want)) << what;
        }
    }
}

TEST(Formula, EvaluatesAnyNumberOfPointsInPlace) {
    const Formula formula("s*x + y*if(x<300,1,0)");
    std::vector<double> x(1000), y(1000), want(1000);
    for (int i = 0; i < 1000; i++) {
        x[i] = i;
        y[i] = 3 * i;
        want[i] = 2 * x[i] + (i < 300 ? y[i] : 0);
    }
    formula.evaluate(x, y, std::vector<double>{2}, y);
    EXPECT_EQ(y, want);
    formula.evaluate({}, {}, std::vector<double>{2}, {});
}

// Derivatives by a and b at x = 0.7, a = 1.3, b = 0.4 against those found by hand.
TEST(Formula, DerivativesAreExact) {
    const double x = 0.7, a = 1.3, b = 0.4;
    const double gauss = std::exp(-(x - a) * (x - a) / (b * b));
    const struct {
        const char *text;
        double byA, byB;
    } cases[] = {
        {"a*b*x", b * x, a * x},
        {"a/b", 1 / b, -a / (b * b)},
        {"a-b*x", 1, -x},
        {"-a^3 + b^1", -3 * a * a, 1},
        {"a^b", b * std::pow(a, b - 1), std::pow(a, b) * std::log(a)},
        {"x^b*a", std::pow(x, b), a * std::pow(x, b) * std::log(x)},
        {"a^-2+0*b", -2 / (a * a * a), 0},
        {"(b+x)^(-1/a)", std::pow(b + x, -1 / a) * std::log(b + x) / (a * a),
         -1 / a * std::pow(b + x, -1 / a - 1)},
        {"exp(-(x-a)^2/b^2)", gauss * 2 * (x - a) / (b * b),
         gauss * 2 * (x - a) * (x - a) / (b * b * b)},
        {"expm1(a*x)+log1p(b)", x * std::exp(a * x), 1 / (1 + b)},
        {"log(a)+log10(b)", 1 / a, 1 / (b * std::log(10))},
        {"log2(a)+sqrt(b)", 1 / (a * std::log(2)), 0.5 / std::sqrt(b)},
        {"sin(a)*cos(b)", std::cos(a) * std::cos(b), -std::sin(a) * std::sin(b)},
        {"tan(a)+atan(b)", 1 / (std::cos(a) * std::cos(a)), 1 / (1 + b * b)},
        {"asin(a/2)+acos(b)", 0.5 / std::sqrt(1 - a * a / 4), -1 / std::sqrt(1 - b * b)},
        {"sinh(a)+cosh(b)", std::cosh(a), std::sinh(b)},
        {"tanh(a)+abs(-b)", 1 / (std::cosh(a) * std::cosh(a)), 1},
        {"erf(a)+erfc(b)", 2 / std::sqrt(std::numbers::pi) * std::exp(-a * a),
         -2 / std::sqrt(std::numbers::pi) * std::exp(-b * b)},
        {"lgamma(a+0.7)+lgamma(b+0.6)", 1 - 0.57721566490153286061, -0.57721566490153286061},
        {"atan2(a,b)", b / (a * a + b * b), -a / (a * a + b * b)},
        {"min(a,b)+10*max(a,b)", 10, 1},
        {"if(x<1,a,log(-b))", 1, 0},
        {"if(a>b,b^2,a)", 0, 2 * b},
        {"floor(a)+ceil(b)+sign(a)+round(b)+(a<b)+!b", 0, 0},
    };
    for (const auto &c : cases) {
        const Formula formula(c.text);
        Evaluator<double> evaluator(formula.tape());
        const bool aFirst = formula.parameterNames()[0] == "a";
        evaluator.setParameters(aFirst ? std::vector{a, b} : std::vector{b, a});
        evaluator.values(&x, nullptr, 1);
        evaluator.differentiate();
        // a few roundings
        const double tolerance = 4e-15;
        EXPECT_NEAR(evaluator.derivative(aFirst ? 0 : 1)[0], c.byA, tolerance) << c.text;
        EXPECT_NEAR(evaluator.derivative(aFirst ? 1 : 0)[0], c.byB, tolerance) << c.text;
    }
}

// What is 0 times an infinite derivative: nothing, not NaN.
TEST(Formula, DerivativesStayFiniteAtTheEdges) {
    const struct {
        const char *text;
        double x, a, want;
    } cases[] = {{"x^a", 0, 2, 0},
                 {"a^2", 0, 0, 0},
                 {"a^4", 0, 0, 0},
                 {"abs(a)", 0, 0, 0},
                 {"if(x>0,a*log(x),a)", 0, 5, 1},
                 {"max(sqrt(a),1)", 0, 0, 0},
                 {"gamma(a)", 0, 0.5, -1.96351002602142347944 * std::sqrt(std::numbers::pi)},
                 {"lgamma(a)", 0, -0.5, 0.03648997397857652056}};
    for (const auto &c : cases) {
        const Formula formula(c.text);
        Evaluator<double> evaluator(formula.tape());
        evaluator.setParameters(std::vector{c.a});
        evaluator.values(&c.x, nullptr, 1);
        evaluator.differentiate();
        EXPECT_NEAR(evaluator.derivative(0)[0], c.want, 4e-15) << c.text;
    }
}
