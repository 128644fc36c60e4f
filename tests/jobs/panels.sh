#!/usr/bin/env bash
# Panels whose numbers differ in width, placed by their frames; frames as lines of the pages' vectors.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../examples/session.sh"
cd "$1"

# A line "left top right bottom", in points, for each rectangle that is stroked with square ends: no
# other line of a picture is.
frames() {
    sed -n '/stroke-linecap:square/s/.* d="M \([-0-9.]* [-0-9.]*\) L [-0-9. ]* L \([-0-9.]* [-0-9.]*\) .*/\1 \2/p'
}

printf 'x\ta\n0\t1\n1\t3\n2\t2\n' >narrow.txt
printf 'x\tb\n0\t-123456\n1\t3\n2\t98765\n' >wide.txt

# Ends with 2, since it is refused pages of nothing.
session <<END 2>&1 || [ $? -eq 2 ]
-x open -f "$PWD/wide.txt"
-x setDocAttributes -w 6 -h 2
-x open -f "$PWD/narrow.txt"
-x setDocAttributes -w 6 -h 4
-x setAxis -k yes
-x savePDFofComposition -f "$PWD/none.pdf" -a none
-x newComposition
-x savePDFofComposition -f "$PWD/none.pdf" -a none
-x addPDFtoComposition -d narrow.txt -X 100 -Y 80
-x addPDFtoComposition -d wide.txt -X 100 -Y 10
-x savePDFofComposition -f "$PWD/own.pdf" -a none
-x savePDFofComposition -f "$PWD/none.pdf" -a none
-x newComposition -w 400 -h 300
-x addPDFtoComposition -d narrow.txt -X 0 -Y 150 -w 400 -h 150
-x addPDFtoComposition -d wide.txt -X 0 -Y 0 -w 400 -h 150
-x savePDFofComposition -f "$PWD/fitted.pdf" -a none
END
[ ! -e none.pdf ] || echo "a page of nothing"

echo "# Widths, heights and distances of the frames in points: 6 cm are 170.08, 70 apart as placed."
pdftocairo -svg own.pdf - | frames |
    awk '{ printf "%.0f x %.0f, %.0f right, %.0f down of the first\n", $3 - $1, $4 - $2,
               $1 - (left = NR == 1 ? $1 : left), $4 - (bottom = NR == 1 ? $4 : bottom) }'
echo "# x is named once, by the panel that has numbers."
pdftotext -raw own.pdf - | grep -cx x
echo "# The page of that size, both frames on it; that of no size, 10 points around."
pdfinfo fitted.pdf | grep 'Page size'
pdftocairo -svg fitted.pdf - | frames | awk '{ print ($1 > 0 && $3 < 400 && $2 > 0 && $4 < 300) ? "inside" : "outside" }'
