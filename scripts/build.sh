#!/usr/bin/env bash
# Configures and builds the project into build/ (or $MARL_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${MARL_BUILD_DIR:-build}
werror=OFF
[ "${CI:-}" = "true" ] && werror=ON
cmake -S . -B "$build" -DMARL_WERROR="${MARL_WERROR:-$werror}" >/dev/null
cmake --build "$build" -j"$(nproc)"
