#!/usr/bin/env bash
# Draws the figures of gallery.md by the commands that stand there: draw.sh [FOLDER], docs/gallery
# itself when left out. Expects callPlw and plotwerkd on the PATH; a bus of its own is dbus-run-session's.
# Ends with the status of the first command that failed.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
target=$(cd "${1:-$here}" && pwd)
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$work"' EXIT
ln -s "$here/../../examples" "$work/examples"
cd "$work"
export XDG_STATE_HOME=$work/state
mkfifo log
plotwerkd 2>log &
grep -q ' owns ' log
cat log >plotwerkd.log &

export CALLPLW_ERRORS=report
awk '/^```/ { inside = /^```sh/; next } inside' "$here/../gallery.md" >commands.sh
bash -euo pipefail commands.sh
cp ./*.png "$target"
