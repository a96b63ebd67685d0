#!/usr/bin/env bash
# Makes a sysroot of Debian's armhf packages of the project's dependencies:
#   bash cmake/make-armhf-sysroot.sh SYSROOT
# debootstrap's first stage downloads the packages and their dependencies for
# armhf; every downloaded package is then unpacked in place, as dpkg -x does
# but without documentation, manual pages and translations (no maintainer
# script runs, nothing of the host changes). Made once: a stamp naming the
# package list marks a finished sysroot.
set -euo pipefail
sysroot=${1:?usage: make-armhf-sysroot.sh SYSROOT}
suite=${MARL_SYSROOT_SUITE:-bookworm}

packages=(
  libc6-dev libstdc++-12-dev
  libjson-glib-dev libjsoncpp-dev libsqlite3-dev libssl-dev libefl-all-dev libsndfile1-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libpocketsphinx-dev libsphinxbase-dev libespeak-ng-dev libsamplerate0-dev libspeexdsp-dev pocketsphinx-en-us
)
stamp="$sysroot/.marl-sysroot"
wanted="$suite ${packages[*]}"

# The links that the packages' maintainer scripts would make through
# update-alternatives: BLAS and LAPACK (pocketsphinx's) are found by the
# loader only through them.
alternatives() {
  local lib=$sysroot/usr/lib/arm-linux-gnueabihf
  for provider in blas lapack; do
    for file in "$lib/$provider"/lib"$provider".so.3; do
      [ -e "$file" ] && [ ! -e "$lib/$(basename "$file")" ] && ln -s "$provider/$(basename "$file")" "$lib/$(basename "$file")"
    done
  done
  return 0
}

if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$wanted" ]; then
  alternatives
  exit 0
fi

# The machine's own Debian mirror, as apt is set up to use it.
mirror=${MARL_SYSROOT_MIRROR:-}
if [ -z "$mirror" ]; then
  mirror=$(grep -hsE '^(URIs:|deb )' /etc/apt/sources.list.d/*.sources /etc/apt/sources.list 2>/dev/null |
    grep -v security | grep -oE 'https?://[^ ]+/debian/?' | head -n1 || true)
  mirror=${mirror:-http://deb.debian.org/debian}
fi

echo "sysroot: downloading armhf packages from $mirror into $sysroot"
rm -rf "$sysroot"
mkdir -p "$(dirname "$sysroot")"
include=$(IFS=,; echo "${packages[*]}")
debootstrap --foreign --arch=armhf --variant=minbase --include="$include" "$suite" "$sysroot" "$mirror" \
  > "$sysroot.log" 2>&1 || { tail -n 30 "$sysroot.log" >&2; echo "sysroot: debootstrap failed" >&2; exit 1; }

echo "sysroot: unpacking $(ls "$sysroot"/var/cache/apt/archives/*.deb | wc -l) packages"
for deb in "$sysroot"/var/cache/apt/archives/*.deb; do
  dpkg-deb --fsys-tarfile "$deb" |
    tar -x -C "$sysroot" --keep-directory-symlink --exclude=./usr/share/doc --exclude=./usr/share/man \
      --exclude=./usr/share/locale --exclude=./usr/share/info
done
rm -f "$sysroot"/var/cache/apt/archives/*.deb

# Absolute links point into the host; make them point into the sysroot.
find "$sysroot" -type l -lname '/*' -print0 | while IFS= read -r -d '' link; do
  target=$(readlink "$link")
  ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$sysroot$target")" "$link"
done

alternatives
echo "$wanted" > "$stamp"
echo "sysroot: ready ($(du -sh "$sysroot" | cut -f1))"
