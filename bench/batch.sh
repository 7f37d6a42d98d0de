#!/usr/bin/env bash
# Batch benchmark.
#   bench/batch.sh [COUNT]
# 1. Speed: COUNT (default 1000) camera-size JPEGs, keepUnedited with 8 edited fields and one
#    date rule into an output folder, against the floor (copy + bare Exiv2 write of the same
#    tags) and against exiftool -o doing the same edits in one process.
# 2. Memory: peak resident memory of tagmoor-cli apply over small photos, 1,000 and 10,000 by
#    default (BATCH_MEMORY_COUNTS="1000 100000" for the long run).
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
source bench/common.sh
bench_build make_corpus bench_batch tagmoor-cli
CLI="$BUILD_DIR/src/cli/tagmoor-cli"
PROBE="$BUILD_DIR/bench/bench_batch"

corpus() { # DIR COUNT [make_corpus options]
  bench_corpus "$@" >/dev/null
  find "$1" -name "*.jpg" -exec cat {} + >/dev/null # warm the page cache: every contender reads from memory
}

BIG=bench/corpus-camera-$COUNT
corpus "$BIG" "$COUNT"
# Outputs on the corpus's file system, as a user's output folder usually is.
WORK=$(mktemp -d "bench/corpus-out.XXXXXX")
trap 'rm -rf "$WORK"' EXIT

EDITS=(--set "Artist=Jane Doe" --set "Copyright=(c) Jane Doe" --set "ImageDescription=Harbour at dawn"
       --set ISO=400 --set FNumber=2.8 --set Iptc.Application2.City=Paris
       --set Iptc.Application2.Headline=Morning --set Xmp.aux.Lens="Lens 50"
       --date DateTimeOriginal=shift-time:+1:00:00)

echo "== speed: $COUNT photos of $(du -sh "$BIG" | cut -f1)"
"$PROBE" floor "$BIG" "$WORK/floor"
rm -rf "$WORK/floor"; sync
# The references of a run into a folder, each at the niceness of the run's workers: the
# in-memory floor (one read, an edit in memory and one write of each photo, 2 threads) and
# cp -r of the folder.
"$PROBE" memfloor "$BIG" "$WORK/memfloor" 2
rm -rf "$WORK/memfloor"; sync
echo -n "cp -r: "
"$PROBE" child -- nice -n 5 cp -r "$BIG" "$WORK/cp" | tail -1
rm -rf "$WORK/cp"; sync
# In place: the run against the plain in-place write with the safe replace, each on a copy.
cp -r "$BIG" "$WORK/inplace-floor"; cp -r "$BIG" "$WORK/inplace-run"; sync
"$PROBE" inplacefloor "$WORK/inplace-floor" 2
echo -n "tagmoor-cli apply in place --threads 2: "
"$PROBE" child -- "$CLI" apply --quiet --threads 2 "${EDITS[@]}" --in-place "$WORK/inplace-run" | tail -1
rm -rf "$WORK/inplace-floor" "$WORK/inplace-run"; sync
for threads in 1 2; do
  echo -n "tagmoor-cli apply --threads $threads: "
  "$PROBE" child -- "$CLI" apply --quiet --threads "$threads" "${EDITS[@]}" --out "$WORK/t$threads" "$BIG" | tail -1
  rm -rf "$WORK/t$threads"; sync
done
if command -v exiftool >/dev/null; then
  echo -n "exiftool -o: "
  mkdir -p "$WORK/et"
  "$PROBE" child -- exiftool -q -q -o "$WORK/et/" -Artist="Jane Doe" "-Copyright=(c) Jane Doe" \
    "-ImageDescription=Harbour at dawn" -ISO=400 -FNumber=2.8 -IPTC:City=Paris \
    -IPTC:Headline=Morning "-XMP-aux:Lens=Lens 50" "-DateTimeOriginal+=1:00:00" "$BIG"
  rm -rf "$WORK/et"; sync
fi

echo "== memory: peak resident memory of small-photo runs"
# Each count against the first: a run that streams keeps its peak flat (at most 1.2x).
first_rss= first_n=
for n in ${BATCH_MEMORY_COUNTS:-1000 10000}; do
  corpus "bench/corpus-batch-small-$n" "$n" --size 64x48
  line=$("$PROBE" child -- "$CLI" apply --quiet "${EDITS[@]}" --out "$WORK/m$n" "bench/corpus-batch-small-$n" | tail -1)
  echo "$n photos in one folder: $line"
  rss=$(sed -n 's/.*maxrss=\([0-9]*\) KiB.*/\1/p' <<<"$line")
  if [ -z "$first_rss" ]; then
    first_rss=$rss first_n=$n
  else
    awk -v a="$rss" -v b="$first_rss" -v n="$n" -v m="$first_n" \
      'BEGIN { printf "  peak of %s photos against %s: %.2fx\n", n, m, a / b }'
  fi
  rm -rf "$WORK/m$n"
done
# The same 10,000 photos in ten folders of 1,000: the folder walk then lists 1,000 entries at
# a time, so the figure shows what the run itself holds.
NESTED=bench/corpus-batch-small-10000-nested
for d in 0 1 2 3 4 5 6 7 8 9; do
  corpus "$NESTED/d$d" 1000 --size 64x48 --prefix "d$d"
done
echo -n "10000 photos in ten folders: "
"$PROBE" child -- "$CLI" apply --quiet "${EDITS[@]}" --out "$WORK/nested" "$NESTED" | tail -1
