#!/usr/bin/env bash
# Installs what is missing, builds, and runs the benchmarks on a generated corpus.
# Usage: scripts/run-bench.sh [load|write|batch|scan|all] [photo count]
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_TYPE=Release BUILD_DIR=build-release bash scripts/build.sh
exec bash bench/run.sh "${1:-all}" "${2:-1000}"
