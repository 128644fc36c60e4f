#!/usr/bin/env bash
# An example, run against plotwerkd, says what it should: exampleTest.sh NAME CLIENT_FOLDER
# SERVER_FOLDER, on a bus of its own (dbus-run-session). It runs in a new folder, with a blank in its
# name, and so do its saved files; plotwerkd runs elsewhere.
set -euo pipefail
name=$1
PATH=$2:$3:$PATH
here=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT

mkfifo "$folder/log"
(cd / && exec plotwerkd 2>"$folder/log") &
grep -q ' owns ' "$folder/log"
cat "$folder/log" >"$folder/plotwerkd.log" &

mkdir "$folder/a folder"
cp -r "$here/../../examples" "$folder/a folder"
cd "$folder/a folder"
examples/"$name.sh" . | sed "s|$PWD/||; s|  *save | save |" >"$name.out"
diff -u "$here/$name.out" "$name.out"
