// The stages of a turn: when each happened, in milliseconds from the
// daemon's start call, read from the turn's entries into its latency entry
//   {"kind":"latency","turn":N,"startT":..,"stages":{"wordsEnd":..,"endOfSpeech":..,"stop":..,
//    "firstPartial":..,"finalText":..,"nlu":..,"driverRequests":[{"request":..,"response":..}],
//    "action":..,"result":.. or "error":..,"speech":..},"endOfSpeechToResultMs":..}
// ("startT": the start call's "t"). A stage that did not happen is absent.
// The latency line, the session page and the trace all read the stages from
// that entry, through turnStages.
#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace sim
{

// Null when the turn never started.
Json::Value latencyEntry(const std::vector<Json::Value>& turnEntries, size_t turn);

// One stage of a latency entry: its key in "stages", its name in the latency
// line and on the session page, and its time. A driver request is one stage
// per request ("driverRequests", numbered from 1), its response's time in
// `endMs` (-1 when none came).
struct TurnStage {
    std::string key;
    std::string label;
    std::string title;
    long long ms = 0;
    long long endMs = -1;
    int number = 0;
};

// The stages of a latency entry in the order a turn goes through them.
std::vector<TurnStage> turnStages(const Json::Value& latency);

// One line: the stages in order with their times (the normalized form: their
// names only, since times vary from run to run).
std::string latencyLine(const Json::Value& entry, bool normalized);

}  // namespace sim
