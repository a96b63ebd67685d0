#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SETTINGS_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SETTINGS_H

#include <asr-nlu/IEngineRetrieveDeviceSettingsData.h>

#include <string>

// The settings facet: the device's switches, read from the platform on every
// call, and constants for the switches the appliance doesn't have. Switches
// answer "On" or "Off", quantities their decimal text.
class RetrieveDeviceDataEngineImplSettings : public IEngineRetrieveDeviceSettingsData {
public:
    RetrieveDeviceDataEngineImplSettings();
    ~RetrieveDeviceDataEngineImplSettings() override;

    std::string getSettingsEnabledOnOffState() override;
    std::string getBatteryCurrentPercentage() override;
    std::string getPowerSavingModeOnOffState() override;
    std::string getWifiOnOffState() override;
    std::string getDrivingModeOnOffState() override;
    std::string getBlockModeOnOffState() override;
    std::string getCallBlockModeOnOffState() override;
    std::string getMuteOnOffState() override;
    std::string getBluetoothOnOffState() override;
    std::string getWifiConnectedAPName() override;
    std::string getVibrateOnOff() override;
    std::string getGPSOnOff() override;
    std::string getBlueToothDevice() override;
    std::string getAutoRotateOnOff() override;
    std::string getWifiHotspotOnOff() override;
    std::string getMobileDataOnOff() override;
    std::string getNFCOnOff() override;
    std::string getSyncOnOff() override;
    std::string getLumbeamOnOff() override;
    std::string getVolumePercent() override;
    std::string getAutoBrightnessOnOffState() override;
    std::string getVolumeLevel() override;
    std::string getFlashLightOnOffState() override;
    std::string getPrivateModeOnOffState() override;
    std::string getDeepSaveOnOffState() override;
    std::string getGazeHoldOnOffState() override;
    std::string getScreenMirrorOnOffState() override;
    std::string isAirplaneModeOn() override;
    std::string isAnySubSettingSelectedForBlockMode() override;
    std::string isAnySubSettingSelectedForPowerSavingMode() override;
    std::string getSoundOnOffState() override;
};

#endif
