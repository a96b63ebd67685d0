#!/usr/bin/env bash
# The main job: installs what is missing, builds, and speaks one request to a
# fresh virtual appliance (synthesized with espeak-ng, fed as a microphone
# would, recognized with pocketsphinx, answered by the appliance's speech
# service) as the platform's voice-control daemon drives the plug-in, printing
# the transcript, the turn's latency, where the spoken answer was written and
# the session's page (build/main-job.html).
#   bash scripts/main-job.sh ["WORDS TO SAY"]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build=${MARL_BUILD_DIR:-build}
words=${1:-how much time is left on the timer}
page=$(realpath -m "$build/main-job.html")
status=0
"$build/bin/marl-sim" say "$words" --scenario scenarios/spoken-timer.json --daemon platform \
  --html "$page" || status=$?
[ -f "$page" ] && echo "session page: $page"
exit "$status"
