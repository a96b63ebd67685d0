#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SYSTEM_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SYSTEM_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceSystemData.h>

#include <string>

// The system facet: telephony, screen size, temperature unit and a device
// identifier hashed from the Wi-Fi MAC address, read from the platform on
// every call; constants for what the appliance doesn't have.
class RetrieveDeviceDataEngineImplSystem : public IEngineRetrieveDeviceSystemData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplSystem();
    ~RetrieveDeviceDataEngineImplSystem() override;

    std::string checkForChineseCTC() override;
    std::string getCurrentTimeForCMA() override;
    std::string getFindMyCarPkgName() override;
    std::string getFindMyDevicePkgName() override;
    std::string getPackageVersionCode(std::string packageName) override;
    std::string getPhoneScreenHeight() override;
    std::string getPhoneScreenWidth() override;
    std::string getPhoneTelecom() override;
    std::string getPhoneThumbnailHeight() override;
    std::string getPhoneThumbnailWidth() override;
    std::string getUniqueDeviceIdentifier() override;
    std::string getWeatherSetting() override;
    std::string isChineseModel() override;
    std::string isDeviceHas2MicNSEnabled() override;
    std::string isIOSAttached() override;
    std::string isSMSAvailable() override;
    std::string IsTemperatureTypeFahrenheit() override;
    std::string isVideoCallSupported() override;
    std::string isVoiceCallSupported() override;
    std::string isVoiceMailAvailable() override;
};

#endif
