#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SOFTWARE_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_SOFTWARE_DATA_H

#include <string>

// What the speech library asks the device about the software around the library. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceSoftwareData {
public:
    virtual std::string getOS_Language() { return "en_US"; }
    virtual std::string getOS_Ver() { return "3.0"; }
    virtual std::string getFirmware_ver() { return ""; }
    virtual std::string getMaker() { return ""; }
    virtual std::string getModel() { return ""; }
    virtual std::string getModelAndVersion() { return ""; }
    virtual std::string getProxyUrl() { return ""; }
    virtual ~IEngineRetrieveDeviceSoftwareData() {}
};

#endif
