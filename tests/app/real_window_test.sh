#!/usr/bin/env bash
# Drives the built application in a real window under its own Xvfb with real keyboard events
# (xdotool), keys only: a folder added through the file panel (Ctrl+O, its path typed, Enter
# goes into it, the list takes every photo), all marked, an Artist typed into the editor,
# Start Process, YES, an output folder typed into the folder panel, the run, Finish.
# Then every output must carry the Artist. Exits 77 (skipped) when Xvfb or xdotool is absent.
#   real_window_test.sh APP SAMPLES_DIR
set -uo pipefail
app=$1
samples=$2
for tool in Xvfb xdotool exiftool; do
  if ! command -v "$tool" >/dev/null; then
    echo "skipped: $tool is not installed"
    exit 77
  fi
done

work=$(mktemp -d)
display=""
cleanup() {
  [ -n "${app_pid:-}" ] && kill "$app_pid" 2>/dev/null
  [ -n "${x_pid:-}" ] && kill "$x_pid" 2>/dev/null
  wait 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
# What the application said goes to the test's output when the test fails.
show_log() { [ -f "$work/app.log" ] && tail -n 20 "$work/app.log"; }
fail() {
  echo "FAILED: $*"
  show_log
  command -v import >/dev/null && DISPLAY=$display import -window root "$work/failure.png" 2>/dev/null &&
    cp "$work/failure.png" "${TMPDIR:-/tmp}/real-window-failure.png" &&
    echo "screen saved as ${TMPDIR:-/tmp}/real-window-failure.png"
  exit 1
}

home="$work/home"
mkdir -p "$home/Pictures" "$home/Trip" "$home/Out" "$home/config/Tagmoor"
for f in Reagan.jpg et-GPS.jpg FurnaceCreekInn.jpg; do
  cp "$samples/$f" "$home/Trip/" && chmod u+w "$home/Trip/$f"
done
printf '[General]\nStartupOTM=true\nFirstRunOTM=false\nAutoCheckForUpdateOTM=2\nTutorialShowOTM=true\nIsPresetSavingSettingInHomeOTM=false\n' \
  >"$home/config/Tagmoor/Tagmoor.conf"

# The server picks a free display itself and writes its number once it accepts clients, so
# that another server on the machine (another test run, a screenshot script) is never reached.
# -noreset: without it the server starts over when the probe below disconnects, and an
# application that connects in that moment aborts.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
x_pid=$!
# A loaded machine can take a while to bring the server up; the application aborts without one.
for _ in $(seq 300); do
  number=$(tr -dc '0-9' <"$work/display" 2>/dev/null)
  [ -n "$number" ] && grep -q $'\n' "$work/display" 2>/dev/null && break
  sleep 0.1
done
[ -n "${number:-}" ] || fail "Xvfb did not start"
display=:$number
export DISPLAY=$display HOME=$home XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$work
export QT_QPA_PLATFORM=xcb
ready=""
for _ in $(seq 300); do
  if xdotool getdisplaygeometry >/dev/null 2>&1; then ready=1; break; fi
  sleep 0.1
done
[ -n "$ready" ] || fail "Xvfb did not answer on $display"

"$app" >"$work/app.log" 2>&1 &
app_pid=$!

# The main window: the one named Tagmoor that is wider than a leader window.
window=""
for _ in $(seq 100); do
  for w in $(xdotool search --name '^Tagmoor$' 2>/dev/null); do
    width=$(xdotool getwindowgeometry "$w" 2>/dev/null | sed -n 's/.*Geometry: \([0-9]*\)x.*/\1/p')
    [ "${width:-0}" -gt 600 ] && window=$w
  done
  [ -n "$window" ] && break
  sleep 0.1
done
[ -n "$window" ] || fail "the main window did not appear"
sleep 1

# The keyboard alone. The file panel: the folder's path typed and Enter go into it; from the
# name field back to the list, every photo in it is chosen and taken.
xdotool windowactivate --sync "$window" 2>/dev/null || xdotool windowfocus --sync "$window"
xdotool key ctrl+o
sleep 1.5
xdotool type --delay 20 "$home/Trip"
sleep 0.3
xdotool key Return
sleep 0.8
xdotool key shift+Tab
sleep 0.3
xdotool key ctrl+a
sleep 0.3
xdotool key Return
sleep 3 # the three photos are read and the editor shows their merge

# Mark all, into the editor's first field (Artist), Start Process.
xdotool windowactivate --sync "$window" 2>/dev/null || xdotool windowfocus --sync "$window"
xdotool key ctrl+a
sleep 0.4
xdotool key ctrl+e
sleep 0.4
xdotool type --delay 30 "Jane Doe"
sleep 0.5
xdotool key ctrl+Return
sleep 1
xdotool key Return      # "Are you sure to edit metadata of all the selected images?": YES
sleep 2                 # the folder panel opens with its name field focused
xdotool type --delay 20 "$home/Out"
xdotool key Return
for _ in $(seq 100); do
  [ "$(ls "$home/Out" | wc -l)" -ge 3 ] && break
  sleep 0.2
done
sleep 1
for f in Reagan.jpg et-GPS.jpg FurnaceCreekInn.jpg; do
  [ -f "$home/Out/$f" ] || fail "no output for $f"
  artist=$(exiftool -s3 -Artist "$home/Out/$f")
  [ "$artist" = "Jane Doe" ] || fail "$f has Artist '$artist'"
done
xdotool key Return      # Finish
sleep 1
kill -0 "$app_pid" 2>/dev/null || fail "the application ended"
echo "1 passed, 0 failed"
