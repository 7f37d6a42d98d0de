#!/usr/bin/env bash
# Batch benchmark.
#   bench/batch.sh [COUNT]
# 1. Speed, on two corpora of COUNT (default 1000) JPEGs, camera-size (2000x1500) and
#    640x480: keepUnedited with 8 edited fields and one date rule, into an output folder on
#    2 threads, against its references in the same run: the bare Exiv2 program (each photo
#    read once into memory, edited there and written once, 2 threads), the plain in-kernel
#    copy of the folder (copy_file_range, one thread) and, on the first 200 photos,
#    exiftool -o doing the same edits in one process; the edits less the XMP field against
#    the bare program doing the same (the XMP packets then stay as they are). Then the same
#    edit in place against
#    the in-place floor (the bare program with the safe replace). Each run into a folder is
#    timed BENCH_REPEAT times (default 3) and its median taken.
# 2. Memory: peak resident memory of tagmoor-cli apply over small photos, 1,000 and 10,000 by
#    default (BATCH_MEMORY_COUNTS="1000 100000" for the long run).
# BENCH_CLI=PATH times another tagmoor-cli (an older build, say) in the same way;
# BENCH_NO_BUILD=1 uses what $BUILD_DIR holds without building.
set -euo pipefail
cd "$(dirname "$0")/.."
COUNT=${1:-1000}
source bench/common.sh
bench_build make_corpus bench_batch tagmoor-cli
CLI=${BENCH_CLI:-$BUILD_DIR/src/cli/tagmoor-cli}
PROBE="$BUILD_DIR/bench/bench_batch"

corpus() { # DIR COUNT [make_corpus options]
  bench_corpus "$@" >/dev/null
  find "$1" -name "*.jpg" -exec cat {} + >/dev/null # warm the page cache: every contender reads from memory
}

# Outputs on the corpus's file system, as a user's output folder usually is.
WORK=$(mktemp -d "bench/corpus-out.XXXXXX")
SHM=
trap 'rm -rf "$WORK" ${SHM:+"$SHM"}' EXIT
# The runs' undo journals stay with the outputs, not in the user's data folder.
export TAGMOOR_JOURNAL_DIR="$WORK/journal"

EDITS=(--set "Artist=Jane Doe" --set "Copyright=(c) Jane Doe" --set "ImageDescription=Harbour at dawn"
       --set ISO=400 --set FNumber=2.8 --set Iptc.Application2.City=Paris
       --set Iptc.Application2.Headline=Morning --set Xmp.aux.Lens="Lens 50"
       --date DateTimeOriginal=shift-time:+1:00:00)
EXIF_EDITS=(--set "Artist=Jane Doe" --set "Copyright=(c) Jane Doe" --set "ImageDescription=Harbour at dawn"
            --set ISO=400 --set FNumber=2.8 --set Iptc.Application2.City=Paris
            --set Iptc.Application2.Headline=Morning --date DateTimeOriginal=shift-time:+1:00:00)

wall_of() { sed -n 's/.*wall=\([0-9.]*\) s.*/\1/p' <<<"$1"; }

