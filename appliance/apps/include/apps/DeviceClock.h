// The device's clock, as the virtual apps read it and as marl-sim shows it
// to the plug-in. It is the host's clock until a process pins it: from then
// on it stands at the instant given and moves only when told to, so that a
// session replays with the same times (a timer's seconds left) whenever and
// however fast it runs.
#pragma once

#include <cstdint>
#include <string>

namespace apps {

// Nanoseconds since the epoch.
int64_t clockNowNs();
// Whole seconds since the epoch, as time() gives them.
int64_t clockNowSeconds();

void pinClock(int64_t epochNs);
bool clockPinned();
// Moves a pinned clock forward; does nothing to the host's clock.
void advanceClock(int64_t ns);

// "2025-03-03T08:00:00Z" (UTC) or whole epoch seconds ("1740988800") to
// epoch seconds; false, with the reason, for anything else.
bool parseClockTime(const std::string& text, int64_t& epochSeconds, std::string& error);
// Epoch seconds as "2025-03-03T08:00:00Z".
std::string clockTimeText(int64_t epochSeconds);

}  // namespace apps
