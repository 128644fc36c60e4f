#!/usr/bin/env bash
# Titles, markup and fields, as the words of a picture.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../examples/session.sh"
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
-x placeText -t '<formula>\\\\<parameters>\\\\<chi>\\\\<name>' -r 0.1 -u 0.95
-x placeText -t '<legend>'
-x savePDF -f "$PWD/texts.pdf"
-x close
END
words() { pdftotext -raw "$1.pdf" - | tr -s ' \n\f' '\n' | LC_ALL=C sort | paste -sd ' '; }
for picture in names texts; do
    echo "# $picture:$(words $picture)"
done
