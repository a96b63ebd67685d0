#!/usr/bin/env bash
# Unpacks Debian's ARM hard-float cross compiler into a folder of its own:
#   bash cmake/make-armhf-toolchain.sh DIR      (compilers in DIR/usr/bin)
# Installed system-wide, g++-arm-linux-gnueabihf and gcc-multilib remove each
# other; unpacked here (the compiler finds its parts relative to itself) it
# leaves the host's compilers alone. Made once: a stamp marks it finished.
set -euo pipefail
dir=$(realpath -m "${1:?usage: make-armhf-toolchain.sh DIR}")
packages=(
  gcc-12-arm-linux-gnueabihf-base cpp-12-arm-linux-gnueabihf gcc-12-arm-linux-gnueabihf g++-12-arm-linux-gnueabihf
  binutils-arm-linux-gnueabihf
  libc6-armhf-cross libc6-dev-armhf-cross linux-libc-dev-armhf-cross
  libgcc-s1-armhf-cross libgcc-12-dev-armhf-cross libstdc++6-armhf-cross libstdc++-12-dev-armhf-cross
  libasan8-armhf-cross libubsan1-armhf-cross libgomp1-armhf-cross libatomic1-armhf-cross
)
stamp="$dir/.marl-toolchain"
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "${packages[*]}" ]; then
  exit 0
fi
rm -rf "$dir"
mkdir -p "$dir/debs"
echo "toolchain: unpacking the ARM cross compiler into $dir"
# apt's lists may be old, or held a moment by another apt: update and try again.
for try in 1 2 3; do
  (cd "$dir/debs" && apt-get download "${packages[@]}" >/dev/null 2>"$dir/download.log") && break
  [ "$try" = 3 ] && { cat "$dir/download.log" >&2; echo "toolchain: download failed" >&2; exit 1; }
  apt-get update -q >/dev/null 2>&1 || sleep 10
done
for deb in "$dir"/debs/*.deb; do
  dpkg-deb --fsys-tarfile "$deb" |
    tar -x -C "$dir" --exclude=./usr/share/doc --exclude=./usr/share/man --exclude=./usr/share/locale
done
rm -rf "$dir/debs"
# The C library's linker script names its parts by their installed place;
# here they are in the unpacked folder.
sed -i "s|/usr/arm-linux-gnueabihf/lib/|$dir/usr/arm-linux-gnueabihf/lib/|g" "$dir/usr/arm-linux-gnueabihf/lib/libc.so"
ln -sfn arm-linux-gnueabihf-gcc-12 "$dir/usr/bin/arm-linux-gnueabihf-gcc"
ln -sfn arm-linux-gnueabihf-g++-12 "$dir/usr/bin/arm-linux-gnueabihf-g++"
echo "${packages[*]}" > "$stamp"
