#!/usr/bin/env bash
# Installs what the project needs to build and run on Debian, through sudo when
# not root. Does nothing when everything is there. The cross build for the
# appliance (scripts/test-appliance-target.sh) installs its own tools; the host
# build needs no 32-bit compiler (Debian's gcc-multilib and the ARM cross
# compiler cannot be installed together).
set -euo pipefail

packages=(
  build-essential cmake pkg-config ccache
  libjson-glib-dev libjsoncpp-dev libsqlite3-dev sqlite3 libssl-dev libefl-all-dev libsndfile1-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libxml2-dev  # reads the engine description as the platform does, in its test
  rpm cpio file  # scripts/package.sh builds the plug-in's RPM with rpmbuild and looks into it
  libpocketsphinx-dev libsphinxbase-dev pocketsphinx-en-us libespeak-ng-dev espeak-ng-data libsamplerate0-dev
  libspeexdsp-dev
  chromium  # renders the session page in its test, headless
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "setup: installing ${missing[*]}"
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "setup: need root or sudo to install ${missing[*]}" >&2; exit 1; }
  sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -q
"${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
