// The checked scenarios (scenarios/NAME.json), for tests with one case each.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

namespace marltest {

// The names of the scenarios in `dir`, sorted.
inline std::vector<std::string> scenarioNames(const std::string& dir)
{
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(dir, ec))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

// "timer-dialogue" as a test name: "TimerDialogue".
inline std::string scenarioTestName(const ::testing::TestParamInfo<std::string>& info)
{
    std::string name;
    bool upper = true;
    for (char c : info.param) {
        if (!std::isalnum(static_cast<unsigned char>(c))) {
            upper = true;
            continue;
        }
        name += upper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        upper = false;
    }
    return name;
}

}  // namespace marltest
