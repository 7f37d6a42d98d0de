#!/usr/bin/env bash
# Installs what is missing and runs the benchmarks (see bench/run.sh).
# Usage: scripts/run-bench.sh [load|read|write|batch|scan|grid|editor|window_batch|window_list|paste|presets|library|location|geotag|start|setup|rules|all] [COUNT]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
exec bash bench/run.sh "$@"
