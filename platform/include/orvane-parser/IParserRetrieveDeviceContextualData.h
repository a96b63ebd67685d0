#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CONTEXTUAL_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_CONTEXTUAL_DATA_H

#include <string>

// What the parser asks the device about the conversation context. Each body
// is the answer of an implementation that doesn't override it.
class IParserRetrieveDeviceContextualData {
public:
    virtual ~IParserRetrieveDeviceContextualData() {}
    virtual std::string getContextualSinglePhoneNumber() { return ""; }
};

#endif
