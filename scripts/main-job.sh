#!/usr/bin/env bash
# The main job: installs what is missing, builds, and speaks one request to a
# fresh virtual appliance (synthesized with espeak-ng, fed as a microphone
# would, recognized with pocketsphinx, answered by the appliance's speech
# service), printing the transcript and where the spoken answer was written.
#   bash scripts/main-job.sh ["WORDS TO SAY"]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build=${MARL_BUILD_DIR:-build}
words=${1:-how much time is left on the timer}
exec "$build/bin/marl-sim" say "$words" --scenario scenarios/spoken-timer.json
