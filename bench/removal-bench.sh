#!/usr/bin/env bash
# Two measures of a removal batch, each in a home and data folder of its own under /tmp:
#
#   bench/removal-bench.sh time CLI [ITEMS] [RUNS]   the wall and CPU time of one trash batch of
#                                                    ITEMS files (2,000), RUNS times (5)
#   bench/removal-bench.sh kill CLI [RUNS] [ITEMS]   RUNS batches of ITEMS files (100, 40), each
#                                                    killed with SIGKILL 0-60 ms after it started;
#                                                    then counts what a kill may leave behind
#
# CLI is a dorvik-cli binary, so that two builds can be compared side by side.
set -euo pipefail

mode=${1:?time or kill}
cli=$(realpath "${2:?a dorvik-cli binary}")

private_home() {
    root=$(mktemp -d /tmp/dorvik-removal-bench.XXXXXX)
    export HOME=$root/home XDG_DATA_HOME=$root/data XDG_CONFIG_HOME=$root/config
    mkdir -p "$HOME/Downloads"
}

case "$mode" in
time)
    items=${3:-2000}
    runs=${4:-5}
    for run in $(seq 1 "$runs"); do
        private_home
        mkdir -p "$HOME/Downloads/batch"
        for i in $(seq 1 "$items"); do echo "$i" >"$HOME/Downloads/batch/item$i.bin"; done
        /usr/bin/time -f "%e s wall, %U s user, %S s system" -o "$root/time" \
            "$cli" remove --yes --include-review "$HOME"/Downloads/batch/item*.bin >/dev/null
        echo "run $run, $items items: $(cat "$root/time")"
        rm -rf "$root"
    done
    ;;
kill)
    runs=${3:-100}
    items=${4:-40}
    private_home
    for run in $(seq 1 "$runs"); do
        mkdir -p "$HOME/Downloads/run$run"
        paths=()
        for i in $(seq 1 "$items"); do
            echo "run$run/item$i" >"$HOME/Downloads/run$run/item$i.bin"
            paths+=("$HOME/Downloads/run$run/item$i.bin")
        done
        "$cli" remove --yes --include-review "${paths[@]}" >/dev/null 2>&1 </dev/null &
        sleep "0.0$(printf '%02d' $((RANDOM % 60)))"
        kill -9 $! 2>/dev/null || true
        wait $! 2>/dev/null || true
    done
    # Reading the history lets a build that folds what killed batches left do so.
    "$cli" history --json >"$root/history.json"
    gone=0
    forgotten=0
    for run in $(seq 1 "$runs"); do
        for i in $(seq 1 "$items"); do
            path="$HOME/Downloads/run$run/item$i.bin"
            [ -e "$path" ] && continue
            gone=$((gone + 1))
            jq -e --arg p "$path" 'any(.entries[]; .originalPath == $p and .restorable)' \
                "$root/history.json" >/dev/null || forgotten=$((forgotten + 1))
        done
    done
    orphans=0
    for info in "$XDG_DATA_HOME"/Trash/info/*.trashinfo; do
        [ -e "$info" ] || continue
        name=$(basename "$info" .trashinfo)
        [ -e "$XDG_DATA_HOME/Trash/files/$name" ] || orphans=$((orphans + 1))
    done
    strays=$(find "$XDG_DATA_HOME/Dorvik" -name '*.tmp-*' -o -name '*.journal-*' | wc -l)
    echo "$runs runs killed, $((runs * items)) items: $gone left their place, $forgotten of them" \
        "not undoable from the history, $orphans .trashinfo without its item, $strays stray files"
    rm -rf "$root"
    ;;
*)
    echo "usage: bench/removal-bench.sh time|kill CLI [...]" >&2
    exit 2
    ;;
esac
