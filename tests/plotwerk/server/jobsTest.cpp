// Jobs as people do them: callPlw over a bus, and plotwerkd at its other end.
#include "tests/plotwerk/server/serverTest.h"

#include <cstdlib>
#include <regex>

namespace fs = std::filesystem;

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

// Without asking: no figure of another file, and no document closed but its own.
TEST_F(JobsTest, AMissingFileInALoopGetsNothingOfTheOneBefore) {
    file("a.txt", "t V\n0 1\n1 3\n2 5\n3 6\n");
    start();
    plotwerk->newDocumentWithName_("mine");
    std::string lines;
    for (const std::string name : {"a", "b", "c"})
        lines += "-x open -f DIR/" + name + ".txt\n-x selectCurve -c V\n-x setFormula -f a+b*x\n" +
                 "-x fit\n-x savePDF -f DIR/" + name + ".svg\n" +
                 (name == "c" ? "" : "-x close -a yes\n");
    file("c.txt", "t V\n0 2\n1 2\n2 5\n3 9\n");
    EXPECT_EQ(
        std::regex_replace(run(lines).out, std::regex("(ERROR|succeeded) .*"), "$1"),
        "fit succeeded\nsave succeeded\nfit ERROR\nsave ERROR\nfit succeeded\nsave succeeded\n");
    EXPECT_FALSE(fs::exists(pathOf("b.svg")));
    EXPECT_EQ(bytesOf(pathOf("a.svg")).substr(0, 5), "<?xml");
    run("-x close -d c.txt\n-x close -d mine\n");
    EXPECT_EQ(run("-x close\n-x activeDoc\n-x inventory\n").out, "Untitled\n0 0 0\n");
}

// The data and, sharing its x axis, what is below it: two frames of one width, one above the other.
TEST_F(JobsTest, PanelsShareAnAxisAndAPictureIsWhatItsPathSays) {
    file("up.txt", "time V\n0 10000\n1 30000\n2 50000\n");
    file("low.txt", "time R\n0 -1\n1 1\n2 0\n");
    start();
    const Output output = run("-x open -f DIR/up.txt\n"
                              "-x setAxis -k yes\n"
                              "-x savePDF -f DIR/a.svg\n-x saveTIFF -f DIR/a.png\n"
                              "-x savePDF -f DIR/b.svg\n-x saveTIFF -f DIR/b.png\n"
                              "-x open -f DIR/low.txt\n"
                              "-x newComposition\n"
                              "-x addPDFtoComposition -d up.txt -X 0 -Y 240\n"
                              "-x addPDFtoComposition -d low.txt -X 0 -Y 0\n"
                              "-x savePDFofComposition -f DIR/page.pdf -a none\n"
                              "-x getVar -s lastError\n");
    EXPECT_EQ(output.out, "save succeeded\nsave succeeded\nsave succeeded\nsave succeeded\n\n");
    const Output texts = runProgram({"pdftotext", pathOf("page.pdf"), "-"});
    std::size_t titles = 0;
    for (std::size_t at = 0; (at = texts.out.find("time", at)) != std::string::npos; ++at) ++titles;
    EXPECT_EQ(titles, 1U) << texts.out;
    EXPECT_TRUE(holds(texts.out, "V\n") && holds(texts.out, "R\n")) << "names of columns";
    EXPECT_TRUE(holds(runProgram({"file", pathOf("a.svg")}).out, "SVG Scalable Vector Graphics"));
    EXPECT_TRUE(holds(runProgram({"pngcheck", "-v", pathOf("a.png")}).out, "(300 dpi)"));
    for (const char *end : {".svg", ".png"})
        EXPECT_EQ(bytesOf(pathOf(std::string("a") + end)), bytesOf(pathOf(std::string("b") + end)));
}
