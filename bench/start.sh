#!/usr/bin/env bash
# Start time: from launching the application to its first window on screen with the event loop
# free to take input, with no presets and with COUNT presets (default 1,000) in a scratch
# configuration, each ROUNDS times (default 5) under Xvfb; prints the median and the range.
#   bench/start.sh [COUNT] [ROUNDS]
# With BUILD_DIR set to a build folder that holds both targets already, nothing is rebuilt.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
ROUNDS=${2:-5}
source bench/common.sh
if [ ! -x "$BUILD_DIR/src/app/tagmoor" ] || [ ! -x "$BUILD_DIR/bench/start_presets" ] ||
  [ "$BUILD_DIR" = build-release ]; then
  bench_build tagmoor start_presets
fi
app=$BUILD_DIR/src/app/tagmoor
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One configuration per preset count; the first launch of each is not counted (it warms the
# page cache, as any start after the first has it).
launch_ms() { # config folder
  local home=$1 t0 line
  t0=$(date +%s%3N)
  line=$(HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
    XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home" TAGMOOR_START_REPORT=quit \
    "$app" 2>&1 | grep -m1 '^tagmoor ready' || true)
  [ -n "$line" ] || { echo "the application did not report its start" >&2; exit 1; }
  echo $((${line##* } - t0))
}

measure() { # presets
  local home=$work/presets-$1 times=()
  mkdir -p "$home/config/Tagmoor" "$home/data" "$home/cache"
  chmod 700 "$home"
  "$BUILD_DIR"/bench/start_presets "$home/config/Tagmoor/Tagmoor.conf" "$1"
  launch_ms "$home" >/dev/null
  for _ in $(seq "$ROUNDS"); do times+=("$(launch_ms "$home")"); done
  printf '%s\n' "${times[@]}" | sort -n | awk -v n="$1" '
    { t[NR] = $1 } END { printf "%5d presets: start %d ms (median of %d; %d-%d)\n", n, t[int((NR + 1) / 2)], NR, t[1], t[NR] }'
}

run_all() {
  measure 0
  measure "$COUNT"
}
export -f launch_ms measure run_all 2>/dev/null || true
if [ -z "${DISPLAY:-}" ] && command -v xvfb-run >/dev/null; then
  export BUILD_DIR COUNT ROUNDS app work
  xvfb-run -a -s "-screen 0 1440x900x24" bash -c "$(declare -f launch_ms measure run_all); run_all"
else
  run_all
fi
echo "load: $(cut -d' ' -f1-3 /proc/loadavg)"
