#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_SETTINGS_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_SETTINGS_DATA_H

// What the parser may ask the device about settings. This device offers
// nothing here: the facade never hands out such a facet.
class IParserRetrieveDeviceSettingsData {
public:
    virtual ~IParserRetrieveDeviceSettingsData() {}
};

#endif