# Outputs of the timed runs are moved aside, not removed, until the end. On ext4 without a
# journal, a file made within a minute of the removal of others in its block group makes the
# kernel pass over every inode freed meanwhile: right after a removed run of 1,000 photos,
# each new file cost up to 0.8 ms, so the contender timed after the most removals paid for
# them (a plain copy of 1,000 small photos took 0.80 s instead of 0.09 s). Where the disk has
# no room to keep them, they are removed, and the next timed run waits until the kernel
# reuses those inodes freely again.
ASIDE="$WORK/aside"
mkdir -p "$ASIDE"
set_aside() { # PATH...: moves each existing PATH out of the way of the next run
  local p
  for p in "$@"; do
    [ -e "$p" ] || continue
    mv "$p" "$(mktemp -d "$ASIDE/run.XXXXXX")/"
  done
}
# room_for BYTES: makes sure the disk of $WORK has BYTES free for the next run's outputs.
room_for() {
  local need_kb=$(($1 / 1024 + 512 * 1024)) # and half a gigabyte to spare
  if [ "$(df -k --output=avail "$WORK" | tail -1)" -lt "$need_kb" ] && [ -n "$(ls -A "$ASIDE")" ]; then
    echo "  (disk nearly full: removing the outputs set aside, then waiting 65 s)" >&2
    rm -rf "$ASIDE"; mkdir -p "$ASIDE"; sync
    sleep 65
  fi
}
# median OUT CMD...: runs CMD (which writes into OUT) $REPEAT times, OUT set aside and the disk
# synced before each, and prints the line of the run of median wall time. File creation on a
# busy file system varies from run to run; the median of each contender keeps the ratios
# steady.
REPEAT=${BENCH_REPEAT:-3}
median() {
  local out=$1 i lines=()
  shift
  for ((i = 0; i < REPEAT; i++)); do
    set_aside "$out"
    room_for "$((CORPUS_BYTES * 2))"
    sync
    lines+=("$("$@" | tail -1)")
  done
  set_aside "$out"; sync
  printf '%s\n' "${lines[@]}" | sort -t= -k2 -n | sed -n "$(((REPEAT + 1) / 2))p"
}
# ratio NAME RUN_LINE REFERENCE_LINE: the run's wall time over the reference's.
ratio() {
  awk -v n="$1" -v a="$(wall_of "$2")" -v b="$(wall_of "$3")" \
    'BEGIN { printf "  %-44s %6.2fx (%.3f s against %.3f s)\n", n, a / b, a, b }'
}

