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

# Of ctest's lines those that tell what failed, and the counts.
without_passed() {
    grep -v '^ *Start *[0-9]*: \|^ *[0-9]*/[0-9]* Test .* Passed  *[0-9.]* sec$'
}

# run_tests PRESET [OPTION ...]: two for each processor, since many wait for other programs.
run_tests() {
    local preset=$1
    shift
    ctest --preset "$preset" -j "$((2 * jobs))" "$@" | without_passed
}

# run_tests_as_nobody PRESET: once more without root's rights, where root ran them. Packaging isn't
# tried: it writes into the folder of the build.
run_tests_as_nobody() {
    [ "$(id -u)" -eq 0 ] || return 0
    local folder as_nobody=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
    "${as_nobody[@]}" test -x "build/$1/tests" || {
        echo "not run: only root can read this folder"
        return 0
    }
    folder=$(mktemp -d)
    mkdir "$folder/home"
    echo "subdirs(\"$PWD/build/$1\")" >"$folder/CTestTestfile.cmake"
    chown -R nobody: "$folder"
    HOME=$folder/home TMPDIR=$folder/home "${as_nobody[@]}" ctest --test-dir "$folder" \
        --output-on-failure --timeout 120 -j "$((2 * jobs))" -E Packaging | without_passed
    rm -r "$folder"
}
