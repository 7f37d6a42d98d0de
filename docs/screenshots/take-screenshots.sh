#!/usr/bin/env bash
# Takes the screenshots of this folder: the add screen, the home screen with 50 photos
# handed over on the command line, and through the screenshot tour the editor's states, the
# location picker (offline and with tiles from a loopback server), the location view and the
# preview window. Runs the real program under a virtual X server with settings of its own, at
# 1280x800 and 1440x900, light and dark. Needs xvfb-run, xdotool and ImageMagick.
set -euo pipefail
# The pictures show the window in English whatever the desktop's language;
# TOUR_LANGUAGE=de TOUR_OUTPUT=DIR takes them in German into DIR.
export LANG=C.UTF-8 LANGUAGE=${TOUR_LANGUAGE:-}
unset LC_ALL LC_MESSAGES
cd "$(dirname "$0")"
here=$(pwd)
shots=${TOUR_OUTPUT:-$here}
app=${TAGMOOR_APP:-$here/../../build/src/app/tagmoor}
samples=${TAGMOOR_SAMPLES:-$here/../../../shared/samples/formats}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Fifty photos: some real samples and generated landscapes of colour.
mkdir -p "$work/photos"
i=0
for f in "$samples"/Reagan.jpg "$samples"/FurnaceCreekInn.jpg "$samples"/ReaganLargeJpg.jpg \
         "$samples"/exiv2-*.jpg "$samples"/Reagan.tiff "$samples"/et-Nikon.nef; do
  cp "$f" "$work/photos/"; i=$((i + 1))
done
n=1
while [ "$i" -lt 50 ]; do
  convert -size 900x600 -seed "$n" plasma:fractal -blur 0x2 -quality 85 \
    "$work/photos/DSC_$(printf %04d $((4100 + n))).jpg"
  i=$((i + 1)); n=$((n + 1))
done

# The welcome window was seen; no update check. APPEARANCE: "light" or "dark".
write_settings() {
  mkdir -p "$work/config/Tagmoor"
  printf '[General]\nStartupOTM=true\nFirstRunOTM=false\nAutoCheckForUpdateOTM=2\nTutorialShowOTM=true\nAppearanceOTM=%s\n' \
    "$1" > "$work/config/Tagmoor/Tagmoor.conf"
}

shoot() { # name, screen size, then the program's arguments
  local name=$1 screen=$2; shift 2
  HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" \
  xvfb-run -a -s "-screen 0 ${screen}x24" bash -c '
    "$0" "$@" & pid=$!
    sleep 9
    window=""; widest=0  # the main window, not a leader window of the same name
    for w in $(xdotool search --name "^Tagmoor$"); do
      width=$(xdotool getwindowgeometry "$w" | sed -n "s/.*Geometry: \([0-9]*\)x.*/\1/p")
      if [ "${width:-0}" -gt "$widest" ]; then widest=$width; window=$w; fi
    done
    import -window "$window" "'"$work"'/shot.png"
    kill $pid' "$app" "$@"
  cp "$work/shot.png" "$name"
}

# One set of pictures: the add screen and the home screen of the real program, then the
# editor's states, the list's menu, the sheets and the preset menu and panel, driven through
# the real screens, with the editor rows in view of each in editor-rows.txt.
tour=${TAGMOOR_TOUR:-$here/../../build/tests/screenshot_tour}
take_set() { # folder, screen size, appearance
  local dir=$1 screen=$2 appearance=$3
  mkdir -p "$dir"
  write_settings "$appearance"
  shoot "$dir/add-screen.png" "$screen"
  shoot "$dir/home-screen.png" "$screen" "$work"/photos/*
  HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" \
  TOUR_SIZE=$screen TOUR_APPEARANCE=$appearance \
    xvfb-run -a -s "-screen 0 ${screen}x24" "$tour" "$dir" "$work"/photos/*
  # The other sets are kept in 256 colours, which is plenty to read them by.
  if [ "$dir" != "$shots" ]; then
    for f in "$dir"/*.png; do convert "$f" -colors 256 "PNG8:$f"; done
  fi
}

# SETS: which of the four sets to take (default all): light, dark, light-1440, dark-1440.
for set in ${SETS:-light dark light-1440 dark-1440}; do
  case $set in
    light) take_set "$shots" 1280x800 light ;;
    dark) take_set "$shots/dark" 1280x800 dark ;;
    light-1440) take_set "$shots/1440x900" 1440x900 light ;;
    dark-1440) take_set "$shots/1440x900-dark" 1440x900 dark ;;
  esac
done
echo "screenshots written to $shots"
