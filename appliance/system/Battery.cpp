// The device library's battery, from the "battery" section of device.json.
#include "PlatformSection.h"

#include <device/battery.h>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"DEVICE_ERROR_NONE", DEVICE_ERROR_NONE},
                         {"DEVICE_ERROR_OPERATION_FAILED", DEVICE_ERROR_OPERATION_FAILED},
                         {"DEVICE_ERROR_PERMISSION_DENIED", DEVICE_ERROR_PERMISSION_DENIED},
                         {"DEVICE_ERROR_INVALID_PARAMETER", DEVICE_ERROR_INVALID_PARAMETER},
                         {"DEVICE_ERROR_ALREADY_IN_PROGRESS", DEVICE_ERROR_ALREADY_IN_PROGRESS},
                         {"DEVICE_ERROR_NOT_SUPPORTED", DEVICE_ERROR_NOT_SUPPORTED},
                         {"DEVICE_ERROR_RESOURCE_BUSY", DEVICE_ERROR_RESOURCE_BUSY},
                         {"DEVICE_ERROR_NOT_INITIALIZED", DEVICE_ERROR_NOT_INITIALIZED},
                     }),
                     true);

// A device without the member has no battery: the platform answers
// DEVICE_ERROR_NOT_SUPPORTED. A value of the wrong type is reported on stderr
// and fails the call.
template <class T>
int getBattery(const char* function, const char* member, T* value)
{
    if (!value)
        return DEVICE_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "battery", DEVICE_ERROR_OPERATION_FAILED);
    if (!read.ok())
        return read.code();
    const Json::Value& described = read.member(member);
    if (described.isNull())
        return DEVICE_ERROR_NOT_SUPPORTED;
    int code = 0;
    if (vapp::errorInPlace(described, read.where(member), &code))
        return code;
    if (vapp::readValue(described, read.where(member), value) != TIZEN_ERROR_NONE) {
        vapp::platformWarning("device.json: " + read.where(member) + " has the wrong type");
        return DEVICE_ERROR_OPERATION_FAILED;
    }
    return DEVICE_ERROR_NONE;
}

}  // namespace

extern "C" {

int device_battery_get_percent(int* percent)
{
    if (!percent)
        return DEVICE_ERROR_INVALID_PARAMETER;
    int value = 0;
    const int code = getBattery(__func__, "percent", &value);
    if (code != DEVICE_ERROR_NONE)
        return code;
    if (value < 0 || value > 100) {
        vapp::platformWarning("device.json: battery.percent must be 0 to 100");
        return DEVICE_ERROR_OPERATION_FAILED;
    }
    *percent = value;
    return DEVICE_ERROR_NONE;
}

int device_battery_is_charging(bool* charging)
{
    return getBattery(__func__, "charging", charging);
}

}  // extern "C"
