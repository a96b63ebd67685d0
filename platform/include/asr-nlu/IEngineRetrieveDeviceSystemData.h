#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SYSTEM_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SYSTEM_DATA_H

#include <string>

// What the speech library asks the device about the kind of device. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceSystemData {
public:
    virtual ~IEngineRetrieveDeviceSystemData() {}
    virtual std::string checkForChineseCTC() { return "False"; }
    virtual std::string getCurrentTimeForCMA() { return ""; }
    virtual std::string getFindMyCarPkgName() { return ""; }
    virtual std::string getFindMyDevicePkgName() { return ""; }
    virtual std::string getPackageVersionCode(std::string /*packageName*/) { return ""; }
    virtual std::string getPhoneScreenHeight() { return ""; }
    virtual std::string getPhoneScreenWidth() { return ""; }
    virtual std::string getPhoneTelecom() { return ""; }
    virtual std::string getPhoneThumbnailHeight() { return ""; }
    virtual std::string getPhoneThumbnailWidth() { return ""; }
    virtual std::string getUniqueDeviceIdentifier() { return ""; }
    virtual std::string getWeatherSetting() { return ""; }
    virtual std::string isChineseModel() { return "False"; }
    virtual std::string isDeviceHas2MicNSEnabled() { return "False"; }
    virtual std::string isIOSAttached() { return "False"; }
    virtual std::string isSMSAvailable() { return "False"; }
    virtual std::string IsTemperatureTypeFahrenheit() { return "False"; }
    virtual std::string isVideoCallSupported() { return "False"; }
    virtual std::string isVoiceCallSupported() { return "False"; }
    virtual std::string isVoiceMailAvailable() { return "False"; }
};

#endif
