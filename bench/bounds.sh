#!/usr/bin/env bash
# bounds.sh [NAME ...] - messages that are as expensive as messages can be made, one after the other, each
# to a plotwerkd of its own: what it and its children took of the processors, how much memory beyond what
# it held (plotwerkd's, and the largest child's), how long another client waited meanwhile, whether it was
# done, and how soon SIGTERM in its midst ended the process. Wanted of each: 10 s, 1 GB and 1 s at most.
# Names choose rows. Expects callPlw and plotwerkd on the PATH.
set -euo pipefail
. "$(dirname "$0")/privateBus.sh"

zigzag='{ for (i = 0; i < n; ++i) print i, i % 2 }'
curve() { echo "-x createCurveAtSelection -e $1"; } # of so many points
zigzags() {
    awk -v n="$1" "BEGIN $zigzag" >zigzag.txt
    echo '-x open -f zigzag.txt'
}
large_page() { printf '%s\n' '-x setDocAttributes -w 100 -h 100' '-x selectCurveByIndex'; }
columns() {
    awk -v n="$1" 'BEGIN { for (i = 0; i <= n; ++i) printf "c%d\t", i; for (r = 0; r < 3; ++r) {
        print ""; for (i = 0; i <= n; ++i) printf "%d\t", i + r } print "" }' >columns.txt
    printf '%s\n' '-x open -f columns.txt' '-x selectCurveByIndex'
}
tables() {
    awk -v n="$1" 'BEGIN { for (i = 0; i < n; ++i) print "x\ty\n1\t" i "\n2\t3\n" }' >tables.txt
    printf '%s\n' '-x open -f tables.txt' '-x selectCurveByIndex'
}
legend() { for ((i = 0; i < 1000; ++i)); do echo "-x placeText -r 0.$((1000 + i)) -u 0.5 -t '$(printf 'abcdefghij%.0s' {1..20})'"; done; }
spline() { echo '-x selectCurveByIndex'; echo '-x setAttributes2 -t 1 -p 1000000'; }

# NAME | what comes before | the message
rows() {
    cat <<'END'
points 1e8|:|-x createCurveAtSelection -e 1e8
points 2e7|:|-x createCurveAtSelection -e 2e7
JSON of 2e7|curve 2e7|-x saveDocument -f d.plotwerk
CBOR of 2e7|curve 2e7|-x saveDocument -f d.plotwerk -b yes
diff of 2e7|curve 2e7; echo "-x selectCurveByIndex -i 0"|-x diff
copy of 2e7|curve 2e7; echo "-x selectCurveByIndex -i 0"|-x copy -i yes
maxima of 2e7|curve 2e7; echo "-x selectCurveByIndex -i 0"|-x searchMaxima -g y -s y -w 1 -h 0
141 powers of 1e7|curve 1e7; echo "-x selectCurveByIndex -i 0"; echo "-x setFormula -f '$(printf 'x^1.%d+' {101..241})x'"|-x modifyY
fine dashes TIFF|zigzags 20000; large_page; echo "-x setAttributes -a yes"; echo "-x setAttributes2 -h 0.05 -i 0.05"|-x saveTIFF -f p.tiff
fine dashes PDF|zigzags 20000; large_page; echo "-x setAttributes -a yes"; echo "-x setAttributes2 -h 0.05 -i 0.05"|-x savePDF -f p.pdf
large symbols TIFF|zigzags 20000; large_page; echo "-x setAttributes -S yes -l no"; echo "-x setAttributes2 -y 200"|-x saveTIFF -f p.tiff
translucent EPS|zigzags 1000000; large_page; echo "-x setAttributes -S yes -l no"; echo "-x setAttributes2 -o 0.5"|-x saveEPS -f p.eps
translucent line TIFF|zigzags 1000000; large_page; echo "-x setAttributes2 -o 0.5"|-x saveTIFF -f p.tiff
1000 texts TIFF|zigzags 10; legend|-x saveTIFF -f p.tiff
1024 splines PDF|columns 1024; spline|-x savePDF -f p.pdf
1e5 names|columns 100000|-x changeNameOfSelection -t a
1e5 curves PDF|columns 100000|-x savePDF -f p.pdf
1e5 zigzags TIFF|columns 100000; large_page|-x saveTIFF -f p.tiff
1e5 tables, next|tables 100000; echo "-x markSelectedCurves"|-x nextMarkedCurve
1e5 tables, sort|tables 100000|-x sortByX
endless fit|zigzags 100000; echo "-x setFormula -f 'a*sin(b*x+c)+d*exp(-e*x)+f*cos(g*x)'"|-x fit
1e7 points, fit|curve 1e7; echo "-x selectCurveByIndex -i 0"; echo "-x setFormula -f 'a*sin(b*x+c)+d'"|-x fit
empty maps|:|-x open -f maps.plotwerk
words|:|-x open -f words.txt
END
}
(printf '\xd9\xd9\xf7\x9a\x00\x98\x96\x80' && head -c 10000000 /dev/zero | tr '\0' '\240') >maps.plotwerk
head -c 480000000 < <(yes 'abc def') >words.txt

