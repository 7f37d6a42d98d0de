#!/usr/bin/env bash
# Runs two builds of tagmoor-cli over the same inputs, in every mode and both forms, and
# compares all they write and print, byte for byte: a change that should only make the work
# faster must leave every output as it was.
#   bench/compare.sh OLD_CLI NEW_CLI [INPUT_FOLDER...]
# Inputs: the folders given, by default the shared samples (well-formed and malformed) and
# whichever of bench/corpus-batch-2000-* and bench/corpus-batch-640-* exist. Each input is run
# with: an edit into a folder (plain and with a rename), the same edit in place, an edit of
# Exif and IPTC values alone into a folder, the clear mode, a strip of every group, and
# `read` on two threads. Both programs run in the same scratch path one after the other, so
# that every printed path is the same.
# Prints one line per case and exits 1 when any output differs.
set -uo pipefail
cd "$(dirname "$0")/.."
if [ $# -lt 2 ]; then
  echo "usage: bench/compare.sh OLD_CLI NEW_CLI [INPUT_FOLDER...]" >&2
  exit 2
fi
OLD=$(realpath "$1")
NEW=$(realpath "$2")
shift 2
INPUTS=("$@")
if [ ${#INPUTS[@]} -eq 0 ]; then
  SAMPLES=${TAGMOOR_SAMPLES:-/work/shared/samples}
  INPUTS=("$SAMPLES/formats" "$SAMPLES/malformed")
  for d in bench/corpus-batch-2000-* bench/corpus-batch-640-*; do
    [ -d "$d" ] && INPUTS+=("$d")
  done
fi

SCRATCH=$(mktemp -d "${TMPDIR:-/tmp}/tagmoor-compare.XXXXXX")
trap 'rm -rf "$SCRATCH"' EXIT
export TAGMOOR_JOURNAL_DIR="$SCRATCH/journal"
export QT_QPA_PLATFORM=offscreen

EDITS=(--set "Artist=Jane Doe" --set "Copyright=(c) Jane Doe" --set "ImageDescription=Harbour at dawn"
       --set ISO=400 --set FNumber=2.8 --set Iptc.Application2.City=Paris
       --set Iptc.Application2.Headline=Morning --set Xmp.aux.Lens="Lens 50"
       --date DateTimeOriginal=shift-time:+1:00:00 --date "ModifyDate=select:2020-01-02 03:04:05")
# Edits of Exif and IPTC values alone, which leave a photo's XMP packet as it is.
EXIF_EDITS=(--set "Artist=Jane Doe" --set "Copyright=(c) Jane Doe" --set ISO=400
            --set Iptc.Application2.City=Paris --date DateTimeOriginal=shift-time:+1:00:00)

# run_case CLI MODE FORM INPUT RESULT_DIR: runs one case in $SCRATCH/work and keeps what it
# left (files, stdout, stderr, exit status) in RESULT_DIR.
run_case() {
  local cli=$1 mode=$2 form=$3 input=$4 result=$5
  local work=$SCRATCH/work
  rm -rf "$work" "$TAGMOOR_JOURNAL_DIR"
  mkdir -p "$work/out"
  cp -a "$input" "$work/in"
  local formArgs=()
  [ "$form" = described ] && formArgs=(--form described)
  local status
  case "$mode" in
    out) "$cli" apply --quiet --threads 2 "${formArgs[@]}" "${EDITS[@]}" --out "$work/out" "$work/in" ;;
    rename) "$cli" apply --quiet --threads 2 "${formArgs[@]}" "${EDITS[@]}" --rename add-after:-r \
      --out "$work/out" "$work/in" ;;
    inplace) "$cli" apply --quiet --threads 2 "${formArgs[@]}" "${EDITS[@]}" --in-place "$work/in" ;;
    exif) "$cli" apply --quiet --threads 2 "${formArgs[@]}" "${EXIF_EDITS[@]}" --out "$work/out" "$work/in" ;;
    clear) "$cli" apply --quiet --threads 1 "${formArgs[@]}" --mode clear --set "Artist=Jane Doe" \
      --out "$work/out" "$work/in" ;;
    strip) "$cli" apply --quiet --threads 2 "${formArgs[@]}" --mode remove \
      --strip exif,iptc,xmp,gps,comment --out "$work/out" "$work/in" ;;
    read) "$cli" read --threads 2 "${formArgs[@]}" -- "$work/in" ;;
  esac >"$work/stdout" 2>"$work/stderr"
  status=$?
  echo "$status" >"$work/status"
  rm -rf "$result"
  mv "$work" "$result"
}

differs=0
cases=0
for input in "${INPUTS[@]}"; do
  for form in standard described; do
    for mode in out rename inplace exif clear strip read; do
      run_case "$OLD" "$mode" "$form" "$input" "$SCRATCH/old"
      run_case "$NEW" "$mode" "$form" "$input" "$SCRATCH/new"
      cases=$((cases + 1))
      # A case the program refuses as given (a usage error) compares nothing: it is a fault of
      # this script, not a sameness.
      if [ "$(cat "$SCRATCH/new/status")" = 2 ]; then
        differs=$((differs + 1))
        echo "REFUSED  $input $mode $form: $(head -1 "$SCRATCH/new/stderr")"
        continue
      fi
      # The files themselves, their names and modes; then what each program printed.
      if diff -r --no-dereference "$SCRATCH/old" "$SCRATCH/new" >"$SCRATCH/diff" 2>&1 &&
         [ "$(cd "$SCRATCH/old" && find . -printf '%p %m\n' | sort)" = \
           "$(cd "$SCRATCH/new" && find . -printf '%p %m\n' | sort)" ]; then
        files=$(find "$SCRATCH/new" -type f | wc -l)
        echo "same     $input $mode $form ($files files)"
      else
        differs=$((differs + 1))
        echo "DIFFERS  $input $mode $form"
        head -20 "$SCRATCH/diff" | sed 's/^/         /'
      fi
    done
  done
done
echo "$cases cases, $differs differ"
[ "$differs" -eq 0 ]
