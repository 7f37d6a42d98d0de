#!/usr/bin/env bash
# Takes the screenshots of this folder: the add screen, the home screen with 50 photos
# handed over on the command line, and through the screenshot tour the editor's states, the
# location picker (offline and with tiles from a loopback server), the location view and the
# preview window. Runs the real program under a virtual X server at 1280x800 with settings of
# its own. Needs xvfb-run, xdotool and ImageMagick.
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

# The welcome window was seen; no update check.
mkdir -p "$work/config/Tagmoor"
printf '[General]\nStartupOTM=true\nFirstRunOTM=false\nAutoCheckForUpdateOTM=2\nTutorialShowOTM=true\n' \
  > "$work/config/Tagmoor/Tagmoor.conf"

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
  cp "$work/shot.png" "$shots/$name"
}

shoot add-screen.png 1280x800
shoot home-screen.png 1280x800 "$work"/photos/*
shoot home-screen-1440x900.png 1440x900 "$work"/photos/*

# The editor's states, the list's menu and the preset menu and panel, driven through the
# real screens.
tour=${TAGMOOR_TOUR:-$here/../../build/tests/screenshot_tour}
HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work" \
  xvfb-run -a -s "-screen 0 1280x800x24" "$tour" "$shots" "$work"/photos/*
echo "screenshots written to $shots"
