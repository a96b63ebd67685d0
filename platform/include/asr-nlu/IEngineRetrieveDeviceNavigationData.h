#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_NAVIGATION_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_NAVIGATION_DATA_H

#include <string>

// What the speech library asks the device about navigation. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceNavigationData {
public:
    virtual std::string isNavigationInstalled() { return "False"; }
    virtual std::string isNavigationSupported() { return "False"; }
    virtual ~IEngineRetrieveDeviceNavigationData() {}
};

#endif
