# steps.sh - sourced by the scripts that build and test: their steps, each with a heading.
#
# None may stand in a condition or before || or &&: bash then goes on where a step has failed.

jobs=$(nproc)

# step NAME COMMAND ...: runs the command under a heading, and says how long it took.
step() {
    local name=$1 begin=$SECONDS
    shift
    echo "== $name"
    "$@"
    echo "== $name: $((SECONDS - begin)) s"
}

# build PRESET [TARGET ...]: configures and builds, the program with windows where window=ON; prints
# warnings and errors only.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" -DBUILD_TESTING=ON -DPLOTWERK_WINDOW="${window:-OFF}" \
        -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
    cmake --build --preset "$preset" -j "$jobs" --target "${@:-all}" -- --quiet
}

# run_tests PRESET [OPTION ...]: what failed with its output, and the counts; not the lines of what
# passed.
run_tests() {
    local preset=$1
    shift
    ctest --preset "$preset" -j "$jobs" "$@" |
        grep -v '^ *Start *[0-9]*: \|^ *[0-9]*/[0-9]* Test .* Passed  *[0-9.]* sec$'
}
