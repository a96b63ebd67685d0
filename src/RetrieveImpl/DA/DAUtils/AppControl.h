#ifndef UTIL_APP_CONTROL_H
#define UTIL_APP_CONTROL_H

#include "RetrieveImpl/DA/DAUtils/AppControlData.h"

#include <map>
#include <set>
#include <string>

namespace Util {

// Launches, terminates and asks after the appliance's apps, and knows which
// apps a market has.
class AppControl {
public:
    // 0, a platform error code passed through, or -1.
    static int performAppControl(AppControlData& data);
    static bool isForeground(const std::string& appId);
    static bool isInstalled(const std::string& appId);
    static void initInstalledAppList();

    // The apps of every market that uses the tables, and those of one country only.
    static std::set<std::string> gCommonAppSet;
    static std::map<std::string, std::set<std::string>> gAppMap;

private:
    static int _launch(AppControlData& data);
    static int _terminate(AppControlData& data);
};

}  // namespace Util

#endif
