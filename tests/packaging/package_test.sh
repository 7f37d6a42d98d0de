#!/usr/bin/env bash
# Makes the Debian package from the build tree, unpacks it into a scratch root and checks what
# a desktop and a shell need from it: computed dependencies, programs that run from there
# without the build tree, valid desktop and AppStream files, an Exec line and MIME list that
# "Open With" can use, man pages that render, and the bash completion.
# Usage: package_test.sh BUILD_DIR CPACK SAMPLES_DIR. Exits 77 (skipped) when a tool is missing.
set -uo pipefail
build="$1" cpack="$2" samples="$3"

for tool in dpkg-deb dpkg-shlibdeps fakeroot desktop-file-validate appstreamcli readelf man; do
  if ! command -v "$tool" >/dev/null; then
    echo "SKIP: $tool is not installed (scripts/install-deps.sh installs it)"
    exit 77
  fi
done

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
status=0
fail() {
  echo "FAIL: $*"
  status=1
}

if ! "$cpack" --config "$build/CPackConfig.cmake" -B "$scratch/out" >"$scratch/cpack.log" 2>&1; then
  cat "$scratch/cpack.log"
  echo "FAIL: cpack"
  exit 1
fi
debs=("$scratch"/out/tagmoor_*.deb)
[ -f "${debs[0]}" ] || { echo "FAIL: no tagmoor_*.deb made"; ls -R "$scratch/out"; exit 1; }
deb="${debs[0]}"
echo "package: $(basename "$deb"), $(du -k "$deb" | cut -f1) KiB"

# Dependencies: found by dpkg-shlibdeps (versioned), plus the Qt plugins loaded at run time.
depends="$(dpkg-deb -f "$deb" Depends)"
echo "Depends: $depends"
for lib in 'libc6 (>=' libexiv2-27 libraw20 libicu72 libtiff6 libqt6widgets6 \
  libqt6network6 libqt6svg6 qt6-image-formats-plugins; do
  [[ "$depends" == *"$lib"* ]] || fail "Depends lacks $lib"
done

root="$scratch/root"
dpkg-deb -x "$deb" "$root"
for f in usr/bin/tagmoor usr/bin/tagmoor-cli \
  usr/share/applications/tagmoor.desktop usr/share/metainfo/io.tagmoor.Tagmoor.metainfo.xml \
  usr/share/icons/hicolor/scalable/apps/tagmoor.svg \
  usr/share/icons/hicolor/{16x16,32x32,48x48,64x64,128x128,256x256,512x512}/apps/tagmoor.png \
  usr/share/man/man1/tagmoor.1.gz usr/share/man/man1/tagmoor-cli.1.gz \
  usr/share/bash-completion/completions/tagmoor-cli; do
  [ -f "$root/$f" ] || fail "$f is not in the package"
done
while read -r path; do
  fail "installed under /usr/local or the build tree: $path"
done < <(dpkg-deb -c "$deb" | awk '{print $6}' | grep -E '^\./usr/local|^\./(home|work|tmp)/')

# The programs carry no search path into the build tree and run from the scratch root with
# only the system's libraries.
for exe in tagmoor tagmoor-cli; do
  if readelf -d "$root/usr/bin/$exe" | grep -E 'R(UN)?PATH'; then
    fail "$exe has a library search path"
  fi
done
# Only the sanitizers' settings are passed on, for a sanitized build tree.
run() {
  env -i PATH=/usr/bin:/bin HOME="$scratch/home" LANG=C.UTF-8 ASAN_OPTIONS="${ASAN_OPTIONS:-}" \
    LSAN_OPTIONS="${LSAN_OPTIONS:-}" UBSAN_OPTIONS="${UBSAN_OPTIONS:-}" "$@"
}
version="$(run "$root/usr/bin/tagmoor-cli" --version)" || fail "tagmoor-cli --version failed"
[[ "$version" =~ ^tagmoor-cli\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "tagmoor-cli --version said '$version'"
[[ "$(run "$root/usr/bin/tagmoor" --version)" == "tagmoor ${version#tagmoor-cli }" ]] ||
  fail "tagmoor --version differs from tagmoor-cli's"
record="$(run "$root/usr/bin/tagmoor-cli" read "$samples/formats/Reagan.jpg")" ||
  fail "tagmoor-cli read failed"
[[ "$record" == '{"path": '*'"tiffProperties.'* ]] || fail "tagmoor-cli read printed: $record"
# A PNG's size comes from Qt's readers, in the command line's own module, loaded from the
# package's library folder.
png_warnings="$(run "$root/usr/bin/tagmoor-cli" read "$samples/formats/ReaganSmallPng.png" 2>&1 >/dev/null)" ||
  fail "tagmoor-cli read of a PNG failed"
[ -z "$png_warnings" ] || fail "tagmoor-cli read of a PNG said: $png_warnings"

# Desktop entry and AppStream data as the desktop reads them.
desktop="$root/usr/share/applications/tagmoor.desktop"
desktop-file-validate "$desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$root/usr/share/metainfo/io.tagmoor.Tagmoor.metainfo.xml" ||
  fail "appstreamcli validate"
exec_line="$(grep '^Exec=' "$desktop")"
# "Open With" hands the chosen files over through %F (or %U); the program is the packaged one.
[[ "$exec_line" =~ ^Exec=tagmoor\ .*%[FU]$ ]] || fail "Exec line '$exec_line' takes no files"
[ -x "$root/usr/bin/$(echo "${exec_line#Exec=}" | cut -d' ' -f1)" ] || fail "Exec names no packaged program"
mimes=";$(grep '^MimeType=' "$desktop" | cut -d= -f2)"
for mime in image/jpeg image/png image/tiff image/jp2 image/vnd.adobe.photoshop \
  image/x-adobe-dng image/x-canon-cr2 image/x-nikon-nef image/x-sony-arw image/x-fuji-raf; do
  [[ "$mimes" == *";$mime;"* ]] || fail "MimeType lacks $mime"
done

# Man pages render without a groff warning.
for page in tagmoor tagmoor-cli; do
  out="$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$root/usr/share/man/man1/$page.1.gz" 2>&1 >/dev/null)"
  [ -z "$out" ] || fail "man $page: $out"
  LC_ALL=C.UTF-8 MANWIDTH=80 man -l "$root/usr/share/man/man1/$page.1.gz" 2>/dev/null |
    grep -q '^EXIT STATUS\|^OPTIONS' || fail "man $page has no options or exit statuses"
done

# The completion offers the commands and the values of an option.
complete_words() {
  bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tagmoor_cli
           echo "${COMPREPLY[*]}"' _ "$root/usr/share/bash-completion/completions/tagmoor-cli" "$@"
}
[ "$(complete_words tagmoor-cli ap)" = apply ] || fail "completion of 'ap': $(complete_words tagmoor-cli ap)"
[ "$(complete_words tagmoor-cli apply --mode '')" = "keep clear remove" ] ||
  fail "completion of --mode: $(complete_words tagmoor-cli apply --mode '')"

[ "$status" -eq 0 ] && echo "package checks passed"
exit "$status"
