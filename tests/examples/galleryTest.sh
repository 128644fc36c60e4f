#!/usr/bin/env bash
# The commands of the gallery draw the figures that it shows: galleryTest.sh CLIENT_FOLDER
# SERVER_FOLDER, on a bus of its own (dbus-run-session).
set -euo pipefail
PATH=$1:$2:$PATH
docs=$(cd "$(dirname "$0")/../../docs" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$docs/gallery/draw.sh" "$folder"
pngcheck -q "$folder"/*.png
diff <(sed -n 's|^!\[.*](gallery/\(.*\))|\1|p' "$docs/gallery.md" | sort) <(ls "$folder")
diff <(cd "$docs/gallery" && ls ./*.png) <(cd "$folder" && ls ./*.png)
