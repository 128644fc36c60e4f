// NaN as callPlw prints it.
#include "tests/plotwerk/server/serverTest.h"

using NanTest = ServerTest;

TEST_F(NanTest, IsAnsweredWithoutASignWhereverItComesFrom) {
    start({file("data.txt", "x y\n1 -nan\n2 5\n3 inf\n4 inf\n5 -inf\n")});
    const Output output = runProgram({CALLPLW}, "-x Yi -s 0 -i 0\n"
                                                "-x YatX -s 0 -a 3.5\n"
                                                "-x selectCurveByIndex -i 0\n"
                                                "-x statistic\n"
                                                "-x setYi -s 0 -i 1 -a -nan\n"
                                                "-x Yi -s 0 -i 1\n"
                                                "-x setFormula -f 0*x/0\n"
                                                "-x modifyY\n"
                                                "-x Yi -s 0 -i 2\n");
    EXPECT_EQ(output.out, "nan\nnan\n4 -inf inf nan nan nan y\nnan\nnan\n");
}
