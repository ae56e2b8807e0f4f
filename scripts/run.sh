#!/usr/bin/env bash
# Installs what is needed, builds Dorvik and starts the desktop application.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
scripts/build.sh release
exec build/src/ui/dorvik "$@"
