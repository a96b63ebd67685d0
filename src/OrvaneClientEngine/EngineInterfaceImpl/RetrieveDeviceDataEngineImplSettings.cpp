#include "OrvaneClientEngine/EngineInterfaceImpl/RetrieveDeviceDataEngineImplSettings.h"

#include "utils/MarlLog.h"

#include <device/battery.h>
#include <nfc.h>
#include <runtime_info.h>
#include <sound_manager.h>
#include <system_settings.h>
#include <wifi.h>

#include <stdlib.h>

namespace {

const char* onOff(bool on)
{
    return on ? "On" : "Off";
}

}  // namespace

RetrieveDeviceDataEngineImplSettings::RetrieveDeviceDataEngineImplSettings()
{
    LOGD("");
}

RetrieveDeviceDataEngineImplSettings::~RetrieveDeviceDataEngineImplSettings()
{
    LOGD("");
}

std::string RetrieveDeviceDataEngineImplSettings::getSettingsEnabledOnOffState()
{
    LOGD("");
    return "On";
}

// A failed read answers what the platform left in the variable.
std::string RetrieveDeviceDataEngineImplSettings::getBatteryCurrentPercentage()
{
    LOGD("");
    int percent = 0;
    int ret = device_battery_get_percent(&percent);
    if (ret != 0)
        LOGE("[ERROR] Fail to get battery percent(%d)", ret);
    return std::to_string(percent);
}

std::string RetrieveDeviceDataEngineImplSettings::getPowerSavingModeOnOffState()
{
    LOGD("");
    return "Off";
}

// "On" only while connected to an access point.
std::string RetrieveDeviceDataEngineImplSettings::getWifiOnOffState()
{
    LOGD("");
    int ret = wifi_initialize();
    if (ret != 0) {
        LOGE("[ERROR] Fail to wifi init(%d)", ret);
        return "Off";
    }
    wifi_connection_state_e state = WIFI_CONNECTION_STATE_DISCONNECTED;
    ret = wifi_get_connection_state(&state);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get wifi state(%d)", ret);
        return "Off";
    }
    wifi_deinitialize();
    return onOff(state == WIFI_CONNECTION_STATE_CONNECTED);
}

std::string RetrieveDeviceDataEngineImplSettings::getDrivingModeOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getBlockModeOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getCallBlockModeOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getMuteOnOffState()
{
    LOGD("");
    bool silent = false;
    int ret = system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system silent mode (%d)", ret);
        return "Off";
    }
    LOGD("Silent Mode(%d)", silent);
    return onOff(silent);
}

std::string RetrieveDeviceDataEngineImplSettings::getBluetoothOnOffState()
{
    LOGD("");
    bool enabled = false;
    int ret = runtime_info_get_value_bool(RUNTIME_INFO_KEY_BLUETOOTH_ENABLED, &enabled);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get runtime info(%d)", ret);
        return "Off";
    }
    LOGD("Bluetooth (%d)", enabled);
    return onOff(enabled);
}

std::string RetrieveDeviceDataEngineImplSettings::getWifiConnectedAPName()
{
    LOGD("");
    int ret = wifi_initialize();
    if (ret != 0) {
        LOGE("[ERROR] Fail to wifi init (%d)", ret);
        return "";
    }
    wifi_ap_h ap = nullptr;
    ret = wifi_get_connected_ap(&ap);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get connected ap (%d)", ret);
        wifi_deinitialize();
        return "";
    }
    char* essid = nullptr;
    ret = wifi_ap_get_essid(ap, &essid);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get essid (%d)", ret);
        wifi_ap_destroy(ap);
        wifi_deinitialize();
        return "";
    }
    wifi_ap_destroy(ap);
    wifi_deinitialize();

    std::string result;
    if (essid) {
        LOGD("Essid (%s)", essid);
        result = essid;
        free(essid);
    } else {
        LOGE("Invalid essid");
    }
    return result;
}

// A failed read answers what the platform left in the variable.
std::string RetrieveDeviceDataEngineImplSettings::getVibrateOnOff()
{
    LOGD("");
    bool enabled = false;
    int ret = runtime_info_get_value_bool(RUNTIME_INFO_KEY_VIBRATION_ENABLED, &enabled);
    if (ret != 0)
        LOGE("[ERROR] Fail to get runtime info vibrate (%d)", ret);
    return onOff(enabled);
}

// Any status but disabled counts as on, whatever number the platform gives.
std::string RetrieveDeviceDataEngineImplSettings::getGPSOnOff()
{
    LOGD("");
    int status = -1;
    int ret = runtime_info_get_value_int(RUNTIME_INFO_KEY_GPS_STATUS, &status);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get runtime info gps (%d)", ret);
        return "Off";
    }
    LOGD("GPS (%d)", status);
    return onOff(status != 0);
}

