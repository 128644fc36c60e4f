#include "plotwerk/fit/parameterList.h"

#include "plotwerk/base/refusal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using namespace plotwerk;

namespace {

const double inf = std::numeric_limits<double>::infinity();

const std::vector<FitParameter> known{{"a", 1, 0.5}, {"b", 2, 0.25, true}};

} // namespace

TEST(ParameterList, IsReadInTheWaysThatPeopleWriteIt) {
    const struct {
        const char *text;
        double a, b;
        bool aFixed, bFixed;
    } cases[] = {{"", 1, 2, false, true},
                 {" \n,\r\n", 1, 2, false, true},
                 {"a=3", 3, 2, false, true},
                 {"a = 1.5, b=-2e3!", 1.5, -2000, false, true},
                 {"a =3!\r\n\r\nb= 4\r\n", 3, 4, true, false},
                 {"b = 4 !,a = 5 !", 5, 4, true, true},
                 {"a = 1.50 +- 0.02\nb = 2.5 +- 0.1 !\n", 1.5, 2.5, false, true},
                 {"a = 7 +- 0.02, b = 8", 7, 8, false, false},
                 {"a = \"7\" b = 8", 7, 8, false, false},
                 {"a=1 a=2", 2, 2, false, true}};
    for (const auto &c : cases) {
        std::vector<FitParameter> read = known;
        readParameterList(c.text, '.', read);
        EXPECT_EQ(read[0].value, c.a) << c.text;
        EXPECT_EQ(read[0].fixed, c.aFixed) << c.text;
        EXPECT_EQ(read[1].value, c.b) << c.text;
        EXPECT_EQ(read[1].fixed, c.bFixed) << c.text;
    }
    std::vector<FitParameter> parameters = known;
    readParameterList("a=1", '.', parameters);
    EXPECT_TRUE(std::isnan(parameters[0].error)) << "a value that was set has no error";
    EXPECT_EQ(parameters[1].error, 0.25) << "not named, not touched";
}

TEST(ParameterList, ChangesNothingWhenItIsRefused) {
    const struct {
        const char *text, *want;
    } cases[] = {{"a=3, c=4", "no parameter \"c\""},
                 {"a=3\nfoo\n", "parameter list: no \"name = value\" at \"foo\""},
                 {"a=3 4", "parameter list: no \"name = value\" at \"4\""},
                 {"a=3,5", "parameter list: no \"name = value\" at \"5\""},
                 {"a=3 = 4", "parameter list: no \"name = value\" at \"= 4\""},
                 {"a=three", "parameter list: a = \"three\" is not a number"},
                 {"b=3, a=", "parameter list: a = \"\" is not a number"},
                 {"a=!", "parameter list: a = \"!\" is not a number"},
                 {"a=1e999", "parameter list: a = \"1e999\" is not a number"},
                 {"a=nan", "parameter list: a = \"nan\" is not a number"}};
    for (const auto &c : cases) {
        std::vector<FitParameter> parameters = known;
        try {
            readParameterList(c.text, '.', parameters);
            ADD_FAILURE() << "taken: " << c.text;
        } catch (const Refusal &refusal) {
            EXPECT_STREQ(refusal.what(), c.want) << c.text;
        }
        EXPECT_EQ(parameters[0].value, 1) << c.text;
        EXPECT_EQ(parameters[0].error, 0.5) << c.text;
        EXPECT_TRUE(parameters[1].fixed) << c.text;
    }
}

TEST(ParameterList, IsWrittenToTheDigitsThatTheErrorsJustify) {
    const std::vector<FitParameter> fitted{{"a", 1.23456, 0.02},           {"b", 0.1 + 0.2},
                                           {"c", -12345678, 3456},         {"d", 2, unset, true},
                                           {"e", 5.1234e-5, 7.7e-7, true}, {"f", 1.5, 0}};
    EXPECT_EQ(parameterList(fitted, '.'), "a = 1.235 +- 0.020\n"
                                          "b = 0.30000000000000004\n"
                                          "c = -1.23457e+07 +- 3.5e+03\n"
                                          "d = 2 !\n"
                                          "e = 5.12e-05 +- 8e-07 !\n"
                                          "f = 1.5");
    EXPECT_EQ(parameterList({}, '.'), "");

    EXPECT_EQ(parameterList({{"a", 1.23456, 0.02}, {"b", 2.5, unset, true}, {"c", 1, inf}}, ','),
              "a = 1,235 +- 0,020\nb = 2,5 !\nc = 1");
}

TEST(ParameterList, ReadsWhatItWrote) {
    const std::vector<FitParameter> fitted{
        {"a", 1.25, 0.05}, {"b", 0.1 + 0.2, unset, true}, {"c", -2e-7, 3e-8}};
    for (char separator : {'.', ','}) {
        const std::string list = parameterList(fitted, separator);
        std::vector<FitParameter> read = parametersNamed({"a", "b", "c"}, {});
        readParameterList(list, separator, read);
        for (std::size_t j = 0; j < read.size(); j++) {
            EXPECT_EQ(read[j].value, fitted[j].value) << list;
            EXPECT_EQ(read[j].fixed, fitted[j].fixed) << list;
        }
    }
    std::vector<FitParameter> parameters = known;
    readParameterList("a=1,5,b=2,25", ',', parameters);
    EXPECT_EQ(parameters[0].value, 1.5);
    EXPECT_EQ(parameters[1].value, 2.25) << "a comma that is no decimal one separates all the same";
    readParameterList("a=3!,b=4,", ',', parameters);
    EXPECT_TRUE(parameters[0].fixed && parameters[1].value == 4);
}

TEST(ParameterList, VariablesCarryAllTheirDigits) {
    std::vector<FitParameter> parameters = known;
    parameters.push_back({"lambda", 0.1});
    const FitResult result{true, 12, 1e-9, 1.0 / 3, 154};
    const std::pair<const char *, std::optional<std::string>> cases[] = {
        {"a", "1"},
        {"a.error", "0.5"},
        {"lambda", "0.1"},
        {"lambda.error", "NAN"},
        {"points", "154"},
        {"iterations", "12"},
        {"chiq", "0.3333333333333333"},
        {"c", {}},
        {"c.error", {}},
        {".error", {}},
        {"", {}}};
    for (const auto &[name, want] : cases)
        EXPECT_EQ(fitVariable(name, parameters, result), want) << name;
    EXPECT_EQ(fitVariable("lambda", {}, result), "1e-09");
    EXPECT_EQ(fitVariable("chiq", {}, FitResult{}), "NAN");
}
