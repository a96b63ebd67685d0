#!/usr/bin/env bash
# Installs what the benchmarks need beyond the build (valgrind, whose callgrind
# counts the hot-path benchmark's instructions), through sudo when not root,
# then builds the project. Does nothing that is already done.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
if ! dpkg-query -W -f='${Status}' valgrind 2>/dev/null | grep -q "install ok installed"; then
  echo "setup-bench: installing valgrind"
  sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup-bench: need root or sudo to install valgrind" >&2; exit 1; }
    sudo=(sudo)
  fi
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -q
  "${sudo[@]}" apt-get install -y -q --no-install-recommends valgrind
fi
bash scripts/build.sh
