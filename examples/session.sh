# session.sh - sourced by the examples: lines fed to one callPlw, each shown with its answer. Commands
# that fail tell why, and end the example with status 2 (see callPlw's manual page).
export CALLPLW_ERRORS=report

# Reads command lines from the standard input. "sync" answers when all earlier work is done, so it
# tells where the answers to a line end.
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
        if [ -z "$answers" ]; then echo "$line"; else printf '%-58s%s\n' "$line" "$answers"; fi
    done
    exec {COPROC[1]}>&-
    wait "$plw"
}
