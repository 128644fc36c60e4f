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
    if dpkg-deb --field "$root"/package/callplw_*.deb Depends | grep gtk; then exit 1; fi
    for package in "$root"/package/plotwerk_*.deb; do # none when it isn't built
        [ ! -e "$package" ] || dpkg-deb --extract "$package" "$root"
    done
    ;;
esac

for file in bin/callPlw bin/plotwerkd share/man/man1/callPlw.1 share/man/man1/plotwerkd.1 \
    share/bash-completion/completions/callPlw; do
    [ -s "$root/usr/$file" ] || { echo "not installed: $file"; exit 1; }
done
"$root/usr/bin/plotwerkd" --version

# The program with windows is found by a desktop, if it is built.
if grep -q '^PLOTWERK_WINDOW:BOOL=ON' "$build/CMakeCache.txt"; then
    for file in bin/plotwerk share/applications/org.plotwerk.Plotwerk.desktop \
        share/icons/hicolor/scalable/apps/org.plotwerk.Plotwerk.svg share/man/man1/plotwerk.1 \
        share/metainfo/org.plotwerk.Plotwerk.metainfo.xml \
        share/mime/packages/org.plotwerk.Plotwerk.xml; do
        [ -s "$root/usr/$file" ] || { echo "not installed: $file"; exit 1; }
    done
    "$root/usr/bin/plotwerk" --version
fi

# The services start the program that was installed.
case $2 in install) program=$root/usr/bin/plotwerkd ;; package) program=/usr/bin/plotwerkd ;; esac
unit=$root/usr/lib/systemd/user/plotwerkd.service
service=$root/usr/share/dbus-1/services/org.plotwerk.PlotwerkControl.service
grep -qx "ExecStart=$program --recover" "$unit" || { echo "wrong unit:"; cat "$unit"; exit 1; }
for setting in Restart=on-failure NoNewPrivileges=yes OOMPolicy=continue; do
    grep -qx "$setting" "$unit" || { echo "not in the unit: $setting"; exit 1; }
done
grep -qx "Exec=$program" "$service" || { echo "wrong service:"; cat "$service"; exit 1; }
grep -qx "SystemdService=$(basename "$unit")" "$service"

# Other projects find the library, by CMake and by pkg-config.
outside=$(cd "$(dirname "$0")/outside" && pwd)
compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")
flags=$(sed -n 's/^CMAKE_CXX_FLAGS:[A-Z]*=//p' "$build/CMakeCache.txt")
cmake -S "$outside" -B "$root/outside" -DCMAKE_PREFIX_PATH="$root/usr" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$root/outside" >/dev/null
[ "$("$root/outside/outside")" = 3 ] || { echo "find_package: wrong answer"; exit 1; }
PKG_CONFIG_PATH=$(dirname "$(find "$root/usr" -name plw.pc)")
export PKG_CONFIG_PATH
# The words of flags and of pkg-config's answer are arguments each.
# shellcheck disable=SC2046,SC2086
"$compiler" -std=c++20 $flags "$outside/main.cpp" $(pkg-config --cflags --libs plw) -o "$root/main"
[ "$("$root/main")" = 3 ] || { echo "pkg-config: wrong answer"; exit 1; }

# Without a bus the client starts and says so.
message=$(DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent "$root/usr/bin/callPlw" -x sync 2>&1) &&
    { echo "callPlw connected to nothing"; exit 1; }
[ "$message" = "can't connect to Plotwerk" ] || { echo "callPlw said: $message"; exit 1; }