std::string RetrieveDeviceDataEngineImplSettings::getBlueToothDevice()
{
    LOGD("");
    return "";
}

// A failed read answers what the platform left in the variable.
std::string RetrieveDeviceDataEngineImplSettings::getAutoRotateOnOff()
{
    LOGD("");
    bool enabled = false;
    int ret = runtime_info_get_value_bool(RUNTIME_INFO_KEY_AUTO_ROTATION_ENABLED, &enabled);
    if (ret != 0)
        LOGE("[ERROR] Fail to get runtime info(%d)", ret);
    return onOff(enabled);
}

// A failed read answers what the platform left in the variable.
std::string RetrieveDeviceDataEngineImplSettings::getWifiHotspotOnOff()
{
    LOGD("");
    bool enabled = false;
    int ret = runtime_info_get_value_bool(RUNTIME_INFO_KEY_WIFI_HOTSPOT_ENABLED, &enabled);
    if (ret != 0)
        LOGE("[ERROR] Fail to get runtime info(%d)", ret);
    return onOff(enabled);
}

std::string RetrieveDeviceDataEngineImplSettings::getMobileDataOnOff()
{
    LOGD("");
    bool enabled = false;
    int ret = system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_3G_DATA_NETWORK_ENABLED, &enabled);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system 3g network (%d)", ret);
        return "Off";
    }
    LOGD("3G Data network(%d)", enabled);
    return onOff(enabled);
}

std::string RetrieveDeviceDataEngineImplSettings::getNFCOnOff()
{
    LOGD("");
    bool activated = nfc_manager_is_activated();
    LOGD("NFC (%d)", activated);
    return onOff(activated);
}

std::string RetrieveDeviceDataEngineImplSettings::getSyncOnOff()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getLumbeamOnOff()
{
    LOGD("");
    return "Off";
}

// The media volume as a whole percentage of its maximum, truncated.
std::string RetrieveDeviceDataEngineImplSettings::getVolumePercent()
{
    LOGD("");
    int max = 0;
    int ret = sound_manager_get_max_volume(SOUND_TYPE_MEDIA, &max);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get max volume (%d)", ret);
        return "0";
    }
    int volume = 0;
    ret = sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get volume (%d)", ret);
        return "0";
    }
    int percent = volume * 100 / max;
    LOGD("Volume percent (%d)", percent);
    return std::to_string(percent);
}

std::string RetrieveDeviceDataEngineImplSettings::getAutoBrightnessOnOffState()
{
    LOGD("");
    return "On";
}

// A failed read answers what the platform left in the variable.
std::string RetrieveDeviceDataEngineImplSettings::getVolumeLevel()
{
    LOGD("");
    int volume = 0;
    int ret = sound_manager_get_volume(SOUND_TYPE_MEDIA, &volume);
    if (ret != 0)
        LOGE("[ERROR] Fail to get volume (%d)", ret);
    LOGD("Volume (%d)", volume);
    return std::to_string(volume);
}

std::string RetrieveDeviceDataEngineImplSettings::getFlashLightOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getPrivateModeOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getDeepSaveOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getGazeHoldOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::getScreenMirrorOnOffState()
{
    LOGD("");
    return "Off";
}

std::string RetrieveDeviceDataEngineImplSettings::isAirplaneModeOn()
{
    LOGD("");
    bool flightMode = false;
    int ret = system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_NETWORK_FLIGHT_MODE, &flightMode);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system flight mode (%d)", ret);
        return "Off";
    }
    LOGD("Flight mode(%d)", flightMode);
    return onOff(flightMode);
}

std::string RetrieveDeviceDataEngineImplSettings::isAnySubSettingSelectedForBlockMode()
{
    LOGD("");
    return "False";
}

std::string RetrieveDeviceDataEngineImplSettings::isAnySubSettingSelectedForPowerSavingMode()
{
    LOGD("");
    return "False";
}

// Reads the silent mode in the opposite sense of getMuteOnOffState; a failed
// read answers "Off" in both.
std::string RetrieveDeviceDataEngineImplSettings::getSoundOnOffState()
{
    LOGD("");
    bool silent = false;
    int ret = system_settings_get_value_bool(SYSTEM_SETTINGS_KEY_SOUND_SILENT_MODE, &silent);
    if (ret != 0) {
        LOGE("[ERROR] Fail to get system silent mode (%d)", ret);
        return "Off";
    }
    LOGD("Silent mode(%d)", silent);
    return onOff(!silent);
}
