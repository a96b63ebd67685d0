#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_STATUS_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_STATUS_DATA_H

#include <string>

// What the parser asks the device about the device and its user. Each body is
// the answer of an implementation that doesn't override it.
class IParserRetrieveDeviceStatusData {
public:
    virtual ~IParserRetrieveDeviceStatusData() {}
    virtual bool isChineseCustomer() { return false; }
    virtual bool isContactPlmSyncDone() { return true; }
    virtual bool useCustomDriverReply() { return false; }
    virtual std::string getOneWordCallMode() { return "False"; }
};

#endif
