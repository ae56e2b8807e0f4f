#!/usr/bin/env bash
# Compares what `dorvik-cli system` measures of this computer's places with `du -sxB1`: each
# place's size must equal du's figure for it, less du's figures for the listed places inside it
# (those are counted in their own rows). Run as root, so that both can read every place.
# scripts/compare-system-data.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
cli=${1:-build}/src/cli/dorvik-cli
report=$("$cli" system --json)
mapfile -t paths < <(jq -r '.parts[].path' <<<"$report")
status=0
# du's figure; a file that goes while du walks (in /tmp, say) is only a warning.
duBytes() { { du -sxB1 "$1" 2>/dev/null || true; } | cut -f1; }
for path in "${paths[@]}"; do
    expected=$(duBytes "$path")
    for inner in "${paths[@]}"; do
        # The places directly inside this one; one inside those is already in their figure.
        [[ $inner == "$path"/* ]] || continue
        nested=no
        for between in "${paths[@]}"; do
            [[ $between != "$inner" && $inner == "$between"/* && $between == "$path"/* ]] && nested=yes
        done
        [ $nested = no ] && expected=$((expected - $(duBytes "$inner")))
    done
    measured=$(jq -r --arg p "$path" '.parts[] | select(.path == $p) | .size' <<<"$report")
    advice=$(jq -r --arg p "$path" '.parts[] | select(.path == $p) | .advice' <<<"$report")
    verdict=$([ "$measured" = "$expected" ] && echo same || echo DIFFERENT)
    [ "$verdict" = same ] || status=1
    printf '%-28s dorvik %14s  du %14s  %s\n    %s\n' "$path" "$measured" "$expected" "$verdict" "$advice"
done
exit $status
