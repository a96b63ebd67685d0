// marl-sim talk: a session whose turns are the lines of standard input,
// spoken one after another on one device, with what came of each told as
// it ends.
#pragma once

#include "Scenario.h"

#include <json/json.h>

#include <string>
#include <vector>

namespace sim
{

// Reads the next line of standard input and makes it a spoken turn; false
// at an empty line or at the end of the input. A line that cannot be said
// is told on stderr and the next one is read.
bool readTalkTurn(const std::string& voice, int wordsPerMinute, Turn& turn);

// What a finished turn came to, from its transcript entries: what was
// heard, the answer's text, where its audio went, what the apps did.
std::string talkSummary(const std::vector<Json::Value>& entries);

}  // namespace sim
