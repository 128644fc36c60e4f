#!/usr/bin/env bash
# A script, run against plotwerkd, says what it should: exampleTest.sh SCRIPT EXPECTED CLIENT_FOLDER
# SERVER_FOLDER, the script from the project's folder, on a bus of its own (dbus-run-session). It runs
# in a new folder, with a blank in its name, and so do its saved files; plotwerkd runs elsewhere.
set -euo pipefail
script=$1
expected=$2
PATH=$3:$4:$PATH
project=$(cd "$(dirname "$0")/../.." && pwd)
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT

export XDG_STATE_HOME=$folder/state
mkfifo "$folder/log"
(cd / && exec plotwerkd 2>"$folder/log") &
grep -q ' owns ' "$folder/log"
cat "$folder/log" >"$folder/plotwerkd.log" &

mkdir -p "$folder/a folder/tests"
cp -r "$project/examples" "$folder/a folder"
cp -r "$project/tests/jobs" "$folder/a folder/tests"
cd "$folder/a folder"
"$script" . | sed "s|$PWD/||g; s|  *save | save |" >answers
diff -u "$expected" answers
