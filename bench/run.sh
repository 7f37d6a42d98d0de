#!/usr/bin/env bash
# Runs one benchmark or all of them. Each builds what it needs in Release (build-release/)
# and generates its corpus once under bench/corpus-*.
#   bench/run.sh [load|read|write|batch|scan|grid|editor|window_batch|window_list|paste|presets|library|location|geotag|start|setup|rules|all] [COUNT]
set -euo pipefail
cd "$(dirname "$0")/.."
what=${1:-all}
count=${2:-}
run() {
  echo "== $1"
  bash "bench/$1.sh" ${count:+"$count"}
}
case "$what" in
  load | read | write | batch | scan | grid | editor | window_batch | window_list | paste | presets | library | location | geotag | start) run "$what" ;;
  # Not in "all": it builds everything again from nothing in a clone.
  setup) bash bench/setup.sh ;;
  rules) bash bench/rules_bench.sh ;;
  all)
    for b in load read write batch scan; do run "$b"; done
    bash bench/rules_bench.sh
    bash bench/grid.sh
    bash bench/editor.sh
    bash bench/window_batch.sh
    bash bench/window_list.sh
    bash bench/paste.sh
    bash bench/presets.sh
    bash bench/library.sh
    bash bench/location.sh
    bash bench/geotag.sh
    bash bench/start.sh
    ;;
  *) echo "usage: bench/run.sh [load|read|write|batch|scan|grid|editor|window_batch|window_list|paste|presets|library|location|geotag|start|setup|rules|all] [COUNT]" >&2; exit 2 ;;
esac
