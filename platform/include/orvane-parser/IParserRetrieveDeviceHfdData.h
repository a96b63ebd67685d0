#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_HFD_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_HFD_DATA_H

// What the parser may ask the device about hands-free calling. This device
// offers nothing here: the facade never hands out such a facet.
class IParserRetrieveDeviceHfdData {
public:
    virtual ~IParserRetrieveDeviceHfdData() {}
};

#endif
