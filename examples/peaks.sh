#!/usr/bin/env bash
# Peaks of a spectrum: the maxima are found and marked, and two peaks that overlap on a background
# are fitted.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/session.sh"
folder=$(cd "${1:-$(mktemp -d)}" && pwd)

session <<END
-x open -f "$here/data/spectrum.txt"
-x selectCurve -c counts
-x markSelectionAsFitData
-x searchMaxima -g yes -w 10 -h 5
-x selectCurve -c 'counts maxima'
-x statistic
-x selectCurve -c counts
-x setFormula -f b1*exp(-b2*x)+b3*exp(-(x-b4)^2/b5^2)+b6*exp(-(x-b7)^2/b8^2)
-x setFormulaParameters -p 'b1=95, b2=0.01, b3=90, b4=113, b5=20, b6=74, b7=140, b8=20'
-x fit
-x getFormulaParameters
-x setAttributes -l no -S yes
-x setAttributes2 -y 2
-x savePDF -f "$folder/peaks.pdf"
-x close
END
