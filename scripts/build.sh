#!/usr/bin/env bash
# Configures and builds one flavour of Dorvik: scripts/build.sh [release|sanitize]
set -euo pipefail
cd "$(dirname "$0")/.."

flavour=${1:-release}
case "$flavour" in
release) dir=build options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo) ;;
sanitize) dir=build-sanitize options=(-DCMAKE_BUILD_TYPE=Debug -DDORVIK_SANITIZE=ON) ;;
*) echo "usage: scripts/build.sh [release|sanitize]" >&2; exit 2 ;;
esac

# A compiler cache, where the machine has one, makes rebuilds in other checkouts cheap.
command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$dir" -G Ninja -DDORVIK_WERROR=ON "${options[@]}" >/dev/null
cmake --build "$dir"
