#!/usr/bin/env bash
# jobs.sh [PAIRS] - whole jobs by callPlw and plotwerkd beside gnuplot: figures and fits from files, as
# PDF, from the cold start of either to the last file written. Prints the medians in milliseconds, of the
# clock and of the processors' time (ours with the message bus), and the medians over the pairs of
# gnuplot's time divided by ours. Both run in turn, so that other work on the machine meets both; what
# waits for each other, as ours does, still loses more by it: then the processors' time counts. Expects
# callPlw, plotwerkd and gnuplot on the PATH.
set -euo pipefail
pairs=${1:-11}
project=$(cd "$(dirname "$0")/.." && pwd)
. "$project/scripts/packages.sh"
need_packages gnuplot-nox
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT
cd "$folder"
export XDG_STATE_HOME=$folder XDG_RUNTIME_DIR=$folder
mkfifo log
exec {log}<>log
dbus-daemon --session --nofork --print-address 1 >address 2>/dev/null &
bus=$!
until [ -s address ]; do sleep 0.01; done
DBUS_SESSION_BUS_ADDRESS=$(cat address)
export DBUS_SESSION_BUS_ADDRESS

cp "$project/examples/data/activity.txt" .
awk 'BEGIN {
    srand(1)
    for (i = 0; i < 1000000; ++i) print i * 1e-5, sin(i * 1.2e-5) + rand() + rand() + rand() >"noise.txt"
    for (n = 0; n < 200; ++n) {
        file = "fit" n ".txt"
        for (i = 0; i < 100; ++i) print i, 10 * exp(-i / (20 + n / 10)) + 1 + rand() / 5 >file
        close(file)
    }
}'

formula='A*exp(-x/tau)+B'

# Ours: every line a command.
plot_ours() {
    cat <<END
-x open -f activity.txt
-x selectCurve -c counts
-x setAttributes -l no -S yes -y yes
-x savePDF -f plot.pdf
END
}
residuals_ours() {
    cat <<END
-x open -f activity.txt
-x selectCurve -c counts
-x setAttributes -l no -S yes -y yes
-x setFormula -f $formula
-x setFormulaParameters -p 'A=800, tau=100, B=50'
-x fit
-x setAxis -k yes
-x selectCurve -c Residuals/σ
-x copy -i yes
-x newDocument -d residuals
-x pasteData
-x selectCurve -c Residuals/σ
-x setAttributes -l no -S yes
-x setDocAttributes -h 3
-x newComposition
-x addPDFtoComposition -d activity.txt -Y 95
-x addPDFtoComposition -d residuals
-x savePDFofComposition -f residuals.pdf -a none
END
}
fit_ours() {
    cat <<END
-x open -f fit$1.txt
-x setFormula -f $formula
-x setFormulaParameters -p 'A=8, tau=15, B=0.5'
-x fit
-x getFormulaParameters
-x close
END
}
panels_ours() {
    local i
    for i in 0 1 2 3; do
        cat <<END
-x open -f fit$i.txt
-x setDocAttributes -w 7 -h 4.5
-x selectCurveByIndex
-x setAttributes -l no -S yes
END
    done
    echo '-x newComposition'
    for i in 0 1 2 3; do
        echo "-x addPDFtoComposition -d fit$i.txt -X $((i % 2 * 260)) -Y $((i / 2 * 180))"
    done
    echo '-x savePDFofComposition -f panels.pdf -a none'
}
million_ours() {
    cat <<END
-x open -f noise.txt
-x savePDF -f million.pdf
END
}

# gnuplot's.
residuals_peer() {
    cat <<END
A = 800; tau = 100; B = 50
f(x) = $formula
fit f(x) "activity.txt" using 1:2:3 yerrors via A, tau, B
set terminal pdfcairo; set output "residuals.pdf"
set multiplot layout 2, 1
plot "activity.txt" skip 2 using 1:2:3 with yerrorbars pt 7, f(x)
plot "activity.txt" skip 2 using 1:((\$2-f(\$1))/\$3) with points pt 7
unset multiplot
END
}
fit_peer() {
    cat <<END
A = 8; tau = 15; B = 0.5
f(x) = $formula
fit f(x) "fit$1.txt" via A, tau, B
print A, tau, B
END
}
panels_peer() {
    local i
    echo 'set terminal pdfcairo; set output "panels.pdf"; set multiplot layout 2, 2'
    for i in 0 1 2 3; do echo "plot \"fit$i.txt\" with points pt 7"; done
    echo 'unset multiplot'
}