plotwerkd_starts() {
    rm -rf plotwerk log
    plotwerkd --no-journal 2>log &
    server=$!
    until grep -qs ' owns ' log; do sleep 0.01; done
    eval "$1" >lines
    while read -r line; do # as arguments: a line of a pipe is bounded
        eval "CALLPLW_ERRORS=report callPlw $line" >/dev/null || exit 1
    done <lines
}
# The processors' time of plotwerkd and the children that it has waited for, in hundredths of a second.
spent() { awk '{ sub(/.*\) /, ""); print $12 + $13 + $14 + $15 }' "/proc/$server/stat"; }
most() { awk '/^VmHWM/ { print int($2 / 1e3) }' "/proc/$1/status" 2>/dev/null || echo 0; }
now() { echo "${EPOCHREALTIME/[.,]/}"; }

# Until the file `stop` is there, asks by a pipe of its own and keeps the longest wait; and the memory
# of the largest child.
another_client() {
    local begin took longest=0
    coproc pipe { callPlw; }
    while [ ! -e stop ]; do
        begin=$(now)
        echo '-x activeDoc' >&"${pipe[1]}"
        read -r _ <&"${pipe[0]}"
        took=$(($(now) - begin))
        ((took <= longest)) || longest=$took
        sleep 0.02
    done
    echo "$longest" >waited
}
children_grow() {
    local child size largest=0
    while [ ! -e stop ]; do
        for child in $(cat "/proc/$server/task/$server/children"); do
            size=$(most "$child")
            ((size <= largest)) || largest=$size
        done
        sleep 0.02
    done
    echo "$largest" >largest
}

echo 'message                   answer    CPU (s)   memory (MB)   child (MB)   waited (s)   SIGTERM (s)'
while IFS='|' read -r name before message; do
    [ $# = 0 ] || [[ " $* " == *" $name "* ]] || continue
    plotwerkd_starts "$before"
    rm -f stop
    another_client &
    waiter=$!
    children_grow &
    grower=$!
    echo 5 >"/proc/$server/clear_refs" # what it holds now is the most so far
    held=$(most "$server")
    used=$(spent)
    begin=$(now)
    eval "CALLPLW_ERRORS=report callPlw $message" >answer 2>&1 || true
    took=$(($(now) - begin))
    used=$(($(spent) - used))
    grown=$(($(most "$server") - held))
    touch stop
    wait "$waiter" "$grower"
    if grep -q 'callPlw:' answer; then answer=refused; else answer=done; fi
    kill "$server"
    wait "$server" || true

    plotwerkd_starts "$before"
    eval "callPlw $message" >/dev/null 2>&1 &
    sleep "$(awk "BEGIN { print $took / 2e6 }")"
    begin=$(now)
    kill "$server"
    wait "$server" || true
    ended=$(($(now) - begin))
    awk -v OFMT='%.2f' "BEGIN { printf \"%-24s %7s %10.2f %13d %12d %12.2f %13.2f\n\",
        \"$name\", \"$answer\", $used / 100, $grown, $(cat largest), $(cat waited) / 1e6, $ended / 1e6 }"
    [ "$answer" = "done" ] || sed 's/^/    /' answer
done < <(rows)
