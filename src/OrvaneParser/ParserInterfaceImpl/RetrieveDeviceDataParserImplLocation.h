#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_LOCATION_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_LOCATION_H

#include <orvane-parser/IParserRetrieveDeviceLocationData.h>

#include <locations.h>

// The device's position as the location file "AccInfoData.txt" tells it. The
// platform's location manager is kept running while this object lives; it is
// never asked for a position.
class RetrieveDeviceDataParserImplLocation : public IParserRetrieveDeviceLocationData {
public:
    RetrieveDeviceDataParserImplLocation();
    ~RetrieveDeviceDataParserImplLocation() override;

    std::string getLatitude() override;
    std::string getLongitude() override;

private:
    // The member of the file's first element as text of six significant
    // digits; empty when the file is missing or can't be read.
    std::string _readCoordinate(const char* member, double defaultValue);

    location_manager_h mLocationManager;
    bool mIsEnabled;
};

#endif
