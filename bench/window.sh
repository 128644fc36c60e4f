#!/usr/bin/env bash
# window.sh [ROUNDS] - plotwerk in a window on a screen that nobody sees: from its start to the first
# frame that shows a plot, 200 answered messages that each add a row, beside plotwerkd in turn, with an
# empty document and with one of 1e5 noisy points, and the memory of an empty document. Prints medians.
# How long drawing takes is frameBench's. Expects callPlw, plotwerkd and plotwerk on the PATH.
set -euo pipefail
rounds=${1:-7}
project=$(cd "$(dirname "$0")/.." && pwd)
. "$project/scripts/packages.sh"
need_packages "${screen_packages[@]}"
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT
cd "$folder"
export XDG_STATE_HOME=$folder XDG_RUNTIME_DIR=$folder GDK_BACKEND=x11 GTK_A11Y=none GSETTINGS_BACKEND=memory

dbus-daemon --session --nofork --print-address 1 >address 2>/dev/null &
Xvfb -displayfd 1 -screen 0 1280x900x24 -nolisten tcp -noreset >display 2>/dev/null &
until [ -s address ] && [ -s display ]; do sleep 0.01; done
DBUS_SESSION_BUS_ADDRESS=$(cat address)
DISPLAY=:$(cat display)
export DBUS_SESSION_BUS_ADDRESS DISPLAY

awk 'BEGIN { srand(1); for (i = 0; i < 100000; ++i) print i, sin(i * 1e-4) + rand() + rand() }' >noise.txt
for ((i = 0; i < 200; ++i)); do printf -- "-x readData -a yes -p '%d 1'\n-x activeDoc\n" "$((100000 + i))"; done >rows.lines

now() { echo "${EPOCHREALTIME/[.,]/}"; }
median() { sort -n | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'; }

starts() {
    rm -rf plotwerk log # what was left to be brought back
    "$@" 2>log &
    program=$!
    until grep -qs " owns " log; do sleep 0.005; done
}
ends() {
    kill "$program"
    wait "$program" || true
}

# Milliseconds until the plot's frame, a dark line over the screen's middle, is there.
first_frame() {
    local begin
    rm -rf plotwerk
    begin=$(now)
    plotwerk noise.txt 2>log &
    program=$!
    until import -silent -window root -depth 8 gray:- | is_plot; do :; done
    echo $((($(now) - begin) / 1000))
    ends
}
# Whether a screen of 1280 x 900 has a row with a dark line as long as a plot, where it isn't empty.
is_plot() {
    od -An -v -tu1 -w1280 | awk '{
        run = longest = 0
        for (i = 1; i <= NF; ++i) { run = $i < 110 ? run + 1 : 0; if (run > longest) longest = run }
        if (longest > 400 && longest < 900) found = 1
    } END { exit !found }'
}

# Milliseconds that 200 messages take, each sent when the one before is answered.
messages() {
    local begin
    coproc pipe { callPlw; }
    local client=$!
    begin=$(now)
    while read -r add && read -r ask; do
        printf '%s\n%s\n' "$add" "$ask" >&"${pipe[1]}"
        read -r _ <&"${pipe[0]}"
    done <rows.lines
    echo $((($(now) - begin) / 1000))
    eval "exec ${pipe[1]}>&-"
    wait "$client"
}

for ((round = 0; round < rounds; ++round)); do first_frame; done | median >start
echo "start to the first frame of 1e5 points:  $(cat start) ms, a look at the screen included"

starts plotwerk
sleep 2
awk '/^Pss:/ { pss = $2 } /^Private/ { private += $2 } END {
    printf "memory with an empty document:           %.0f MB, of which %.0f MB are its own\n", pss / 1e3, private / 1e3
}' "/proc/$program/smaps_rollup"
ends

for document in "" noise.txt; do
    for ((round = 0; round < rounds; ++round)); do
        for server in plotwerkd plotwerk; do
            starts "$server"
            if [ "$document" ]; then callPlw -x open -f $document; else callPlw -x newDocument; fi
            callPlw -x sync >/dev/null
            sleep 3 # its first frame is over
            messages >>"$server.times"
            ends
        done
    done
    ours=$(median <plotwerk.times)
    peer=$(median <plotwerkd.times)
    echo "200 messages, ${document:-an empty document}: $ours ms, plotwerkd $peer ms, ratio $(awk "BEGIN { print $ours / $peer }")"
    rm ./*.times
done
