#!/usr/bin/env bash
# Builds the project with ThreadSanitizer into build-tsan/ (or
# $MARL_TSAN_BUILD_DIR) and runs the tests where the plug-in's threads meet:
# every scenario replay through marl-sim under both daemons, the server speech
# tests (the play thread against the main loop) and the commerce tests (the
# wait on the service app's answer). A report not in scripts/sanitizers/tsan.supp fails its test,
# and so the script. On 2 cores from a cold compiler cache: about 6 min of
# build and 2 min of tests.
#   bash scripts/sanitize-thread.sh             those tests
#   bash scripts/sanitize-thread.sh -R REGEX    the tests that match
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=${MARL_TSAN_BUILD_DIR:-build-tsan}
bash scripts/setup.sh

# Warnings stay warnings here: the instrumentation misleads the compiler's
# flow analysis; the plain build is the one held to -Werror.
flags="-fsanitize=thread -fno-omit-frame-pointer -g -O1 -Wno-maybe-uninitialized -Wno-tsan"
# Set before the build too: it runs the tests to list them.
# marl-sim keeps the session's plug-in mapped after its dlclose, so that a
# report at exit names the plug-in's functions (suppressions match by name).
export MARL_SIM_KEEP_PLUGIN_MAPPED=1
# Ecore's system modules talk to a system bus that a host build has not got.
export ECORE_NO_SYSTEM_MODULES=1
export TSAN_OPTIONS="halt_on_error=1:second_deadlock_stack=1:suppressions=$root/scripts/sanitizers/tsan.supp"
cmake -S . -B "$build" \
  -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++ \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=thread" \
  -DCMAKE_SHARED_LINKER_FLAGS="-fsanitize=thread" \
  -DMARL_WERROR=OFF >/dev/null
# vconftool: the commerce service app's handler answers with it.
cmake --build "$build" -j"$(nproc)" --target marl-engine marl-sim fsmap vconftool \
  sim_scenario_replay_test plugin_ServerTtsTest plugin_CommerceRepliesTest
[ "${MARL_SANITIZE_BUILD_ONLY:-}" = 1 ] && exit 0

cd "$build"
[ $# -eq 0 ] && set -- -R '^(Scenarios/(ScenarioReplay|PlatformReplay)\.|ServerTts|CommerceWait\.|CommerceSearch\.)'
ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 600 -E '_NOT_BUILT$' "$@"
