#ifndef ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_MESSAGE_DATA_H
#define ORVANE_PARSER_I_PARSER_RETRIEVE_DEVICE_MESSAGE_DATA_H

#include <string>
#include <vector>

#include <dlog.h>

#include "HfdData.h"
#include "MessageQueryData.h"

// What the parser asks the device about messages. Each body is the answer of
// an implementation that doesn't override it (some after one debug log line).
class IParserRetrieveDeviceMessageData {
public:
    virtual ~IParserRetrieveDeviceMessageData() {}
    virtual bool getNewMessages(std::vector<HfdData*>* /*messages*/, MessageQueryData* /*query*/)
    {
        dlog_print(DLOG_DEBUG, "VoiceEnginePlugIn", "%s: %s(%d) > ", "IParserRetrieveDeviceMessageData.h", __func__, __LINE__);
        return false;
    }
    virtual std::string getPhoneNumberFromMessageId(std::string /*messageId*/) { return ""; }
};

#endif
