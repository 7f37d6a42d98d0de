#!/usr/bin/env bash
# Installs what is missing, builds, and starts the application.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh --target tagmoor
exec ./build/src/app/tagmoor "$@"
