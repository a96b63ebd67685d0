#!/usr/bin/env bash
# The plug-in on the appliance's target: 32-bit ARM, hard float. Installs
# qemu-user, debootstrap and the ARM binutils when missing, unpacks Debian's
# cross compiler (build-armhf/toolchain) and makes the armhf sysroot
# (build-armhf/sysroot) once, cross-builds what the emulated run needs (the
# plug-in, its tests, the platform tests, the virtual appliance and marl-sim)
# into build-armhf/, and runs under qemu-user the plug-in's tests, the
# platform tests (the tables' 32-bit layout among them) and every checked
# scenario replay (each checks that marl-sim saw tables of 20 and 96 bytes).
# Nothing is left out: each test program runs as one ctest test, which keeps
# the emulated run within CI's budget. Each phase's time is printed.
#   bash scripts/test-appliance-target.sh [--prepare]   (--prepare: the tools, toolchain and sysroot only)
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath -m "${MARL_ARMHF_BUILD_DIR:-build-armhf}")
sysroot=$(realpath -m "${MARL_SYSROOT:-$build/sysroot}")

# Each phase's time goes to the log: CI keeps this step within its budget.
SECONDS=0
phase_start=0
phase() {
  echo "appliance target: $1 took $((SECONDS - phase_start)) s"
  phase_start=$SECONDS
}

# The cross assembler and linker are installed too (they remove nothing): the
# unpacked copy that the compiler runs loads their private libraries
# (libbfd-*-armhf.so) from the system's library folder only.
packages=(cmake pkg-config qemu-user-static debootstrap binutils-arm-linux-gnueabihf)
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
sudo=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "appliance target: need root or sudo" >&2; exit 1; }
  sudo=(sudo)
fi
if [ ${#missing[@]} -gt 0 ]; then
  echo "appliance target: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q
  "${sudo[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

# Unpacked rather than installed: installing it would remove gcc-multilib.
bash cmake/make-armhf-toolchain.sh "$build/toolchain"
phase tools
"${sudo[@]}" bash cmake/make-armhf-sysroot.sh "$sysroot"
# Every emulated program loads the readdir() that works under qemu-user on a
# 64-bit host (cmake/emulation/readdir32.c).
mend=usr/lib/arm-linux-gnueabihf/libmarl-readdir32.so
"$build/toolchain/usr/bin/arm-linux-gnueabihf-gcc" --sysroot="$sysroot" -O2 -Wall -Wextra -Werror -shared -fPIC \
  cmake/emulation/readdir32.c -o "$build/libmarl-readdir32.so"
"${sudo[@]}" install -m 644 "$build/libmarl-readdir32.so" "$sysroot/$mend"
echo "/$mend" | "${sudo[@]}" tee "$sysroot/etc/ld.so.preload" >/dev/null
phase sysroot
# scripts/package.sh --target armhf needs the tools, the toolchain and the sysroot only.
[ "${1:-}" = --prepare ] && exit 0

werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
cmake -S . -B "$build" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/armhf-toolchain.cmake" \
  -DMARL_SYSROOT="$sysroot" -DMARL_CROSS_BIN="$build/toolchain/usr/bin" -DMARL_WERROR="${MARL_WERROR:-$werror}" >/dev/null
# The emulated run needs the plug-in's and platform's tests and marl-sim;
# MARL_ARMHF_ALL=1 builds the whole project (the virtual appliance's and
# marl-sim's own tests and the benchmarks too).
if [ "${MARL_ARMHF_ALL:-0}" = 1 ]; then
  cmake --build "$build" -j"$(nproc)"
else
  cmake --build "$build" -j"$(nproc)" --target marl-target-tests
fi

phase build

cd "$build"
status=0
ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 300 -L '^(plugin|platform|target)$' || status=$?
phase tests
echo "appliance target: $SECONDS s in all"
exit $status
