#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CONFIG_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_CONFIG_DATA_H

#include <string>

// What the speech library asks the device about the device profile and the server-side processing targets. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes first.
class IEngineRetrieveDeviceConfigData {
public:
    virtual ~IEngineRetrieveDeviceConfigData() {}
    virtual std::string getCurrentVerbosity() { return "0"; }
    virtual std::string getDeviceProfileName() { return "Common"; }
    virtual std::string getRecoStateName() { return "Marl Global"; }
    virtual std::string getAsrRampCode() { return ""; }
    virtual std::string getNluRampCode() { return ""; }
    virtual bool useClientDP() { return false; }
    virtual std::string getLanguagePackPath() { return "/home/owner/share/.voice/vc/engine/shared/data/"; }
};

#endif
