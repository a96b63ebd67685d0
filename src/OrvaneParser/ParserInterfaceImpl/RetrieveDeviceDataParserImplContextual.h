#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_CONTEXTUAL_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_CONTEXTUAL_H

#include <orvane-parser/IParserRetrieveDeviceContextualData.h>

// The appliance has no phone number in context.
class RetrieveDeviceDataParserImplContextual : public IParserRetrieveDeviceContextualData {
public:
    std::string getContextualSinglePhoneNumber() override;
};

#endif
