#include "RetrieveImpl/DA/DAUtils/AppControl.h"
#include "utils/VconfText.h"

#include "utils/MarlLog.h"

#include <app_context.h>
#include <app_control.h>
#include <app_info.h>
#include <app_manager.h>
#include <app_manager_extension.h>
#include <vconf.h>

#include <stdlib.h>

namespace Util {

std::set<std::string> AppControl::gCommonAppSet;
std::map<std::string, std::set<std::string>> AppControl::gAppMap;

namespace {

// The application manager's answer for an app it does not know.
const int APP_MANAGER_NO_SUCH_APP = static_cast<int>(0xFEEF0001);
const int APP_STATE_IN_FOREGROUND = 1;

// The launch's handle is made in a frame of its own: a launch that fails after
// making it keeps it, and the leak check's suppression names this frame alone.
void createLaunchHandle(app_control_h* handle)
{
    app_control_create(handle);
}

}  // namespace

int AppControl::performAppControl(AppControlData& data)
{
    return data.getTerminateRequest() ? _terminate(data) : _launch(data);
}

int AppControl::_launch(AppControlData& data)
{
    app_control_h handle = nullptr;
    createLaunchHandle(&handle);
    if (!handle) {
        LOGE("Failed to create app_control handle");
        return -1;
    }
    // A failure below returns with the handle still held.
    int ret = 0;
    if (data.getPackageName() && (ret = app_control_set_app_id(handle, data.getPackageName())) != 0) {
        LOGE("Failed to set app id");
        return ret;
    }
    if (data.getOperation() && (ret = app_control_set_operation(handle, data.getOperation())) != 0) {
        LOGE("Failed to set operation");
        return ret;
    }
    if (data.getUri() && (ret = app_control_set_uri(handle, data.getUri())) != 0) {
        LOGE("Failed to set uri");
        return ret;
    }
    for (const auto* extra : data.getExtraDataList()) {
        if (extra->first.empty() || extra->second.empty())
            continue;
        if ((ret = app_control_add_extra_data(handle, extra->first.c_str(), extra->second.c_str())) != 0) {
            LOGE("Failed to add extra data");
            return ret;
        }
    }
    if ((ret = app_control_send_launch_request(handle, nullptr, nullptr)) != 0) {
        LOGE("Failed to launch request");
        return ret;
    }
    ret = app_control_destroy(handle);
    if (ret != 0)
        LOGE("Failed to destroy app_control handle");
    return ret;
}

int AppControl::_terminate(AppControlData& data)
{
    const char* appId = data.getPackageName() ? data.getPackageName() : "";
    bool running = false;
    int ret = app_manager_is_running(appId, &running);
    if (ret != 0)
        return ret;
    if (!running)
        return 0;

    LOGD("Terminate target app");
    app_context_h context = nullptr;
    app_manager_get_app_context(appId, &context);
    if (!context) {
        LOGE("Failed to get app_context handle");
        return -1;
    }
    ret = app_manager_terminate_app(context);
    if (ret != 0) {
        LOGE("Failed to terminate bg app");
        ret = -1;
    }
    app_context_destroy(context);
    return ret;
}

bool AppControl::isForeground(const std::string& appId)
{
    bool running = false;
    if (app_manager_is_running(appId.c_str(), &running) != 0 || !running)
        return false;
    app_context_h context = nullptr;
    if (app_manager_get_app_context(appId.c_str(), &context) != 0)
        return false;
    app_state_e state = APP_STATE_UNDEFINED;
    const int ret = app_context_get_app_state(context, &state);
    app_context_destroy(context);
    return ret == 0 && state == APP_STATE_IN_FOREGROUND;
}

bool AppControl::isInstalled(const std::string& appId)
{
    bool installed = true;
    const std::string region = readVconfText("db/setting/region_code", "US");
    const std::string country = readVconfText("db/setting/country_code", "US");

    if (region == "US" || region == "KR") {
        app_info_h info = nullptr;
        if (app_info_create(appId.c_str(), &info) == APP_MANAGER_NO_SUCH_APP) {
            LOGD("%s is not installed", appId.c_str());
            installed = false;
        }
        if (info)
            app_info_destroy(info);
        return installed;
    }

    initInstalledAppList();
    if (gCommonAppSet.count(appId) == 0 && gAppMap[country].count(appId) == 0)
        installed = false;
    return installed;
}

void AppControl::initInstalledAppList()
{
    if (gCommonAppSet.empty()) {
        gCommonAppSet = {
            "LAykghKXQw.FoodMinder",     "org.tizen.fridge-control",      "org.tizen.fridge-timer",
            "UNduJ5y0UH.ShoppingList",   "wxW7pqXkLL.SauteLine",          "nn7Wgp14c8.LarderTuneIn",
            "org.tizen.kitchen-tv",      "org.tizen.browser",             "org.tizen.phone-mirroring",
            "9DZ9Lnbtx0.spotifylarder",  "org.tizen.whiteboard",          "org.tizen.memo2",
            "org.tizen.todo",            "9zWvGSYU8Z.calendar",           "org.tizen.photoalbum",
            "Snr7si7XV1.AccuWeather",    "org.tizen.setting",             "setting-time-efl",
            "kzOK54sYx0.SmartHome",      "org.tizen.WeblinkApps-Nespresso", "org.tizen.WeblinkApps-Pinterest",
        };
    }
    if (gAppMap.empty()) {
        gAppMap["AU"] = {"1K3CsGDv16.Recipes", "org.tizen.WeblinkApps-Woolworths"};
        gAppMap["NZ"] = {"1K3CsGDv16.Recipes", "org.tizen.WeblinkApps-Countdown"};
        gAppMap["GB"] = {"org.tizen.morningBrief",          "org.tizen.WeblinkApps-Allrecipes",
                         "org.tizen.WeblinkApps-Whisk",     "org.tizen.WeblinkApps-Tannico",
                         "org.tizen.WeblinkApps-Eataly",    "org.tizen.WeblinkApps-Mindfulchef",
                         "org.tizen.WeblinkApps-Tesco",     "org.tizen.WeblinkApps-MarketWall"};
        gAppMap["FR"] = {"org.tizen.morningBrief",         "org.tizen.WeblinkApps-Marmiton",
                         "org.tizen.WeblinkApps-Tannico",  "org.tizen.WeblinkApps-LiDL",
                         "org.tizen.WeblinkApps-MarketWall", "org.tizen.WeblinkApps-TVMag",
                         "org.tizen.WeblinkApps-LeFigaro", "org.tizen.WeblinkApps-LEquipe"};
        gAppMap["DE"] = {"org.tizen.morningBrief",          "org.tizen.WeblinkApps-Allrecipes",
                         "org.tizen.WeblinkApps-Chefkoch",  "org.tizen.WeblinkApps-Tannico",
                         "org.tizen.WeblinkApps-Kochbar",   "org.tizen.WeblinkApps-Eataly",
                         "org.tizen.WeblinkApps-LiDL",      "org.tizen.WeblinkApps-MarketWall",
                         "org.tizen.WeblinkApps-n-tv"};
        gAppMap["IT"] = {"org.tizen.morningBrief",              "org.tizen.WeblinkApps-Allrecipes",
                         "org.tizen.WeblinkApps-Tannico",       "org.tizen.WeblinkApps-Eataly",
                         "org.tizen.WeblinkApps-Supermercato24", "org.tizen.WeblinkApps-MarketWall",
                         "org.tizen.WeblinkApps-TIMmusic",      "org.tizen.WeblinkApps-LaRepubllica",
                         "org.tizen.WeblinkApps-LaGazetta",     "org.tizen.WeblinkApps-GialloZafferano"};
        gAppMap["SE"] = {"org.tizen.morningBrief", "org.tizen.WeblinkApps-MarketWall",
                         "org.tizen.WeblinkApps-ICA", "org.tizen.WeblinkApps-Hemkop",
                         "org.tizen.WeblinkApps-Arla", "org.tizen.WeblinkApps-Willys"};
        gAppMap["NO"] = {"org.tizen.morningBrief", "org.tizen.WeblinkApps-Kolonial",
                         "org.tizen.WeblinkApps-MarketWall"};
    }
}

}  // namespace Util
