#!/usr/bin/env bash
# Times `dorvik-cli scan --json` against du, ncdu and gdu (those installed) on one generated tree,
# warm cache, side by side: the median wall time and peak memory of several runs, and the ratio
# of each to du.
#
#   bench/scan-bench.sh [ENTRIES] [RUNS]     (defaults: 300000 entries, 5 runs)
#
# Needs a release build (scripts/build.sh). Set TREE=/some/dir to reuse a tree between runs.
set -euo pipefail
cd "$(dirname "$0")/.."

entries=${1:-300000}
runs=${2:-5}
cli=build/src/cli/dorvik-cli
maketree=build/bench/dorvik-make-tree
[ -x "$cli" ] && [ -x "$maketree" ] || { echo "build first: scripts/build.sh" >&2; exit 1; }

tree=${TREE:-}
if [ -z "$tree" ]; then
    tree=$(mktemp -d "${TMPDIR:-/tmp}/dorvik-bench-XXXXXX")
    trap 'rm -rf "$tree"' EXIT
fi
if [ -z "$(ls -A "$tree")" ]; then
    echo "making $entries entries in $tree"
    "$maketree" "$tree" "$entries"
fi

declare -A commands=(
    [dorvik]="$cli scan --json $tree"
    [du]="du -sx $tree"
    [ncdu]="ncdu -0 -x -o /dev/null $tree"
    [gdu]="gdu -n -p -x $tree"
)
order=(dorvik du ncdu gdu)

median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# Warm the cache once.
du -sx "$tree" >/dev/null

printf '%-8s %12s %14s %10s %12s\n' tool "median s" "peak MiB" "time/du" "memory/du"
measured=$(mktemp)
declare -A seconds memory
for tool in "${order[@]}"; do
    program=${commands[$tool]%% *}
    command -v "$program" >/dev/null || [ -x "$program" ] || { printf '%-8s not installed\n' "$tool"; continue; }
    times=() peaks=()
    for _ in $(seq "$runs"); do
        /usr/bin/time -o "$measured" -f '%e %M' ${commands[$tool]} >/dev/null 2>&1 ||
            { echo "$tool failed" >&2; exit 1; }
        read -r elapsed peak <"$measured"
        times+=("$elapsed") peaks+=("$peak")
    done
    seconds[$tool]=$(printf '%s\n' "${times[@]}" | median)
    memory[$tool]=$(printf '%s\n' "${peaks[@]}" | median)
done
for tool in "${order[@]}"; do
    [ -n "${seconds[$tool]:-}" ] || continue
    awk -v t="$tool" -v s="${seconds[$tool]}" -v m="${memory[$tool]}" \
        -v ds="${seconds[du]}" -v dm="${memory[du]}" \
        'BEGIN { printf "%-8s %12.3f %14.1f %10.2f %12.2f\n", t, s, m / 1024, (ds > 0 ? s / ds : 0), m / dm }'
done
