# packages.sh - sourced by the other scripts: the Debian packages that each of them needs.

# Installs those of the named packages that are missing, as root or through sudo, and says which.
need_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "Missing packages: ${missing[*]}; install them as root." >&2
            exit 1
        }
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# What the programs and the library are built of.
build_packages=(g++ cmake ninja-build pkg-config libsdbus-c++-dev libsdbus-c++-bin libsystemd-dev
    nlohmann-json3-dev libboost-dev libre2-dev libcairo2-dev libpango1.0-dev libtiff-dev libpng-dev
    libdeflate-dev fonts-dejavu-core)
# plotwerk, the program with windows.
window_packages=(libgtkmm-4.0-dev)
# A message bus of one's own.
bus_packages=(dbus-daemon)
# What the tests and benchmarks are built of (clientBench also runs busctl, of systemd); packing, and
# tools that look into pictures.
test_packages=(libgtest-dev libbenchmark-dev libgsl-dev dpkg-dev file poppler-utils ghostscript
    librsvg2-bin libtiff-tools pngcheck)
# A screen that nobody sees, its mouse and its clipboard.
screen_packages=(xvfb xdotool xclip)
# Sanitizers and fuzzers.
sanitizer_packages=(clang llvm libclang-rt-14-dev)
# What looks at the sources.
check_packages=(clang-format clang-tidy doxygen)
