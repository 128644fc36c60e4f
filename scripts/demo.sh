#!/usr/bin/env bash
# Builds callPlw and plotwerkd and shows them at work: a script drives plotwerkd through callPlw.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
    need_packages "${build_packages[@]}" "${bus_packages[@]}"
    exec dbus-run-session -- "$0" "$@"
fi
need_packages "${build_packages[@]}"

cmake --preset release -B build/demo -DBUILD_TESTING=OFF >/dev/null
cmake --build build/demo -j "$(nproc)" --target callPlw plotwerkd | tail -n 1
PATH=$PWD/build/demo/client:$PWD/build/demo/plotwerk:$PATH

folder=$(mktemp -d)
plotwerkd 2>"$folder/plotwerkd.log" &
plotwerkd=$!
trap 'kill $plotwerkd 2>/dev/null || true' EXIT
until grep -q " owns " "$folder/plotwerkd.log"; do
    kill -0 $plotwerkd 2>/dev/null || { cat "$folder/plotwerkd.log"; exit 1; }
    sleep 0.05
done

examples/decay.sh "$folder"
echo "# A page of four panels."
examples/page.sh "$folder" >/dev/null
echo "# The pictures: $folder/decay.pdf, decay.eps, decay.tiff, page.pdf"
echo "# With windows (package libgtkmm-4.0-dev): cmake --preset release -DPLOTWERK_WINDOW=ON &&"
echo "# cmake --build --preset release --target plotwerk && build/release/plotwerk/plotwerk examples/data/ultrasonic.txt"
