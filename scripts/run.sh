#!/usr/bin/env bash
# Installs what is needed, builds Dorvik and runs it on the home folder.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
scripts/build.sh release
exec build/src/cli/dorvik-cli scan --home "$@"
