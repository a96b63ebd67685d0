#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_MESSAGE_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_MESSAGE_H

#include <orvane-parser/IParserRetrieveDeviceMessageData.h>

// The appliance receives no messages.
class RetrieveDeviceDataParserImplMessage : public IParserRetrieveDeviceMessageData {
public:
    bool getNewMessages(std::vector<HfdData*>* messages, MessageQueryData* query) override;
};

#endif
