#!/usr/bin/env bash
# Builds the plug-in's RPM (packaging/vc-engine-marl.spec) with Debian's
# rpmbuild: the plug-in, its engine description, its data folder and its
# license, built with CMake against the virtual appliance's stand-ins of the
# platform's libraries (they carry the platform's file names and sonames).
#   bash scripts/package.sh                  x86-64, into build-rpm/, for quick checks here
#   bash scripts/package.sh --target armhf   armv7hl, into build-rpm-armhf/, for the appliance:
#       cross-built with the toolchain and sysroot of scripts/test-appliance-target.sh
# The engine's data folder is filled from MARL_ENGINE_DATA=FILE.tar.gz, the
# speech library's American English resources as its vendor delivers them;
# without it the folder is packaged empty, and the script says so. Checks the
# package's file list, the class and machine of its ELF files and that its
# requirements name the platform's sonames, lists them, and prints the RPM's
# path on its last line.
set -euo pipefail
engine_data=
if [ -n "${MARL_ENGINE_DATA:-}" ]; then
  engine_data=$(realpath -e "$MARL_ENGINE_DATA" 2>/dev/null) ||
    { echo "package: MARL_ENGINE_DATA names no file: $MARL_ENGINE_DATA" >&2; exit 2; }
fi
cd "$(dirname "$0")/.."
target=host
case "${1:-}" in
  "") ;;
  --target)
    [ "${2:-}" = armhf ] || { echo "package: the only target is armhf" >&2; exit 2; }
    target=armhf ;;
  *) echo "usage: bash scripts/package.sh [--target armhf]" >&2; exit 2 ;;
esac
SECONDS=0
bash scripts/setup.sh >&2

