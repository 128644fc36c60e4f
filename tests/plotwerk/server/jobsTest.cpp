// Jobs as people do them: callPlw over a bus, and plotwerkd at its other end.
#include "tests/plotwerk/server/serverTest.h"

#include <cstdlib>
#include <regex>

class JobsTest : public ServerTest {
  protected:
    ~JobsTest() override { unsetenv("CALLPLW_ERRORS"); }

    // The lines, with DIR for this test's directory, fed to callPlw; in what it prints DIR, too.
    Output run(const std::string &lines) {
        const std::regex here("DIR");
        Output output = runProgram({CALLPLW}, std::regex_replace(lines, here, directory.string()));
        for (std::string *text : {&output.out, &output.err})
            *text = std::regex_replace(*text, std::regex(directory.string()), "DIR");
        return output;
    }
};

TEST_F(JobsTest, WhatIsRefusedIsToldWithItsReasonAndNothingElseIs) {
    file("a.txt", "t V\n0 1\n1 3\n2 5\n3 6\n");
    start();
    setenv("CALLPLW_ERRORS", "report", 1);
    const Output output = run("-x open -f DIR/a.txt\n"
                              "-x selectCurve -c volts\n"
                              "-x sync\n"
                              "-x getVar -s ymax\n"
                              "-x selectCurve -c V\n"
                              "-x getVar -s nix\n"
                              "-x getVar -s points\n"
                              "-x setFormula -f a+(b*x\n"
                              "-x setFormula -f a+b*x\n"
                              "-x fit\n"
                              "-x savePDF -f DIR/no/a.pdf\n"
                              "-x savePDF -f DIR/a.pdf\n"
                              "-x setDocAttributes -w foo\n"
                              "-x setAttributes2 -m 16\n"
                              "-x show -d nix\n"
                              "-x savePDFofComposition -f DIR/b.pdf\n");
    EXPECT_EQ(
        std::regex_replace(output.err, std::regex("(setFormula: ).*"), "$1..."),
        "callPlw: selectCurve: no curve of column \"volts\" (\"a.txt\")\n"
        "callPlw: getVar: no variable \"nix\" (\"a.txt\")\n"
        "callPlw: setFormula: ...\n"
        "callPlw: savePDF: can't write DIR/no/a.pdf: No such file or directory (\"a.txt\")\n"
        "callPlw: setDocAttributes: the value of -w is no number: foo\n"
        "callPlw: setDocAttributes: xAxisLength can't be 0, only 1 to 100 (\"a.txt\")\n"
        "callPlw: setAttributes2: a symbol can't be 16, only 0 to 15 (\"a.txt\")\n"
        "callPlw: show: no document \"nix\"\n"
        "callPlw: savePDFofComposition: there is no composition: newComposition begins one\n");
    EXPECT_EQ(output.status, 2);
    EXPECT_TRUE(holds(output.out, "fit succeeded "));

    EXPECT_EQ(run("-x sync\n-x activeDoc\n-x getVar -s chiq -d a.txt\n").status, 0)
        << "what is told of the line before";
    setenv("CALLPLW_ERRORS", "stop", 1);
    EXPECT_EQ(run("-x open -f DIR/none\n-x newDocument -d never\n").err,
              "callPlw: open: can't read DIR/none: No such file or directory\n");
    EXPECT_EQ(plotwerk->documentNameOfFrontWindow(), "none");
}
