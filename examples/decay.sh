#!/usr/bin/env bash
# Fit of a decay: measured data into a document, values read and set, the document saved, closed and
# opened, a formula fitted, and pictures.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/session.sh"
folder=$(cd "${1:-$(mktemp -d)}" && pwd)

echo "# Argument mode: a file of data becomes a document, and comes to the front."
echo 'callPlw -x open -f data/ultrasonic.txt -x activeDoc'
callPlw -x open -f "$here/data/ultrasonic.txt" -x activeDoc

echo "# Line mode: curves, values, the inventory, and the document saved, closed and opened."
session <<END
-x inventory
-x selectCurve -c response
-x selectedIndex
-x statistic
-x getXRange
-x sortByX
-x Yi -i 0
-x YatX -a 2.6
-x iAtX -a 2.6
-x setYi -i 0 -a 80.5
-x Yi -i 0
-x setYi -i 0 -a 92.9
-x saveDocument -f "$folder/decay.plotwerk"
-x close
-x activeDoc
-x open -f "$folder/decay.plotwerk"
-x activeDoc
-x inventory
END

echo "# A formula and its parameters' first values; the fit, the parameters with their errors."
session <<END
-x selectCurve -c response
-x markSelectionAsFitData
-x setFormula -f exp(-b1*x)/(b2+b3*x)
-x setFormulaParameters -p 'b1=0.1, b2=0.01, b3=0.02'
-x fit
-x getFormulaParameters
-x getVar -s points
END

echo "# The data as symbols, and pictures."
session <<END
-x setAttributes -l no -S yes
-x setAxis -a 2 -m yes
-x placeText -t 'exp(-b1 x) / (b2 + b3 x)' -r 0.55 -u 0.8
-x savePDF -f "$folder/decay.pdf"
-x saveEPS -f "$folder/decay.eps"
-x saveTIFF -f "$folder/decay.tiff"
-x saveDocument
-x close
END
