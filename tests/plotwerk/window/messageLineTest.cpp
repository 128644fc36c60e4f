#include "plotwerk/window/messageLine.h"

#include <gtest/gtest.h>
#include <limits>

using namespace plotwerk;

TEST(MessageLine, IsTheCommandThatSendsTheMessage) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string d = "doc";
    const struct {
        const char *member;
        std::vector<Argument> arguments;
        const char *want;
    } cases[] = {
        {"setXRangeOf_xmin_xmax_", {d, 0.1, 1e-30}, "callPlw -x setXRange -s 0.1 -e 1e-30"},
        {"setYRangeOf_ymin_ymax_", {d, nan, 2.0}, "callPlw -x setYRange -e 2"},
        {"modifyDataOf_Ydata_", {d, true}, "callPlw -x modifyY"},
        {"modifyDataOf_Ydata_", {d, false}, "callPlw -x modifyX"},
        {"setFormulaOf_formulaText_",
         {d, std::string("a'b\n*x")},
         "callPlw -x setFormula -f 'a'\\''b\n*x'"},
        {"setAttributesOfSelectionOf_line_stepped_yerr_xerr_dash_fill_topX_rightY_marker_sym_",
         {d, 0, 1, 2, 2, 2, 2, 2, 2, 2, 1},
         "callPlw -x setAttributes -l no -s yes -S yes"},
        {"readDataformText_of_source_doRangeOverAll_appendToExistingData_",
         {std::string("1 2\n3 4"), d, std::string("My data"), false, true},
         "callPlw -x readData -p '1 2\n3 4' -s 'My data' -a yes"},
        {"selectCurvesOf_indexFirst_indexLast_appendSelection_",
         {d, 3, -1, false},
         "callPlw -x selectCurveByIndex -i 3"},
        {"set2XRangeOf_xmin_xmax_",
         {d, -1.5, nan},
         "busctl --user call -- org.plotwerk.PlotwerkControl /org/plotwerk/PlotwerkControl "
         "org.plotwerk.PlotwerkControl set2XRangeOf_xmin_xmax_ sdd \"$(callPlw -x activeDoc)\" "
         "-1.5 nan"},
        {"deleteAllCurvesOf_",
         {d},
         "busctl --user call -- org.plotwerk.PlotwerkControl /org/plotwerk/PlotwerkControl "
         "org.plotwerk.PlotwerkControl deleteAllCurvesOf_ s \"$(callPlw -x activeDoc)\""},
        {"setRTFTextOf_to_at_X_at_Y_angle_xFloating_yFloating_",
         {d, std::string("{\\rtf1 two words}"), nan, 0.5, 0.0, 0.0, 1.0},
         "callPlw -x placeText -t 'two words' -r nan -u 0.5 -a 0 -g yes"},
    };
    for (const auto &c : cases) {
        const auto line = messageLine({'.', c.member, c.arguments});
        ASSERT_TRUE(line) << c.member;
        EXPECT_EQ(line->text, c.want);
        EXPECT_EQ(line->document, d) << c.member;
    }
    EXPECT_FALSE(messageLine({'.', "getXRangeOf_xmin_xmax_", {d}}));

    // numbers are read with the separator of that time
    const auto separatorOf = [&](const char *member, const std::vector<Argument> &arguments) {
        return messageLine({',', member, arguments})->decimalSeparator;
    };
    EXPECT_EQ(separatorOf("openFile_file_doRangeOverAll_", {d, std::string("a.txt"), true}), ',');
    EXPECT_EQ(separatorOf(cases[6].member, cases[6].arguments), ',');
    EXPECT_NE(separatorOf(cases[0].member, cases[0].arguments), ',');
}
