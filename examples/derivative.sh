#!/usr/bin/env bash
# A noisy curve smoothed and differentiated: the monthly values are drawn as means of three with a
# smooth line, the yearly cycle is fitted, and the fitted curve's derivative gets an axis of its own.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/session.sh"
folder=$(cd "${1:-$(mktemp -d)}" && pwd)

session <<END
-x open -f "$here/data/pressure.txt"
-x selectCurve -c difference
-x setAttributes2 -s 3 -p 10 -t 1
-x setFormula -f a+b*cos(2*pi*x/12)+c*sin(2*pi*x/12)
-x fit
-x getFormulaParameters
-x selectCurve -c Fit
-x diff
-x selectCurve -c "Fit'"
-x statistic
-x setAttributes -r yes -a yes
-x setXRange -s 0 -e 60
-x savePDF -f "$folder/derivative.pdf"
-x close
END
