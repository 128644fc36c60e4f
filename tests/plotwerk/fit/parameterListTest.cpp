#include "plotwerk/fit/parameterList.h"

#include "plotwerk/model/parameterText.h"
#include "tests/plotwerk/model/documents.h"

#include <algorithm>
#include <cmath>

using namespace plotwerk;

static const std::vector<FitParameter> known{{"a", 1, 0.5}, {"b", 2, 0.25, true}};

// The list that comes of `known` and the text, with "absolute" at its end where that is set.
static std::string afterReading(std::string_view text, char separator = '.') {
    std::vector<FitParameter> parameters = known;
    bool absolute = false;
    readParameterList(text, separator, parameters, absolute);
    return parameterList(parameters, '.') + (absolute ? "\nabsolute" : "");
}

TEST(ParameterList, IsReadInTheWaysThatPeopleWriteIt) {
    const std::string unchanged = "\nb = 2.00 +- 0.25 !";
    const std::pair<const char *, std::string> cases[] = {
        {" \n,\r\n", "a = 1.0 +- 0.5" + unchanged},
        {"a = 1.5, b=-2e3!", "a = 1.5\nb = -2000 !"},
        {"a =3!\r\n\r\nb= 4\r\n", "a = 3 !\nb = 4"},
        {"b = 4 !,a = 5 !", "a = 5 !\nb = 4 !"},
        {"a = 1.50 +- 0.02\nb = 2.5 +- 0.1 !\n", "a = 1.5\nb = 2.5 !"},
        {"a = 7 +- 0.02, b = 8", "a = 7\nb = 8"},
        {"a = \"7\" b = 8", "a = 7\nb = 8"},
        {"a=1 a=2", "a = 2" + unchanged},
        {"a = 1 [0, 5], b=2[,3]!", "a = 1 [0; 5]\nb = 2 [; 3] !"},
        {"a = 1.0 +- 0.5 [ 0;]\nb = -1 [-1;2] | !", "a = 1 [0;]\nb = -1 [-1; 2] !"},
        {"a = 1 [;]  absolute\nb=3", "a = 1\nb = 3\nabsolute"},
        {"absolute, scaled", "a = 1.0 +- 0.5" + unchanged}};
    for (const auto &[text, want] : cases) EXPECT_EQ(afterReading(text), want) << text;
}

TEST(ParameterList, ChangesNothingWhenItIsRefused) {
    const std::pair<const char *, const char *> cases[] = {
        {"a=3, c=4", "no parameter \"c\""},
        {"a=3\nfoo\n", "parameter list: no \"name = value\" at \"foo\""},
        {"a=3 4", "parameter list: no \"name = value\" at \"4\""},
        {"a=3 [4, 5]", "parameter list: a begins outside of its bounds"},
        {"a=3 [3; 3]", "parameter list: the bounds of a leave nothing between them"},
        {"a=3 [2\n]", "parameter list: the bounds of a are not [least; most]"},
        {"a=3 [2; 4 ", "parameter list: the bounds of a are not [least; most]"},
        {"a=3 [2 ", "parameter list: the bounds of a are not [least; most]"},
        {"a=3 [x;]", "parameter list: a = \"x\" is not a number"},
        {"absolutely", "parameter list: no \"name = value\" at \"absolutely\""},
        {"absolute = 1", "no parameter \"absolute\""},
        {"a=3 = 4", "parameter list: no \"name = value\" at \"= 4\""},
        {"b=3, a=", "parameter list: a = \"\" is not a number"},
        {"a=!", "parameter list: a = \"!\" is not a number"},
        {"a=1e999", "parameter list: a = \"1e999\" is not a number"},
        {"a=nan", "parameter list: a = \"nan\" is not a number"}};
    for (const auto &[text, want] : cases) {
        const std::string list = std::string("absolute ") + text;
        std::vector<FitParameter> parameters = known;
        bool absolute = false;
        EXPECT_EQ(refusalOf([&] { readParameterList(list, '.', parameters, absolute); }), want);
        EXPECT_EQ(parameterList(parameters, '.'), parameterList(known, '.')) << list;
        EXPECT_FALSE(absolute);
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

    EXPECT_EQ(
        parameterList({{"a", 1.23456, 0.02}, {"b", 2.5, unset, true}, {"c", 1, INFINITY}}, ','),
        "a = 1,235 +- 0,020\nb = 2,5 !\nc = 1");
}

// Whole, and as clients print it: on one line, with points.
TEST(ParameterList, ReadsWhatItWroteWithADecimalComma) {
    EXPECT_EQ(afterReading("a=1,5!,b=2,25,", ','), "a = 1.5 !\nb = 2.25")
        << "a comma that is no decimal one separates all the same";
    const std::string written =
        parameterList({{"a", 1.25, 0.05, false, {0.5, unset}},
                       {"b", 0.1 + 0.2, unset, true, {-0.25, 0.1 + 0.2}, true}},
                      ',');
    EXPECT_EQ(written,
              "a = 1,25 +- 0,05 [0,5;]\nb = 0,30000000000000004 [-0,25; 0,30000000000000004] | !");
    std::string printed = written;
    std::ranges::replace(printed, '\n', ' ');
    std::ranges::replace(printed, ',', '.');
    for (const std::string &text : {written, printed})
        EXPECT_EQ(afterReading(text, ','), "a = 1.25 [0.5;]\nb = 0.30000000000000004 [-0.25; "
                                           "0.30000000000000004] !");
    EXPECT_EQ(afterReading("a = 1,5 [0, 2]", ','), "a = 1.5 [0; 2]\nb = 2.00 +- 0.25 !");
}
