// Helpers for the app framework's tests.
#pragma once

#include "TestDevice.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace appfwtest {

// The text of a string that the platform handed out, released afterwards.
inline std::string take(char* text)
{
    std::string copy = text ? text : "<null>";
    std::free(text);
    return copy;
}

inline void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::trunc) << text;
}

inline std::string readText(const std::string& path)
{
    std::string text;
    vapp::readFile(path, text);
    return text;
}

// Waits up to ten seconds for a file to appear.
inline bool waitForFile(const std::string& path)
{
    for (int i = 0; i < 200; ++i) {
        if (std::ifstream(path))
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

inline std::vector<Json::Value> journalEvents(const std::string& event)
{
    std::vector<Json::Value> found;
    for (const auto& entry : vapp::readJournal())
        if (entry["event"].asString() == event)
            found.push_back(entry);
    return found;
}

inline vapp::AppsState apps()
{
    vapp::AppsState state;
    std::string error;
    EXPECT_TRUE(vapp::loadApps(state, &error)) << error;
    return state;
}

}  // namespace appfwtest
