#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds libmpv for Windows, statically, with the libraries that it needs, from Debian's sources of
# the installed versions, and prints its folder. The result is cached in the user's cache folder by
# versions and options, so a second call only prints the folder. The first call takes about ten
# minutes.
#
# The folder contains include, lib, the license notices, and sources.txt: the versions that were
# built. `PKG_CONFIG_LIBDIR=FOLDER/lib/pkgconfig pkg-config --static --libs mpv` prints how to link.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=packaging/debian-source.sh
. "$here/debian-source.sh"

# In the order of the build: each library uses those before it.
names=(freetype fribidi harfbuzz libass ffmpeg mpv)

target=x86_64-w64-mingw32
freetype=(-Dharfbuzz=disabled -Dpng=disabled -Dbrotli=disabled -Dbzip2=disabled -Dzlib=internal -Dtests=disabled)
fribidi=(-Ddocs=false)
harfbuzz=(-Dauto_features=disabled -Dfreetype=enabled -Dtests=disabled)
libass=(--disable-fontconfig --disable-libunibreak)
# Only what songs need. The filters are those that player/substitute/sound_engine.cpp names, and
# those that mpv itself uses.
# shellcheck disable=SC2054 # Lists of FFmpeg have commas.
ffmpeg=(
  --disable-everything --disable-autodetect --disable-programs --disable-doc --disable-network
  --disable-avdevice --disable-debug --enable-gpl --enable-version3 --enable-w32threads
  --enable-protocol=file
  --enable-decoder='mp1*,mp2*,mp3*,flac,vorbis,opus,speex,aac*,alac,pcm_*,ape,wavpack,mpc7,mpc8'
  --enable-decoder=wmav1,wmav2,wmapro,wmalossless,wmavoice,adpcm_ms,adpcm_ima_wav,adpcm_ima_qt
  --enable-demuxer=mp3,flac,ogg,mov,wav,w64,aiff,asf,aac,ape,wv,mpc,mpc8
  --enable-parser=mpegaudio,flac,vorbis,opus,aac
  --enable-filter=abuffer,abuffersink,aformat,anull,arealtime,aresample,atempo,format,null,pan
  --enable-filter=stereotools,volume
)
mpv=(-Dauto_features=disabled -Dlibmpv=true -Dcplayer=false -Dwasapi=enabled -Dgl=disabled
  -Dbuild-date=false -Dtests=false)

# installed_version SOURCE: the version of the source package that an installed package is made of
installed_version() {
  dpkg-query -W -f='${db:Status-Abbrev} ${source:Package} ${source:Version}\n' |
    awk -v source="$1" '$1 == "ii" && $2 == source { version = $3 } END { print version }'
}
versions=()
for name in "${names[@]}"; do
  version=$(installed_version "$name")
  if [ -z "$version" ]; then
    echo "No library of $name is installed. Install libmpv-dev and try again." >&2
    exit 1
  fi
  versions+=("$name=$version")
done
options="${freetype[*]} ${fribidi[*]} ${harfbuzz[*]} ${libass[*]} ${ffmpeg[*]} ${mpv[*]}"
key="mpv-$(installed_version mpv)_$("$target-gcc-posix" -dumpfullversion)_$(
  echo "${versions[*]} $options 1" | sha256sum | head -c 12)"
folder=$(cache_folder windows-mpv "$key")
if [ -f "$folder/complete" ]; then
  printf '%s\n' "$folder"
  exit 0
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The source of a security update is not always available; then the version before it is built.
for version in "${versions[@]}"; do
  fetch_source "$work" "$version" 2> "$work/fetch.log" || fetch_source "$work" "${version%+deb*}" ||
    { cat "$work/fetch.log" >&2; exit 1; }
done
# source_folder NAME: the folder of a fetched source package
source_folder() { find "$work" -mindepth 1 -maxdepth 1 -type d -name "$1-*" | head -n 1; }
# log NAME COMMAND...: appends the output of a command to NAME.log; shows its end only on failure.
log() {
  local file=$work/$1.log
  shift
  "$@" >> "$file" 2>&1 || { tail -n 60 "$file" >&2; exit 1; }
}

cat > "$work/cross.txt" << END
[binaries]
c = '$target-gcc-posix'
cpp = '$target-g++-posix'
ar = '$target-ar'
strip = '$target-strip'
windres = '$target-windres'
pkgconfig = 'pkg-config'
[properties]
pkg_config_libdir = '$folder/lib/pkgconfig'
[built-in options]
c_args = ['-ffunction-sections', '-fdata-sections']
cpp_args = ['-ffunction-sections', '-fdata-sections']
[host_machine]
system = 'windows'
cpu_family = 'x86_64'
cpu = 'x86_64'
endian = 'little'
END

# Only the libraries of the folder are found, none of this system.
unset PKG_CONFIG_PATH
export PKG_CONFIG_LIBDIR=$folder/lib/pkgconfig
rm -rf "$folder"

# with_meson NAME OPTION...
with_meson() {
  local name=$1
  shift
  log "$name" meson setup "$work/build-$name" "$(source_folder "$name")" --cross-file "$work/cross.txt" \
    --prefix "$folder" --libdir lib --buildtype release --default-library static \
    --wrap-mode nodownload "$@"
  log "$name" ninja -C "$work/build-$name" install
}
# with_configure NAME OPTION...
with_configure() {
  local name=$1 source
  shift
  source=$(source_folder "$name")
  mkdir "$work/build-$name"
  # A subshell, whose exit does not end the script; set -e does.
  (cd "$work/build-$name" && log "$name" "$source/configure" --prefix="$folder" "$@" &&
    log "$name" make -j"$(nproc)" && log "$name" make install)
}

echo "Building libmpv $(installed_version mpv) for Windows" >&2
with_meson freetype "${freetype[@]}"
with_meson fribidi "${fribidi[@]}"
with_meson harfbuzz "${harfbuzz[@]}"
with_configure libass --host="$target" --enable-static --disable-shared CC="$target-gcc-posix" \
  CXX="$target-g++-posix" CFLAGS='-O2 -ffunction-sections -fdata-sections' "${libass[@]}"
with_configure ffmpeg --arch=x86_64 --target-os=mingw32 --enable-cross-compile \
  --cross-prefix="$target-" --cc="$target-gcc-posix" --cxx="$target-g++-posix" --pkg-config=pkg-config \
  --extra-cflags='-ffunction-sections -fdata-sections' "${ffmpeg[@]}"
with_meson mpv "${mpv[@]}"

rm -rf "${folder:?}/bin" "${folder:?}/share"
mkdir -p "$folder/notices"
for name in "${names[@]}"; do
  source=$(source_folder "$name")
  cp "$source/debian/copyright" "$folder/notices/$name.txt"
  (cd "$source" && printf '%s %s\n' "$name" "$(dpkg-parsechangelog -S Version)") >> "$folder/sources.txt"
done
touch "$folder/complete"
printf '%s\n' "$folder"
