// runtime_info: the device's changing states, from the "runtime_info" section
// of device.json, keyed by the enum names ("RUNTIME_INFO_KEY_GPS_STATUS") or
// by their numbers as text ("18").
#include "PlatformSection.h"

#include <runtime_info.h>

#include <string>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"RUNTIME_INFO_ERROR_NONE", RUNTIME_INFO_ERROR_NONE},
                         {"RUNTIME_INFO_ERROR_INVALID_PARAMETER", RUNTIME_INFO_ERROR_INVALID_PARAMETER},
                         {"RUNTIME_INFO_ERROR_OUT_OF_MEMORY", RUNTIME_INFO_ERROR_OUT_OF_MEMORY},
                         {"RUNTIME_INFO_ERROR_IO_ERROR", RUNTIME_INFO_ERROR_IO_ERROR},
                         {"RUNTIME_INFO_ERROR_REMOTE_IO", RUNTIME_INFO_ERROR_REMOTE_IO},
                         {"RUNTIME_INFO_ERROR_PERMISSION_DENIED", RUNTIME_INFO_ERROR_PERMISSION_DENIED},
                         {"RUNTIME_INFO_ERROR_NOT_SUPPORTED", RUNTIME_INFO_ERROR_NOT_SUPPORTED},
                         {"RUNTIME_INFO_ERROR_NO_DATA", RUNTIME_INFO_ERROR_NO_DATA},
                     }),
                     true);

const char* keyName(runtime_info_key_e key)
{
    switch (key) {
    case RUNTIME_INFO_KEY_BLUETOOTH_ENABLED: return "RUNTIME_INFO_KEY_BLUETOOTH_ENABLED";
    case RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED: return "RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED";
    case RUNTIME_INFO_KEY_BLUETOOTH_TETHERING_ENABLED: return "RUNTIME_INFO_KEY_BLUETOOTH_TETHERING_ENABLED";
    case RUNTIME_INFO_KEY_USB_TETHERING_ENABLED: return "RUNTIME_INFO_KEY_USB_TETHERING_ENABLED";
    case RUNTIME_INFO_KEY_PACKET_DATA_ENABLED: return "RUNTIME_INFO_KEY_PACKET_DATA_ENABLED";
    case RUNTIME_INFO_KEY_DATA_ROAMING_ENABLED: return "RUNTIME_INFO_KEY_DATA_ROAMING_ENABLED";
    case RUNTIME_INFO_KEY_VIBRATION_ENABLED: return "RUNTIME_INFO_KEY_VIBRATION_ENABLED";
    case RUNTIME_INFO_KEY_AUDIO_JACK_CONNECTED: return "RUNTIME_INFO_KEY_AUDIO_JACK_CONNECTED";
    case RUNTIME_INFO_KEY_GPS_STATUS: return "RUNTIME_INFO_KEY_GPS_STATUS";
    case RUNTIME_INFO_KEY_BATTERY_IS_CHARGING: return "RUNTIME_INFO_KEY_BATTERY_IS_CHARGING";
    case RUNTIME_INFO_KEY_TV_OUT_CONNECTED: return "RUNTIME_INFO_KEY_TV_OUT_CONNECTED";
    case RUNTIME_INFO_KEY_AUDIO_JACK_STATUS: return "RUNTIME_INFO_KEY_AUDIO_JACK_STATUS";
    case RUNTIME_INFO_KEY_USB_CONNECTED: return "RUNTIME_INFO_KEY_USB_CONNECTED";
    case RUNTIME_INFO_KEY_CHARGER_CONNECTED: return "RUNTIME_INFO_KEY_CHARGER_CONNECTED";
    case RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED: return "RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED";
    }
    return "";
}

template <class T>
int getValue(const char* function, runtime_info_key_e key, T* value)
{
    if (!value)
        return RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "runtime_info", RUNTIME_INFO_ERROR_IO_ERROR);
    if (!read.ok())
        return read.code();
    const std::string name = keyName(key);
    const std::string number = std::to_string(static_cast<int>(key));
    if (name.empty())
        return vapp::readValue(read.member(number), read.where(number), value);
    return vapp::readValue(read.member(name, number), read.where(name), value);
}

}  // namespace

extern "C" {

int runtime_info_get_value_int(runtime_info_key_e key, int* value)
{
    return getValue(__func__, key, value);
}

int runtime_info_get_value_bool(runtime_info_key_e key, bool* value)
{
    return getValue(__func__, key, value);
}

int runtime_info_get_value_double(runtime_info_key_e key, double* value)
{
    return getValue(__func__, key, value);
}

int runtime_info_get_value_string(runtime_info_key_e key, char** value)
{
    return getValue(__func__, key, value);
}

}  // extern "C"
