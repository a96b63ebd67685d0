// A session of the logs written as a marl-sim scenario: the case.
#pragma once

#include "Model.h"

#include <json/json.h>

#include <string>
#include <vector>

namespace marlcase
{

struct CaseInput {
    const Session* session = nullptr;
    size_t index = 0;        // the session's number in the logs, from 1
    size_t sessions = 1;     // how many the logs hold
    std::vector<std::string> logs;
    Json::Value device;      // the device description given, null when none
    std::string deviceFile;  // where it came from
    long long nowEpochSeconds = 0;  // the time the case is built
};

// The scenario, with "notes" listing every value inferred or approximated
// and "case" what the comparison needs.
Json::Value writeCase(const CaseInput& in);

// The device description that the logs suggest, without an export of the
// device: the values the plug-in logged, and the platform failures it met.
Json::Value deviceFromLog(const Session& s, std::vector<std::string>& notes);

// Shifts the data store's time stamps of a case to `nowEpochSeconds`, from
// the time its "case" member says they were read. Returns how far.
long long shiftTimeStamps(Json::Value& scenario, long long nowEpochSeconds);

// Milliseconds of a line's clock as seconds since the epoch, local time of
// this machine unless the line gives its zone; false without a date.
bool epochSeconds(const LogLine& line, long long nowEpochSeconds, long long& out);

}  // namespace marlcase
