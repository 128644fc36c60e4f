#!/usr/bin/env bash
# An example, run against plotwerkd, says what it should: exampleTest.sh NAME CLIENT_FOLDER
# SERVER_FOLDER, on a bus of its own (dbus-run-session). Its saved files go to a new folder.
set -euo pipefail
name=$1
PATH=$2:$3:$PATH
here=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT

cd "$folder"
mkfifo log
plotwerkd 2>log &
grep -q ' owns ' log
cat log >plotwerkd.log &

examples=$(cd "$here/../../examples" && pwd)
"$examples/$name.sh" . | sed "s|$examples|examples|" >"$name.out"
diff -u "$here/$name.out" "$name.out"
