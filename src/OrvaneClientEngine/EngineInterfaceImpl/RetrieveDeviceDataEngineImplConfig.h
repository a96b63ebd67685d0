#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CONFIG_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_CONFIG_H

#include "ClientManager/OrvaneMaster.h"

#include <asr-nlu/IEngineRetrieveDeviceConfigData.h>

#include <string>

// The profile facet: the wrapper's device profile and, from the built-in
// profile table, its recognition state and ramp codes. Each lookup remembers
// the last profile it found, so an unknown profile later answers with that
// profile's define.
class RetrieveDeviceDataEngineImplConfig : public IEngineRetrieveDeviceConfigData, public OrvaneMaster {
public:
    RetrieveDeviceDataEngineImplConfig();
    ~RetrieveDeviceDataEngineImplConfig() override;

    std::string getCurrentVerbosity() override;
    std::string getDeviceProfileName() override;
    std::string getRecoStateName() override;
    std::string getAsrRampCode() override;
    std::string getNluRampCode() override;
    bool useClientDP() override;
};

#endif