# speed CORPUS: every row of the speed table on one corpus.
speed() {
  local big=$1 run memfloor copy inplace inplacefloor
  CORPUS_BYTES=$(($(du -sk "$big" | cut -f1) * 1024))
  echo "== speed: $(find "$big" -name '*.jpg' | wc -l) photos of $(du -sh "$big" | cut -f1) in $big ($(uptime | sed 's/.*load/load/'))"
  # The references of a run into a folder, each at the niceness of the run's workers.
  memfloor=$(median "$WORK/memfloor" "$PROBE" memfloor "$big" "$WORK/memfloor" 2)
  echo "$memfloor"
  copy=$(median "$WORK/copy" "$PROBE" copy "$big" "$WORK/copy")
  echo "$copy"
  for threads in 1 2; do
    run=$(median "$WORK/t$threads" "$PROBE" child -- "$CLI" apply --quiet --threads "$threads" "${EDITS[@]}" --out "$WORK/t$threads" "$big")
    echo "tagmoor-cli apply --threads $threads: $run"
  done
  ratio "into a folder, 2 threads / bare Exiv2 program" "$run" "$memfloor"
  ratio "into a folder, 2 threads / kernel copy" "$run" "$copy"
  # The same edits less the XMP one, against the bare program doing the same: the photos'
  # XMP packets stay as they are.
  local exiffloor exifrun
  exiffloor=$(BENCH_EXIF_ONLY=1 median "$WORK/memfloor" "$PROBE" memfloor "$big" "$WORK/memfloor" 2)
  exifrun=$(median "$WORK/exif" "$PROBE" child -- "$CLI" apply --quiet --threads 2 "${EXIF_EDITS[@]}" --out "$WORK/exif" "$big")
  echo "Exif and IPTC edits only: $exiffloor"
  echo "Exif and IPTC edits only: tagmoor-cli apply --threads 2: $exifrun"
  ratio "Exif and IPTC only, 2 threads / bare program" "$exifrun" "$exiffloor"
  # exiftool on the first 200 photos, against the run on the same 200, each the median of its
  # runs (exiftool makes the output folder itself).
  if command -v exiftool >/dev/null; then
    mkdir -p "$WORK/few"
    local files
    mapfile -t files < <(find "$big" -name '*.jpg' | sort)
    ln "${files[@]:0:200}" "$WORK/few/"
    run=$(median "$WORK/fewout" "$PROBE" child -- "$CLI" apply --quiet --threads 2 "${EDITS[@]}" --out "$WORK/fewout" "$WORK/few")
    local et
    et=$(median "$WORK/et" "$PROBE" child -- exiftool -q -q -o "$WORK/et/" -Artist="Jane Doe" "-Copyright=(c) Jane Doe" \
      "-ImageDescription=Harbour at dawn" -ISO=400 -FNumber=2.8 -IPTC:City=Paris \
      -IPTC:Headline=Morning "-XMP-aux:Lens=Lens 50" "-DateTimeOriginal+=1:00:00" "$WORK/few")
    echo "exiftool -o, 200 photos: $et"
    echo "tagmoor-cli apply --threads 2, 200 photos: $run"
    awk -v a="$(wall_of "$et")" -v b="$(wall_of "$run")" \
      'BEGIN { printf "  %-44s %6.2fx faster\n", "into a folder, 200 photos, against exiftool -o", a / b }'
    set_aside "$WORK/few" "$WORK/fewout" "$WORK/et"; sync
  fi
  # In place: the run against the plain in-place write with the safe replace, each on a copy.
  room_for "$((CORPUS_BYTES * 3))"
  cp -r "$big" "$WORK/inplace-floor"; cp -r "$big" "$WORK/inplace-run"; sync
  inplacefloor=$("$PROBE" inplacefloor "$WORK/inplace-floor" 2)
  echo "$inplacefloor"
  inplace=$("$PROBE" child -- "$CLI" apply --quiet --threads 2 "${EDITS[@]}" --in-place "$WORK/inplace-run" | tail -1)
  echo "tagmoor-cli apply in place --threads 2: $inplace"
  ratio "in place, 2 threads / in-place floor" "$inplace" "$inplacefloor"
  echo "  journal of the run in place: $(du -sh "$(ls -d "$TAGMOOR_JOURNAL_DIR"/* | tail -1)" | cut -f1)"
  set_aside "$WORK/inplace-floor" "$WORK/inplace-run" "$TAGMOOR_JOURNAL_DIR"; sync
}

# memory_backed CORPUS: the run into a folder and its bare Exiv2 reference again, with the
# photos and the outputs in memory (/dev/shm). On a disk, making and filling each output file
# can cost as much as the rest of a photo's work, and both sides pay it; in memory the ratio is
# that of the work itself. Skipped without room in /dev/shm.
memory_backed() {
  local src=$1 run memfloor need
  need=$(( $(du -sk "$src" | cut -f1) * 3 ))
  if [ ! -d /dev/shm ] || [ "$(df -k --output=avail /dev/shm | tail -1)" -lt "$need" ]; then
    echo "  (no room in /dev/shm for the run in memory)"
    return 0
  fi
  SHM=$(mktemp -d /dev/shm/tagmoor-bench.XXXXXX)
  cp -r "$src" "$SHM/in"
  memfloor=$(median "$SHM/memfloor" "$PROBE" memfloor "$SHM/in" "$SHM/memfloor" 2)
  run=$(median "$SHM/t2" "$PROBE" child -- "$CLI" apply --quiet --threads 2 "${EDITS[@]}" --out "$SHM/t2" "$SHM/in")
  echo "in memory: $memfloor"
  echo "in memory: tagmoor-cli apply --threads 2: $run"
  ratio "in memory, 2 threads / bare Exiv2 program" "$run" "$memfloor"
  rm -rf "$SHM"
  SHM=
}

BIG=bench/corpus-batch-2000-$COUNT
corpus "$BIG" "$COUNT" --size 2000x1500 --prefix big
MEDIUM=bench/corpus-batch-640-$COUNT
corpus "$MEDIUM" "$COUNT" --size 640x480 --prefix medium
speed "$BIG"
memory_backed "$BIG"
speed "$MEDIUM"
memory_backed "$MEDIUM"

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
