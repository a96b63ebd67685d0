#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SOFT_WARE_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_SOFT_WARE_H

#include <asr-nlu/IEngineRetrieveDeviceSoftwareData.h>

#include <string>

// The software facet: platform version, maker and model from the platform's
// system information, the network proxy, and a constant language.
class RetrieveDeviceDataEngineImplSoftWare : public IEngineRetrieveDeviceSoftwareData {
public:
    RetrieveDeviceDataEngineImplSoftWare();
    ~RetrieveDeviceDataEngineImplSoftWare() override;

    std::string getOS_Language() override;
    std::string getOS_Ver() override;
    std::string getFirmware_ver() override;
    std::string getMaker() override;
    std::string getModel() override;
    std::string getModelAndVersion() override;
    std::string getProxyUrl() override;
};

#endif
