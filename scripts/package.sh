#!/usr/bin/env bash
# Builds the plug-in's RPM (packaging/vc-engine-marl.spec) on this Debian
# machine with rpmbuild, into build-rpm/: the plug-in and its engine data, built
# with CMake against the virtual appliance. Lists the package's files and prints
# the RPM's path on its last line.
#   bash scripts/package.sh
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh >&2
if ! command -v rpmbuild >/dev/null; then
  sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  echo "package: installing rpm" >&2
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q >&2
  "${sudo[@]}" apt-get install -y -q --no-install-recommends rpm >&2
fi

recipe=packaging/vc-engine-marl.spec
name=$(sed -n 's/^Name: *//p' "$recipe")
version=$(sed -n 's/^Version: *//p' "$recipe")
top=$PWD/${MARL_RPM_DIR:-build-rpm}
rm -rf "$top"
mkdir -p "$top"/{SOURCES,SPECS,BUILD,RPMS,SRPMS,BUILDROOT}

# The source tarball: the files of the checkout (tracked and new, not ignored).
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  git ls-files -z --cached --others --exclude-standard |
    tar --null -T - --transform "s,^,$name-$version/," -czf "$top/SOURCES/$name-$version.tar.gz"
else
  tar --exclude='./build*' --transform "s,^\.,$name-$version," -czf "$top/SOURCES/$name-$version.tar.gz" .
fi
cp packaging/"$name".manifest "$top/SOURCES/"
cp "$recipe" "$top/SPECS/"

werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
# Debian's rpm database knows none of the build requirements: --nodeps.
rpmbuild -bb --nodeps \
  --define "_topdir $top" \
  --define "_smp_mflags -j$(nproc)" \
  --define "marl_cmake_options -DMARL_PLATFORM_LIBRARIES=OFF -DMARL_WERROR=${MARL_WERROR:-$werror}" \
  --define "marl_no_manifest 1" \
  --define "debug_package %{nil}" \
  "$top/SPECS/$(basename "$recipe")" > "$top/rpmbuild.log" 2>&1 ||
  { tail -n 40 "$top/rpmbuild.log" >&2; echo "package: rpmbuild failed (log: $top/rpmbuild.log)" >&2; exit 1; }

rpm_file=$(find "$top/RPMS" -name "$name-$version-*.rpm" | head -n1)
[ -n "$rpm_file" ] || { echo "package: no RPM was made" >&2; exit 1; }
echo "package: files of $(basename "$rpm_file"):"
rpm -qlp "$rpm_file" | sed 's/^/  /'
echo "$rpm_file"
