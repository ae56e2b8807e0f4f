#!/usr/bin/env bash
# Installs what is needed, builds Dorvik and runs every test, then again under
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
jobs=$(nproc)
for flavour in release sanitize; do
    scripts/build.sh "$flavour"
    dir=build
    [ "$flavour" = release ] || dir=build-$flavour
    echo "== tests ($flavour)"
    ctest --test-dir "$dir" --output-on-failure -j "$jobs"
done
