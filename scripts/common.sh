# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
# Sourced by the other scripts: goes to the project's root and installs what a build needs.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
# shellcheck source=scripts/steps.sh
. scripts/steps.sh

readonly build_packages=(
    cmake ninja-build g++ git ca-certificates
    libgtest-dev libgmock-dev libcli11-dev libexpat1-dev libfmt-dev libseccomp-dev
    nlohmann-json3-dev zlib1g-dev
)
# What checks the host build; the browser shows the pages that ogmprobe writes.
readonly quick_packages=(
    clang clang-format lld python3 python3-jsonschema python3-pyelftools
    chromium-headless-shell
    libbenchmark-dev libogg-dev pkg-config zsh fish
)
# Sanitizers, fuzzing, static analysis, packages, and the parser of Android's build files.
readonly test_packages=(
    clang-tidy libclang-rt-14-dev llvm dpkg-dev file lintian
    golang-go golang-github-google-blueprint-dev
)
# For 64-bit Arm: compiler, emulator, and the libraries of tests and tool for that machine.
readonly arm64_packages=(
    g++-aarch64-linux-gnu qemu-user
    libgtest-dev:arm64 libgmock-dev:arm64 libexpat1-dev:arm64 libfmt-dev:arm64 libseccomp-dev:arm64 zlib1g-dev:arm64 libc6-dev:arm64 libstdc++-12-dev:arm64
)

# Lists those of the packages, named with or without their architecture, that are missing.
print_missing() {
    local machine
    machine=$(dpkg --print-architecture)
    printf '%s\n' "$@" | grep --invert-match --line-regexp --fixed-strings --file=<(
        dpkg-query --show --showformat='${Package}:${Architecture} ${db:Status-Status}\n' "${@%:*}" \
            2>/dev/null |
            sed --quiet --regexp-extended "s/ installed\$//p; s/:(all|$machine)\$//p"
    ) || true
}

# Lists and installs those of the packages that are missing.
install_missing() {
    local missing as_root=()
    mapfile -t missing < <(print_missing "$@")
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    if [ "$(id --user)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing these packages: ${missing[*]}" >&2
    if [[ ${missing[*]} == *:arm64* ]]; then
        "${as_root[@]}" dpkg --add-architecture arm64
    fi
    "${as_root[@]}" apt-get update --quiet=2 >&2
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install --quiet=2 --yes \
        --no-install-recommends "${missing[@]}" >/dev/null
}

# Configures and builds a preset; further arguments go to the build.
build_preset() {
    cmake --preset "$1" && cmake --build --preset "$@"
}
