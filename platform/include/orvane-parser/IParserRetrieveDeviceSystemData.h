#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_SYSTEM_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_SYSTEM_DATA_H

// What the parser may ask the device about the system. This device offers
// nothing here: the facade never hands out such a facet.
class IParserRetrieveDeviceSystemData {
public:
    virtual ~IParserRetrieveDeviceSystemData() {}
};

#endif
