#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_LOCATION_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_LOCATION_DATA_H

#include <string>

// What the parser asks the device about the position. Each body is the answer
// of an implementation that doesn't override it.
class IParserRetrieveDeviceLocationData {
public:
    virtual ~IParserRetrieveDeviceLocationData() {}
    virtual std::string getLatitude() { return "0.0"; }
    virtual std::string getLongitude() { return "0.0"; }
};

#endif
