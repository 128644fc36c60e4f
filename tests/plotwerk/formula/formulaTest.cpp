#include "plotwerk/formula/formula.h"
#include "plotwerk/formula/evaluationTime.h"

#include "plotwerk/formula/evaluator.h"
#include "plotwerk/formula/tape.h"
#include "tests/plotwerk/model/documents.h"

#include <array>
#include <cmath>
#include <numbers>

using namespace plotwerk;

static double valueAt(const Formula &formula, double x, double y,
                      const std::vector<double> &parameters) {
    double value = 0;
    formula.evaluate({{&x, 1}, {&y, 1}}, parameters, {&value, 1});
    return value;
}

TEST(Formula, FollowsThePrecedenceAndOrderOfOperands) {
    const double x = 3;
    const std::pair<const char *, double> cases[] = {
        {"1+2*x", 7},    {"-x^2", -9},          {"(-x)^2", 9},      {"2^-x", 0.125},
        {"2^3^2", 512},  {"2^-x^2", 1. / 512},  {"-2^-1", -0.5},    {"2*-x", -6},
        {"8/4/2", 1},    {"8-4-2", 2},          {"1 - -x", 4},      {"+x", 3},
        {"12/2*x", 18},  {".5+1.e0+1e-1", 1.6}, {"x>2 && x<4", 1},  {"x>=3||y", 1},
        {"1+1==2", 1},   {"!x + 1", 1},         {"!0^2", 1},        {"x!=3 || x<=2", 0},
        {"1||0&&0", 1},  {"cos(pi)", -1},       {"x*y", 21},        {"sign(-x)", -1},
        {"sign(0)", 0},  {"pow(x,2)", 9},       {"atan2(0,x)", 0},  {"min(x,4)", 3},
        {"max(x,4)", 4}, {"if(x<1,2,3)", 3},    {"if(x>1,2,3)", 2}, {"0+1/-0", -INFINITY}};
    for (const auto &[text, want] : cases)
        EXPECT_EQ(valueAt(Formula(text), x, 7, {}), want) << text;
}

TEST(Formula, KnowsItsFunctions) {
    const double x = 0.375;
    const std::pair<const char *, double (*)(double)> functions[] = {
        {"exp", std::exp},      {"expm1", std::expm1},  {"log", std::log},     {"ln", std::log},
        {"log1p", std::log1p},  {"log2", std::log2},    {"log10", std::log10}, {"sqrt", std::sqrt},
        {"sin", std::sin},      {"cos", std::cos},      {"tan", std::tan},     {"asin", std::asin},
        {"acos", std::acos},    {"atan", std::atan},    {"sinh", std::sinh},   {"cosh", std::cosh},
        {"tanh", std::tanh},    {"abs", std::abs},      {"floor", std::floor}, {"ceil", std::ceil},
        {"round", std::round},  {"gamma", std::tgamma}, {"erf", std::erf},     {"erfc", std::erfc},
        {"lgamma", std::lgamma}};
    for (const auto &[name, function] : functions) {
        const Formula formula(name + std::string("(s*x)"));
        for (const double s : {1., -1.}) {
            const double got = valueAt(formula, x, 0, {s}), want = function(s * x);
            EXPECT_TRUE(got == want || (std::isnan(got) && std::isnan(want))) << name << s;
        }
    }
}

// Work is refused by it: at least what was measured at the arguments that take longest. What
// depends on parameters alone is done once.
TEST(Formula, TellsWhatAPointCosts) {
    // values and derivatives, of usual and of extended precision
    const std::pair<const char *, std::array<double, 4>> cases[] = {
        {"exp(a*x)", {13.4, 1, 188, 9}},       {"cosh(a*x)", {9.8, 20.5, 152, 167}},
        {"sin(a*x)", {63.2, 62.7, 202, 214}},  {"tan(a*x)", {80.3, 1.7, 170, 7}},
        {"(a*x)^b", {31.9, 60.4, 777, 946}},   {"gamma(a*x)", {149, 35.1, 1044, 224}},
        {"lgamma(a*x)", {87, 34.6, 406, 185}}, {"atan2(a*x,x)", {31.3, 7.8, 65, 42}},
        {"1/(a*x)", {1.9, 5, 14.1, 25.3}},     {"erf(a*x)", {8.8, 15.9, 87.5, 253}}};
    for (const auto &[text, measured] : cases) {
        const Formula formula(text);
        const EvaluationTime time = evaluationTime<double>(formula.tape());
        const EvaluationTime extended = evaluationTime<long double>(formula.tape());
        const double got[] = {time.values, time.derivatives, extended.values, extended.derivatives};
        for (std::size_t i = 0; i < 4; ++i) EXPECT_GE(got[i], 1.2 * measured[i]) << text << i;
    }
    EXPECT_LT(evaluationTime<double>(Formula("x*gamma(a)").tape()).values, 3);
}

