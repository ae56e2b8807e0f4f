#!/usr/bin/env bash
# Draws the README's picture, docs/screenshot.png: the explorer's ring map over a scan of a home
# made for it, in a scratch folder of its own, so nothing of the user's is read or touched.
# scripts/screenshot.sh [light|dark]
set -euo pipefail
cd "$(dirname "$0")/.."

appearance=${1:-light}
scripts/build.sh release >/dev/null
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch/home XDG_DATA_HOME=$scratch/data XDG_CONFIG_HOME=$scratch/config

# Files of real blocks, so that the scan measures them as a disk would.
file() { mkdir -p "$(dirname "$HOME/$1")" && head -c "$2" /dev/urandom >"$HOME/$1"; }
file "Movies/Holiday 2024.mov" 48000000
file "Movies/Interview raw.mp4" 23000000
file "Movies/Edits/cut-01.mov" 12000000
file "Downloads/Xcode_15.dmg" 34000000
file "Downloads/photos-backup.zip" 19000000
file "Music/Album/track01.flac" 31000000
file "Music/Album/track02.flac" 28000000
file "Music/Podcasts/episode-12.mp3" 9000000
file "Documents/Thesis final.pdf" 6400000
file "Documents/Budget.xlsx" 2900000
file "Pictures/2024/IMG_2041.heic" 7100000
file "Pictures/2024/IMG_2042.heic" 5900000
file "Projects/site/node_modules/react/index.js" 4900000
file "Projects/site/dist/bundle.js" 2100000

build/src/cli/dorvik-cli scan --home --save "$XDG_DATA_HOME/Dorvik/last-scan.dvscan" >/dev/null
mkdir -p "$XDG_CONFIG_HOME/Dorvik"
printf '[General]\nexplorerMode=map\n' >"$XDG_CONFIG_HOME/Dorvik/Dorvik.conf"
build/src/ui/dorvik --screenshot docs/screenshot.png --section explorer --size 1120x720 \
    --appearance "$appearance"
echo "docs/screenshot.png"
