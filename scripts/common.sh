# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by the other scripts: goes to the project's root and installs what a build needs.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

readonly build_packages=(
    cmake ninja-build g++ git ca-certificates
    libgtest-dev libgmock-dev libcli11-dev libfmt-dev libseccomp-dev nlohmann-json3-dev
)
readonly test_packages=(
    clang clang-format clang-tidy libclang-rt-14-dev llvm dpkg-dev file
    python3 python3-jsonschema python3-pyelftools golang-go golang-github-google-blueprint-dev
)
# Shows the pages that ogmprobe writes.
readonly browser_packages=(chromium chromium-driver python3-selenium)
# For 64-bit Arm: compiler, emulator, and the libraries of tests and tool for that machine.
readonly arm64_packages=(
    g++-aarch64-linux-gnu qemu-user
    libgtest-dev:arm64 libgmock-dev:arm64 libfmt-dev:arm64 libseccomp-dev:arm64 libc6-dev:arm64 libstdc++-12-dev:arm64
)
readonly bench_packages=(
    libbenchmark-dev libogg-dev pkg-config
)

# Whether a Debian package, with or without its architecture, is installed.
is_installed() {
    local machine=${1#*:}
    if [ "$machine" = "$1" ]; then
        machine=$(dpkg --print-architecture)
    fi
    dpkg-query --show --showformat='${Architecture} ${db:Status-Status}\n' "${1%:*}" 2>/dev/null |
        grep --quiet --extended-regexp "^(all|$machine) installed\$"
}

# Installs those of the named Debian packages that are missing.
install_missing() {
    local missing=() package
    for package in "$@"; do
        if ! is_installed "$package"; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    local as_root=()
    if [ "$(id --user)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    if [[ ${missing[*]} == *:arm64* ]]; then
        "${as_root[@]}" dpkg --add-architecture arm64
    fi
    "${as_root[@]}" apt-get update --quiet=2 >&2
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install --quiet=2 --yes \
        --no-install-recommends "${missing[@]}" >/dev/null
}

# Configures and builds a preset; the output is shown only if that fails.
build_preset() {
    local preset=$1 log
    log=$(mktemp)
    echo "Building preset $preset" >&2
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
        cat "$log" >&2
        rm --force "$log"
        return 1
    fi
    rm --force "$log"
}
