// Helpers shared by the app framework's host libraries.
#pragma once

#include "vappliance/Device.h"

#include <sys/stat.h>

#include <cstdio>
#include <mutex>
#include <string>

namespace appfw {

// Prints a problem with the device on stderr, once for each distinct message.
inline void warnOnce(const std::string& message)
{
    static std::mutex mutex;
    static std::string* last = new std::string();  // kept for warnings at exit
    std::lock_guard<std::mutex> lock(mutex);
    if (message != *last) {
        std::fprintf(stderr, "appfw: %s\n", message.c_str());
        *last = message;
    }
}

// True when the device directory exists and its device.json, if there is
// one, can be read. Otherwise says why on stderr and answers false.
inline bool deviceUsable()
{
    if (!vapp::deviceExists()) {
        warnOnce("no device directory " + vapp::deviceDir());
        return false;
    }
    std::string error;
    struct stat st;
    if (!vapp::description(&error) &&
        ::stat(vapp::devicePath("device.json").c_str(), &st) == 0) {
        warnOnce(error);
        return false;
    }
    return true;
}

// The device's apps.json, or false (said on stderr) when it cannot be read.
inline bool loadApps(vapp::AppsState& state)
{
    std::string error;
    if (!vapp::loadApps(state, &error)) {
        warnOnce(error);
        return false;
    }
    return true;
}

}  // namespace appfw
