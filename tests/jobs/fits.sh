#!/usr/bin/env bash
# Fits as a paper needs them. The straight line through these four points with equal weights is
# 1.2 + 1.7 x, and what is beside it follows by hand: chi-square 0.3 / 0.25 = 1.2 with errors of 0.5.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../examples/session.sh"
cd "$1"
printf 'x\ty\ty error\n0\t1\t0.5\n1\t3\t0.5\n2\t5\t0.5\n3\t6\t0.5\n' >line.txt

session <<END
-x open -f "$PWD/line.txt"
-x selectCurve -c y
-x setFormula -f a+b*x
-x fit
-x getFormulaParameters
-x getVar -s ndf
-x getVar -s redchi
-x getVar -s covariance.a.b
-x getVar -s correlation.a.b
-x setFormulaParameters -p absolute
-x fit
-x getFormulaParameters
-x getVar -s covariance.a.b
-x getVar -s report
-x selectCurve -s Fit -c Residuals/σ
-x Yi -i 0
-x selectCurve -s Fit -c Residuals
-x Yi -i 0
-x setFormulaParameters -p 'scaled, a = 1 [0, 1], b = 1 [0,]'
-x fit
-x getFormulaParameters
-x selectCurve -c Fit
-x setAttributes -f yes
-x setAttributes2 -R 0.5 -G 0.25 -B 0.75
-x savePDF -f "$PWD/band.svg"
-x close
END
echo "# The band is an area of its colour, below all lines: $(awk '
    /fill:rgb\(50%,25%,75%\)/ { band = NR }
    /stroke:rgb/ && !line { line = NR }
    END { print band && band < line ? "yes" : "no" }' band.svg)"

echo "# Fits that fail tell why."
session <<END 2>&1 || [ $? -eq 2 ]
-x open -f "$PWD/line.txt"
-x fit
-x selectCurve -c y
-x setFormula -f a+b+c*x
-x fit
-x setFormula -f log(-1-x)*a
-x fit
-x setFormulaParameters -p 'a = 7 [0, 5]'
-x close
END
