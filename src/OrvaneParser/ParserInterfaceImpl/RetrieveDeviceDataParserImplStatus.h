#ifndef RETRIEVE_DEVICE_DATA_PARSER_IMPL_STATUS_H
#define RETRIEVE_DEVICE_DATA_PARSER_IMPL_STATUS_H

#include "ClientManager/OrvaneMaster.h"

#include <orvane-parser/IParserRetrieveDeviceStatusData.h>

// The device's customization switches for the parser, taken from the device's
// status retriever.
class RetrieveDeviceDataParserImplStatus : public IParserRetrieveDeviceStatusData, public OrvaneMaster {
public:
    bool isChineseCustomer() override;
    bool isContactPlmSyncDone() override;
    bool useCustomDriverReply() override;
};

#endif
