#!/usr/bin/env bash
# What a maintainer looks at beside scripts/test.sh: formatting, include rules, the API's
# documentation, benchmarks and fuzz targets that still compile, the program with windows, the suite
# under the address and undefined behaviour sanitizers and without root's rights, clang-tidy.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
. scripts/steps.sh
need_packages "${build_packages[@]}" "${window_packages[@]}" "${bus_packages[@]}" \
    "${test_packages[@]}" "${screen_packages[@]}" "${sanitizer_packages[@]}" "${check_packages[@]}"

window=ON
folders=(bench client fct plotwerk tests util)
mapfile -t sources < <(find "${folders[@]}" -name '*.cpp' | sort)
mapfile -t headers < <(find plw.h "${folders[@]}" -name '*.h' | sort)

# Of what runs; for the tests the sanitizers do as much in a fraction of the time, and the headers of
# windows take longer than all else.
tidy() {
    printf '%s\0' "${sources[@]}" | grep -zv '^tests/\|^bench/\|^plotwerk/window/' |
        xargs -0 -n 2 -P "$jobs" clang-tidy -p build/asan --quiet \
            2> >(grep -v '^[0-9]* warnings\? generated' >&2)
}

step "Formatting" clang-format --dry-run -Werror "${sources[@]}" "${headers[@]}"
step "Include rules" scripts/includeRules.sh
step "Build: asan" build asan
step "Tests: asan" run_tests asan
step "Build: windows, benchmarks and API documentation" build release all benchmarks docs
step "Tests: windows and packages" run_tests release -R 'Window|Replay|Packaging'
step "Tests: as nobody" run_tests_as_nobody release
# The words of pkg-config's answer are arguments each.
# shellcheck disable=SC2046
step "Fuzz targets" clang++ -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I. \
    -DFUZZ_TARGET=getline $(pkg-config --cflags pangocairo) tests/fuzz/*.cpp
step "clang-tidy" tidy
