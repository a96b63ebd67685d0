#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
cd "${MARL_BUILD_DIR:-build}"
ctest --no-tests=error --output-on-failure -j"$(nproc)" --timeout 300
