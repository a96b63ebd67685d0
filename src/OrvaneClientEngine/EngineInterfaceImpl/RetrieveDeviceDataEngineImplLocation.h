#ifndef RETRIEVE_DEVICE_DATA_ENGINE_IMPL_LOCATION_H
#define RETRIEVE_DEVICE_DATA_ENGINE_IMPL_LOCATION_H

#include <asr-nlu/IEngineRetrieveDeviceLocationData.h>
#include <locations.h>

#include <string>

// The location facet: the position from the location file "AccInfoData.txt",
// read anew on every call, the voice-control language as locale, and the local
// time. It keeps the platform's location service running while it lives,
// without reading positions from it.
class RetrieveDeviceDataEngineImplLocation : public IEngineRetrieveDeviceLocationData {
public:
    RetrieveDeviceDataEngineImplLocation();
    ~RetrieveDeviceDataEngineImplLocation() override;

    std::string getCountry() override;
    std::string getCurrentTime() override;
    std::string getLatitude() override;
    std::string getLatLong() override;
    std::string getLocale() override;
    std::string getLongitude() override;

private:
    location_manager_h mManager;
    bool mEnabled;
};

#endif
