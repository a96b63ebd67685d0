#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SETTINGS_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SETTINGS_DATA_H

#include <string>

// What the speech library asks the device about the device's switches. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceSettingsData {
public:
    virtual std::string getSettingsEnabledOnOffState() { return "Off"; }
    virtual std::string getBatteryCurrentPercentage() { return "100"; }
    virtual std::string getPowerSavingModeOnOffState() { return "Off"; }
    virtual std::string getWifiOnOffState() { return "Off"; }
    virtual std::string getDrivingModeOnOffState() { return "Off"; }
    virtual std::string getBlockModeOnOffState() { return "Off"; }
    virtual std::string getCallBlockModeOnOffState() { return "Off"; }
    virtual std::string getMuteOnOffState() { return "Off"; }
    virtual std::string getBluetoothOnOffState() { return "Off"; }
    virtual std::string getWifiConnectedAPName() { return ""; }
    virtual std::string getVibrateOnOff() { return "Off"; }
    virtual std::string getGPSOnOff() { return "Off"; }
    virtual std::string getBlueToothDevice() { return ""; }
    virtual std::string getAutoRotateOnOff() { return "Off"; }
    virtual std::string getWifiHotspotOnOff() { return "Off"; }
    virtual std::string getMobileDataOnOff() { return "Off"; }
    virtual std::string getNFCOnOff() { return "Off"; }
    virtual std::string getSyncOnOff() { return "Off"; }
    virtual std::string getLumbeamOnOff() { return "Off"; }
    virtual std::string getVolumePercent() { return "100"; }
    virtual std::string getAutoBrightnessOnOffState() { return "On"; }
    virtual std::string getVolumeLevel() { return ""; }
    virtual std::string getFlashLightOnOffState() { return "Off"; }
    virtual std::string getPrivateModeOnOffState() { return "Off"; }
    virtual std::string getDeepSaveOnOffState() { return "Off"; }
    virtual std::string getGazeHoldOnOffState() { return "Off"; }
    virtual std::string getScreenMirrorOnOffState() { return "Off"; }
    virtual std::string isAirplaneModeOn() { return "Off"; }
    virtual std::string isAnySubSettingSelectedForBlockMode() { return "False"; }
    virtual std::string isAnySubSettingSelectedForPowerSavingMode() { return "False"; }
    virtual std::string getSoundOnOffState() { return "On"; }
    virtual ~IEngineRetrieveDeviceSettingsData() {}
};

#endif
