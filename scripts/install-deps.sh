#!/usr/bin/env bash
# Installs what Dorvik needs to build, test and benchmark, from Debian's packages.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config
    libgtest-dev libgmock-dev
    qt6-base-dev libqt6svg6 adwaita-icon-theme
    nlohmann-json3-dev libplist-dev libssl-dev
    zlib1g-dev
    clang clang-format
    time ncdu gdu jdupes rdfind rmlint python3
    xfsprogs
    dbus-daemon
)
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
        missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -q
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
