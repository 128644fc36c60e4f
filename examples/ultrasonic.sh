#!/usr/bin/env bash
# Measured data into a document, curves selected, values read and set, saved and opened again.
# Expects callPlw on the PATH and a running Plotwerk. Saves into the folder given, or a new one.
set -euo pipefail
data=$(dirname "$0")/ultrasonic.txt
folder=${1:-$(mktemp -d)}

# Feeds the lines of its standard input to one callPlw and shows each line with its answer. "sync"
# answers when all earlier work is done, so it tells where the answers to a line end.
session() {
    local line answer answers plw
    coproc callPlw
    plw=$COPROC_PID
    while IFS= read -r line; do
        printf '%s\n-x sync\n' "$line" >&"${COPROC[1]}"
        answers=
        while IFS= read -r answer <&"${COPROC[0]}" && [ "$answer" != synced ]; do
            answers+=" $answer"
        done
        [ -z "$answers" ] && echo "$line" || printf '%-58s%s\n' "$line" "$answers"
    done
    exec {COPROC[1]}>&-
    wait "$plw"
}

echo "# Line mode: a new document."
session <<END
-x newDocument -d ultrasonic
-x activeDoc
END

echo "# Argument mode: the data, given as text, go into the document in front."
echo "callPlw -x readData -s block -r yes -p \"\$(cat ${data##*/})\""
callPlw -x readData -s block -r yes -p "$(cat "$data")"

echo "# Curves, values, the inventory, and the document saved, closed and opened."
session <<END
-x inventory
-x selectCurve -s block -c response
-x selectedIndex
-x statistic
-x getXRange
-x sortByX
-x Yi -i 0
-x YatX -a 2.6
-x iAtX -a 2.6
-x setYi -i 0 -a 80.5
-x Yi -i 0
-x saveDocument -f $folder/ultrasonic.plotwerk
-x close
-x activeDoc
-x open -f $folder/ultrasonic.plotwerk
-x activeDoc
-x inventory
-x selectCurve -c response
-x Yi -i 0
END
