#!/usr/bin/env bash
# Files as people have them: what is read of each, as the statistic of each curve (count, minimum,
# maximum, sum, standard deviation, area, name) and the range of x, and what is refused.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../examples/session.sh"
cd "$1"

# Opens FILE, whose bytes are the standard input, and shows its first CURVES curves.
read_file() {
    local file=$1 curves=$2 i
    echo "# $file"
    cat >"$file"
    {
        echo "-x open -f \"$PWD/$file\""
        for ((i = 0; i < curves; ++i)); do
            printf '%s\n' "-x selectCurveByIndex -i $i -j $i" '-x statistic'
        done
        printf '%s\n' '-x getXRange' '-x inventory' '-x close'
    } | session | grep -- '-x statistic \|-x getXRange \|-x inventory '
}

# errors NAMES ROW: the range of the first curve with its error bars tells which column has them.
errors() {
    local file=errors.txt
    printf '%s\n' "$1" "$2" >"$file"
    printf '%-28s' "$1"
    session <<END | grep getYRange
-x open -f "$PWD/$file"
-x selectCurveByIndex -i 0 -j 0
-x setAttributes -y yes
-x getYRange
-x close
END
}

read_file commas.csv 2 <<'END'
Time,Voltage (V),"Current, ""peak"""
s,V,mA
0,1,"1,234.5"
1,3,1.5D-3
2,,7
END
printf 'a b\tc d\n1\t2\n3\t4\n' | read_file tabs.txt 1
printf 'U;I\r\n1,5;2,5\r\n2,5;3,25\r\n' | read_file decimal.csv 1
printf '# x y err\n1 2 .5\n2 4 .5\n' | read_file comment.txt 1
printf 'x;gr\303\266\303\237e\n1;2\n3;4\n' | iconv -f UTF-8 -t UTF-16 | read_file utf16.txt 1
read_file words.csv 2 <<'END'
when,who,p,q
2024-02-29T12:00:00+01:00,ann,1,10
2024-02-29 11:00:01,bob,2,NA
2024-03-01,carl,3,30
END

for name in y\ error y\ err y_error y_err y\ ± ±y dy sigma\ y σ\ y err error ± sigma σ; do
    errors "x;y;$name" '1;2;0.5'
done
errors 'x;y;y +;y -' '1;2;0.5;0.25'
errors 'x;dx;y;z' '1;0.1;2;0.5'

printf 'no numbers\nat all\n' >empty.txt
printf '1 2 3\n' >other.txt
echo "# What can't be read is an empty document that refuses, and no other document is hit."
session <<END 2>&1 || [ $? -eq 2 ]
-x open -f "$PWD/other.txt"
-x open -f "$PWD/empty.txt"
-x fit
-x close
-x activeDoc
-x open -f "$PWD/none.txt"
-x savePDF -f "$PWD/none.pdf"
-x close
-x activeDoc
-x close
-x activeDoc
-x inventory
END
