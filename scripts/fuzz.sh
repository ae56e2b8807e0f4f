#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (build-fuzz/) and runs each one for a while, starting
# from its seed folders: scripts/fuzz.sh [seconds per target] [target...]
# A finding is written to build-fuzz/findings/<target>/ and stops the run with an error.
# Inputs are kept below FUZZ_MAX_LEN bytes (default 64 KiB): small inputs run many times faster
# and still reach every block type.
set -euo pipefail
cd "$(dirname "$0")/.."

# Seed folders of each target, relative to the source tree.
declare -A seeds=(
    [lzfse_decode]="tests/data/lzfse"
    [lzfse_round_trip]="tests/data/lzfse"
    [history_decode]="tests/data/history"
    [scan_archive]="tests/data/archive"
    [trend_files]="tests/data/trends"
    [scan_archive_file]="tests/data/archive-file"
    [launch_item]="tests/data/launch-items"
)

# Options of one target beyond the common ones. The archive file's limits are small: any single
# allocation above a few megabytes means memory was taken before the limits were checked.
declare -A options=(
    [scan_archive_file]="-malloc_limit_mb=8"
)

seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=("${!seeds[@]}")

CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DDORVIK_WERROR=ON -DDORVIK_FUZZ=ON \
    -DDORVIK_TESTS=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build-fuzz -j2 --target dorvik_fuzzers

for target in "${targets[@]}"; do
    corpus=build-fuzz/corpus/$target
    findings=build-fuzz/findings/$target
    mkdir -p "$corpus" "$findings"
    echo "== $target for ${seconds}s"
    # shellcheck disable=SC2086 # the seed list and options are meant to split into words
    build-fuzz/tests/fuzz/${target}_fuzzer "$corpus" ${seeds[$target]:-} \
        -max_total_time="$seconds" -max_len="${FUZZ_MAX_LEN:-65536}" -print_final_stats=1 \
        -artifact_prefix="$findings/" ${options[$target]:-}
done
