#!/usr/bin/env bash
# Builds the fuzzers of fuzz/ with clang, libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer into build-fuzz/ (or $MARL_FUZZ_BUILD_DIR) and runs
# each from its seed corpus (fuzz/corpus/<door>/) for a while. A crash, a leak
# or a time-out fails the script; its input is kept in build-fuzz/findings/.
#   bash scripts/fuzz.sh                 25 seconds each (CI)
#   bash scripts/fuzz.sh --long          until 10 million runs each
#   bash scripts/fuzz.sh --time N [NAME...]   N seconds each, only the named fuzzers
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${MARL_FUZZ_BUILD_DIR:-build-fuzz}

seconds=25
runs=
names=()
while [ $# -gt 0 ]; do
  case $1 in
    --long) seconds=0; runs=10000000 ;;
    --time) seconds=$2; shift ;;
    -*) echo "fuzz.sh: unknown option $1" >&2; exit 2 ;;
    *) names+=("$1") ;;
  esac
  shift
done
# Every fuzzer has its seed corpus, fuzz/corpus/<name>/, and is fuzz-<name>.
if [ ${#names[@]} -eq 0 ]; then
  for dir in fuzz/corpus/*/; do
    names+=("$(basename "$dir")")
  done
fi

bash scripts/setup.sh
# libFuzzer and the sanitizers' runtimes come with Debian's clang.
need=()
for package in clang libclang-rt-14-dev; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || need+=("$package")
done
if [ ${#need[@]} -gt 0 ]; then
  sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q
  "${sudo[@]}" apt-get install -y -q --no-install-recommends "${need[@]}"
fi

# The appliance's libraries are shared objects linked with --no-undefined, so
# they take the sanitizers' runtime as a shared library too.
runtime=$(clang -print-resource-dir)/lib/linux
flags="-fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1 -shared-libasan"
links="-fsanitize=address,undefined -shared-libasan -Wl,-rpath,$runtime"
cmake -S . -B "$build" \
  -DCMAKE_BUILD_TYPE=Debug -DMARL_FUZZ=ON -DMARL_WERROR=OFF \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_EXE_LINKER_FLAGS="$links" -DCMAKE_SHARED_LINKER_FLAGS="$links" >/dev/null
cmake --build "$build" -j"$(nproc)" --target fuzzers
[ "${MARL_FUZZ_BUILD_ONLY:-}" = 1 ] && exit 0

# The sanitizers' runtime is preloaded first, then the file-system map.
export LD_PRELOAD="$runtime/libclang_rt.asan-x86_64.so $root/$build/lib/libvappliance-fsmap.so"
# The fast unwinder at each allocation (the full one made every input seven
# times slower): its stacks end at the first library built without frame
# pointers (SQLite, GLib), and no allocation kept on purpose is made under one
# here (the fuzz device's recipe database opens).
# A quarantine of 16 MB of freed blocks rather than 256: libFuzzer checks for
# leaks after each input that allocated more than it freed (caches that grow),
# and each check walked the whole quarantine. An input frees far less than
# 16 MB, so a use after free within it and the next inputs is still caught.
# intercept_tls_get_addr=0: see scripts/sanitize-address.sh.
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:fast_unwind_on_malloc=1:quarantine_size_mb=16:intercept_tls_get_addr=0"
export LSAN_OPTIONS="suppressions=$root/scripts/sanitizers/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
# The fuzzers' devices (their data store and files) live in memory when the
# machine has a memory file system, in a folder of this build's own.
default_tmp=$root/$build/fuzz-tmp
[ -d /dev/shm ] && [ -w /dev/shm ] &&
  default_tmp=/dev/shm/marl-fuzz-$(printf '%s' "$root/$build" | sha256sum | cut -c1-12)
export MARL_FUZZ_TMP=${MARL_FUZZ_TMP:-$default_tmp}
# Devices left by a run of this build that was killed go first.
rm -rf "$MARL_FUZZ_TMP"/fuzz-device-*
mkdir -p "$build/findings" "$MARL_FUZZ_TMP"

failed=()
for name in "${names[@]}"; do
  [ -d "fuzz/corpus/$name" ] || { echo "fuzz.sh: no fuzzer $name" >&2; exit 2; }
  work=$build/corpus/$name
  mkdir -p "$work"
  log=$build/findings/$name.log
  limit=(-max_total_time="$seconds")
  [ -n "$runs" ] && limit=(-runs="$runs")
  echo "fuzz: $name"
  if "$build/bin/fuzz-$name" "$work" "fuzz/corpus/$name" "${limit[@]}" \
      -timeout=10 -rss_limit_mb=2048 -max_len=8192 -print_final_stats=1 \
      -artifact_prefix="$build/findings/$name-" >"$log" 2>&1; then
    grep -E '^stat::number_of_executed_units|^stat::peak_rss_mb' "$log" | sed "s/^/  /"
  else
    echo "  FAILED: see $log" >&2
    grep -E 'ERROR: |SUMMARY: |Test unit written' "$log" | head -5 | sed "s/^/  /" >&2
    failed+=("$name")
  fi
done
rmdir "$MARL_FUZZ_TMP" 2>/dev/null || true
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz: all ${#names[@]} fuzzers ran clean"
