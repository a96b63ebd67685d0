// The field's session and the replay's, turn by turn: the plug-in's calls
// back to the daemon, its driver responses (as JSON) and its log lines
// without what differs from run to run (times, processes, pointers, folders).
#pragma once

#include "Model.h"

#include <json/json.h>

#include <string>

namespace marlcase
{

struct Verdict {
    bool different = false;
    std::string report;
};

Verdict compareSessions(const Session& field, const Session& replay);

// A log line as compared: "Source.cpp: function > text" with pointers and
// folders left out; no line number.
std::string normalizedLine(const LogLine& line);

}  // namespace marlcase
