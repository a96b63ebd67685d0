#!/usr/bin/env bash
# The main job: installs what is missing, builds, and replays one spoken
# request on a fresh virtual appliance, printing the transcript.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build=${MARL_BUILD_DIR:-build}
scenario=${1:-scenarios/timer-dialogue.json}
exec "$build/bin/marl-sim" run "$scenario"
