// marl-case compare: the case played again and set beside the field's log.
#pragma once

#include <string>
#include <vector>

namespace marlcase
{

// Replays `caseFile` with marl-sim and compares the replay with the logs,
// turn by turn. Prints the first difference; returns 0 when the same, 1
// when different, 2 when the case or the logs cannot be used.
int compare(const std::string& caseFile, const std::vector<std::string>& logs, long session, bool lenient,
            const std::vector<std::string>& simArgs);

}  // namespace marlcase
