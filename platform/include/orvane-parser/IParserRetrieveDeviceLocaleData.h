#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_LOCALE_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_LOCALE_DATA_H

// What the parser may ask the device about the locale. This device offers
// nothing here: the facade never hands out such a facet.
class IParserRetrieveDeviceLocaleData {
public:
    virtual ~IParserRetrieveDeviceLocaleData() {}
};

#endif