recipe=packaging/vc-engine-marl.spec
name=$(sed -n 's/^Name: *//p' "$recipe")
version=$(sed -n 's/^project(marl-engine VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || { echo "package: no project(VERSION) in CMakeLists.txt" >&2; exit 1; }
suffix=
[ "$target" = armhf ] && suffix=-armhf
top=$PWD/${MARL_RPM_DIR:-build-rpm$suffix}
rm -rf "$top"
mkdir -p "$top"/{SOURCES,SPECS,BUILD,RPMS,SRPMS,BUILDROOT}

# Archives that depend on their content only: sorted names, one owner, the
# last commit's time, gzip without a name or time stamp.
stamp=@$(git log -1 --format=%ct 2>/dev/null || echo 0)
archive() {  # archive OUT PREFIX DIR < NUL-separated names under DIR
  tar -c -f - -C "$3" --sort=name --mtime="$stamp" --owner=0 --group=0 --numeric-owner \
    --mode=u+rw,go+r,go-w --format=gnu --no-recursion --transform "s,^,$2," --null -T - | gzip -n -9 > "$1"
}
# The source archive: the files that git tracks, as they are in the checkout.
git ls-files -z --cached | while IFS= read -r -d '' file; do
  [ -e "$file" ] && printf '%s\0' "$file"
done | archive "$top/SOURCES/$name-$version.tar.gz" "$name-$version/" .
data=$top/SOURCES/$name-data-en_US.tar.gz
if [ -n "$engine_data" ]; then
  cp "$engine_data" "$data"
else
  echo "package: MARL_ENGINE_DATA is not set: the engine's data folder (the speech library's" \
    "American English resources) is packaged EMPTY (Source1 of $recipe)" >&2
  printf '' | archive "$data" "" .
fi
cp packaging/"$name".manifest "$top/SOURCES/"
cp "$recipe" "$top/SPECS/"

werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
cmake_options="-DMARL_PLATFORM_LIBRARIES=OFF -DMARL_WERROR=${MARL_WERROR:-$werror}"
rpm_options=()
if [ "$target" = armhf ]; then
  # The emulated test run's toolchain and sysroot, made once and kept.
  bash scripts/test-appliance-target.sh --prepare >&2
  armhf=$(realpath -m "${MARL_ARMHF_BUILD_DIR:-build-armhf}")
  cross=$armhf/toolchain/usr/bin
  cmake_options+=" -DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/armhf-toolchain.cmake"
  cmake_options+=" -DMARL_SYSROOT=$(realpath -m "${MARL_SYSROOT:-$armhf/sysroot}") -DMARL_CROSS_BIN=$cross"
  rpm_options=(--target armv7hl-linux
    --define "__strip $cross/arm-linux-gnueabihf-strip" --define "__objdump $cross/arm-linux-gnueabihf-objdump")
fi
echo "package: sources ready after $SECONDS s" >&2

# Debian's rpm database knows none of the build requirements: --nodeps. The
# platform's path variable is given as the platform's rpm macros give it.
rpmbuild -bb --nodeps "${rpm_options[@]}" \
  --define "_topdir $top" \
  --define "_smp_mflags -j$(nproc)" \
  --define "marl_version $version" \
  --define "TZ_SYS_RO_SHARE /usr/share" \
  --define "marl_cmake_options $cmake_options" \
  --define "marl_no_manifest 1" \
  --define "debug_package %{nil}" \
  --define "_build_id_links none" \
  "$top/SPECS/$(basename "$recipe")" > "$top/rpmbuild.log" 2>&1 ||
  { tail -n 40 "$top/rpmbuild.log" >&2; echo "package: rpmbuild failed (log: $top/rpmbuild.log)" >&2; exit 1; }
echo "package: rpmbuild done after $SECONDS s" >&2

rpm_file=$(find "$top/RPMS" -name "$name-$version-*.rpm" | head -n1)
[ -n "$rpm_file" ] || { echo "package: no RPM was made" >&2; exit 1; }
# Here-strings, not pipes, feed grep -q: with pipefail, a grep that stops at
# its first match could fail the writer of its pipe.
failed=0
fail() { echo "package: $*" >&2; failed=1; }

# Exactly the plug-in, its description, its data folder (with the folders
# that lead to it) and the license.
vc=/usr/share/voice/vc/1.0
expected="$vc/engine
$vc/engine-data
$vc/engine-data/marl
$vc/engine-data/marl/shared
$vc/engine-data/marl/shared/res
$vc/engine-data/marl/shared/res/en_US
$vc/engine-info
$vc/engine-info/$name.xml
$vc/engine/libvc-engine-marl.so
/usr/share/license/$name"
files=$(rpm -qlp "$rpm_file")
listed=$(printf '%s\n' "$files" | grep -v "^$vc/engine-data/marl/shared/res/en_US/" | sort)
[ "$listed" = "$(printf '%s\n' "$expected" | sort)" ] ||
  fail "the file list is not the plug-in, its description, its data folder and its license:
$(diff <(printf '%s\n' "$expected" | sort) <(printf '%s\n' "$listed") || true)"
grep -q "^$vc/engine-data/marl/shared/res/en_US/" <<< "$files" ||
  echo "package: the engine's data folder in the package is EMPTY (set MARL_ENGINE_DATA)" >&2

# The ELF files are built for the target, and need the platform's sonames.
unpacked=$top/unpacked
mkdir -p "$unpacked"
(cd "$unpacked" && rpm2cpio "$rpm_file" | cpio -idm --quiet)
machine="ELF 64-bit LSB shared object, x86-64"
[ "$target" = armhf ] && machine="ELF 32-bit LSB shared object, ARM, EABI5"
while IFS= read -r -d '' elf; do
  description=$(file -b "$elf")
  [[ $description == "$machine"* ]] || fail "${elf#"$unpacked"} is not $machine: $description"
done < <(find "$unpacked" -type f -exec sh -c 'head -c4 "$1" | grep -q ELF' _ {} \; -print0)
requires=$(rpm -qp --requires "$rpm_file")
mark="()(64bit)"
[ "$target" = armhf ] && mark=
for soname in $(sed -n 's/^ *{"\(lib[^"]*\)".*/\1/p' tests/packaging/PlatformLibraries.h); do
  grep -qxF "$soname$mark" <<< "$requires" || fail "no requirement names $soname$mark"
done
if [ "$target" = armhf ]; then
  if grep -qF '(64bit)' <<< "$requires"; then fail "a requirement names a 64-bit library"; fi
fi
if grep -q -e '^/' -e "$PWD" <<< "$requires"; then fail "a requirement names a path of this machine"; fi

echo "package: files of $(basename "$rpm_file"):"
printf '%s\n' "$files" | sed 's/^/  /'
echo "package: its requirements:"
printf '%s\n' "$requires" | sed 's/^/  /'
echo "package: $SECONDS s in all"
[ "$failed" = 0 ] || exit 1
echo "$rpm_file"