TEST(Formula, MissingValuesStayMissing) {
    for (const char *text : {"x+1", "min(x,1)", "min(1,x)", "max(x,1)", "max(1,x)", "if(x,1,2)",
                             "sign(x)", "floor(x)", "log(-1)+0*x"})
        EXPECT_TRUE(std::isnan(valueAt(Formula(text), NAN, 0, {}))) << text;
}

TEST(Formula, NamesItsParametersInOrderOfAppearance) {
    const std::pair<const char *, std::vector<std::string>> cases[] = {
        {"b*x+a*x+b", {"b", "a"}},
        {"x*y+pi", {}},
        {"A*x+a", {"A", "a"}},
        {"_1*b2_x", {"_1", "b2_x"}},
        {"τ*exp(-x/Größe)+µ", {"τ", "Größe", "µ"}},
        {"k = 2*a\nb*k + c", {"a", "b", "c"}},
        {"unused = q\nx", {"q"}}};
    for (const auto &[text, want] : cases) EXPECT_EQ(Formula(text).parameterNames(), want) << text;
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
    for (int k = 0; k < 500; ++k) powers += "^x";
    for (int k = 0; k < 11000; ++k) sum += "+x*" + std::to_string(k + 2);
    const std::pair<std::string, std::string> cases[] = {
        {" \n ", "line 2, column 2: no expression"},
        {"a*(x", "line 1, column 5: expected ')'"},
        {"a*x)", "line 1, column 4: expected an operator, not ')'"},
        {"2x", "line 1, column 2: expected an operator, not 'x'"},
        {"1e999", "line 1, column 1: number out of range"},
        {"x = 2", "line 1, column 1: x cannot be assigned to"},
        {"pi = 3\nx", "line 1, column 1: pi cannot be assigned to"},
        {"sin = 3\nx", "line 1, column 1: sin cannot be assigned to"},
        {"a < x < b", "line 1, column 7: expected an operator, not '<'"},
        {"expo(x)", "line 1, column 1: no function expo"},
        {"1+sin*x", "line 1, column 3: sin needs its arguments in parentheses"},
        {"atan2(x)", "line 1, column 8: expected ','"},
        {"k=a\n  k=b\nk", "line 2, column 3: k has a value already"},
        {"b*x\nb", "line 1, column 1: only the last line may do without \"name =\""},
        {"y=2\nb", "line 1, column 1: only the last line may assign to y"},
        {"k=b*j\nj=2\nk*j", "line 2, column 1: j is used before it is assigned"},
        {"a*'T'", "line 1, column 3: names in quotes are other columns' (setDocAttributes -m yes)"},
        {"ä*x−1", "line 1, column 4: expected an operator, not '−'"},
        {"a×x", "line 1, column 2: expected an operator, not '×'"},
        {std::string("a\0x", 3), "line 1, column 2: expected an operator, not a control character"},
        {"\xff\xfe", "line 1, column 1: expected a value, not '\xff'"},
        {deep, "line 1, column 201: nested too deeply"},
        {minuses + "x", "line 1, column 201: nested too deeply"},
        {powers, "line 1, column 401: nested too deeply"},
        {sum, "formula too long"}};
    for (const auto &[text, want] : cases) {
        const std::string what = refusalOf([&, &formula = text] { Formula{formula}; });
        EXPECT_TRUE(what.starts_with("formula, line ") && what.ends_with(want)) << what << want;
    }
}

