#!/usr/bin/env bash
# Installs every Debian package that the build, the tests and the benchmarks need.
# Works on a fresh Debian 12 machine whose package lists were never updated.
# Extra package names given as arguments are installed too (the fuzz build adds clang).
# With --list-missing it only prints the packages it would install.
set -euo pipefail
list_only=0
if [ "${1:-}" = "--list-missing" ]; then
  list_only=1
  shift
fi

PACKAGES=(
  cmake ninja-build g++ pkg-config ccache lld
  qt6-base-dev qt6-base-dev-tools qt6-image-formats-plugins qt6-qpa-plugins libgl-dev
  qt6-tools-dev qt6-l10n-tools qt6-translations-l10n
  libexiv2-dev libheif-dev libicu-dev libmimalloc-dev libraw-dev libsqlite3-dev libtiff-dev zlib1g-dev libqt6svg6
  libgtest-dev libgmock-dev libbenchmark-dev
  exiv2 libimage-exiftool-perl
  clang-format python3
  xvfb xauth xdotool imagemagick
  fonts-dejavu-core
  dpkg-dev fakeroot desktop-file-utils appstream man-db librsvg2-bin
  "$@"
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ "$list_only" = 1 ]; then
  echo "${missing[*]}"
  exit 0
fi
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
