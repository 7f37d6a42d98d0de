#!/usr/bin/env bash
# Read benchmark: `tagmoor-cli read` (JSON out) on one and on two threads, against the bare
# one-thread Exiv2 read loop of bench_load, all in the same run; then the share of a
# one-thread read spent holding the XMP lock (bench_xmp_lock reads the same files with the
# lock timed; the program itself times nothing). On two corpora: COUNT (default 10000) JPEGs
# of 640x480 and CAMERA_COUNT (default 1000) camera-size JPEGs (2000x1500). Last, the XMP
# decode alone on one and on two threads, with the lock and without (bench_xmp_decode).
#   bench/read.sh [COUNT [CAMERA_COUNT]]
# Builds make_corpus, bench_load and tagmoor-cli in Release (build-release/), generates the
# corpora once into bench/corpus-read-COUNT and bench/corpus-batch-2000-CAMERA_COUNT (which
# bench/batch.sh shares).
# Each time is the median of ROUNDS (default 3) rounds in which the three take turns.
# BENCH_CLI=PATH times another tagmoor-cli; BENCH_NO_BUILD=1 skips the build.
# On a machine shared with other work, BENCH_REALTIME=1 runs every timed command under
# round-robin real-time scheduling (chrt -r, needs the right to), so that the load of others
# weighs on no side; the threads' nice values then count for nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-10000}
CAMERA_COUNT=${2:-1000}
source bench/common.sh
bench_build make_corpus bench_load bench_xmp_lock bench_xmp_decode tagmoor-cli
SMALL=bench/corpus-read-$COUNT
bench_corpus "$SMALL" "$COUNT" --size 640x480 --prefix read
CAMERA=bench/corpus-batch-2000-$CAMERA_COUNT
bench_corpus "$CAMERA" "$CAMERA_COUNT" --size 2000x1500 --prefix big
CLI=${BENCH_CLI:-$BUILD_DIR/src/cli/tagmoor-cli}
RUN=()
if [ "${BENCH_REALTIME:-0}" = 1 ]; then RUN=(chrt -r 5); fi

# Wall seconds of one command, output discarded.
seconds() {
  local start end
  start=$(date +%s.%N)
  "${RUN[@]}" "$@" >/dev/null
  end=$(date +%s.%N)
  echo "$end - $start" | bc -l
}

# median VALUE...: the middle value (the lower of the two middle ones for an even count).
median() { printf '%s\n' "$@" | sort -n | sed -n "$((($# + 1) / 2))p"; }

# measure CORPUS: every figure on one corpus. The floor and the reads on one and on two threads
# take turns, ROUNDS times (default 3), the page cache warmed before each round, and each
# figure is the median of its runs: the second core of a shared machine is slower at times,
# and a burst of that weighs on one round only.
measure() {
  local CORPUS=$1 floor one two stats stats_two held_ms i floors=() ones=() twos=()
  local files=("$CORPUS"/*.jpg)
  for ((i = 0; i < ${ROUNDS:-3}; i++)); do
    cat "${files[@]}" >/dev/null # warm the page cache
    # Only bench_load's floor line is used here; its own exit status is about its load pass.
    floors+=("$({ "${RUN[@]}" "$BUILD_DIR"/bench/bench_load "$CORPUS" --rounds 1 || true; } |
      awk '/^exiv2 floor/ {print $3 / 1000}')")
    ones+=("$(seconds "$CLI" read --threads 1 -- "${files[@]}")")
    twos+=("$(seconds "$CLI" read --threads 2 -- "${files[@]}")")
  done
  floor=$(median "${floors[@]}")
  one=$(median "${ones[@]}")
  two=$(median "${twos[@]}")
  stats=$("${RUN[@]}" "$BUILD_DIR"/bench/bench_xmp_lock --threads 1 -- "${files[@]}" | grep '^xmp lock')
  stats_two=$("${RUN[@]}" "$BUILD_DIR"/bench/bench_xmp_lock --threads 2 -- "${files[@]}" | grep '^xmp lock')
  held_ms=$(echo "$stats" | sed -E 's/.*held ([0-9]+) ms.*/\1/')

  printf '== %s: %d files%s (%s)\n' "$CORPUS" "${#files[@]}" "${RUN:+ (real-time scheduling)}" "$(uptime | sed 's/.*load/load/')"
  printf 'exiv2 floor, one thread     %8.3f s\n' "$floor"
  printf 'read --threads 1            %8.3f s  %5.2fx floor\n' "$one" "$(echo "$one / $floor" | bc -l)"
  printf 'read --threads 2            %8.3f s  %5.2fx floor  %5.2fx one thread\n' "$two" \
    "$(echo "$two / $floor" | bc -l)" "$(echo "$two / $one" | bc -l)"
  printf 'one thread:  %s (%.0f%% of the read)\n' "$stats" "$(echo "100 * $held_ms / ($one * 1000)" | bc -l)"
  printf 'two threads: %s\n' "$stats_two"
}

measure "$SMALL"
measure "$CAMERA"

# The XMP decode alone, the part of a read that holds the lock: Exiv2's decode of the small
# corpus's packets on one thread, and on two with and without the program's lock.
printf '== XMP decode alone, %s\n' "$SMALL"
"${RUN[@]}" "$BUILD_DIR"/bench/bench_xmp_decode --threads 2 --rounds "${ROUNDS:-3}" -- "$SMALL"/*.jpg
