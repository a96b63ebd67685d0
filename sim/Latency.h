// The latency entry of a turn: when each of its stages happened, in
// milliseconds from the daemon's start call, read from the turn's entries.
//   {"kind":"latency","turn":N,"stages":{"wordsEnd":..,"endOfSpeech":..,"stop":..,
//    "firstPartial":..,"finalText":..,"nlu":..,"driverRequests":[{"request":..,"response":..}],
//    "action":..,"result":.. or "error":..,"speech":..},"endOfSpeechToResultMs":..}
// A stage that did not happen is absent.
#pragma once

#include <json/json.h>

#include <string>
#include <vector>

namespace sim
{

// Null when the turn never started.
Json::Value latencyEntry(const std::vector<Json::Value>& turnEntries, size_t turn);

// One line: the stages in order with their times (the normalized form: their
// names only, since times vary from run to run).
std::string latencyLine(const Json::Value& entry, bool normalized);

}  // namespace sim
