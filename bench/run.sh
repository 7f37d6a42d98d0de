#!/usr/bin/env bash
# Runs the benchmarks against a generated corpus. Called by scripts/run-bench.sh.
set -euo pipefail
echo "no benchmarks yet"