each_fit() { for ((n = 0; n < 200; ++n)); do "$1" "$n"; done; }
plotwerkd_starts() {
    plotwerkd 2>log &
    server=$!
    while read -ru "$log" line && [[ $line != *' owns '* ]]; do :; done
}
now() { echo "${EPOCHREALTIME/[.,]/}"; }

printf 'set fit quiet\n' >quiet
plot_ours >plot.lines
residuals_ours >residuals.lines
each_fit fit_ours >pipe.lines
for ((n = 0; n < 200; ++n)); do fit_ours "$n" >"fit$n.lines"; done
panels_ours >panels.lines
million_ours >million.lines
echo 'set terminal pdfcairo; set output "plot.pdf"; plot "activity.txt" skip 2 with yerrorbars pt 7' >plot.gp
(cat quiet; residuals_peer) >residuals.gp
(cat quiet; each_fit fit_peer) >pipe.gp
for ((n = 0; n < 200; ++n)); do (cat quiet; fit_peer "$n") >"fit$n.gp"; done
panels_peer >panels.gp
echo 'set terminal pdfcairo; set output "million.pdf"; plot "noise.txt" with lines' >million.gp

# The processors' time of a running process of one thread, in microseconds.
spent() { awk '{ printf "%d\n", $1 / 1000 }' "/proc/$1/schedstat"; }

# Do a job, for `timed`.
ours() {
    if [ "$1" = loop ]; then
        for ((n = 0; n < 200; ++n)); do callPlw <"fit$n.lines"; done
    else
        callPlw <"$1.lines"
    fi
}
peer() {
    if [ "$1" = loop ]; then
        for ((n = 0; n < 200; ++n)); do gnuplot "fit$n.gp"; done
    else
        gnuplot "$1.gp"
    fi
}

# timed COMMAND ...: leaves the microseconds of the clock and of the processors in `took` and `used`.
timed() {
    local begin
    begin=$(now)
    TIMEFORMAT='%U %S'
    { time "$@" >/dev/null 2>messages; } 2>cpu
    if grep callPlw: messages >&2; then exit 1; fi
    took=$(($(now) - begin))
    used=$(awk '{ printf "%d\n", ($1 + $2) * 1e6 }' cpu)
}

# Ends plotwerkd. Prints the processors' time that it took, with its threads and children.
plotwerkd_ends() {
    times >times_before
    kill "$server"
    wait "$server" || true
    times >times_after
    awk -F '[ms ]+' '{ sum[FILENAME] += 60 * ($1 + $3) + $2 + $4 }
        END { printf "%d\n", 1e6 * (sum["times_after"] - sum["times_before"]) }' times_before times_after
}

# Prints a line of times: ours and gnuplot's, of the clock and of the processors. No journals of
# earlier rounds meet the next one.
pair() {
    local before begin started our_took our_used
    rm -rf plotwerk
    before=$(spent "$bus")
    begin=$(now)
    plotwerkd_starts
    started=$(($(now) - begin))
    timed ours "$1"
    our_took=$((started + took))
    our_used=$((used + $(spent "$bus") - before))
    plotwerkd_ends >cpu
    our_used=$((our_used + $(<cpu)))
    timed peer "$1"
    echo "$our_took $took $our_used $used"
}

# median EXPRESSION: of its values over the lines of `times`, with awk's $1 to $4.
median() {
    awk "{ print $1 }" times | sort -n | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'
}

echo '                 clock (ms)                    processors (ms)'
echo 'job          ours    gnuplot   ratio        ours    gnuplot   ratio'
for job in plot residuals pipe loop panels million; do
    rounds=$pairs
    case $job in loop | pipe | million) rounds=$(((pairs + 2) / 3)) ;; esac
    CALLPLW_ERRORS=stop pair "$job" >/dev/null # nothing fails, and the machine's caches are filled
    for ((round = 0; round < rounds; ++round)); do pair "$job"; done >times
    printf '%-10s %7.1f %9.1f %7.2f     %7.1f %9.1f %7.2f\n' "$job" \
        "$(median '$1 / 1e3')" "$(median '$2 / 1e3')" "$(median '$2 / $1')" \
        "$(median '$3 / 1e3')" "$(median '$4 / 1e3')" "$(median '$4 / $3')"
done
