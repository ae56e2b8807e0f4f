#!/usr/bin/env bash
# Times `dorvik-cli scan --json` against ncdu, du and gdu (those installed), side by side: each
# run goes through every tool in turn, so a change in the machine's load touches them all. Prints
# the median wall time and peak memory of the runs and each tool's ratio to ncdu and to du.
#
#   bench/scan-bench.sh [RUNS]            (default: 7 runs)
#
# Three rounds:
#   warm, /usr                 (after one walk of each tool to fill the caches)
#   warm, a generated tree     of ENTRIES entries (1,000,000 by default), made with dorvik-make-tree
#   cold, /usr                 dorvik and ncdu with the caches dropped before every run: as root only
#
# dorvik runs with its default threads (the count is printed) and with --threads 1; BASELINE=FILE
# adds another dorvik-cli build to compare with (an older commit's, say). TREE=DIR keeps the
# generated tree in DIR and reuses it; otherwise it goes into a temporary folder and is removed.
# ROUNDS="warm-usr warm-tree cold-usr" picks the rounds. Needs a release build (scripts/build.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

runs=${1:-7}
entries=${ENTRIES:-1000000}
rounds=${ROUNDS:-warm-usr warm-tree cold-usr}
cli=$PWD/build/src/cli/dorvik-cli
maketree=$PWD/build/bench/dorvik-make-tree
[ -x "$cli" ] && [ -x "$maketree" ] || { echo "build first: scripts/build.sh" >&2; exit 1; }
baseline=${BASELINE:-}

median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }
measured=$(mktemp)
cleanup=("$measured")
trap 'rm -rf "${cleanup[@]}"' EXIT

threads=$("$cli" scan --json --top 0 "$PWD" | sed -n 's/^ *"threads": *\([0-9]*\).*/\1/p')
echo "dorvik walks with $threads threads by default; $(nproc) processors; load: $(cut -d' ' -f1-3 /proc/loadavg)"

# round NAME TARGET COLD TOOL...: RUNS runs of each tool on TARGET, side by side.
round() {
    local name=$1 target=$2 cold=$3
    shift 3
    local -a tools=()
    local -A command=(
        [dorvik]="$cli scan --json $target"
        [dorvik-1]="$cli scan --json --threads 1 $target"
        [baseline]="$baseline scan --json $target"
        [ncdu]="ncdu -0 -x -o /dev/null $target"
        [du]="du -sx $target"
        [gdu]="gdu -n -p -x $target"
    )
    for tool in "$@"; do
        local program=${command[$tool]%% *}
        if [ "$tool" = baseline ] && [ -z "$baseline" ]; then
            continue
        fi
        if command -v "$program" >/dev/null || [ -x "$program" ]; then
            tools+=("$tool")
        else
            printf '%s: not installed\n' "$tool"
        fi
    done
    local -A times peaks
    if [ "$cold" = no ]; then
        for tool in "${tools[@]}"; do ${command[$tool]} >/dev/null 2>&1; done
    fi
    for _ in $(seq "$runs"); do
        for tool in "${tools[@]}"; do
            if [ "$cold" = yes ]; then
                sync
                echo 3 >/proc/sys/vm/drop_caches
            fi
            /usr/bin/time -o "$measured" -f '%e %M' ${command[$tool]} >/dev/null 2>&1 ||
                { echo "$tool failed on $target" >&2; exit 1; }
            read -r elapsed peak <"$measured"
            times[$tool]+="$elapsed "
            peaks[$tool]+="$peak "
        done
    done
    echo
    echo "$name: $target, median of $runs runs, load after: $(cut -d' ' -f1-3 /proc/loadavg)"
    printf '%-10s %10s %10s %9s %9s\n' tool "median s" "peak MiB" "÷ ncdu" "÷ du"
    local -A seconds memory
    for tool in "${tools[@]}"; do
        seconds[$tool]=$(tr ' ' '\n' <<<"${times[$tool]}" | grep . | median)
        memory[$tool]=$(tr ' ' '\n' <<<"${peaks[$tool]}" | grep . | median)
    done
    for tool in "${tools[@]}"; do
        awk -v t="$tool" -v s="${seconds[$tool]}" -v m="${memory[$tool]}" \
            -v n="${seconds[ncdu]:-0}" -v d="${seconds[du]:-0}" \
            'BEGIN { printf "%-10s %10.3f %10.1f %9s %9s\n", t, s, m / 1024,
                     (n > 0 ? sprintf("%.2f", s / n) : "-"), (d > 0 ? sprintf("%.2f", s / d) : "-") }'
    done
    if [ -n "${memory[dorvik-1]:-}" ]; then
        awk -v a="${memory[dorvik]}" -v b="${memory[dorvik-1]}" \
            'BEGIN { printf "peak memory of dorvik ÷ dorvik --threads 1: %.2f\n", a / b }'
    fi
    if [ -n "${memory[baseline]:-}" ]; then
        awk -v a="${memory[dorvik]}" -v b="${memory[baseline]}" \
            'BEGIN { printf "peak memory of dorvik ÷ baseline: %.2f\n", a / b }'
    fi
}

for name in $rounds; do
    case "$name" in
    warm-usr) round "warm" /usr no dorvik dorvik-1 baseline ncdu du gdu ;;
    warm-tree)
        tree=${TREE:-}
        if [ -z "$tree" ]; then
            tree=$(mktemp -d "${TMPDIR:-/tmp}/dorvik-bench-XXXXXX")
            cleanup+=("$tree")
        fi
        mkdir -p "$tree"
        if [ -z "$(ls -A "$tree")" ]; then
            echo "making $entries entries in $tree"
            "$maketree" "$tree" "$entries"
        fi
        round "warm" "$tree" no dorvik dorvik-1 baseline ncdu du gdu
        ;;
    cold-usr)
        if [ "$(id -u)" -ne 0 ]; then
            echo "cold: needs root to drop the caches; left out"
            continue
        fi
        round "cold" /usr yes dorvik dorvik-1 ncdu
        ;;
    *) echo "unknown round $name" >&2; exit 2 ;;
    esac
done
