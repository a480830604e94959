#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, when any is missing.
# Sourced by run.sh and test.sh; does nothing on a machine that has them all.
vardesk_packages=(cmake ninja-build g++ clang libclang-rt-dev pkg-config qt6-base-dev qt6-svg-dev libgl-dev
    libgtest-dev libgmock-dev nlohmann-json3-dev libbenchmark-dev xdg-utils python3-ezdxf librecad
    xvfb xdotool imagemagick clang-format "$@")

vardesk_install_missing() {
    local missing=()
    for p in "${vardesk_packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
