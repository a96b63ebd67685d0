// One daemon session with the plug-in: loads it as the voice-control daemon
// does, drives it from the Ecore main loop and records everything in a
// transcript.
#pragma once

#include "Scenario.h"
#include "Transcript.h"

#include <functional>
#include <string>
#include <vector>

namespace sim
{

struct Options {
    std::string plugin;         // the plug-in's file
    bool fast = false;          // feed audio without waiting 20 ms per chunk
    double turnTimeout = 15.0;  // seconds for a turn to settle after its stop or cancel
    DaemonProfile daemon = DaemonProfile::Gentle;
    bool memory = false;        // a "memory" entry after each turn
    // More turns after the scenario's, one at a time, until it answers false
    // (marl-sim talk); then, after each of them, its entries.
    std::function<bool(Turn&)> nextTurn;
    std::function<void(const std::vector<Json::Value>&)> turnDone;
};

// Exit codes of a run.
enum { kExitOk = 0, kExitFailed = 1, kExitUsage = 2, kExitTimedOut = 3 };

// The probe load alone: dlopen, vcp_get_engine_info, dlclose. Fills
// `identity` ("uuid", "name", "setting", "needsNetwork").
bool probeEngine(const std::string& plugin, Json::Value& identity, Transcript* transcript,
                 std::string& error);

// The whole session. The device directory must be set up (MARL_DEVICE_DIR)
// and the scenario's device state applied. Returns one of the exit codes;
// `error` tells why a session could not run to its end.
int runSession(const Scenario& scenario, const Options& options, Transcript& transcript,
               std::string& error);

}  // namespace sim
