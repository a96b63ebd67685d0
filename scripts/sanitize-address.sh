#!/usr/bin/env bash
# Builds the project with AddressSanitizer and UndefinedBehaviorSanitizer into
# build-asan/ (or $MARL_ASAN_BUILD_DIR) and runs the tests there. Any report
# (a memory error, undefined behaviour, a leak not in
# scripts/sanitizers/lsan.supp) fails its test, and so the script.
# CI runs --plugin: its tests take about 4 min on 2 cores.
#   bash scripts/sanitize-address.sh              every test
#   bash scripts/sanitize-address.sh --plugin     the plug-in's tests, the
#                                                 scenario replays and the map (CI)
#   bash scripts/sanitize-address.sh ... -R REGEX only the tests that match
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${MARL_ASAN_BUILD_DIR:-build-asan}
targets=(all)
select=()
if [ "${1:-}" = --plugin ]; then
  shift
  # vconftool: the commerce service app's handler answers with it.
  targets=(marl-engine marl-sim vconftool fsmap appliance_fsmap_test appliance_fsmap_at_exit_test
           sim_scenario_replay_test plugin_link_test)
  for source in tests/plugin/*Test.cpp; do
    name=$(basename "$source" .cpp)
    [ "$name" = PluginLinkTest ] || targets+=("plugin_$name")
  done
  # Tests of targets left unbuilt are listed as NAME_NOT_BUILT; the example
  # device is applied by marl-device, and the environment test without the map
  # runs appliance_core_test: neither is built here.
  select=(-E '_NOT_BUILT$|^DeviceDescription\.TheExampleDeviceApplies$|^EnvironmentValueTest\.WithoutTheMap$')
fi
bash scripts/setup.sh

# Warnings stay warnings here: the instrumentation misleads the compiler's
# flow analysis (false "may be used uninitialized" in the standard library);
# the plain build is the one held to -Werror.
flags="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g -O1 -Wno-maybe-uninitialized"
# The file-system map is preloaded ahead of the sanitizer's runtime, which the
# runtime would otherwise refuse; the map only forwards to the next definition.
# Set before the build too: it runs the tests to list them.
# Full stacks at each allocation, so that a suppression can name the plug-in's
# function under an uninstrumented library (SQLite).
# intercept_tls_get_addr=0: this runtime's __tls_get_addr interceptor takes a
# dynamic TLS block that malloc happened to place 16 bytes into a page for one
# with a pre-2.25 glibc header, and reads a length and address from before it;
# the leak check's tracer then dies on that range ("Tracer caught signal 11"),
# depending only on where the heap puts the block. Without the interceptor the
# blocks are still found through the thread's own pointers to them.
export ASAN_OPTIONS="verify_asan_link_order=0:detect_leaks=1:halt_on_error=1:detect_stack_use_after_return=0:fast_unwind_on_malloc=0:intercept_tls_get_addr=0"
# Ecore's system modules talk to a system bus that a host build has not got,
# and keep the error texts of those attempts: a leak of theirs at each start.
export ECORE_NO_SYSTEM_MODULES=1
export LSAN_OPTIONS="suppressions=$root/scripts/sanitizers/lsan.supp:print_suppressions=0"
# marl-sim keeps the session's plug-in mapped after its dlclose, so that a
# report at exit names the plug-in's functions (suppressions match by name).
# UnloadWhileSpeaking.* takes it away: there the plug-in must really go.
export MARL_SIM_KEEP_PLUGIN_MAPPED=1
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
cmake -S . -B "$build" \
  -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++ \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" \
  -DCMAKE_SHARED_LINKER_FLAGS="-fsanitize=address,undefined" \
  -DMARL_WERROR=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"
[ "${MARL_SANITIZE_BUILD_ONLY:-}" = 1 ] && exit 0

cd "$build"
if [ $# -gt 0 ]; then
  ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 600 "${select[@]}" "$@"
  exit
fi
# The replays of real speech run the recognizer (pocketsphinx), whose many
# allocations the full unwinder makes ten times slower: its pauses then show in
# the transcript. They run with the fast unwinder, which only shortens stacks
# under uninstrumented libraries (a leak there could fail to meet its
# suppression, never be hidden by one).
spoken='^Scenarios/.*/Spoken'
exclude=${select[1]:-}
ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 600 -E "${exclude:+$exclude|}$spoken"
ASAN_OPTIONS=${ASAN_OPTIONS/fast_unwind_on_malloc=0/fast_unwind_on_malloc=1} \
  ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 600 -R "$spoken"
