# packages.sh - sourced by the other scripts: the Debian packages that a step needs.

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

build_packages=(g++ cmake ninja-build pkg-config libsdbus-c++-dev libsdbus-c++-bin libsystemd-dev
    nlohmann-json3-dev libcairo2-dev libpango1.0-dev libtiff-dev zlib1g-dev fonts-dejavu-core)
bus_packages=(dbus-daemon)
test_packages=(libgtest-dev libbenchmark-dev libgsl-dev systemd dpkg-dev clang llvm
    libclang-rt-14-dev poppler-utils ghostscript libtiff-tools clang-format clang-tidy)
