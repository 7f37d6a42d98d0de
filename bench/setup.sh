#!/usr/bin/env bash
# Set-up benchmark: a fresh clone of the checkout's last commit runs the README's test command
# (scripts/run-tests.sh: the packages, the configuration, a build from nothing and every test)
# with an empty compiler cache, as a new machine does; prints the whole time and its parts.
#   bench/setup.sh
# Packages that the machine has already are not installed again: on such a machine the figure
# lacks their download and installation, which the first line of the run names. Uncommitted
# changes are not in the clone.
set -euo pipefail
cd "$(dirname "$0")/.."
# The clone stands beside this checkout: the tests take the shared samples from ../shared.
clone=$(mktemp -d "$(dirname "$PWD")/tagmoor-setup-XXXX")
scratch=$(mktemp -d "${TMPDIR:-/tmp}/tagmoor-setup-XXXX")
trap 'rm -rf "$clone" "$scratch"' EXIT
git clone -q . "$clone"

missing=$(bash scripts/install-deps.sh --list-missing)
start=$(date +%s.%N)
if ! CCACHE_DIR=$scratch/ccache bash "$clone/scripts/run-tests.sh" >"$scratch/log" 2>&1; then
  tail -40 "$scratch/log"
  echo "the test command failed" >&2
  exit 1
fi
end=$(date +%s.%N)
# The children's CPU time (user and system), from the shell's own account.
# (`times` in a command substitution would speak for the subshell, which has no children.)
times >"$scratch/times"
cpu=$(tail -1 "$scratch/times" | awk '{ split($1, u, /[ms]/); split($2, s, /[ms]/); print u[1] * 60 + u[2] + s[1] * 60 + s[2] }')

total=$(echo "$end - $start" | bc -l)
build=$(awk 'NR > 1 && $2 > last { last = $2 } END { print last / 1000 }' "$clone/build/.ninja_log")
tests=$(sed -nE 's/^Total Test time \(real\) = +([0-9.]+) sec$/\1/p' "$scratch/log")
targets=$(awk 'NR > 1' "$clone/build/.ninja_log" | wc -l)
count=$(sed -nE 's/.* tests? failed out of ([0-9]+)$/\1/p' "$scratch/log")

printf '== set-up of a fresh clone (%s, %s cores, load average %s)\n' "$(git log -1 --format=%h)" \
  "$(nproc)" "$(cut -d' ' -f1-3 /proc/loadavg)"
printf 'packages to install first       %s\n' "${missing:-none (all present)}"
printf 'build from nothing      %8.1f s  (%d steps)\n' "$build" "$targets"
printf 'tests                   %8.1f s  (%d tests)\n' "$tests" "$count"
printf 'whole command           %8.1f s  (%.1f min; target 8 min)   CPU %.0f s\n' "$total" \
  "$(echo "$total / 60" | bc -l)" "$cpu"
