// The device as far as the plug-in's lines tell it, for a case built without
// an export of the device.
#include "CaseWriter.h"

#include <cstdlib>
#include <map>

namespace marlcase
{

namespace
{

// A platform call that failed, by the plug-in's function that logged it.
struct Failure {
    const char* function;  // the plug-in's function in the line
    const char* says;      // what its message begins with, after any "[ERROR] "
    const char* platform;  // the platform function to fail in the case
};

const Failure kFailures[] = {
    {"getBatteryCurrentPercentage", "Fail to get battery percent", "device_battery_get_percent"},
    {"isAirplaneModeOn", "Fail to get system flight mode", "system_settings_get_value_bool"},
    {"getMuteOnOffState", "Fail to get system silent mode", "system_settings_get_value_bool"},
    {"getSoundOnOffState", "Fail to get system silent mode", "system_settings_get_value_bool"},
    {"getWifiOnOffState", "Fail to wifi init", "wifi_initialize"},
    {"getWifiConnectedAPName", "Fail to wifi init", "wifi_initialize"},
    {"readPlatformVersion", "Fail to get system info platform version", "system_info_get_platform_string"},
    {"readPlatformName", "Fail to get system info platform name", "system_info_get_platform_string"},
    {"readModelName", "Fail to get system info model name", "system_info_get_platform_string"},
    {"getPhoneScreenHeight", "Fail to get system screen height", "system_info_get_platform_int"},
    {"getPhoneScreenWidth", "Fail to get system screen width", "system_info_get_platform_int"},
    {"getVolumeLevel", "Fail to get volume", "sound_manager_get_volume"},
};

// Codes a device without the value answers anyway: a missing key, an
// unsupported feature.
bool ordinary(int code)
{
    return code == -22 || code == -1073741822;
}

// The number in the last "(...)" of a message.
bool lastCode(const std::string& text, int& code)
{
    const size_t open = text.rfind('(');
    const size_t close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open + 2)
        return false;
    char* end = nullptr;
    const std::string number = text.substr(open + 1, close - open - 1);
    const long v = std::strtol(number.c_str(), &end, 10);
    if (!end || *end)
        return false;
    code = static_cast<int>(v);
    return true;
}

}  // namespace

Json::Value deviceFromLog(const Session& s, std::vector<std::string>& notes)
{
    Json::Value device(Json::objectValue);
    std::string region, country, regionDefaulted;
    std::map<std::string, int> errors;
    std::string value;
    for (const LogLine* line : s.lines) {
        const LogLine& l = *line;
        if (l.function == "IsTemperatureTypeFahrenheit" && between(l.text, "Country (", ")", value) && country.empty())
            country = value;
        else if (l.function == "makeSearchItemReply" && between(l.text, "region[", "]", value) && region.empty())
            region = value.empty() ? "-" : value;
        else if (l.function == "makeRecoState" && between(l.text, "region[", "]", value) && regionDefaulted.empty())
            regionDefaulted = value;
        for (const Failure& f : kFailures) {
            if (l.function != f.function)
                continue;
            std::string text = l.text;
            if (text.rfind("[ERROR] ", 0) == 0)
                text = text.substr(8);
            int code;
            if (text.rfind(f.says, 0) == 0 && lastCode(text, code) && !ordinary(code) && !errors.count(f.platform))
                errors[f.platform] = code;
        }
    }
    // The reads other than the commerce answer's say US when the key is unset:
    // US from them is left to that default.
    if (region == "-")
        region.clear();
    else if (region.empty() && regionDefaulted != "US")
        region = regionDefaulted;
    if (!region.empty())
        device["vconf"]["db/setting/region_code"] = region;
    if (!country.empty())
        device["vconf"]["db/setting/country_code"] = country;
    for (const auto& e : errors) {
        device["errors"][e.first] = e.second;
        notes.push_back("device: " + e.first + " fails with " + std::to_string(e.second) + " as the log shows");
    }
    notes.push_back("device: no export of the device given (--device): only what the plug-in logged is set" +
                    std::string(device.empty() ? " (nothing)" : "") +
                    "; the data store, apps, files and the other keys are those of a fresh device");
    return device;
}

}  // namespace marlcase
