#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_CALL_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_CALL_H

#include <orvane-parser/IParserRetrieveDeviceCallData.h>

// The appliance makes no calls.
class RetrieveDeviceDataParserImplCall : public IParserRetrieveDeviceCallData {
public:
    bool getLastCallLog(HfdData* callLog) override;
};

#endif