TEST(Formula, EvaluatesAnyNumberOfPointsInPlace) {
    const Formula formula("s*x + y*if(x<300,1,0)");
    std::vector<double> x(1000), y(1000), want(1000);
    for (int i = 0; i < 1000; ++i) {
        x[i] = i;
        y[i] = 3 * i;
        want[i] = 2 * x[i] + (i < 300 ? y[i] : 0);
    }
    formula.evaluate({x, y}, std::vector<double>{2}, y);
    EXPECT_EQ(y, want);
}

// The derivative at x by the parameter of that name; the parameters are a and b.
static double slopeBy(const std::string &name, const Formula &formula, double x, double a,
                      double b) {
    Evaluator<double> evaluator(formula.tape());
    std::vector<double> values;
    int wanted = -1;
    for (const std::string &each : formula.parameterNames()) {
        if (each == name) wanted = static_cast<int>(values.size());
        values.push_back(each == "a" ? a : b);
    }
    evaluator.setParameters(values);
    evaluator.values({{&x, 1}}, 0, 1);
    evaluator.differentiate();
    return evaluator.derivative(wanted)[0];
}

// Against differences, by a polynomial of the fourth degree through the neighbours.
TEST(Formula, DerivativesAreThoseOfItsValues) {
    const char *const texts[] = {"a*b*x-a/b",
                                 "-a^3+b^1+a^-2",
                                 "a^b+x^b*a",
                                 "(b+x)^(-1/a)",
                                 "exp(-(x-a)^2/b^2)",
                                 "expm1(a*x)+log1p(b)+log(a)+log10(b)+log2(a)+sqrt(b)",
                                 "sin(a)*cos(b)+tan(a)+atan(b)+asin(a/2)+acos(b)",
                                 "sinh(a)+cosh(b)+tanh(a)+abs(-b)",
                                 "erf(a)+erfc(b)+gamma(a)+lgamma(b)",
                                 "gamma(-a)*lgamma(-b)",
                                 "atan2(a,b)",
                                 "min(a,b)+10*max(a,b)",
                                 "if(x<1,a,log(-b))+if(a>b,b^2,a)",
                                 "floor(a)+ceil(b)+sign(a)+round(b)+(a<b)+!b"};
    for (const char *text : texts) {
        const Formula formula(text);
        const bool aFirst = formula.parameterNames()[0] == "a";
        const double x = 0.7, a = 1.3, b = 0.4, h = 1e-3;
        const auto at = [&](double da, double db) {
            return valueAt(formula, x, 0, {aFirst ? a + da : b + db, aFirst ? b + db : a + da});
        };
        const double byA = (8 * (at(h, 0) - at(-h, 0)) - at(2 * h, 0) + at(-2 * h, 0)) / (12 * h);
        const double byB = (8 * (at(0, h) - at(0, -h)) - at(0, 2 * h) + at(0, -2 * h)) / (12 * h);
        EXPECT_NEAR(slopeBy("a", formula, x, a, b), byA, 1e-7) << text;
        EXPECT_NEAR(slopeBy("b", formula, x, a, b), byB, 1e-7) << text;
    }
}

// What is 0 times an infinite derivative: nothing, not NaN.
TEST(Formula, DerivativesStayFiniteAtTheEdges) {
    const std::tuple<const char *, double, double, double> cases[] = {
        {"x^a", 0, 2, 0},
        {"a^2", 0, 0, 0},
        {"a^4", 0, 0, 0},
        {"abs(a)", 0, 0, 0},
        {"if(x>0,a*log(x),a)", 0, 5, 1},
        {"max(sqrt(a),1)", 0, 0, 0},
        {"gamma(a)", 0, 0.5, -1.96351002602142347944 * std::sqrt(std::numbers::pi)},
        {"lgamma(a)", 0, -0.5, 0.03648997397857652056},
        {"lgamma(a)", 0, -100.25, 7.75423895920864544841}};
    for (const auto &[text, x, a, want] : cases)
        EXPECT_NEAR(slopeBy("a", Formula(text), x, a, 0), want, 4e-15) << text;

    EXPECT_EQ(slopeBy("a", Formula("x^a"), 0, 0, 0), -INFINITY) << "a step down from 1";
    EXPECT_TRUE(std::isnan(slopeBy("a", Formula("lgamma(a)"), 0, -2, 0))) << "a pole";
}
