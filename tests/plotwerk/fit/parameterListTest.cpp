#include "plotwerk/fit/parameterList.h"

#include "plotwerk/model/parameterText.h"
#include "tests/plotwerk/model/documents.h"

#include <cmath>

using namespace plotwerk;

static const std::vector<FitParameter> known{{"a", 1, 0.5}, {"b", 2, 0.25, true}};

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
        {"a=1 a=2", "a = 2" + unchanged}};
    for (const auto &[text, want] : cases) {
        std::vector<FitParameter> read = known;
        readParameterList(text, '.', read);
        EXPECT_EQ(parameterList(read, '.'), want) << text;
    }
}

TEST(ParameterList, ChangesNothingWhenItIsRefused) {
    const struct {
        const char *text, *want;
    } cases[] = {{"a=3, c=4", "no parameter \"c\""},
                 {"a=3\nfoo\n", "parameter list: no \"name = value\" at \"foo\""},
                 {"a=3 4", "parameter list: no \"name = value\" at \"4\""},
                 {"a=3 = 4", "parameter list: no \"name = value\" at \"= 4\""},
                 {"b=3, a=", "parameter list: a = \"\" is not a number"},
                 {"a=!", "parameter list: a = \"!\" is not a number"},
                 {"a=1e999", "parameter list: a = \"1e999\" is not a number"},
                 {"a=nan", "parameter list: a = \"nan\" is not a number"}};
    for (const auto &c : cases) {
        std::vector<FitParameter> parameters = known;
        Document none;
        EXPECT_EQ(refusalOf(none, [&](auto &) { readParameterList(c.text, '.', parameters); }),
                  c.want);
        EXPECT_EQ(parameterList(parameters, '.'), parameterList(known, '.')) << c.text;
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

TEST(ParameterList, ReadsWhatItWroteWithADecimalComma) {
    std::vector<FitParameter> parameters = known;
    readParameterList("a=1,5!,b=2,25,", ',', parameters);
    EXPECT_EQ(parameterList(parameters, '.'), "a = 1.5 !\nb = 2.25")
        << "a comma that is no decimal one separates all the same";
    readParameterList(parameterList({{"a", 1.25, 0.05}, {"b", 0.1 + 0.2, unset, true}}, ','), ',',
                      parameters);
    EXPECT_EQ(parameterList(parameters, '.'), "a = 1.25\nb = 0.30000000000000004 !");
}
