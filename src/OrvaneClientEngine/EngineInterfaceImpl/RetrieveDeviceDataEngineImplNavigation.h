#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_NAVIGATION_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_NAVIGATION_H

#include <asr-nlu/IEngineRetrieveDeviceNavigationData.h>

#include <string>

// The navigation facet: the appliance has no navigation.
class RetrieveDeviceDataEngineImplNavigation : public IEngineRetrieveDeviceNavigationData {
public:
    RetrieveDeviceDataEngineImplNavigation();
    ~RetrieveDeviceDataEngineImplNavigation() override;

    std::string isNavigationInstalled() override;
    std::string isNavigationSupported() override;
};

#endif
