#!/usr/bin/env bash
# Draws the README's picture, docs/screenshot.png: the History page after a few removals, made
# with dorvik-cli in a home of its own (its Trash included), so nothing of the user's is touched.
# scripts/screenshot.sh [light|dark]
set -euo pipefail
cd "$(dirname "$0")/.."

appearance=${1:-light}
scripts/build.sh release >/dev/null
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch/home XDG_DATA_HOME=$scratch/data XDG_CONFIG_HOME=$scratch/config

file() { mkdir -p "$(dirname "$HOME/$1")" && head -c "$2" /dev/urandom >"$HOME/$1"; }
file "Downloads/Xcode_15.dmg" 3400000
file "Downloads/Screen Recording 2024-03-02.mov" 2800000
file "Downloads/photos-backup.zip" 1900000
file "Library/Caches/com.example.Browser/Cache.db" 640000
file "Library/Logs/DiagnosticReports/crash.log" 120000
file "Projects/site/node_modules/react/index.js" 900000

cli=build/src/cli/dorvik-cli
"$cli" remove --yes --permanent "$HOME/Library/Logs/DiagnosticReports" >/dev/null
"$cli" remove --yes --include-review "$HOME/Projects/site/node_modules" >/dev/null
"$cli" remove --yes "$HOME/Library/Caches/com.example.Browser" >/dev/null
"$cli" remove --yes --include-review "$HOME/Downloads/photos-backup.zip" \
    "$HOME/Downloads/Screen Recording 2024-03-02.mov" "$HOME/Downloads/Xcode_15.dmg" >/dev/null
"$cli" undo --last >/dev/null

build/src/ui/dorvik --screenshot docs/screenshot.png --section history --size 1120x720 \
    --appearance "$appearance"
echo "docs/screenshot.png"
