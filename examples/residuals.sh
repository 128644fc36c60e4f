#!/usr/bin/env bash
# A figure for a column of 8.5 cm: data with errors and their fit, and below, sharing the x axis, what is
# left of the data in units of their errors.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one,
# as PDF or in the format given (svg, png).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/session.sh"
folder=$(cd "${1:-$(mktemp -d)}" && pwd)
format=${2:-pdf}

session <<END
-x open -f "$here/data/activity.txt"
-x selectCurve -c counts
-x setAttributes -l no -S yes -y yes
-x setAttributes2 -y 3
-x setFormula -f A*exp(-x/tau)+B
-x setFormulaParameters -p 'A=800, tau=100, B=50'
-x fit
-x getFormulaParameters
-x setDocAttributes -w 6.4 -h 4.5
-x setXRange -s 0 -e 400
-x setAxis -k yes
-x selectCurve -c Residuals/σ
-x copy -i yes
-x newDocument -d residuals
-x pasteData
-x selectCurve -c Residuals/σ
-x changeNameOfSelection -t Δ/σ
-x setAttributes -l no -S yes
-x setAttributes2 -y 3
-x setDocAttributes -w 6.4 -h 2
-x setXRange -s 0 -e 400
-x setYRange -s -3.5 -e 3.5
-x setAxis -a 2 -i 2 -m yes
-x newComposition -w 241
-x addPDFtoComposition -d activity.txt -X 46 -Y 64
-x addPDFtoComposition -d residuals -X 46 -Y 0
-x savePDFofComposition -f "$folder/residuals.$format" -a none
-x close -d residuals
-x close -d activity.txt
END
