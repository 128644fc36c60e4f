// Windows and the documents and curves that they show.
#include "tests/plotwerk/window/windowTest.h"

#include <cmath>
#include <csignal>

TEST_F(WindowTest, OutlivesTheBusAndAsksToSaveWhenItIsClosed) {
    startWithLine();
    plotwerk->setXRangeOf_xmin_xmax_(name, 0, 5);
    screen.frame();
    const std::string before = bytesOf(pathOf("line.plotwerk"));
    bus.stop();
    waitForWindows(2);
    screen.type("Escape");
    waitUntil("the document", [&] { return screen.titles() == std::vector{"• " + name}; });
    screen.settle();
    screen.type("ctrl+w");
    waitForWindows(2);
    screen.type("Return"); // saves and closes
    EXPECT_EQ(program->finish().status, 1) << "it could not answer messages to its end";
    EXPECT_NE(bytesOf(pathOf("line.plotwerk")), before);
}

// Its fits are done again, and the windows live meanwhile.
TEST_F(WindowTest, OffersWhatAKilledOneHadNotSaved) {
    start();
    std::string data = "x y\n";
    for (int i = 0; i < 50'000; ++i) {
        const double x = 2e-3 * i;
        const double y = std::exp(-x / 50) * std::cos(x) + 0.01 * (i % 7);
        data += std::to_string(x) + ' ' + std::to_string(y) + '\n';
    }
    read(data, "Data", true);
    std::string formula = "a*exp(-b*x)*cos(c*x) + d";
    for (int i = 0; i < 5; ++i) formula += " + 1e-12*sin(a*x + " + std::to_string(i) + ')';
    plotwerk->setFormulaOf_formulaText_(name, formula);
    for (int i = 0; i < 3; ++i) {
        plotwerk->readFormulaParameterOf_parameterList_(name, "a=2, b=0.021, c=1.0001, d=0.1");
        EXPECT_EQ(std::get<0>(plotwerk->startFitOf_iterations_lambda_chiq_(name)), 0);
    }
    const std::string made = contentsOf(name);
    program->sendSignal(SIGKILL);
    program->finish();
    start();
    waitForWindows(2);
    screen.type("Return");
    Shot last = screen.shot();
    int changes = 0;
    waitUntil("the document in the place of the untouched one", [&] {
        screen.move({300 + 40 * (changes % 5), 300});
        Shot next = screen.shot();
        if (std::exchange(last, std::move(next)) != last) ++changes;
        return screen.titles() == std::vector{"• " + name};
    });
    EXPECT_GE(changes, 1) << "the read-out followed the mouse";
    EXPECT_TRUE(contentsOf(name) == made);
    stop();
}

// Not with a sanitizer, whose memory can't be limited.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
TEST_F(WindowTest, GoesOnAfterAnExceptionInAHandler) {
    startWithLine();
    std::string data = "x y\n";
    for (int i = 0; i < 5'000'000; ++i) data += "1 2\n";
    read(data, "Many");
    screen.frame();
    const auto hasCurves = [&] {
        return plotwerk->indexOfCurveNameOf_source_table_column_(name, "Many", 1, "y") >= 0;
    };
    plotwerk->deleteAllCurvesOf_(name);
    screen.move({300, 300}); // the read-out is shown before the reason is
    const Shot before = screen.stillShot();

    // Less than a column takes, beside the reserve that is kept for messages.
    const rlim_t has = addressSpace();
    limit(RLIMIT_AS, has - (rlim_t{320 - 8} << 20));
    screen.type("ctrl+z");
    waitUntil("the reason", [&] { return screen.shot() != before; });
    limit(RLIMIT_AS, RLIM_INFINITY);
    EXPECT_FALSE(hasCurves());
    screen.type("ctrl+z");
    waitUntil("the curves", hasCurves);
    EXPECT_TRUE(holds(stop().err, "plotwerk: error: not enough memory\n"));
}
#endif
