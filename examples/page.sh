#!/usr/bin/env bash
# A page of four panels, each the picture of a document with its own data and fit. Without a width and
# height a picture keeps its size, and -X and -Y are the place of its frame: so the frames align.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one,
# as PDF or in the format given (svg, png).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/session.sh"
folder=$(cd "${1:-$(mktemp -d)}" && pwd)
format=${2:-pdf}

session <<END
-x open -f "$here/data/ultrasonic.txt"
-x setDocAttributes -w 7 -h 4.5
-x selectCurve -c response
-x setAttributes -l no -S yes
-x setFormula -f exp(-b1*x)/(b2+b3*x)
-x setFormulaParameters -p 'b1=0.1, b2=0.01, b3=0.02'
-x fit
-x open -f "$here/data/mobility.txt"
-x setDocAttributes -w 7 -h 4.5
-x selectCurve -c mobility
-x setAttributes -l no -S yes
-x setFormula -f (b1+b2*x+b3*x^2+b4*x^3)/(1+b5*x+b6*x^2+b7*x^3)
-x setFormulaParameters -p 'b1=1300, b2=1500, b3=500, b4=75, b5=1, b6=0.4, b7=0.05'
-x fit
-x open -f "$here/data/transmittance.txt"
-x setDocAttributes -w 7 -h 4.5
-x selectCurve -c transmittance
-x setAttributes -l no -S yes
-x setFormula -f b1/b2*exp(-((x-b3)/b2)^2/2)
-x setFormulaParameters -p 'b1=1.5, b2=5, b3=450'
-x fit
-x open -f "$here/data/pressure.txt"
-x setDocAttributes -w 7 -h 4.5
-x selectCurve -c difference
-x setAttributes2 -w 0.5
-x newComposition
-x addPDFtoComposition -d ultrasonic.txt -X 0 -Y 180
-x addPDFtoComposition -d mobility.txt -X 260 -Y 180
-x addPDFtoComposition -d transmittance.txt -X 0 -Y 0
-x addPDFtoComposition -d pressure.txt -X 260 -Y 0
-x savePDFofComposition -f "$folder/page.$format" -a none
-x close -d ultrasonic.txt
-x close -d mobility.txt
-x close -d transmittance.txt
-x close -d pressure.txt
END
