// Location manager: which positioning methods are on, from the "location"
// section of device.json, and managers that start and stop the location
// service. Starting and stopping are journaled as "location_start" and
// "location_stop"; no position is produced.
#include "PlatformSection.h"

#include <locations.h>

#include <memory>
#include <mutex>
#include <string>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"LOCATIONS_ERROR_NONE", LOCATIONS_ERROR_NONE},
                         {"LOCATIONS_ERROR_OUT_OF_MEMORY", LOCATIONS_ERROR_OUT_OF_MEMORY},
                         {"LOCATIONS_ERROR_INVALID_PARAMETER", LOCATIONS_ERROR_INVALID_PARAMETER},
                         {"LOCATIONS_ERROR_ACCESSIBILITY_NOT_ALLOWED", LOCATIONS_ERROR_ACCESSIBILITY_NOT_ALLOWED},
                         {"LOCATIONS_ERROR_NOT_SUPPORTED", LOCATIONS_ERROR_NOT_SUPPORTED},
                         {"LOCATIONS_ERROR_INCORRECT_METHOD", LOCATIONS_ERROR_INCORRECT_METHOD},
                         {"LOCATIONS_ERROR_NETWORK_FAILED", LOCATIONS_ERROR_NETWORK_FAILED},
                         {"LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE", LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE},
                         {"LOCATIONS_ERROR_GPS_SETTING_OFF", LOCATIONS_ERROR_GPS_SETTING_OFF},
                         {"LOCATIONS_ERROR_SECURITY_RESTRICTED", LOCATIONS_ERROR_SECURITY_RESTRICTED},
                         {"LOCATIONS_ERROR_SETTING_OFF", LOCATIONS_ERROR_SETTING_OFF},
                     }),
                     true);

const char* const kMethodNames[] = {
    "LOCATIONS_METHOD_HYBRID",
    "LOCATIONS_METHOD_GPS",
    "LOCATIONS_METHOD_WPS",
    "LOCATIONS_METHOD_PASSIVE",
};

bool validMethod(location_method_e method)
{
    return method >= LOCATIONS_METHOD_HYBRID && method <= LOCATIONS_METHOD_PASSIVE;
}

struct Manager {
    std::mutex mutex;
    location_method_e method = LOCATIONS_METHOD_HYBRID;
    bool started = false;
};

vapp::HandleTable<Manager> gManagers;

// location.methods[method], by name or number: true or false, or
// {"error": CODE}. A method that the description leaves out is one the
// appliance does not have: LOCATIONS_ERROR_NOT_SUPPORTED.
int methodEnabled(const char* function, location_method_e method, bool* enabled)
{
    vapp::PlatformRead read(function, "location", LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE);
    if (!read.ok())
        return read.code();
    const Json::Value& methods = read.member("methods");
    if (!methods.isNull() && !methods.isObject()) {
        vapp::platformWarning("device.json: location.methods must be an object");
        return LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE;
    }
    const std::string name = kMethodNames[method];
    const std::string number = std::to_string(static_cast<int>(method));
    const Json::Value& value = methods.isMember(name) ? methods[name] : methods[number];
    int code = 0;
    if (vapp::errorInPlace(value, read.where("methods." + name), &code))
        return code;
    if (value.isNull())
        return LOCATIONS_ERROR_NOT_SUPPORTED;
    if (!value.isBool()) {
        vapp::platformWarning("device.json: location.methods." + name + " must be true or false");
        return LOCATIONS_ERROR_SERVICE_NOT_AVAILABLE;
    }
    *enabled = value.asBool();
    return LOCATIONS_ERROR_NONE;
}

void journalService(const char* event, location_method_e method)
{
    Json::Value entry;
    entry["method"] = kMethodNames[method];
    vapp::journal(event, entry);
}

}  // namespace

extern "C" {

int location_manager_is_enabled_method(location_method_e method, bool* enable)
{
    if (!validMethod(method) || !enable)
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    return methodEnabled(__func__, method, enable);
}

// A manager can be made for any method that the appliance has, on or off.
int location_manager_create(location_method_e method, location_manager_h* manager)
{
    if (!validMethod(method) || !manager)
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    bool enabled = false;
    const int code = methodEnabled(__func__, method, &enabled);
    if (code != LOCATIONS_ERROR_NONE)
        return code;
    auto made = std::make_shared<Manager>();
    made->method = method;
    *manager = static_cast<location_manager_h>(gManagers.add(made));
    return LOCATIONS_ERROR_NONE;
}

// Starting needs the method switched on: LOCATIONS_ERROR_SETTING_OFF otherwise.
int location_manager_start(location_manager_h manager)
{
    auto found = manager ? gManagers.find(manager) : nullptr;
    if (!found)
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    bool enabled = false;
    const int code = methodEnabled(__func__, found->method, &enabled);
    if (code != LOCATIONS_ERROR_NONE)
        return code;
    if (!enabled)
        return LOCATIONS_ERROR_SETTING_OFF;
    std::lock_guard<std::mutex> lock(found->mutex);
    if (!found->started) {
        found->started = true;
        journalService("location_start", found->method);
    }
    return LOCATIONS_ERROR_NONE;
}

int location_manager_stop(location_manager_h manager)
{
    auto found = manager ? gManagers.find(manager) : nullptr;
    if (!found)
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    std::lock_guard<std::mutex> lock(found->mutex);
    if (found->started) {
        found->started = false;
        journalService("location_stop", found->method);
    }
    return LOCATIONS_ERROR_NONE;
}

// Destroying a started manager stops it first.
int location_manager_destroy(location_manager_h manager)
{
    if (!manager || !gManagers.find(manager))
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    int code = 0;
    if (vapp::injectedError(__func__, &code))
        return code;
    auto taken = gManagers.take(manager);
    if (!taken)
        return LOCATIONS_ERROR_INVALID_PARAMETER;
    std::lock_guard<std::mutex> lock(taken->mutex);
    if (taken->started) {
        taken->started = false;
        journalService("location_stop", taken->method);
    }
    return LOCATIONS_ERROR_NONE;
}

}  // extern "C"
