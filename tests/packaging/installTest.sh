#!/usr/bin/env bash
# What is installed is complete and runs: installTest.sh BUILD_FOLDER install|package
set -euo pipefail
build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

case $2 in
install) cmake --install "$build" --prefix "$root/usr" >/dev/null ;;
package)
    (cd "$root" && cpack --config "$build/CPackConfig.cmake" -B "$root/package" >/dev/null)
    dpkg-deb --extract "$root"/package/callplw_*.deb "$root"
    dpkg-deb --field "$root"/package/callplw_*.deb Depends | grep -q 'libsdbus-c++1'
    ;;
esac

for file in bin/callPlw bin/plotwerkd share/man/man1/callPlw.1 share/man/man1/plotwerkd.1 \
    share/bash-completion/completions/callPlw; do
    [ -s "$root/usr/$file" ] || { echo "not installed: $file"; exit 1; }
done
"$root/usr/bin/plotwerkd" --version

# Without a bus the client starts and says so.
message=$(DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent "$root/usr/bin/callPlw" -x sync 2>&1) &&
    { echo "callPlw connected to nothing"; exit 1; }
[ "$message" = "can't connect to Plotwerk" ] || { echo "callPlw said: $message"; exit 1; }
