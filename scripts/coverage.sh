#!/usr/bin/env bash
# Builds the project with coverage counters into build-cov/ (or
# $MARL_COV_BUILD_DIR), runs the whole test suite there and reports, with
# gcovr, the line and branch coverage of the plug-in (src/), then of the
# virtual appliance (appliance/) and of the daemon simulator (sim/), each
# apart. Branches that only an exception takes are left out. Run on demand,
# not by CI: on 2 cores from a cold compiler cache about 10 min of build and
# 6 min of tests. A failing test fails the script after the report.
#   bash scripts/coverage.sh             build, test, report
#   bash scripts/coverage.sh --report    report the counters of the last run
# The report of each part is also written as HTML into build-cov/coverage/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${MARL_COV_BUILD_DIR:-build-cov}

report_only=
case ${1:-} in
  --report) report_only=1 ;;
  "") ;;
  *) echo "coverage.sh: unknown option $1" >&2; exit 2 ;;
esac

bash scripts/setup.sh
if ! dpkg-query -W -f='${Status}' gcovr 2>/dev/null | grep -q "install ok installed"; then
  sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q
  "${sudo[@]}" apt-get install -y -q --no-install-recommends gcovr
fi

tests_failed=0
if [ -z "$report_only" ]; then
  # The play thread and the speech stand-in's thread update the counters with
  # the caller's: atomic updates keep their counts whole.
  flags="--coverage -fprofile-update=atomic -O0 -g"
  cmake -S . -B "$build" \
    -DCMAKE_BUILD_TYPE=Debug -DMARL_WERROR=OFF \
    -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++ \
    -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
    -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage >/dev/null
  cmake --build "$build" -j"$(nproc)"
  # Counters of an earlier run would add to this one's.
  find "$build" -name '*.gcda' -delete
  (cd "$build" && ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 600) || tests_failed=1
fi

mkdir -p "$build/coverage"
# One part of the tree: its sources only, the generated ones and the
# third-party headers out.
report() {
  local name=$1 folder=$2
  echo "coverage of $folder/:"
  gcovr --root "$root" --object-directory "$root/$build" --filter "$root/$folder/" \
    --exclude-throw-branches --exclude-unreachable-branches \
    --html-details "$root/$build/coverage/$name.html" --txt "$root/$build/coverage/$name.txt" \
    --print-summary | grep -E '^(lines|branches):' | sed 's/^/  /'
}
report plugin src
report appliance appliance
report sim sim
echo "details: $build/coverage/{plugin,appliance,sim}.html, files in $build/coverage/*.txt"
[ "$tests_failed" = 0 ] || { echo "coverage: a test failed (above)" >&2; exit 1; }
