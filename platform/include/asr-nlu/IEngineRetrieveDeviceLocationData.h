#ifndef ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_LOCATION_DATA_H
#define ASR_NLU_I_ENGINE_RETRIEVE_DEVICE_LOCATION_DATA_H

#include <string>

// What the speech library asks the device about position, locale and local time. Each body is the
// answer of an implementation that doesn't override it. The order of the
// virtual operations is shared with the library; the destructor comes last.
class IEngineRetrieveDeviceLocationData {
public:
    virtual std::string getCountry() { return ""; }
    virtual std::string getCurrentTime() { return ""; }
    virtual std::string getLatitude() { return ""; }
    virtual std::string getLatLong() { return ""; }
    virtual std::string getLocale() { return "en-US"; }
    virtual std::string getLongitude() { return ""; }
    virtual ~IEngineRetrieveDeviceLocationData() {}
};

#endif
