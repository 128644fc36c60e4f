#!/usr/bin/env bash
# Builds and tests everything: the release build with g++, the suite again under the address and
# undefined behaviour sanitizers with clang++, then formatting and clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
need_packages "${build_packages[@]}" "${bus_packages[@]}" "${test_packages[@]}"

jobs=$(nproc)
folders=(bench client fct plotwerk tests util)
mapfile -t sources < <(find "${folders[@]}" -name '*.cpp')
mapfile -t headers < <(find plw.h "${folders[@]}" -name '*.h')

echo "== Formatting"
clang-format --dry-run -Werror "${sources[@]}" "${headers[@]}"

for preset in release asan; do
    echo "== Build: $preset"
    cmake --preset "$preset" -DBUILD_TESTING=ON -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
    cmake --build --preset "$preset" -j "$jobs"
done
cmake --build --preset release -j "$jobs" --target benchmarks

echo "== clang-tidy"
printf '%s\0' "${sources[@]}" | grep -zv '^tests/fuzz/\|^tests/packaging/' |
    xargs -0 -n 4 -P "$jobs" clang-tidy -p build/asan --quiet 2>/dev/null

for preset in asan release; do
    echo "== Tests: $preset"
    ctest --preset "$preset" -j "$jobs"
done
