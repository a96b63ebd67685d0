// The plug-in reads the device's clock: its imports of time() and
// std::chrono::system_clock::now() are pointed at the virtual appliance's
// clock (appliance/apps/include/apps/DeviceClock.h), so that a pinned clock
// is what it sees. Nothing else in the process is touched: the simulator's
// own times stay the host's.
#pragma once

#include <string>
#include <vector>

namespace sim
{

// Rewrites the plug-in's relocation slots of those functions (`handle` from
// dlopen). `names` receives the functions redirected; false, with the
// reason, when a slot cannot be written.
bool pointPluginAtDeviceClock(void* handle, std::vector<std::string>& names, std::string& error);

}  // namespace sim
