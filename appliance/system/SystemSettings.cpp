// system_settings: the user's settings, from the "system_settings" section of
// device.json, keyed by the enum names ("SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE")
// or by their numbers as text ("18").
#include "PlatformSection.h"

#include <system_settings.h>

#include <string>

namespace {

const bool gNames = (vapp::registerErrorNames({
                         {"SYSTEM_SETTINGS_ERROR_NONE", SYSTEM_SETTINGS_ERROR_NONE},
                         {"SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER", SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER},
                         {"SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY", SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY},
                         {"SYSTEM_SETTINGS_ERROR_IO_ERROR", SYSTEM_SETTINGS_ERROR_IO_ERROR},
                         {"SYSTEM_SETTINGS_ERROR_PERMISSION_DENIED", SYSTEM_SETTINGS_ERROR_PERMISSION_DENIED},
                         {"SYSTEM_SETTINGS_ERROR_NOT_SUPPORTED", SYSTEM_SETTINGS_ERROR_NOT_SUPPORTED},
                         {"SYSTEM_SETTINGS_ERROR_CALL_UNSUPPORTED_API", SYSTEM_SETTINGS_ERROR_CALL_UNSUPPORTED_API},
                         {"SYSTEM_SETTINGS_ERROR_LOCKSCREEN_APP_PASSWORD_MODE",
                          SYSTEM_SETTINGS_ERROR_LOCKSCREEN_APP_PASSWORD_MODE},
                     }),
                     true);

// Indexed by the key's number; 9 is not a key.
const char* const kKeyNames[] = {
    "SYSTEM_SETTINGS_KEY_INCOMING_CALL_RINGTONE",
    "SYSTEM_SETTINGS_KEY_WALLPAPER_HOME_SCREEN",
    "SYSTEM_SETTINGS_KEY_WALLPAPER_LOCK_SCREEN",
    "SYSTEM_SETTINGS_KEY_FONT_SIZE",
    "SYSTEM_SETTINGS_KEY_FONT_TYPE",
    "SYSTEM_SETTINGS_KEY_MOTION_ACTIVATION",
    "SYSTEM_SETTINGS_KEY_EMAIL_ALERT_RINGTONE",
    "SYSTEM_SETTINGS_KEY_USB_DEBUGGING_ENABLED",
    "SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED",
    "",
    "SYSTEM_SETTINGS_KEY_LOCKSCREEN_APP",
    "SYSTEM_SETTINGS_KEY_DEFAULT_FONT_TYPE",
    "SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY",
    "SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE",
    "SYSTEM_SETTINGS_KEY_LOCALE_TIMEFORMAT_24HOUR",
    "SYSTEM_SETTINGS_KEY_LOCALE_TIMEZONE",
    "SYSTEM_SETTINGS_KEY_TIME_CHANGED",
    "SYSTEM_SETTINGS_KEY_SOUND_LOCK",
    "SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE",
    "SYSTEM_SETTINGS_KEY_SOUND_TOUCH",
    "SYSTEM_SETTINGS_KEY_DISPLAY_SCREEN_ROTATION_AUTO",
    "SYSTEM_SETTINGS_KEY_DEVICE_NAME",
    "SYSTEM_SETTINGS_KEY_MOTION_ENABLED",
    "SYSTEM_SETTINGS_KEY_NETWORK_WIFI_NOTIFICATION",
    "SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE",
    "SYSTEM_SETTINGS_KEY_SCREEN_BACKLIGHT_TIME",
    "SYSTEM_SETTINGS_KEY_SOUND_NOTIFICATION",
    "SYSTEM_SETTINGS_KEY_SOUND_NOTIFICATION_REPETITION_PERIOD",
    "SYSTEM_SETTINGS_KEY_LOCK_STATE",
    "SYSTEM_SETTINGS_KEY_ADS_ID",
};

template <class T>
int getValue(const char* function, system_settings_key_e key, T* value)
{
    if (!value)
        return SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER;
    vapp::PlatformRead read(function, "system_settings", SYSTEM_SETTINGS_ERROR_IO_ERROR);
    if (!read.ok())
        return read.code();
    const int index = static_cast<int>(key);
    const std::string number = std::to_string(index);
    const int count = static_cast<int>(sizeof(kKeyNames) / sizeof(kKeyNames[0]));
    const std::string name = index >= 0 && index < count ? kKeyNames[index] : "";
    if (name.empty())
        return vapp::readValue(read.member(number), read.where(number), value);
    return vapp::readValue(read.member(name, number), read.where(name), value);
}

}  // namespace

extern "C" {

int system_settings_get_value_int(system_settings_key_e key, int* value)
{
    return getValue(__func__, key, value);
}

int system_settings_get_value_bool(system_settings_key_e key, bool* value)
{
    return getValue(__func__, key, value);
}

int system_settings_get_value_string(system_settings_key_e key, char** value)
{
    return getValue(__func__, key, value);
}

}  // extern "C"
