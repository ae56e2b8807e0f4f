#!/usr/bin/env bash
# Configures and builds one flavour of Dorvik: scripts/build.sh [release|sanitize|tsan] [TARGET...]
# With targets, only those are built (scripts/build.sh tsan state_tests scanning_tests).
# tsan is ThreadSanitizer, for a look at the threads by hand: Qt itself is not built with it, so
# it cannot see every handoff made inside Qt.
set -euo pipefail
cd "$(dirname "$0")/.."

flavour=${1:-release}
case "$flavour" in
release) dir=build options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo) ;;
sanitize) dir=build-sanitize options=(-DCMAKE_BUILD_TYPE=Debug -DDORVIK_SANITIZE=ON) ;;
tsan)
    dir=build-tsan
    options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo
        "-DCMAKE_C_FLAGS=-fsanitize=thread -fno-omit-frame-pointer"
        "-DCMAKE_CXX_FLAGS=-fsanitize=thread -fno-omit-frame-pointer"
        -DCMAKE_EXE_LINKER_FLAGS=-fsanitize=thread -DCMAKE_SHARED_LINKER_FLAGS=-fsanitize=thread)
    ;;
*) echo "usage: scripts/build.sh [release|sanitize|tsan] [TARGET...]" >&2; exit 2 ;;
esac
shift $(($# > 0 ? 1 : 0))
targets=()
[ $# -eq 0 ] || targets=(--target "$@")

# A compiler cache, where the machine has one, makes rebuilds in other checkouts cheap.
command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$dir" -G Ninja -DDORVIK_WERROR=ON "${options[@]}" >/dev/null
cmake --build "$dir" "${targets[@]}"
