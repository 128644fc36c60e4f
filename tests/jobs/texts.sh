#!/usr/bin/env bash
# Titles, markup and fields, as the words of a picture; where texts stand, in relation to the frame.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../examples/session.sh"
. "$here/frames.sh"
export SOURCE_DATE_EPOCH=0
cd "$1"
printf 'time_s\tU_1 (V)\tmy_column\n0\t1\t2\n1\t3\t2\n2\t5\t3\n3\t6\t3\n' >texts.txt

session <<END
-x open -f "$PWD/texts.txt"
-x setDocAttributes -w 12 -h 8
-x selectCurve -c 'U_1 (V)'
-x setFormula -f a+b*x
-x fit
-x savePDF -f "$PWD/names.pdf"
-x placeText -t '<x title> \\omega^{2}_{max} (10^{-3} s\\_1)'
-x placeText -t '<y title> *E* (\\AA)'
-x placeText -t '<upper x title> upper'
-x placeText -t '<right y title> right'
-x placeText -t '<title> above \\pm \\infty'
-x placeText -t LEFT -r 0 -u 0.1
-x placeText -t RIGHT -r 1 -u 0.1
-x placeText -t MIDDLE -r 0.5 -u 0.1
-x placeText -t '<formula>\\\\<parameters>\\\\<chi>\\\\<name>' -r 0.1 -u 0.95
-x placeText -t '<legend>'
-x savePDF -f "$PWD/texts.pdf"
-x placeText -t '<title>'
-x savePDF -f "$PWD/untitled.pdf"
-x close
END
printf 'at,U\n2024-02-28T12:00Z,1\n2024-03-01T12:00Z,2\n' >dates.csv
session <<END
-x open -f "$PWD/dates.csv"
-x savePDF -f "$PWD/dates.pdf"
END

words() { pdftotext -raw "$1.pdf" - | tr -s ' \n\f' '\n' | LC_ALL=C sort | paste -sd ' '; }
for picture in names texts untitled dates; do
    echo "# $picture:$(words $picture)"
done

echo "# LEFT begins as far from the frame as RIGHT ends, and MIDDLE stands between."
frame=$(pdftocairo -svg texts.pdf - | frames)
pdftotext -bbox texts.pdf - | awk -v frame="$frame" '
    { gsub("[<>\"=]", " ") }
    $NF == "/word" { left[$10] = $3; right[$10] = $7 }
    END {
        split(frame, side)
        near(left["LEFT"] - side[1], side[3] - right["RIGHT"])
        near(left["MIDDLE"] + right["MIDDLE"], side[1] + side[3])
    }
    function near(a, b) { print (a - b < 1 && b - a < 1) ? "yes" : "no: " a ", " b }'
