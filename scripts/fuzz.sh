#!/usr/bin/env bash
# Builds the fuzz targets and runs each for the given time: fuzz.sh [SECONDS], 60 by default.
# What a target has found interesting is kept under build/fuzz/corpus, what broke it in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
. scripts/steps.sh
need_packages "${build_packages[@]}" "${bus_packages[@]}" "${test_packages[@]}" \
    "${sanitizer_packages[@]}"

run_target() {
    local corpus
    corpus=build/fuzz/corpus/$(basename "$1")
    mkdir -p "$corpus"
    LSAN_OPTIONS=print_suppressions=0:suppressions=tests/leaks.supp \
        "$1" -max_total_time="$2" -timeout=20 -verbosity=0 -print_funcs=0 -print_final_stats=1 \
        -artifact_prefix=build/fuzz/ "$corpus"
}

step "Build: fuzz" build fuzz fuzzers
for target in build/fuzz/tests/fuzz/*Fuzz; do
    step "$(basename "$target")" run_target "$target" "${1:-60}"
done
