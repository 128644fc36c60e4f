#!/usr/bin/env bash
# Builds everything but the program with windows as it is shipped, and runs the whole suite: what
# every change must pass.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh
. scripts/steps.sh
need_packages "${build_packages[@]}" "${bus_packages[@]}" "${test_packages[@]}"

step "Include rules" scripts/includeRules.sh
step "Build" build release
step "Tests" run_tests release
