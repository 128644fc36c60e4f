#!/usr/bin/env bash
# soak.sh [MINUTES [CLIENTS]] - clients that send random lines to one plotwerkd at the same time, each by
# a pipe of its own: data, curves, fits, pictures, files, and what is refused. Every answer is waited for,
# and every few lines "synced" has to come in its turn, so none is lost, doubled or another client's. At
# the end plotwerkd gets SIGTERM. Prints the counts, the longest wait, plotwerkd's memory and how soon it
# ended; fails when an answer did. Expects callPlw and plotwerkd on the PATH.
set -euo pipefail
minutes=${1:-30}
clients=${2:-4}
. "$(dirname "$0")/privateBus.sh"
plotwerkd 2>log &
server=$!
until grep -qs ' owns ' log; do sleep 0.01; done
: >log # it goes on there, from the beginning

now() { echo "${EPOCHREALTIME/[.,]/}"; }

# Sends a line to the client `pipe`; with a pattern, waits for an answer that it matches.
send() {
    local begin took
    printf '%s\n' "$1" >&"${pipe[1]}"
    lines=$((lines + 1))
    [ $# = 2 ] || return 0
    begin=$(now)
    if ! read -r -t 60 line <&"${pipe[0]}"; then
        echo "no answer: $1" >>wrong
        exit 1
    fi
    took=$(($(now) - begin))
    ((took <= longest)) || longest=$took
    answers=$((answers + 1))
    # shellcheck disable=SC2053
    [[ $line == $2 ]] || echo "$1: $line" >>wrong
}

# A random line of those that documents meet.
step() {
    local document="-d soak$1.$((RANDOM % 3))" curve="-i $((RANDOM % 6))"
    case $((RANDOM % 30)) in
    0) send "-x newDocument $document" ;;
    1 | 2) send "-x readData $document -a yes -p '$RANDOM $RANDOM.5 $((RANDOM % 9))'" ;;
    3) send "-x createCurveAtSelection $document -e $RANDOM" ;;
    4) send "-x selectCurveByIndex $document $curve -j $((RANDOM % 6))" ;;
    5) send "-x statistic $document" '*' ;;
    6) send "-x inventory $document" '* * *' ;;
    7) send "-x YatX $document -a $RANDOM" '*' ;;
    8) send "-x setYi $document -i $((RANDOM % 9)) -a $RANDOM" ;;
    9) send "-x setFormula $document -f 'a*x^2+b*x+c'" ;;
    10) send "-x markSelectionAsFitData $document" ;;
    11) send "-x fit $document" 'fit *' ;;
    12) send "-x getFormulaParameters $document" '*' ;;
    13) send "-x setXRange $document -s 0 -e $RANDOM" ;;
    14) send "-x getXRange $document" 'xmin=*' ;;
    15) send "-x setAttributes $document -S yes -l no -f $((RANDOM % 2))" ;;
    16) send "-x setAxis $document -a $((RANDOM % 5)) -l yes" ;;
    17) send "-x placeText $document -t '<legend> \\alpha' -r 0.$RANDOM" ;;
    18) send "-x savePDF $document -f $1.pdf" 'save *' ;;
    19) send "-x saveDocument $document -f $1.plotwerk -b $((RANDOM % 2))" 'save *' ;;
    20) send "-x open -f $folder/$1.plotwerk" ;;
    21) send "-x sortByX $document" ;;
    22) send "-x modifyY $document" ;;
    23) send "-x delete $document" ;;
    24) send "-x searchMaxima $document -g y -w 2 -h 0" ;;
    25) send "-x diff $document" ;;
    26) send "-x copy $document -i yes" && send "-x pasteData $document" ;;
    27) send "-x close $document" ;;
    28) send "-x selectCurve $document -c '(['" ;;
    29) send "-x getVar $document -s lastError" '*' ;;
    esac
}

client() {
    local lines=0 answers=0 longest=0 line pipe
    RANDOM=$1
    coproc pipe { callPlw 2>&1; }
    while [ ! -e stop ]; do
        for _ in {1..20}; do step "$1"; done
        send '-x sync' synced
    done
    echo "$lines $answers $longest" >"counts.$1"
}

for ((i = 1; i <= clients; ++i)); do client "$i" & done
end=$((SECONDS + minutes * 60))
while ((SECONDS < end)) && [ ! -e wrong ]; do
    awk '/^VmRSS/ { print int($2 / 1e3) }' "/proc/$server/status" >>memory
    sleep 1
done
touch stop
until [ "$(find . -name 'counts.*' | wc -l)" = "$clients" ] || [ -e wrong ]; do sleep 0.1; done
begin=$(now)
kill "$server"
wait "$server" && status=0 || status=$?
ended=$(($(now) - begin))
cat counts.* | awk -v memory="$(sort -n memory | sed -n '1p;$p' | tr '\n' ' ')" -v ended="$ended" -v status="$status" '
    { lines += $1; answers += $2; if ($3 > longest) longest = $3 }
    END { split(memory, size)
        printf "%d lines, %d answers, longest wait %.2f s, memory %d to %d MB, SIGTERM %.2f s, status %d\n",
            lines, answers, longest / 1e6, size[1], size[2], ended / 1e6, status }'
if [ -e wrong ]; then
    head wrong >&2
    exit 1
fi
