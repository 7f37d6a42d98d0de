#!/usr/bin/env bash
# Starts the built application offscreen in a scratch home with TAGMOOR_START_REPORT=quit: it
# must report its first window ready to take input and end by itself with status 0 (the start
# benchmark relies on both).
#   start_report_test.sh APP
set -uo pipefail
app=$1
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
out=$(HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" \
  XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home" QT_QPA_PLATFORM=offscreen \
  TAGMOOR_START_REPORT=quit timeout 60 "$app" 2>&1)
status=$?
if [ $status -ne 0 ]; then
  echo "FAILED: the application ended with status $status"
  echo "$out" | tail -n 20
  exit 1
fi
if ! echo "$out" | grep -Eq '^tagmoor ready [0-9]{13}$'; then
  echo "FAILED: no start report"
  echo "$out" | tail -n 20
  exit 1
fi
echo "$out" | grep '^tagmoor ready'
