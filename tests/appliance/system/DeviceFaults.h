// Faults of the device directory that every platform library must survive.
#pragma once

#include "TestDevice.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace marltest {

// The device directory is gone, as if MARL_DEVICE_DIR named nothing.
inline void removeDevice(const TestDevice& dev)
{
    std::filesystem::remove_all(dev.dir());
}

// device.json holds text that is not JSON.
inline void breakDescription(const TestDevice& dev)
{
    std::ofstream(dev.path("device.json"), std::ios::trunc) << "{ \"wifi\": not json";
}

}  // namespace marltest
